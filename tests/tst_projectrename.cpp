#include "controls/globals/ProjectNaming.h"
#include "startup/PageText.h"
#include "support/DisturbedFiles.h"
#include "support/GlobalsDesk.h"
#include "tools/rename/ProjectRename.h"

using namespace Qt::StringLiterals;

namespace {

const QString oldName = u"Plant 300"_s;
const QString newName = u"Pumps 7"_s;
const QString newFolder = u"S:\\Docs\\Pumps 7\\"_s;

/// The name that everything agrees on; fails the test when something does not.
QString agreedName(TestProgram &world)
{
    const bool isNew = world.files.folderExists(newFolder);
    const QString name = isNew ? newName : oldName;
    const QString folder = u"S:\\Docs\\"_s + name + u'\\';
    const auto saysNew = [&](const QString &path, const QString &text) {
        return xmlText(world.bytes(path)).contains(text) == isNew;
    };
    const Toc toc = TableOfContents(world.session, world.files).read(name);
    const QString page = QString::fromLatin1(world.bytes(folder + u"Book_PUMP\\a.htm"_s));
    const bool agrees =
        world.files.folderExists(u"S:\\Docs\\"_s + oldName) != isNew
        && ProjectCatalogue(world.session, world.files).entries().at(1).name == name
        && toc.books.first().key == name && toc.header.platform == (isNew ? u"Pumps "_s : QString())
        && saysNew(folder + u"Book_PUMP\\Book_PUMP.xml"_s, u">Docs\\Pumps 7\\Book_PUMP\\<"_s)
        && saysNew(folder + u"_Global Information\\Book_Global.xml"_s, u">Pumps 7<"_s)
        && page.contains(u"**"_s + name + u"**"_s)
        && saysNew(folder + ProjectFile::links, u">Pumps 7\\Book_PUMP\\a.htm#x<"_s)
        && saysNew(u"S:\\Docs\\Other\\QV_LinkID.xml"_s, u">Pumps 7\\Book_PUMP\\a.htm#x<"_s)
        && renamePlans(world.files, world.server).isEmpty();
    return agrees ? name : u"no agreement"_s;
}

/// The world with other files.
Program programOn(TestProgram &world, FileSystem &files)
{
    return {world.session,   files,        world.registry,  world.processes,
            world.windows,   world.clock,  world.messages,  world.dialogs,
            world.locale,    world.ending, world.navigator, world.currentProject,
            world.components};
}

} // namespace

class tst_projectrename final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void renamesAProject();
    void renamesAllOrNothing();
    void finishesAfterADeath();
    void renamesPrefixesAndCapitals();
    void renamesOnlyWhatNobodyElseHasOpen();
    void renamesWithAPageInHand();
};

void tst_projectrename::renamesAProject()
{
    NamedProject sample;
    TestProgram &world = sample.world;
    Desk desk(sample);
    desk.session.perform(u"Write c"_s, [&](StagedFiles &files) {
        files.replaceFile(sample.folder + u"Book_PUMP\\a.htm"_s, "<p>**Plant 300** new</p>");
    });
    const QString locked = sample.folder + u"Book_PUMP\\b.htm"_s;
    world.files.setAttributes(locked, ReadOnlyFile);
    QVERIFY(desk.session.select(sample.pump, u"P0002"_s));
    QSignalSpy nameChange(&desk.tab, &ctlGlobalsTab::OnprojectNameChange);

    QDialog *dialog = desk.press("cmdRenameProject");
    QVERIFY(dialog);
    QCOMPARE(
        textsIn(control<QTreeWidget>(dialog, "tvwChanges")->model()).sliced(3),
        (QStringList{u"Keys in 2 book files"_s, u"**Plant 300** becomes **Plant 300** in 2 pages"_s,
                     u"Folders in the project's link file"_s,
                     u"The packed copy is deleted; the next build makes a new one"_s,
                     u"Links of other projects that lead here"_s,
                     u"Locked files that will be unlocked"_s}));
    for (const auto &[typed, problem] : QList<QPair<QString, QString>>{
             {u"oTHER"_s, u"Project already exists"_s}, {u"a?b"_s, u"?"_s}}) {
        Desk::enter(dialog, "txtNewProjectName", typed);
        const QString says = control<QLabel>(dialog, "txtNewProjectNameSays")->text();
        QVERIFY2(says.contains(problem, Qt::CaseInsensitive), qPrintable(says));
        QVERIFY(!isEnabled(dialog, "cmdRename"));
    }
    Desk::enter(dialog, "txtNewProjectName", newName);
    QCOMPARE(control<QPushButton>(dialog, "cmdRename")->text(), u"&Unlock 1 file and rename"_s);
    click(dialog, "cmdRename");

    QCOMPARE(world.messages.shown, QStringList());
    QCOMPARE(agreedName(world), newName);
    QCOMPARE(nameChange.size(), 1);
    QCOMPARE(desk.tab.ProjectName(), newName);
    QCOMPARE(desk.session.currentPage(), u"P0002"_s);
    QCOMPARE(desk.toc().header.variation, u"7"_s);
    QCOMPARE(world.bytes(newFolder + u"Book_PUMP\\b.htm"_s),
             utf16Bytes(u"<p>**Pumps 7** \u6C34</p>"_s));
    QCOMPARE(world.bytes(newFolder + u"Book_PUMP\\c.htm"_s), "<p>**Plant 30** \xFF</p>");
    QVERIFY(
        xmlText(world.bytes(newFolder + ProjectFile::links)).contains(u">Plant 3000\\a.htm<"_s));
    QVERIFY(!world.files.exists(newFolder + u"QVPlant 300_Server.Zip"_s));

    // What was done before can still be taken back, in the terms of the new name.
    desk.session.undo();
    QCOMPARE(world.bytes(newFolder + u"Book_PUMP\\a.htm"_s),
             latinPage().replace("Plant 300", "Pumps 7"));
    QCOMPARE(world.messages.shown, QStringList());
}

