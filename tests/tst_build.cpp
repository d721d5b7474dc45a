// Builds, packs and searches a real project through the build window.
#include "catalogue/ProjectCatalogue.h"
#include "catalogue/StatusIndicators.h"
#include "controls/ctlBuildTab.h"
#include "controls/parts/StatusLight.h"
#include "projectfiles/OpenMark.h"
#include "support/DisturbedFiles.h"
#include "support/WorkspaceWorld.h"
#include "tools/build/BuildTools.h"
#include "workspace/frmBuild.h"

#include <semaphore>

using namespace Qt::StringLiterals;

namespace {

constexpr std::array elements{"DoctoDoc", "ContextSettings", "QuickNav", "SearchIndex"};

/// A project with two pages, one of which has a dead link, and its build window.
class BuildWorld : public WorkspaceWorld
{
public:
    BuildWorld()
        : WorkspaceWorld(u"Plant"_s)
    {
        list(u"Plant"_s);
        currentFiles().addBook(
            u"Repair"_s, u"REP"_s,
            {{u"start.htm"_s, page("Pumps", "The pump turns.")},
             {u"valve.htm"_s, page("Valves", "See <a href=\"gone.htm\">it</a>")}});
        currentFiles().addQuickNav(u"REP"_s);
        session.booksChanged = true;
    }
    static QByteArray page(const QByteArray &title, const QByteArray &body)
    {
        return "<!DOCTYPE html><html lang=\"en\"><head><meta charset=\"utf-8\"><title>" + title
               + "</title></head>\n<body>\n<h1>" + title + "</h1>\n<p>" + body
               + "</p>\n</body></html>";
    }
    frmBuild *open()
    {
        openMainWindow();
        control<QAbstractButton>(mainWindow(), "cmdBuild")->click();
        return static_cast<frmBuild *>(real.window(Form::Build));
    }
    StatusLights lights()
    {
        return StatusIndicators(session, files, real).lights().value_or(StatusLights());
    }
};

QStringList ticked(const QWidget *form)
{
    QStringList names;
    for (const char *const element : elements) {
        const QByteArray name = QByteArray("chk") + element;
        if (control<QCheckBox>(form, name)->isChecked())
            names.append(QString::fromLatin1(element));
    }
    return names;
}

QString textOf(const QWidget *form, const char *label)
{
    return control<QLabel>(form, label)->text();
}

QString logOf(const QWidget *form)
{
    return control<QPlainTextEdit>(form, "txtLog")->toPlainText();
}

/// The state of each part of the build by its name.
QMap<QString, QString> statesIn(const QWidget *form)
{
    QMap<QString, QString> states;
    const auto *const rows = control<QTreeWidget>(form, "lstStages");
    for (int i = 0; i < rows->topLevelItemCount(); ++i)
        states.insert(rows->topLevelItem(i)->text(0), rows->topLevelItem(i)->text(1));
    return states;
}

bool hasReasons(const QWidget *form)
{
    return textOf(form, "lblWhySearchIndex") != "Looking..."_L1;
}

/// Builds what is ticked, to the end.
void build(frmBuild *form)
{
    click(form, "cmdNext");
    QTRY_VERIFY(control<QWidget>(form, "cmdBack")->isEnabled());
}

/// The windows over files that workers wait for at each of their writes.
class HeldBuild
{
public:
    BuildWorld world;
    std::counting_semaphore<1000> gate{0};
    std::atomic_int held = 0; ///< how many workers wait
    DisturbedFiles files{world.files};
    Program program{world.session, files,          world.registry,  world.processes, world.windows,
                    world.clock,   world.messages, world.dialogs,   world.locale,    world.ending,
                    windows,       windows,        world.components};
    WindowNavigator windows{program};
    QPointer<frmBuild> form;

    HeldBuild()
    {
        windows.handOver(u"Plant"_s, u"ENU"_s);
        windows.show(Form::MainUI);
        windows.show(Form::Build);
        form = static_cast<frmBuild *>(windows.window(Form::Build));
        files.disturb = [this] {
            if (QThread::currentThread() == qApp->thread())
                return;
            ++held;
            gate.acquire();
        };
        click(form, "cmdNext");
        [this] { QTRY_VERIFY(held > 0); }();
    }
    ~HeldBuild() { letGo(); }
    void letGo() { gate.release(500); }
    /// Lets the worker do one write after the other until then.
    template <typename Condition>
    void stepUntil(Condition &&isReached)
    {
        while (!isReached()) {
            if (held > 0) {
                --held;
                gate.release();
            }
            QTest::qWait(1);
        }
    }
    /// From now on the worker waits again.
    void hold()
    {
        while (gate.try_acquire()) {
        }
        held = 0;
    }
};

} // namespace

