#include "catalogue/StatusIndicators.h"
#include "dialogs/ListTable.h"
#include "dialogs/MigrationReportDialog.h"
#include "startup/clsRegAccess.h"
#include "support/Audit.h"
#include "support/WizardDesk.h"

using namespace Qt::StringLiterals;

namespace {

/// What a converter does. Writes a project of one page, lists it under another name than the one
/// typed, and tells of it.
struct Converter
{
    using Line = std::function<void(const QByteArray &)>;

    TestProgram &world;
    QString project = u"Legacy Plant"_s;
    QString destination = u"S:\\Docs\\Legacy Plant"_s; ///< as stored
    QList<ConversionProblem> problems = {};

    [[nodiscard]] QString folder() const { return u"S:\\Docs\\"_s + project; }

    ProcessEnd operator()(const Line &line) const
    {
        Session session = world.session;
        session.projectName = project;
        world.files.makeFolder(folder());
        TableOfContents(session, world.files).CreateQVTOCFile(folder() + u"\\QV_Toc.xml"_s);
        fillHeader(session, world.files, world.clock, world.locale, project);
        addPumps(world, project);
        ProjectCatalogue(session, world.files).UpdateQVSelection();
        if (!destination.isEmpty())
            world.registry.setValue(Hive::LocalMachine, RegistryKey::compiler + u"Destination"_s,
                                    u"Path"_s, destination);
        tell(line);
        return {};
    }
    void tell(const Line &line) const
    {
        const auto say = [&](const QByteArray &words) { line(words.chopped(1)); };
        say(ConversionLines::progress(1, 2, u"start.htm"_s));
        say(ConversionLines::count({u"Pages"_s, 12, 12 - int(problems.size())}));
        for (const ConversionProblem &problem : problems)
            say(ConversionLines::problem(problem));
        say(ConversionLines::end(ConversionEnd::Done, {}, folder()));
    }
};

/// What it leaves behind when it breaks.
void makeRemains(TestProgram &world)
{
    world.put(u"S:\\Docs\\Plant.qvnew\\Pumps\\start.htm"_s, "half");
    world.files.makeFolder(u"S:\\Docs\\Plant"_s);
}

} // namespace

class tst_migrationwizard final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void migratesAndReports();
    void migrationsThatFailLeaveNothing();
    void aDamagedDatabaseIsTheAuthorsChoice();
    void onlyWhatTheConverterWroteIsOpened();
};

void tst_migrationwizard::migratesAndReports()
{
    TestProgram world;
    Wizard wizard(world);
    wizard.fillMigration();
    const ConversionProblem orphan{u"Pages"_s, u"PageID 12"_s,
                                   u"<b>The book 9 is not there.</b>"_s};
    world.processes.runs = Converter{.world = world, .problems = {orphan}};
    click(wizard.form, "cmdContinue");

    QCOMPARE(clsRegAccess(world.registry).mstrGetDesPath(u"Source"_s), "C:\\Old\\plant.mdb"_L1);
    QCOMPARE(world.processes.started,
             QStringList{u"C:\\Client\\Bin\\qv_dbtoxml.exe|--database=C:\\Old\\plant.mdb|--mode=1|"
                         "--target=S:\\Docs\\Plant|--name=Plant|--id=P01|--language=ENU"_s});
    QPointer report = wizard.form->findChild<MigrationReportDialog *>();
    QVERIFY2(report, qPrintable(world.messages.shown.join(u'\n')));
    QVERIFY(report->isModal() && world.navigator.shown.isEmpty());
    QCOMPARE(control<QLabel>(report, "lblSummary")->text(),
             u"The legacy book set C:\\Old\\plant.mdb was migrated to the project Legacy Plant."_s);
    QCOMPARE(control<ListTable>(report, "lstCounts")->copied(), u"Pages\t12\t11\n"_s);
    QCOMPARE(report->focusWidget()->objectName(), "lstProblems"_L1);
    QCOMPARE(control<QPlainTextEdit>(report, "txtProblem")->toPlainText(), orphan.text);
    QVERIFY(!report->findChild<QLabel *>(u"lblWhole"_s));
    QCOMPARE(audit::findingsIn(report), QStringList());
    click(report, "cmdCopy");
    QVERIFY(QGuiApplication::clipboard()->text().endsWith(
        u"Legacy Plant.\n\nPages\t12\t11\n\nPages\tPageID 12\t"_s + orphan.text + u'\n'));
    click(report, "cmdOpenLog");
    QCOMPARE(world.processes.opened, QStringList{u"S:\\Docs\\Legacy Plant\\Migration_Log.txt"_s});

    world.messages.answers = {Answer::Yes};
    QTest::keyClick(report, Qt::Key_Escape);
    QTRY_COMPARE(world.messages.shown, QStringList{u"Do you want to generate search words now?"_s});
    QCOMPARE(world.messages.boxes.first().icon, MessageIcon::Information);
    const QString folder = u"S:\\Docs\\Legacy Plant\\"_s;
    QVERIFY(world.files.fileExists(folder + u"Search_Words\\Search_Pages.xml"_s));
    QVERIFY(!world.files.exists(folder + u"DocToDoc"_s));
    QVERIFY(world.files.fileExists(folder + u"QV_BookCategories.xml"_s));
    const auto lights = StatusIndicators(world.session, world.files, world.currentProject).lights();
    QVERIFY(lights && lights->searchIndex == 3046706 && lights->quickNav == 16777215);
    QCOMPARE(names(world), QStringList({u"My Favorites"_s, u"Legacy Plant"_s}));
    QCOMPARE(world.currentProject.handed, QStringList{u"Legacy Plant|ENU"_s});
    QCOMPARE(world.navigator.shown, QList{Form::MainUI});
    QTRY_VERIFY(!wizard.form);

    // Nothing to tell; Stop while the search words are made does not undo the migration.
    Wizard second(world);
    second.fillMigration();
    world.processes.runs = Converter{world, u"Second"_s, u"S:\\Docs\\Second"_s};
    click(second.form, "cmdContinue");
    report = second.form->findChild<MigrationReportDialog *>();
    QVERIFY(report);
    QCOMPARE(control<QLabel>(report, "lblWhole")->text(), "Everything was taken over."_L1);
    QCOMPARE(report->focusWidget()->objectName(), "cmdClose"_L1);
    world.messages.answers = {Answer::Yes};
    QList<bool> enabled;
    world.messages.echo = [&](const QStringList &) {
        enabled.append(isEnabled(second.form, "cmdContinue"));
        world.ending.atOnce = true;
    };
    click(report, "cmdClose");
    QTRY_COMPARE(enabled, QList({true, false}));
    QCOMPARE(world.messages.shown.last(),
             u"Making the search words was stopped. The project itself "
             "is complete: its next build makes them."_s);
    QVERIFY(!world.files.exists(u"S:\\Docs\\Second\\Search_Words"_s));
    QCOMPARE(world.currentProject.handed.last(), "Second|ENU"_L1);
}

