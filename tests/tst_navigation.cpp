#include "dialogs/frmSelPrjType.h"
#include "dialogs/frmSelPrjTypetoAdd.h"
#include "startup/StartUp.h"
#include "startup/frmOrvantisVRXSplashScreen.h"
#include "support/WorkspaceWorld.h"

using namespace Qt::StringLiterals;

class tst_navigation final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void leadsFromTheLauncherToTheWorkspace();
    void endsWithTheLastWindow();
    void comesToTheFront();
    void leadsToEveryDialogAndBack();
};

void tst_navigation::leadsFromTheLauncherToTheWorkspace()
{
    WorkspaceWorld world;
    QVERIFY(Main(world.live, {}));
    QPointer launcher = openWindow<frmSelPrjType>();
    QVERIFY(launcher);
    QVERIFY(isEnabled(launcher, "cmdMergeProjects"));

    click(launcher, "cmdAddNewProject");
    QTRY_VERIFY(!launcher);
    QPointer wizard = openWindow<frmSelPrjTypetoAdd>();
    const auto before = world.clock.elapsed;
    click(wizard, "cmdBack");
    QTRY_VERIFY(!wizard);
    launcher = openWindow<frmSelPrjType>();
    QVERIFY(launcher && control<QWidget>(launcher, "fraSelProjectType")->isVisible());
    QVERIFY2(world.clock.elapsed == before, "Back shows no splash");

    click(launcher, "cmdAddNewProject");
    QTRY_VERIFY(!launcher);
    wizard = openWindow<frmSelPrjTypetoAdd>();
    control<QLineEdit>(wizard, "txtProjectName")->setText(u"Plant"_s);
    control<QLineEdit>(wizard, "txtPrjId")->setText(u"PLT"_s);
    click(wizard, "cmdContinue");
    QTRY_VERIFY(!wizard);
    QCOMPARE(world.messages.shown, QStringList{});
    const frmMainUI *const workspace = openWindow<frmMainUI>();
    QVERIFY(workspace);
    QCOMPARE(control<QTreeView>(workspace, "tvwProject")->model()->index(0, 0).data(), u"Plant"_s);

    // Opening a book's editor from the tree brings its tab to the front.
    world.addBook(u"Repair"_s, u"REP"_s);
    auto *const tree = control<QTreeView>(workspace, "tvwProject");
    QTest::keyClick(tree, Qt::Key_F5);
    chooseInTree(world.mainWindow(), {u"Books"_s, u"Repair"_s});
    QCOMPARE(control<QTabBar>(workspace, "SSTab1")->currentIndex(), 0);
    Q_EMIT tree->activated(tree->currentIndex());
    QCOMPARE(control<QTabBar>(workspace, "SSTab1")->currentIndex(), 1);
}

void tst_navigation::endsWithTheLastWindow()
{
    WorkspaceWorld world(u"Plant"_s);
    world.session.gbFromMainWindow = true; // no splash
    world.real.handOver(u"Plant"_s, u"ENU"_s);
    world.real.show(Form::SelPrjType);
    QTimer overdue;
    overdue.setSingleShot(true);
    connect(&overdue, &QTimer::timeout, this, [] { QCoreApplication::exit(1); });
    overdue.start(20000);

    // The workspace takes the launcher's place: the program goes on.
    QTimer::singleShot(0, this, [&] {
        world.messages.answers = {Answer::Yes, Answer::Yes};
        world.real.show(Form::MainUI);
        QVERIFY(world.real.unload(Form::SelPrjType));
        QTimer::singleShot(0, this, [&] {
            QVERIFY(openWindow<frmMainUI>());
            QVERIFY(world.real.unload(Form::MainUI));
        });
    });
    QCOMPARE(QCoreApplication::exec(), 0);
    QCOMPARE(world.messages.shown.size(), 2);

    // A hidden main window does not keep the program alive.
    world.real.handOver(u"Plant"_s, u"ENU"_s);
    QVERIFY(world.real.window(Form::MainUI) && world.real.window(Form::Build));
    world.real.show(Form::SelPrjType);
    QTimer::singleShot(0, this, [&] {
        world.messages.answers = {Answer::Yes};
        QVERIFY(world.real.unload(Form::SelPrjType));
    });
    QCOMPARE(QCoreApplication::exec(), 0);
}

void tst_navigation::comesToTheFront()
{
    WorkspaceWorld world(u"Plant"_s);
    frmMainUI *const form = world.openMainWindow();
    form->showMinimized();
    world.real.bringToFront();
    QVERIFY(form->isMaximized() && !form->isMinimized());
    QVERIFY(QTest::qWaitForWindowActive(form));

    world.messages.answers = {Answer::No};
    world.real.closeFront();
    QVERIFY(form->isVisible());
    const QStringList asked{u"Do you want to close Quovane Developer?"_s};
    QCOMPARE(world.messages.shown, asked);

    QDialog question(form); // what is open in front is closed, not the window under it
    question.open();
    world.real.closeFront();
    QVERIFY(!question.isVisible() && form->isVisible());
    QCOMPARE(world.messages.shown, asked);
}

void tst_navigation::leadsToEveryDialogAndBack()
{
    WorkspaceWorld world(u"Plant"_s);
    world.session.gbFromMainWindow = true; // no splash
    world.real.show(Form::SelPrjType);
    const struct
    {
        const char *choice, *back;
        Form form;
        const char *inFront;
    } ways[]{{"cmdContinueProject", "cmdBack", Form::ContinueProject, "cboSelPrjtoContinue"},
             {"cmdDeleteProject", "cmdBack", Form::DeleteProject, "cboProjectDelete"},
             {"cmdMergeProjects", "cmdMergeBack", Form::MergeProjects, "lstAvaProjects"},
             {"cmdRankBookSet", "cmdBack", Form::RankBookSet, "fgdBooksetRank"}};
    for (const auto &way : ways) {
        click(openWindow<frmSelPrjType>(), way.choice);
        QTRY_VERIFY2(!openWindow<frmSelPrjType>(), way.choice);
        QPointer dialog = world.real.window(way.form);
        QVERIFY2(dialog && dialog->isVisible(), way.choice);
        QVERIFY2(control<QWidget>(dialog, way.inFront)->isVisible(), way.inFront);
        click(dialog, way.back);
        QTRY_VERIFY2(!dialog, way.choice);
    }
    QVERIFY(openWindow<frmSelPrjType>());
    QVERIFY(!world.real.window(Form::ContinueProject));
    QCOMPARE(world.messages.shown, QStringList{});
    QVERIFY2(world.real.unload(Form::IBLReport), "nothing to close is nothing refused");
}

QV_FORM_TEST_MAIN(tst_navigation)
#include "tst_navigation.moc"
