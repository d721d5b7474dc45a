#include "catalogue/ProjectCatalogue.h"
#include "catalogue/StatusIndicators.h"
#include "controls/ctlBooksTab.h"
#include "controls/ctlBuildTab.h"
#include "controls/ctlGlobalsTab.h"
#include "controls/ctlQuickNav.h"
#include "controls/parts/StatusLight.h"
#include "dialogs/frmSelPrjType.h"
#include "startup/frmOrvantisVRXSplashScreen.h"
#include "support/System.h"
#include "support/WorkspaceWorld.h"
#include "workspace/RecentPlaces.h"
#include "workspace/ShortcutList.h"
#include "workspace/frmBuild.h"

#include <chrono>

using namespace Qt::StringLiterals;

namespace {

constexpr auto closeQuestion = "Do you want to close Quovane Developer?"_L1;
constexpr auto switchQuestion = "Do you want to Close the current Project session?"_L1;
constexpr auto notBuilt = "You have not performed the build, all the changes you have done will "
                          "not be reflected in the QV Delivery engine."_L1;
constexpr std::array editors{"ctlGlobalsTab1", "ctlBooksTab1", "ctlQuickNav1"};
constexpr std::array lights{"DoctoDoc", "ContextSettings", "QuickNav", "SearchIndex"};

/// The editors that can be seen: "" or the one name.
QString visibleEditor(const QWidget *form)
{
    QStringList visible;
    for (const char *const editor : editors) {
        if (control<QWidget>(form, editor)->isVisible())
            visible.append(QString::fromLatin1(editor));
    }
    return visible.join(u'+');
}

QString chosenIn(const QWidget *form, const char *list)
{
    const QListWidgetItem *const item = control<QListWidget>(form, list)->currentItem();
    return item ? item->text() : QString();
}

void trigger(const QWidget *form, const char *menuItem)
{
    auto *const action = form->findChild<QAction *>(QString::fromLatin1(menuItem));
    QVERIFY2(action && action->isEnabled(), menuItem);
    action->trigger();
}

} // namespace

class tst_mainwindow final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void opensOnTheGlobals();
    void passesTheChosenNodeOn();
    void marksChangesThatNoBuildHasTakenIn();
    void saysWhichHandlerFailed();
    void asksBeforeItCloses();
    void asksForPageTextFirst();
    void returnsToTheLauncherUnlessRefused();
    void startsOtherPrograms();
    void showsTheLogs();
    void keepsItsLayout();
    void tidiesUpAndRemembersNames();
    void keepsTheBuildWindowInStep();
    void undoesByName();
    void goesOnWithARecentProject();
    void helpsAboutThePlace();
    void showsAnotherAuthorsEdit();
};

void tst_mainwindow::opensOnTheGlobals()
{
    WorkspaceWorld world(u"Plant"_s);
    world.real.handOver(u"Plant"_s, u"ENU"_s);
    QVERIFY2(!world.mainWindow()->isVisible() && !world.mainWindow()->isLoaded(), "only touched");

    world.real.show(Form::MainUI);
    const frmMainUI *const form = world.mainWindow();
    QCOMPARE(form->windowTitle(), "Quovane Developer Pro"_L1);
    QCOMPARE(control<QTreeView>(form, "tvwProject")->model()->index(0, 0).data(), u"Plant"_s);
    QVERIFY(form->focusWidget() == control<QTreeView>(form, "tvwProject"));
    QCOMPARE(visibleEditor(form), "ctlGlobalsTab1"_L1);
    QCOMPARE(control<QStatusBar>(form, "stbState")->currentMessage(), "Project Plant is open."_L1);

    QVERIFY(world.messages.shown.isEmpty());
}