class tst_build final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void runsWhatIsStale();
    void letsTheOthersRunWhenOneFails();
    void stopsWhenTold();
    void asksBeforeItClosesOnARun();
    void noticesEditsMeanwhile();
    void noticesPagesThatChangeOnDisk();
    void tellsWhatItCannotRead();
    void savesPageTextFirst();
    void packsAndReleases();
    void stopsPacking();
    void triesASearch();
};

void tst_build::runsWhatIsStale()
{
    BuildWorld world;
    const QString statusFile = world.projectPath() + ProjectFile::status;
    world.put(statusFile, xmlFile(u"<QV_StatusIndicator><DoctoDoc>16777215</DoctoDoc><Mine>1</Mine>"
                                  "</QV_StatusIndicator>\n"_s));
    frmBuild *const form = world.open();
    QTRY_VERIFY(hasReasons(form));
    QCOMPARE(textOf(form, "lblWhySearchIndex"), "It has not run yet."_L1);
    QCOMPARE(textOf(form, "lblLastRunDoctoDoc"), "Never"_L1);
    QCOMPARE(ticked(form).size(), 4);
    QVERIFY(!control<QLabel>(form, "lblOpenElsewhere")->isVisible());

    build(form);
    QCOMPARE(form->windowTitle(), "Build Step 2 of 2"_L1);
    QCOMPARE(textOf(form, "lblOutcome"), "The build is done."_L1);
    const auto states = statesIn(form);
    QCOMPARE(states.size(), 6);
    QCOMPARE(states.value(u"Document to document links"_s), u"Finished with warnings"_s);
    QCOMPARE(states.value(u"Search words"_s), u"Good"_s);
    QVERIFY2(logOf(form).contains("Book_REP\\valve.htm(4): LINK01"_L1), qPrintable(logOf(form)));
    QCOMPARE(logOf(form).count("LINK01"_L1), 1);
    QCOMPARE(textOf(form, "lblCounts"), "2 errors, 0 warnings, 1 note"_L1);
    for (const BuildTool tool : allBuildTools)
        QVERIFY2(world.files.fileExists(world.projectPath() + resultOf(tool)),
                 qPrintable(resultOf(tool)));
    QCOMPARE(world.lights().docToDoc, Light::warnings);
    QCOMPARE(world.lights().searchIndex, Light::good);
    QVERIFY2(xmlText(world.bytes(statusFile)).contains("<Mine>1</Mine>"_L1), "not ours, and kept");
    QVERIFY(!world.session.hasUnbuiltChanges());

    click(form, "cmdBack");
    QCOMPARE(form->windowTitle(), "Build Step 1 of 2"_L1);
    QTRY_COMPARE(textOf(form, "lblWhySearchIndex"), "Nothing changed since."_L1);
    QCOMPARE(ticked(form), QStringList());
    QCOMPARE(control<StatusLight>(form, "DoctoDoc")->word(), "Finished with warnings"_L1);

    QTest::qWait(20); // the disk's clock goes on
    world.put(world.projectPath() + u"Book_REP\\start.htm"_s, BuildWorld::page("Pumps", "New"));
    click(form, "chkQuickNav");
    form->ctlBuildTab1().RefreshStatus(u"MainUI"_s);
    QTRY_COMPARE(textOf(form, "lblWhySearchIndex"), "Pages changed: start.htm."_L1);
    QCOMPARE(ticked(form), (QStringList{u"DoctoDoc"_s, u"QuickNav"_s, u"SearchIndex"_s}));

    QVERIFY(QTest::qWaitForWindowActive(form));
    QTest::keyClick(form, Qt::Key_F1);
    QVERIFY(world.processes.started.constLast().contains("Building a project"_L1));

    world.session.booksChanged = true;
    StatusIndicators(world.session, world.files, world.real).UpdateStatusXml(Light::mustRun);
    build(form);
    QVERIFY2(world.session.booksChanged, "context settings still must run");
    QVERIFY(textOf(form, "lblOutcome").startsWith("The build is not complete"_L1));
    QVERIFY(world.messages.shown.isEmpty());
}