void tst_migrationwizard::migrationsThatFailLeaveNothing()
{
    using Kind = ProcessEnd::Kind;
    struct Row
    {
        ProcessEnd end;
        std::optional<ConversionEnd> told;
        QString message;
    };
    const QString sentence = u"C:\\Old\\plant.mdb: why, and what now."_s;
    const QString broke =
        u"C:\\Old\\plant.mdb cannot be migrated: the converter broke off while it "
        "read the file, which is probably damaged (out of memory). "_s;
    const QList<Row> rows{
        {{Kind::Exited, 2}, ConversionEnd::Refused, sentence},
        {{Kind::Exited, 3}, ConversionEnd::Damaged, sentence},
        {{Kind::Exited, 4}, ConversionEnd::Failed, sentence},
        {{Kind::Crashed, 0, u"out of memory"_s}, {}, broke},
        {{Kind::Crashed, 0, u"out of memory"_s}, ConversionEnd::Damaged, broke},
        {{Kind::Silent},
         {},
         u"C:\\Old\\plant.mdb cannot be migrated: the converter did not answer"_s},
        {{Kind::Exited, 127, u"no libmdb"_s},
         {},
         u"C:\\Old\\plant.mdb cannot be migrated: the converter "
         "ended with status 127 and said nothing else (no libmdb). Nothing"_s},
        {{Kind::Stopped}, {}, {}}};
    TestProgram world;
    Wizard wizard(world);
    wizard.fillMigration();
    world.processes.missing = true;
    click(wizard.form, "cmdContinue");
    QVERIFY(
        world.messages.shown.takeFirst().contains("converter (qv_dbtoxml) is not installed"_L1));
    world.processes.missing = false;
    const QStringList before{u"QV_Selection.xml"_s, u"QV_Selection.xml.lock"_s};
    for (const Row &row : rows) {
        world.messages.boxes.clear();
        world.processes.runs = [&](const Converter::Line &line) {
            makeRemains(world);
            if (row.told)
                line(ConversionLines::end(*row.told, sentence, {}).chopped(1));
            return row.end;
        };
        world.ending.atOnce = row.end.kind == Kind::Stopped;
        click(wizard.form, "cmdContinue");
        QCOMPARE(world.processes.stop.stop_requested(), std::exchange(world.ending.atOnce, false));
        QCOMPARE(world.messages.boxes.size(), row.message.isEmpty() ? 0 : 1);
        for (const Message &box : std::as_const(world.messages.boxes)) {
            QVERIFY2(box.text.startsWith(row.message), qPrintable(box.text));
            QVERIFY(box.icon == MessageIcon::Critical && box.title == "Quovane Developer Pro"_L1);
            QCOMPARE(wizard.focus(), "txtSelDBtoMigrate"_L1);
        }
        QVERIFY(wizard.form->isVisible() && isEnabled(wizard.form, "cmdContinue"));
        QCOMPARE(world.below(u"S:\\Docs"_s), before);
        QCOMPARE(names(world), QStringList());
    }

    // A converter that is ended before it lists the project has made all of it.
    world.processes.runs = [&](const Converter::Line &) {
        world.put(u"S:\\Docs\\Plant\\QV_Toc.xml"_s, "whole");
        return ProcessEnd{Kind::Crashed};
    };
    click(wizard.form, "cmdContinue");
    QCOMPARE(
        world.messages.boxes.last().text,
        u"The converter ended before it could list the project, but the folder S:\\Docs\\Plant "
        "is complete. Migrate once more under this name, and let the folder be listed."_s);
    world.files.removeFile(u"S:\\Docs\\Plant\\QV_Toc.xml"_s);
    world.files.removeFolder(u"S:\\Docs\\Plant"_s);

    // What another author makes under this name at this moment stays.
    world.processes.runs = [&](const Converter::Line &) {
        makeRemains(world);
        return ProcessEnd{Kind::Crashed};
    };
    const auto theirs = world.files.lock(u"S:\\Docs\\Plant.qvnew.lock"_s, u"S:\\Docs"_s, {});
    click(wizard.form, "cmdContinue");
    QVERIFY(world.files.fileExists(u"S:\\Docs\\Plant.qvnew\\Pumps\\start.htm"_s));
}