void tst_mainwindow::passesTheChosenNodeOn()
{
    WorkspaceWorld world(u"Plant"_s);
    world.addBook(u"Operator's Guide"_s, u"OPG"_s);
    world.addBook(u"Repair"_s, u"REP"_s);
    world.currentFiles().addGlobals();
    world.currentFiles().addQuickNav(u"REP"_s);
    frmMainUI *const form = world.openMainWindow();
    auto *const tabs = control<QTabBar>(form, "SSTab1");

    tabs->setCurrentIndex(2);
    chooseInTree(form, {u"Books"_s, u"Repair"_s});
    QVERIFY(chosenIn(form, "lstBooks").contains(u"Repair"_s));
    QCOMPARE(visibleEditor(form), "ctlQuickNav1"_L1);

    Q_EMIT control<ctlGlobalsTab>(form, "ctlGlobalsTab1")->OnCategoryDeletion();
    QVERIFY2(chosenIn(form, "lstBooks").isEmpty(), "no book is shown once a category has gone");

    chooseInTree(form, {u"Books"_s, u"Operator's Guide"_s});
    chooseInTree(form, {u"Globals"_s, u"welcome"_s});
    QCOMPARE(tabs->currentIndex(), 0);
    QCOMPARE(visibleEditor(form), "ctlGlobalsTab1"_L1);
    QVERIFY(chosenIn(form, "lstBooks").isEmpty());
    const auto *const pages = control<QTreeWidget>(form, "tvwGlobalPages");
    QVERIFY(pages->currentItem());
    QCOMPARE(pages->currentItem()->text(0), "welcome"_L1);

    chooseInTree(form, {u"Quick Navigation"_s, u"The view"_s, u"The group"_s, u"The topic"_s,
                        u"The category"_s});
    QVERIFY(chosenIn(form, "lstViews").startsWith("The view ("_L1));
    QVERIFY(chosenIn(form, "lstTopics").startsWith("The topic ("_L1));
    QVERIFY(chosenIn(form, "lstCategories").startsWith("The category ("_L1));
    QVERIFY(world.messages.shown.isEmpty());
}

void tst_mainwindow::marksChangesThatNoBuildHasTakenIn()
{
    WorkspaceWorld world(u"Plant"_s);
    const frmMainUI *const form = world.openMainWindow();
    auto *const globals = control<ctlGlobalsTab>(form, "ctlGlobalsTab1");
    auto *const books = control<ctlBooksTab>(form, "ctlBooksTab1");
    auto *const quickNav = control<ctlQuickNav>(form, "ctlQuickNav1");
    world.real.show(Form::Build);
    const QWidget *const build = world.real.window(Form::Build);

    struct Event
    {
        const char *name;
        std::function<void(bool)> raise;
        bool Session::*flag;
    };
    const QList<Event> events{
        {"OnAddGlobalPage", [=](bool c) { Q_EMIT globals->OnAddGlobalPage({}, {}, c); },
         &Session::globalsChanged},
        {"OnAdditionQNCategory", [=](bool c) { Q_EMIT globals->OnAdditionQNCategory(c); },
         &Session::globalsChanged},
        {"OnAddImportFiles", [=](bool c) { Q_EMIT books->OnAddImportFiles(c); },
         &Session::booksChanged},
        {"OnAddSourceFiles", [=](bool c) { Q_EMIT books->OnAddSourceFiles(c); },
         &Session::booksChanged},
        {"OnDeleteBook", [=](bool c) { Q_EMIT books->OnDeleteBook(c); }, &Session::booksChanged},
        {"evtRefreshTree", [=](bool c) { Q_EMIT quickNav->evtRefreshTree({}, {}, c); },
         &Session::quickNavChanged},
    };
    StatusIndicators status(world.session, world.files, world.real);
    for (const Event &event : events) {
        Session &session = world.session;
        session.globalsChanged = session.booksChanged = session.quickNavChanged = false;
        status.UpdateStatusXml(255);

        event.raise(false);
        QVERIFY2(!session.hasUnbuiltChanges(), event.name);
        QCOMPARE(status.lights()->searchIndex, 255);

        event.raise(true);
        QVERIFY2(session.*event.flag, event.name);
        QCOMPARE(session.globalsChanged + session.booksChanged + session.quickNavChanged, 1);
        for (const char *const light : lights)
            QCOMPARE(control<StatusLight>(build, light)->word(), "Must run"_L1);
        QCOMPARE(status.lights()->docToDoc, neutralColour);
    }
}

void tst_mainwindow::saysWhichHandlerFailed()
{
    WorkspaceWorld world(u"Plant"_s);
    const frmMainUI *const form = world.openMainWindow();
    const QString statusFile = world.projectPath() + u"QV_StatusIndicators.xml"_s;
    world.files.setAttributes(statusFile, 1);

    Q_EMIT control<ctlBooksTab>(form, "ctlBooksTab1")->OnDeleteBook(true);
    const QString reason = world.session.errorText;
    QVERIFY(reason.contains(statusFile));
    QCOMPARE(world.messages.shown,
             QStringList{reason + u": QV_Developer-frmMainUI::ctlBooksTab1_OnDeleteBook"_s});
    QVERIFY2(world.session.booksChanged, "what the handler had set stays set");

    Q_EMIT control<ctlQuickNav>(form, "ctlQuickNav1")->evtRefreshTree({}, {}, true);
    QCOMPARE(world.messages.shown.last(),
             u"Error 70 ("_s + reason
                 + u") in procedure ctlQuickNav1_evtRefreshTree of Form frmMainUI"_s);
}