void tst_build::letsTheOthersRunWhenOneFails()
{
    BuildWorld world;
    world.put(world.projectPath() + ProjectFile::links, "no XML");
    const OpenMark another(world.files, world.projectPath());
    frmBuild *const form = world.open();
    QTRY_VERIFY(control<QLabel>(form, "lblOpenElsewhere")->isVisible());
    QSignalSpy completed(&form->ctlBuildTab1(), &ctlBuildTab::evtProcessComplete);
    build(form);
    QCOMPARE(completed, QList<QVariantList>{{false}});
    QCOMPARE(statesIn(form).value(u"Document to document links"_s), u"Failed"_s);
    QCOMPARE(statesIn(form).value(u"Search words"_s), u"Good"_s);
    QCOMPARE(world.lights().docToDoc, Light::failed);
    QCOMPARE(world.lights().searchIndex, Light::good);
    QVERIFY(world.session.booksChanged && form->isVisible());
    QCOMPARE(world.bytes(world.projectPath() + ProjectFile::links), QByteArray("no XML"));

    click(form, "cmdBack");
    QTRY_VERIFY(textOf(form, "lblWhyDoctoDoc").startsWith("It has not run yet"_L1));
    auto *const stages = control<QTreeWidget>(form, "lstStages");
    stages->setCurrentItem(stages->findItems(u"Search words"_s, Qt::MatchExactly).constFirst());
    control<QAbstractButton>(form, "cmdOpenLog")->click();
    QCOMPARE(world.processes.opened,
             QStringList{world.projectPath() + u"Search_Words\\SearchWords_Log.txt"_s});
}

void tst_build::stopsWhenTold()
{
    HeldBuild held;
    QVERIFY(!isEnabled(held.form, "cmdBack") && !isEnabled(held.form, "cmdClose"));
    click(held.form, "cmdStop");
    held.letGo();
    QTRY_VERIFY(isEnabled(held.form, "cmdBack"));
    QVERIFY(textOf(held.form, "lblOutcome").startsWith("Stopped."_L1));
    QVERIFY(!held.world.files.folderExists(held.world.projectPath() + u"Search_Words"_s));
    QCOMPARE(held.world.lights().searchIndex, Light::mustRun);
    QVERIFY(held.world.session.booksChanged);
}

void tst_build::asksBeforeItClosesOnARun()
{
    HeldBuild held;
    ScriptedMessages &messages = held.world.messages;
    messages.answers = {Answer::No, Answer::Yes, Answer::No, Answer::Yes};
    QVERIFY(!held.form->close() && held.form->isVisible());
    QCOMPARE(messages.shown,
             QStringList{u"The build is still at work. Do you want to stop it and close?"_s});
    FormWindow *const mainWindow = held.windows.window(Form::MainUI);
    QVERIFY2(!mainWindow->close() && mainWindow->isVisible(), "the build goes on, and so does it");
    messages.echo = [&](const QStringList &) { held.letGo(); };
    QVERIFY(held.form->close());
    QTRY_VERIFY(!held.form);
    QVERIFY(held.world.session.booksChanged);
}

void tst_build::noticesEditsMeanwhile()
{
    HeldBuild held;
    held.form->ctlBuildTab1().RefreshStatus(u"MainUI"_s);
    held.form->ctlBuildTab1().setProjectName(u"Another"_s);
    held.letGo();
    QSignalSpy completed(&held.form->ctlBuildTab1(), &ctlBuildTab::evtProcessComplete);
    QTRY_COMPARE(completed, QList<QVariantList>{{false}});
    QVERIFY(textOf(held.form, "lblOutcome").startsWith("The project was edited while"_L1));
    QCOMPARE(held.world.lights().searchIndex, Light::mustRun);
    QVERIFY(held.world.files.folderExists(held.world.projectPath() + u"Search_Words"_s));
    QCOMPARE(held.form->windowTitle(), "Build Step 1 of 2"_L1);
}