void tst_migrationwizard::aDamagedDatabaseIsTheAuthorsChoice()
{
    TestProgram world;
    Wizard wizard(world);
    wizard.fillMigration();
    const Converter good{world};
    world.processes.runs = [&](const Converter::Line &line) -> ProcessEnd {
        if (world.processes.started.last().endsWith("|--accept-partly"_L1))
            return good(line);
        for (int row = 1; row <= 17; ++row)
            line(ConversionLines::problem({u"Pages"_s, u"PageID %1"_s.arg(row), u"cut"_s}));
        line(ConversionLines::end(ConversionEnd::PartlyReadable, u"Some rows cannot be read."_s,
                                  {}));
        return {};
    };
    world.messages.choices = {1};
    click(wizard.form, "cmdContinue");
    QVERIFY(world.messages.shown.first().startsWith(
        u"Some rows cannot be read.\n\nPages, PageID 1: cut\nPages, PageID 2: cut\n"_s));
    QVERIFY(world.messages.shown.first().endsWith(u"Pages, PageID 15: cut\nand 2 more"_s));
    QCOMPARE(wizard.focus(), "txtSelDBtoMigrate"_L1);
    QCOMPARE(world.processes.started.size(), 1);
    QCOMPARE(names(world), QStringList());

    world.messages.choices = {0};
    click(wizard.form, "cmdContinue");
    QVERIFY(wizard.form->findChild<MigrationReportDialog *>());

    // Stop comes when all is done: it is done.
    Wizard late(world);
    late.fillMigration();
    world.processes.runs = [&](const Converter::Line &line) {
        good.tell(line);
        return ProcessEnd{ProcessEnd::Kind::Stopped};
    };
    click(late.form, "cmdContinue");
    QVERIFY(late.form->findChild<MigrationReportDialog *>());
}

void tst_migrationwizard::onlyWhatTheConverterWroteIsOpened()
{
    const QString head =
        u"The converter wrote the project to S:\\Docs\\Legacy Plant, but the setting "
        "\"Path\" of "_s;
    const QStringList destinations{{}, u"S:\\Docs\\Older"_s};
    for (const QString &destination : destinations) {
        TestProgram world;
        Wizard wizard(world);
        wizard.fillMigration();
        world.processes.runs = Converter{world, u"Legacy Plant"_s, destination};
        click(wizard.form, "cmdContinue");
        const QString message = world.messages.shown.takeLast();
        QVERIFY2(message.startsWith(head), qPrintable(message));
        QVERIFY(
            message.contains(u"names "_s + (destination.isEmpty() ? u"no folder"_s : destination)));
        QVERIFY(message.endsWith(": QV_Developer::frmSelPrjTypetoAdd-cmdContinue_Click"_L1));
        QVERIFY(world.navigator.shown.isEmpty() && wizard.form->isVisible());
    }
    TestProgram world;
    const QString deep = u"S:\\Docs\\Legacy Plant\\Deep"_s;
    Wizard wizard(world);
    wizard.fillMigration();
    world.processes.runs = [&](const Converter::Line &line) {
        world.registry.setValue(Hive::LocalMachine, RegistryKey::compiler + u"Destination"_s,
                                u"Path"_s, deep);
        line(ConversionLines::end(ConversionEnd::Done, {}, deep).chopped(1));
        return ProcessEnd();
    };
    click(wizard.form, "cmdContinue");
    QVERIFY(world.messages.shown.last().startsWith(
        u"The converter wrote the project to %1, which is no folder directly below S:\\Docs\\."_s
            .arg(deep)));
    QVERIFY(world.currentProject.handed.isEmpty() && world.navigator.shown.isEmpty());
}

QV_FORM_TEST_MAIN(tst_migrationwizard)
#include "tst_migrationwizard.moc"