void tst_mainwindow::asksBeforeItCloses()
{
    struct Case
    {
        bool unbuilt, quiet, yes;
        QStringList shown;
    };
    const QString question(closeQuestion);
    const QString warning(notBuilt);
    const QList<Case> cases{{false, false, false, {question}},
                            {false, false, true, {question}},
                            {true, false, false, {warning, question}},
                            {true, false, true, {warning, question}},
                            {false, true, true, {}},
                            {true, true, true, {warning}}};
    for (const Case &row : cases) {
        WorkspaceWorld world(u"Plant"_s);
        frmMainUI *const form = world.openMainWindow();
        world.session.quickNavChanged = row.unbuilt;
        form->mbQuietClose = row.quiet;
        if (!row.quiet)
            world.messages.answers = {row.yes ? Answer::Yes : Answer::No};

        QCOMPARE(form->close(), row.yes);
        QCOMPARE(world.messages.shown, row.shown);
        QVERIFY(row.quiet || world.messages.boxes.last().title == "QV Developer"_L1);
        QVERIFY(form->isVisible() != row.yes && world.messages.unexpected.isEmpty());
        QVERIFY2(world.session.quickNavChanged == row.unbuilt, "only a build clears it");
    }
}

void tst_mainwindow::asksForPageTextFirst()
{
    WorkspaceWorld world(u"Plant"_s);
    world.addBook(u"Repair"_s, u"REP"_s);
    frmMainUI *const form = world.openMainWindow();
    chooseInTree(form, {u"Books"_s, u"Repair"_s, u"start"_s});
    QPlainTextEdit *source = nullptr;
    for (auto *const text :
         control<QWidget>(form, "ctlBooksTab1")->findChildren<QPlainTextEdit *>())
        source = text->toPlainText().contains(u"Old text"_s) ? text : source;
    QVERIFY(source);
    source->insertPlainText(u"New. "_s);
    world.session.booksChanged = true;
    const QString page = world.projectPath() + u"Book_REP\\start.htm"_s;

    world.messages.choices = {2};
    QVERIFY2(!form->close() && form->isVisible(), "the author wants to stay");
    QCOMPARE(world.messages.shown.size(), 1);

    world.messages.choices = {0};
    world.messages.answers = {Answer::Yes};
    QVERIFY(form->close());
    QCOMPARE(world.messages.shown.mid(2), (QStringList{notBuilt, closeQuestion}));
    QVERIFY(world.bytes(page).contains("New. "));
}

void tst_mainwindow::returnsToTheLauncherUnlessRefused()
{
    WorkspaceWorld world(u"Plant"_s);
    const QPointer form = world.openMainWindow();
    const QPointer build = world.real.window(Form::Build);

    world.messages.answers = {Answer::No, Answer::No};
    trigger(form, "mnuSelProject");
    QCOMPARE(world.messages.shown, QStringList{switchQuestion});
    QVERIFY(form->isVisible() && build && !openWindow<frmSelPrjType>());
    form->close();
    QCOMPARE(world.messages.shown.last(), closeQuestion);

    world.windows.open = {u"Nairurda"_s};
    world.messages.answers = {Answer::Yes, Answer::Yes};
    trigger(form, "mnuSelProject");
    QCOMPARE(world.messages.shown.mid(2),
             (QStringList{switchQuestion,
                          u"Index Manager is still running, do you want to close it?"_s}));
    QCOMPARE(world.windows.closed, QStringList{u"WindowsForms10.Window.8.app3|Nairurda"_s});
    QTRY_VERIFY(!form && !build);
    QVERIFY(openWindow<frmSelPrjType>());
    QVERIFY(world.session.gbFromMainWindow);
    QVERIFY2(!openWindow<frmOrvantisVRXSplashScreen>(), "no splash on the way back");

    world.session.projectName = u"Plant"_s;
    const QPointer again = world.openMainWindow();
    world.messages.answers = {Answer::Yes, Answer::No};
    trigger(again, "mnuExit");
    QCOMPARE(world.messages.shown.at(4), closeQuestion);
    QTRY_VERIFY(!again);
}