// Whichever step fails, everything has the old name again.
void tst_projectrename::renamesAllOrNothing()
{
    int step = 1;
    for (bool failed = true; failed; ++step) {
        NamedProject sample;
        DisturbedFiles disturbed(sample.world.files);
        disturbed.syncs = false;
        int left = step;
        disturbed.disturb = [&] {
            if (--left == 0)
                throw QvError(PermissionDenied, {}, u"The disk is full"_s);
        };
        Program program = programOn(sample.world, disturbed);
        failed =
            raisedBy([&] { ProjectRename(program, oldName, newName, true).run(); }).number() != 0;
        QVERIFY(finishRenames(sample.world.program).isEmpty()); // a plan may lie there, done
        QCOMPARE(agreedName(sample.world), failed ? oldName : newName);
    }
    QVERIFY(step > 8);
}

// Whenever the program dies, the next start leaves one name to everything.
void tst_projectrename::finishesAfterADeath()
{
    QStringList names;
    for (int step = 1; names.isEmpty() || step < 40; ++step) {
        NamedProject sample;
        DisturbedFiles dying(sample.world.files);
        dying.syncs = false;
        int left = step;
        dying.disturb = [&] {
            if (--left <= 0)
                throw QvError(PermissionDenied, {}, u"Dead"_s);
        };
        Program program = programOn(sample.world, dying);
        trap([](const QvError &) {}, [&] { ProjectRename(program, oldName, newName, true).run(); });
        QCOMPARE(finishRenames(sample.world.program), QStringList());
        names.append(agreedName(sample.world));
        QVERIFY2(names.last() != u"no agreement"_s, qPrintable(QString::number(step)));
        if (left > 0)
            break;
    }
    QVERIFY(names.contains(oldName) && names.contains(newName));
    QVERIFY2(names.indexOf(newName) < names.size() - 3, "the plan was never needed");
}

void tst_projectrename::renamesPrefixesAndCapitals()
{
    struct Case
    {
        QString language, old, typed, now, platform, variation;
    };
    for (const auto &[language, old, typed, now, platform, variation] :
         {Case{u"DEU"_s, u"DEU_Anlage"_s, u"\u00DCbung 5"_s, u"DEU_\u00DCbung 5"_s,
               u"\u00DCbung "_s, u"5"_s},
          Case{u"ENU"_s, u"Plant X"_s, u"PLANT x"_s, u"PLANT x"_s, u"PLANT x"_s, {}},
          Case{u"JPN"_s,
               u"JPN_\u30DD\u30F3\u30D7"_s,
               u"\u6C34"_s,
               u"JPN_\u6C34"_s,
               u"\u6C34"_s,
               {}}}) {
        SampleProject sample;
        TestProgram &world = sample.world;
        world.files.move(withoutBackslash(sample.folder), u"S:\\Docs\\"_s + old);
        world.session.projectName = old;
        world.session.projectLanguage = language;
        ProjectCatalogue(world.session, world.files)
            .CreateSelectionFile(cataloguePath(world.server));
        ProjectCatalogue(world.session, world.files).UpdateQVSelection();
        ProjectFiles files(world, old);
        files.addBook(u"Pump"_s, u"PUMP"_s, {{u"a.htm"_s, u"<p>**%1**</p>"_s.arg(old).toUtf8()}});
        ProjectSession session(world.program);
        session.open(old);
        QVERIFY2(ProjectNaming(session).problemOfName(typed).isEmpty(), qPrintable(typed));
        QVERIFY(ProjectNaming(session).rename(typed, true));

        QCOMPARE(session.projectName(), now);
        QCOMPARE(QDir(world.files.nativePath(u"S:\\Docs"_s))
                     .entryList(QDir::Dirs | QDir::NoDotAndDotDot),
                 QStringList{now});
        const CatalogueEntry entry = ProjectCatalogue(world.session, world.files).entries().at(1);
        QCOMPARE(entry.name + entry.location, now + u"Docs\\"_s + now + u'\\');
        QCOMPARE(entry.language, language);
        QCOMPARE(session.header().platform, platform);
        QCOMPARE(session.header().variation, variation);
        QCOMPARE(session.book(session.books().first()).path, u"Docs\\%1\\Book_PUMP\\"_s.arg(now));
        QCOMPARE(QString::fromUtf8(world.bytes(session.folder() + u"Book_PUMP\\a.htm"_s)),
                 u"<p>**%1**</p>"_s.arg(now));
    }
}