void tst_build::noticesPagesThatChangeOnDisk()
{
    const QString page = u"Book_REP\\start.htm"_s;
    {
        HeldBuild held; // the pages are read, nothing is written
        held.world.put(held.world.projectPath() + page, BuildWorld::page("Pumps", "Meanwhile"));
        held.letGo();
        QTRY_VERIFY(isEnabled(held.form, "cmdBack"));
        QVERIFY(textOf(held.form, "lblOutcome").startsWith("The project was edited while"_L1));
        QVERIFY(held.world.session.booksChanged);
        click(held.form, "cmdBack");
        QTRY_COMPARE(textOf(held.form, "lblWhySearchIndex"),
                     "The project was edited after the last run."_L1);
        QCOMPARE(ticked(held.form).size(), 4);
    }
    HeldBuild held;
    held.stepUntil([&] { return held.world.lights().docToDoc == Light::warnings; });
    held.world.put(held.world.projectPath() + page, BuildWorld::page("Pumps", "Meanwhile"));
    click(held.form, "cmdStop");
    held.letGo();
    QTRY_VERIFY(isEnabled(held.form, "cmdBack"));
    QVERIFY(textOf(held.form, "lblOutcome").startsWith("Stopped."_L1));
    QCOMPARE(held.world.lights().docToDoc, Light::mustRun);
}

void tst_build::tellsWhatItCannotRead()
{
    BuildWorld world;
    frmBuild *const form = world.open();
    const QString statusFile = world.projectPath() + ProjectFile::status;
    world.files.removeFile(statusFile);
    QTRY_VERIFY(!world.files.exists(statusFile)); // the plan may be reading it
    form->ctlBuildTab1().RefreshStatus(u"MainUI"_s);
    QTRY_VERIFY(hasReasons(form));
    QVERIFY(textOf(form, "lblProblem")
                .endsWith("The status file of this project is missing or "
                          "cannot be read. A build makes a new one."_L1));
    QCOMPARE(ticked(form).size(), 4);
    build(form);
    QCOMPARE(textOf(form, "lblOutcome"), "The build is done."_L1);
    QCOMPARE(world.lights().contextSettings, Light::good);

    click(form, "cmdBack");
    world.session.booksChanged = true;
    StatusIndicators(world.session, world.files, world.real).UpdateStatusXml(Light::mustRun);
    form->ctlBuildTab1().RefreshStatus(u"MainUI"_s);
    world.files.setAttributes(statusFile, ReadOnlyFile);
    build(form);
    QVERIFY(textOf(form, "lblOutcome").contains("QV_StatusIndicators.xml"_L1));
    QVERIFY(world.session.booksChanged);
    world.files.setAttributes(statusFile, 0);
    StatusIndicators(world.session, world.files, world.real).UpdateStatusXml(Light::good);

    const QString toc = world.projectPath() + ProjectFile::toc;
    const QByteArray whole = world.bytes(toc);
    world.put(toc, whole.first(whole.size() / 2));
    click(form, "cmdBack");
    QTRY_VERIFY2(textOf(form, "lblProblem").contains("QV_Toc.xml"_L1),
                 qPrintable(textOf(form, "lblProblem")));
    QCOMPARE(textOf(form, "lblWhySearchIndex"), QString());
    QSignalSpy completed(&form->ctlBuildTab1(), &ctlBuildTab::evtProcessComplete);
    click(form, "chkRebuildAll");
    build(form);
    QCOMPARE(completed, QList<QVariantList>{{false}});
    QVERIFY(textOf(form, "lblOutcome").contains("QV_Toc.xml"_L1));
    QCOMPARE(statesIn(form).values(), QStringList(6, u"Not run"_s));
    QCOMPARE(world.lights().contextSettings, Light::good);

    control<QTabWidget>(form, "tabResults")
        ->setCurrentWidget(control<QWidget>(form, "lstPackItems")->parentWidget());
    QTRY_VERIFY(textOf(form, "lblPackPlan").contains("QV_Toc.xml"_L1));
    click(form, "cmdPack");
    QTRY_VERIFY(textOf(form, "lblPacked").contains("QV_Toc.xml"_L1));
    QVERIFY(!world.files.fileExists(world.projectPath() + u"QVPlant_Server.Zip"_s));
    QCOMPARE(world.bytes(toc), whole.first(whole.size() / 2));
    QVERIFY(world.messages.shown.isEmpty());
}