void tst_mainwindow::startsOtherPrograms()
{
    WorkspaceWorld world(u"Plant"_s);
    frmMainUI *const form = world.openMainWindow();
    click(form, "cmdPreview");
    trigger(form, "mnuQV");
    trigger(form, "mnuIndexManager");
    QCOMPARE(world.processes.started, (QStringList{u"C:\\Client\\Bin\\StartApp.exe| "_s,
                                                   u"C:\\Client\\Bin\\StartApp.exe| "_s,
                                                   u"C:\\Client\\Bin\\QV_IBLIndexMgr.exe"_s}));

    trigger(form, "mnuQVDeveloper");
    QVERIFY(openWindow<frmOrvantisVRXSplashScreen>());
    QTest::mouseClick(form, Qt::LeftButton, {}, {3, form->height() / 2});
    QVERIFY(!openWindow<frmOrvantisVRXSplashScreen>());
}

void tst_mainwindow::showsTheLogs()
{
    WorkspaceWorld world(u"Plant"_s);
    const frmMainUI *const form = world.openMainWindow();
    const QString folder = u"S:\\Docs\\Plant\\"_s;
    const auto answerOf = [&](const char *item) {
        world.messages.shown.clear();
        world.processes.opened.clear();
        trigger(form, item);
        return world.messages.shown.isEmpty() ? world.processes.opened.join(u'|')
                                              : world.messages.shown.constFirst();
    };
    QCOMPARE(answerOf("mnuDoc_To_Doc"), "Doc To Doc Log does not Exist"_L1);
    QCOMPARE(answerOf("mnuQAChecks"), "Plant_QA_Log.txt QA Checks Log Does Not Exist"_L1);
    QCOMPARE(answerOf("mnuQNav"), "QuickNav Log does not Exist"_L1);
    QCOMPARE(answerOf("mnuSearch_Words"), "Search Words Log does not Exist"_L1);

    const QString beside = u"S:\\Docs\\Plant_QA_Log.txt"_s;
    const QString newWords = folder + u"Search_Words\\SearchWords_Log.txt"_s;
    for (const QString &log : {folder + u"DocToDoc_Log.txt"_s, beside,
                               folder + u"QuickNav\\QuickNav_Log.txt"_s, newWords})
        world.put(log, "found nothing");
    QCOMPARE(answerOf("mnuDoc_To_Doc"), folder + "DoctoDoc_Log.txt"_L1);
    QCOMPARE(answerOf("mnuQAChecks"), beside);
    QCOMPARE(answerOf("mnuQNav"), folder + "QuickNav\\QuickNav_Log.txt"_L1);
    QCOMPARE(answerOf("mnuSearch_Words"), newWords);

    world.put(folder + u"Plant_QA_Log.txt"_s, "newer");
    world.put(folder + u"SearchWords_Log.txt"_s, "");
    QCOMPARE(answerOf("mnuQAChecks"), folder + "Plant_QA_Log.txt"_L1);
    QCOMPARE(answerOf("mnuSearch_Words"), "Search Words Log does not Exist"_L1);
}

void tst_mainwindow::keepsItsLayout()
{
    WorkspaceWorld world(u"Plant"_s);
    world.addBook(u"Repair"_s, u"REP"_s);
    QPointer form = world.openMainWindow();
    form->resize(700, 520);
    const QSize size = form->size();
    QVERIFY2(size.width() < 750 && size.height() < 600, "unlike the first time");
    control<QSplitter>(form, "splWorkspace")->setSizes({210, 460});
    const QList<int> sizes = control<QSplitter>(form, "splWorkspace")->sizes();
    form->mbQuietClose = true;
    form->close();

    form = world.openMainWindow();
    QCOMPARE(form->size(), size);
    QCOMPARE(control<QSplitter>(form, "splWorkspace")->sizes(), sizes);

    // So do the editors that are made only when they are shown.
    const auto reopen = [&] {
        form->mbQuietClose = true;
        form->close();
        form = world.openMainWindow();
        form->resize(1400, 800);
    };
    const auto showBooks = [&] {
        control<QTabBar>(form, "SSTab1")->setCurrentIndex(1);
        QCoreApplication::processEvents();
        return control<QSplitter>(form, "splBooks");
    };
    reopen();
    showBooks()->setSizes({150, 350});
    const QList<int> books = showBooks()->sizes();
    reopen(); // and closed without a look at the books, and once more with one chosen elsewhere
    reopen();
    chooseInTree(form, {u"Books"_s, u"Repair"_s});
    reopen();
    QCOMPARE(showBooks()->sizes(), books);
}