// Whoever has it open would write into a folder that is no longer there.
void tst_projectrename::renamesOnlyWhatNobodyElseHasOpen()
{
    NamedProject sample;
    TestProgram &world = sample.world;
    Desk desk(sample);
    auto other = std::make_unique<ProjectSession>(world.program);
    other->open(oldName);
    Q_EMIT desk.session.requested({.action = ProjectRequest::Action::Rename, .node = {}}); // tree
    auto *dialog = desk.tab.findChild<QDialog *>(u"RenameProjectDialog"_s);
    QVERIFY(dialog);
    Desk::enter(dialog, "txtNewProjectName", newName);
    click(dialog, "cmdRename");
    QCOMPARE(
        world.messages.shown,
        QStringList{u"The project \"Plant 300\" is open in the QV Developer of another author. "
                    "Ask everybody to close it, then rename it. Nothing was changed."_s});
    QCOMPARE(agreedName(world), oldName);
    other.reset();
    click(dialog, "cmdRename");
    QCOMPARE(agreedName(world), newName);

    // While another program renames it nobody opens it; when that has died, it is finished.
    (void)writeRenamePlan(world.files, world.server, {{}, newName, oldName, true});
    std::optional<NameClaim> claim(std::in_place, world.files, withoutBackslash(newFolder));
    ProjectSession late(world.program);
    QCOMPARE(raisedBy([&] { late.open(newName); }).number(), int(PermissionDenied));
    claim.reset();
    late.open(newName);
    QCOMPARE(late.projectName(), newName);
    QVERIFY(renamePlans(world.files, world.server).isEmpty());
}

// What is being typed is saved first; when it cannot be, nothing is renamed.
void tst_projectrename::renamesWithAPageInHand()
{
    NamedProject sample;
    TestProgram &world = sample.world;
    sample.addGlobals();
    Desk desk(sample);
    desk.choose("tvwGlobalPages", u"welcome"_s);
    auto *source = control<QWidget>(&desk.tab, "globalSource")->findChild<QPlainTextEdit *>();
    control<QTabWidget>(&desk.tab, "tabGlobalPage")->setCurrentIndex(1);
    source->selectAll();
    source->insertPlainText(u"<p>**Plant 300** typed</p>"_s);
    const auto rename = [&] {
        QDialog *dialog = desk.press("cmdRenameProject");
        Desk::enter(dialog, "txtNewProjectName", newName);
        click(dialog, "cmdRename");
        return dialog;
    };
    world.put(sample.folder + u"_Global Information\\welcome.htm"_s, "Of another author");
    world.messages.choices = {2}; // neither text shall go
    QDialog *dialog = rename();
    QVERIFY(dialog->isVisible());
    QVERIFY(world.files.folderExists(sample.folder));
    world.messages.choices = {1}; // mine
    click(dialog, "cmdRename");
    const QString page = newFolder + u"_Global Information\\welcome.htm"_s;
    QCOMPARE(world.bytes(page), "<p>**Pumps 7** typed</p>");

    desk.choose("tvwGlobalPages", u"welcome"_s);
    QCOMPARE(source->toPlainText(), u"<p>**Pumps 7** typed</p>"_s);
    QTest::keyClicks(source, u"X"_s);
    QTest::keyClick(source, Qt::Key_S, Qt::ControlModifier);
    QCOMPARE(world.bytes(page), "X<p>**Pumps 7** typed</p>");
    QVERIFY(!world.files.exists(sample.folder));
    QCOMPARE(world.messages.unexpected, QStringList());
}

QV_FORM_TEST_MAIN(tst_projectrename)
#include "tst_projectrename.moc"