void tst_build::savesPageTextFirst()
{
    BuildWorld world;
    frmBuild *const form = world.open();
    chooseInTree(world.mainWindow(), {u"Books"_s, u"Repair"_s, u"start"_s});
    const auto *const books = control<QWidget>(world.mainWindow(), "ctlBooksTab1");
    auto *const source = control<QPlainTextEdit>(books, "txtSource");
    source->insertPlainText(u"Typed. "_s);
    build(form);
    QVERIFY(world.bytes(world.projectPath() + u"Book_REP\\start.htm"_s).contains("Typed. "));
    QVERIFY2(!world.session.booksChanged, "what was saved first is no edit meanwhile");
    source->insertPlainText(u"More. "_s);
    chooseInTree(world.mainWindow(), {u"Books"_s, u"Repair"_s, u"valve"_s});
    QVERIFY2(world.session.booksChanged, "no build has taken it in");
    QCOMPARE(world.lights().searchIndex, Light::mustRun);

    click(form, "cmdBack");
    form->ctlBuildTab1().setStartGuard([] { return false; });
    click(form, "cmdNext");
    QCOMPARE(form->windowTitle(), "Build Step 1 of 2"_L1);
}

void tst_build::packsAndReleases()
{
    BuildWorld world;
    frmBuild *const form = world.open();
    const auto plan = [&] { return textOf(form, "lblPackPlan"); };
    build(form);
    auto *const tabs = control<QTabWidget>(form, "tabResults");
    const auto showPack = [&] {
        tabs->setCurrentWidget(control<QWidget>(form, "lstPackItems")->parentWidget());
        QTRY_VERIFY(plan().contains("go in"_L1));
    };
    showPack();
    QVERIFY2(plan().endsWith("There is no packed copy yet."_L1), qPrintable(plan()));
    QVERIFY(!control<QCheckBox>(form, "chkRelease")->isChecked());
    click(form, "cmdPack");
    QTRY_VERIFY2(plan().endsWith("Nothing differs from the last pack."_L1), qPrintable(plan()));
    const QString pack = world.projectPath() + u"QVPlant_Server.Zip"_s;
    QVERIFY(textOf(form, "lblPacked").contains("packed into QVPlant_Server.Zip"_L1));
    QVERIFY(world.files.fileExists(pack));
    const auto entry = [&] {
        return ProjectCatalogue(world.session, world.files).entries().constLast();
    };
    QCOMPARE(entry().addDate, QString());
    click(form, "chkRelease");
    StatusIndicators(world.session, world.files, world.real).UpdateStatusXml(Light::mustRun);
    click(form, "cmdPack");
    QTRY_VERIFY(textOf(form, "lblPacked")
                    .endsWith("It was not released: the project was edited. Go "
                              "back and build again."_L1));
    QTRY_VERIFY(!isEnabled(form, "chkRelease"));
    QCOMPARE(entry().addDate, QString());

    world.put(world.projectPath() + u"Book_REP\\start.htm"_s, BuildWorld::page("Pumps", "Newer"));
    click(form, "cmdBack");
    click(form, "chkRebuildAll");
    control<QComboBox>(form, "cboChecks")->setCurrentIndex(0);
    build(form);
    showPack();
    auto *const items = control<QTableView>(form, "lstPackItems")->model();
    QStringList changed;
    for (int row = 0; row < items->rowCount(); ++row)
        changed.append(items->index(row, 0).data().toString() + u' '
                       + items->index(row, 1).data().toString());
    QVERIFY2(changed.contains("Changed Book_REP\\start.htm"_L1), qPrintable(changed.join(u'\n')));
    QVERIFY(!changed.join(u'\n').contains("valve.htm"_L1));

    click(form, "chkRelease");
    click(form, "cmdPack");
    QTRY_VERIFY2(textOf(form, "lblPacked").endsWith("The set is released."_L1),
                 qPrintable(textOf(form, "lblPacked")));
    QCOMPARE(entry().addDate, "2026-03-14"_L1);
    QTRY_COMPARE(textOf(form, "lblRelease"), "The set was released on 2026-03-14."_L1);
    QVERIFY(!isEnabled(form, "chkRelease"));

    const QPointer window = form;
    click(form, "cmdClose");
    QTRY_VERIFY(!window);
}