void tst_mainwindow::tidiesUpAndRemembersNames()
{
    WorkspaceWorld world(u"Plant"_s);
    world.addBook(u"Repair"_s, u"REP"_s);
    const QString book = world.projectPath() + u"Book_REP\\"_s;
    const QStringList names{u"start.htm.qvtmp77"_s, u"fresh.htm.qvtmp78"_s, u"mine.qvnew\\a.htm"_s};
    for (const QString &name : names)
        world.put(book + name, "half");
    for (const QString &name : {names[0], u"mine.qvnew"_s})
        here::setTime(world.native(u"Docs/Plant/Book_REP/"_s + name),
                      QDateTime::currentDateTime().addDays(-2));
    const frmMainUI *const form = world.openMainWindow();
    QTRY_VERIFY(!world.files.exists(book + names[0]));
    QVERIFY(world.files.exists(book + names[1]) && world.files.exists(book + names[2]));
    QVERIFY(form->isVisible());

    RecentPlaces places(world.session.serverPath);
    places.shown(u"Plant"_s, {u"REP"_s, u"P0001"_s, u"Start"_s});
    places.renamed(u"Plant"_s, u"Works"_s);
    QCOMPARE(places.projects(), QStringList{u"Works"_s});
    QCOMPARE(places.pages(u"Works"_s).constFirst().title, "Start"_L1);
    QVERIFY(places.pages(u"Plant"_s).isEmpty());
}

void tst_mainwindow::keepsTheBuildWindowInStep()
{
    WorkspaceWorld world(u"Plant"_s);
    world.put(world.projectPath() + u"QV_StatusIndicators.xml"_s,
              xmlFile(u"<QV_StatusIndicator><DoctoDoc>3046706</DoctoDoc><ContextSettings>16361509"
                      "</ContextSettings><QuickNav>12986408</QuickNav><SearchIndex>7</SearchIndex>"
                      "</QV_StatusIndicator>\n"_s));
    world.real.handOver(u"Plant"_s, u"ENU"_s);
    const QPointer window = static_cast<frmBuild *>(world.real.window(Form::Build));
    window->show();
    ctlBuildTab &control1 = window->ctlBuildTab1();
    const auto words = [&] {
        QStringList shown;
        for (const char *const light : lights)
            shown.append(control<StatusLight>(window, light)->word());
        return shown;
    };
    QCOMPARE(words(), (QStringList{u"Good"_s, u"Finished with warnings"_s, u"Failed"_s,
                                   u"Set by another tool (7)"_s}));

    const QString status = world.projectPath() + u"QV_StatusIndicators.xml"_s;
    world.files.removeFile(status);
    QTRY_VERIFY(!world.files.exists(status)); // the plan may be reading it
    control1.RefreshStatus(u"MainUI"_s);
    QCOMPARE(words(), QStringList(4, u"Not known"_s));
    QVERIFY(control<QLabel>(window, "lblProblem")->isVisibleTo(window));

    Q_EMIT control1.evtNext();
    QCOMPARE(window->windowTitle(), "Build Step 2 of 2"_L1);
    Q_EMIT control1.evtBack();
    QCOMPARE(window->windowTitle(), "Build Step 1 of 2"_L1);

    world.session.booksChanged = world.session.globalsChanged = true;
    Q_EMIT control1.evtProcessComplete(false);
    QVERIFY(world.session.booksChanged && world.session.globalsChanged);
    Q_EMIT control1.evtProcessComplete(true);
    QVERIFY(!world.session.hasUnbuiltChanges());

    Q_EMIT control1.evtZippingComplete();
    QTRY_VERIFY(!window);
    QVERIFY(world.messages.shown.isEmpty());
}