void tst_build::stopsPacking()
{
    HeldBuild held;
    held.letGo();
    QTRY_VERIFY(isEnabled(held.form, "cmdBack"));
    control<QTabWidget>(held.form, "tabResults")
        ->setCurrentWidget(control<QWidget>(held.form, "lstPackItems")->parentWidget());
    QTRY_VERIFY(textOf(held.form, "lblPackPlan").contains("go in"_L1));
    const auto names = [&] {
        QStringList list;
        for (const FolderEntry &entry : held.world.files.entries(held.world.projectPath()))
            list.append(entry.name);
        return list;
    };
    const QStringList before = names();

    held.hold();
    click(held.form, "cmdPack");
    QTRY_VERIFY(held.held > 0);
    QVERIFY(!isEnabled(held.form, "cmdPack") && !isEnabled(held.form, "cmdClose"));
    held.world.messages.answers = {Answer::No};
    QVERIFY(!held.form->close());
    click(held.form, "cmdStopPack");
    held.letGo();
    QTRY_COMPARE(textOf(held.form, "lblPacked"), "Stopped. The last packed copy is as it was."_L1);
    QCOMPARE(names(), before);

    QTRY_VERIFY(isEnabled(held.form, "cmdPack"));
    const QString folder = held.world.projectPath();
    auto other =
        held.world.files.lock(folder + u"_Backup\\Build.lock"_s, folder + ProjectFile::toc, {});
    click(held.form, "cmdPack");
    QTRY_VERIFY(textOf(held.form, "lblPacked").startsWith("Another QV Developer builds or"_L1));
    other.reset();
    QTRY_VERIFY(isEnabled(held.form, "cmdPack"));
    click(held.form, "cmdPack");
    QTRY_VERIFY(textOf(held.form, "lblPacked").contains("packed into QVPlant_Server.Zip"_L1));
    QVERIFY(isEnabled(held.form, "cmdClose"));
    QCOMPARE(held.form->focusWidget()->objectName(), "cmdPack"_L1);
}

void tst_build::triesASearch()
{
    BuildWorld world;
    frmBuild *const form = world.open();
    build(form);
    auto *const question = control<QLineEdit>(form, "txtSearch");
    QVERIFY(QTest::qWaitForWindowActive(form));
    control<QWidget>(form, "lstStages")->setFocus();
    QTest::keyClick(form, Qt::Key_Y, Qt::AltModifier);
    QTRY_COMPARE(form->focusWidget(), question);
    question->setText(u"pumps"_s);
    QTest::keyClick(question, Qt::Key_Return);
    QCOMPARE(textOf(form, "lblHits"), "1 page found."_L1);
    auto *const found = control<QTreeWidget>(form, "lstFound");
    QVERIFY2(found->topLevelItem(0)->text(2).contains("pump"_L1),
             qPrintable(found->topLevelItem(0)->text(2)));
    QTest::keyClick(found, Qt::Key_Return);
    const auto *const pages = control<QWidget>(world.mainWindow(), "ctlBooksTab1");
    QVERIFY(pages->isVisible());
    QVERIFY(world.messages.shown.isEmpty());

    Q_EMIT form->placeRequested(u"Book_REP\\valve.htm"_s, 3);
    const QTextCursor place = control<QPlainTextEdit>(pages, "txtSource")->textCursor();
    QCOMPARE(place.block().text(), "<h1>Valves</h1>"_L1);
    QVERIFY2(place.atBlockStart() && !place.hasSelection(), "what is typed replaces nothing");
    world.put(world.projectPath() + u"Book_REP\\book.css"_s, "p {}");
    Q_EMIT form->placeRequested(u"Book_REP\\book.css"_s, 1);
    QCOMPARE(world.processes.opened, QStringList{world.projectPath() + u"Book_REP\\book.css"_s});
    Q_EMIT form->placeRequested(u"..\\Other\\start.htm"_s, 1);
    QCOMPARE(world.messages.shown, QStringList{u"No editor here shows ..\\Other\\start.htm."_s});

    question->setText(u"nowhere"_s);
    QTest::keyClick(question, Qt::Key_Return);
    QVERIFY(textOf(form, "lblHits").startsWith("No page holds: nowhere."_L1));
    QCOMPARE(found->topLevelItemCount(), 0);
}

QV_FORM_TEST_MAIN(tst_build)
#include "tst_build.moc"