void tst_mainwindow::undoesByName()
{
    WorkspaceWorld world(u"Plant"_s);
    world.addBook(u"Repair & care"_s, u"REP"_s);
    frmMainUI *const form = world.openMainWindow();
    const QString toc = world.projectPath() + ProjectFile::toc;
    const QByteArray before = world.files.readFile(toc);
    chooseInTree(form, {u"Books"_s, u"Repair & care"_s});
    auto *const undo = form->findChild<QAction *>(u"mnuUndo"_s);
    auto *const redo = form->findChild<QAction *>(u"mnuRedo"_s);
    QVERIFY(!undo->isEnabled() && !redo->isEnabled());

    auto *const name = control<QLineEdit>(control<QWidget>(form, "ctlBooksTab1"), "txtName");
    name->selectAll();
    QTest::keyClicks(name, u"Care"_s);
    QTest::keyClick(name, Qt::Key_Return);
    QVERIFY(world.files.readFile(toc) != before);
    QVERIFY2(undo->isEnabled() && undo->text().startsWith("&Undo: "_L1), qPrintable(undo->text()));
    QVERIFY2(!undo->text().sliced(1).remove("&&"_L1).contains(u'&'), "no second mnemonic");
    world.session.booksChanged = false;

    undo->trigger();
    QCOMPARE(world.files.readFile(toc), before);
    QCOMPARE(name->text(), u"Repair & care"_s);
    QVERIFY(control<QStatusBar>(form, "stbState")->currentMessage().startsWith("Undone: "_L1));
    QVERIFY2(world.session.booksChanged, "no build has taken the undoing in");
    redo->trigger();
    QCOMPARE(name->text(), u"Care"_s);
    QVERIFY(!redo->isEnabled());
}

void tst_mainwindow::goesOnWithARecentProject()
{
    WorkspaceWorld world;
    ProjectCatalogue(world.session, world.files)
        .CreateSelectionFile(cataloguePath(world.session.serverPath));
    world.makeProject(u"Valves"_s);
    world.openMainWindow();
    world.makeProject(u"Plant"_s);
    world.messages.answers = {Answer::No, Answer::Yes};
    const auto recent = [&] {
        auto *const menu = control<QMenu>(world.mainWindow(), "mnuRecentProjects");
        Q_EMIT menu->aboutToShow();
        return menu->actions();
    };
    QVERIFY2(!recent().constFirst()->isEnabled(), "only the open one so far");
    world.real.openProject(u"Plant"_s);
    QCOMPARE(world.session.projectName, u"Plant"_s); // made current by the test itself
    QCOMPARE(control<QTreeView>(world.mainWindow(), "tvwProject")->model()->index(0, 0).data(),
             u"Valves"_s);
    world.real.openProject(u"Plant"_s);
    QCOMPARE(control<QTreeView>(world.mainWindow(), "tvwProject")->model()->index(0, 0).data(),
             u"Plant"_s);
    QCOMPARE(recent().constFirst()->text(), u"Valves"_s);

    ProjectCatalogue(world.session, world.files).remove(u"Valves"_s);
    recent().constFirst()->trigger();
    QVERIFY(world.messages.shown.constLast().contains(u"no longer among those to continue"_s));
    QVERIFY2(world.mainWindow()->isVisible(), "nothing was closed for it");
    QVERIFY(!recent().constFirst()->isEnabled());
}

void tst_mainwindow::helpsAboutThePlace()
{
    WorkspaceWorld world(u"Plant"_s);
    world.addBook(u"Repair"_s, u"REP"_s);
    frmMainUI *const form = world.openMainWindow();
    QVERIFY(QTest::qWaitForWindowActive(form));
    for (const auto &[name, topic] :
         {std::pair{"tvwProject", u"The project tree"_s}, {"lstBooks", u"Books and pages"_s}}) {
        control<QTabBar>(form, "SSTab1")->setCurrentIndex(1);
        control<QWidget>(form, name)->setFocus();
        QTest::keyClick(form, Qt::Key_F1);
        QVERIFY(!world.processes.started.isEmpty());
        QVERIFY2(world.processes.started.constLast().contains(u"QVT@qv@qvdev_ug@qv@"_s + topic),
                 qPrintable(world.processes.started.constLast()));
    }
    QTest::keyClick(form, Qt::Key_Question, Qt::ControlModifier);
    QVERIFY(openWindow<ShortcutList>());
}

void tst_mainwindow::showsAnotherAuthorsEdit()
{
    WorkspaceWorld world(u"Plant"_s);
    world.addBook(u"Repair"_s, u"REP"_s);
    frmMainUI *const form = world.openMainWindow();
    chooseInTree(form, {u"Books"_s, u"Repair"_s, u"start"_s});
    const auto *const source =
        control<QPlainTextEdit>(control<QWidget>(form, "ctlBooksTab1"), "txtSource");
    QTRY_VERIFY(source->toPlainText().contains(u"Old text"_s));
    world.put(world.projectPath() + u"Book_REP\\start.htm"_s, "<html><p>Their text</p></html>");
    QTRY_VERIFY_WITH_TIMEOUT(source->toPlainText().contains(u"Their text"_s), 20000);
}

QV_FORM_TEST_MAIN(tst_mainwindow)
#include "tst_mainwindow.moc"
