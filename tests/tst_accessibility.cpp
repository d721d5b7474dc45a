// Walks every window as an author does who has only the keyboard or a screen reader.
#include "catalogue/ProjectCatalogue.h"
#include "controls/QV_DeveloperTreeOCX.h"
#include "support/Audit.h"
#include "support/WorkspaceWorld.h"
#include "workspace/ShortcutList.h"

using namespace Qt::StringLiterals;

namespace {

/// A window is looked at in each of its tabs, those within tabs too.
QStringList findingsInAllTabs(QWidget *window, QWidget *part)
{
    QStringList found;
    QTabWidget *tabs = nullptr;
    for (auto *const candidate : part->findChildren<QTabWidget *>()) {
        if (candidate->isVisible() && tabs == nullptr)
            tabs = candidate;
    }
    if (tabs == nullptr)
        return audit::findingsIn(window);
    for (int i = 0; i < tabs->count(); ++i) {
        tabs->setCurrentIndex(i);
        QCoreApplication::processEvents();
        for (const QString &finding : findingsInAllTabs(window, tabs->currentWidget()))
            found.append(u"[%1] "_s.arg(tabs->tabText(i)) + finding);
    }
    return found;
}

} // namespace

class tst_accessibility final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { audit::startReading(); }
    void namesEverythingInTheWindows();
    void namesEverythingInTheEditors();
    void namesEverythingAfterABuild();
    void goesFromPaneToPane();
};

void tst_accessibility::namesEverythingInTheWindows()
{
    WorkspaceWorld world(u"Plant"_s);
    ProjectCatalogue catalogue(world.session, world.files);
    catalogue.CreateSelectionFile(cataloguePath(world.session.serverPath));
    catalogue.UpdateQVSelection();
    catalogue.release(u"Plant"_s, QDate(2024, 5, 6));
    world.makeProject(u"Valves"_s);
    for (const Form form : {Form::SelPrjType, Form::SelPrjTypetoAdd, Form::ContinueProject,
                            Form::MergeProjects, Form::RankBookSet, Form::IBLReport, Form::Build}) {
        world.real.show(form);
        FormWindow *const window = world.real.window(form);
        QVERIFY(QTest::qWaitForWindowExposed(window));
        const QStringList found = findingsInAllTabs(window, window);
        QVERIFY2(found.isEmpty(), qPrintable(window->objectName() + u":\n"_s + found.join(u'\n')));
    }
    ShortcutList list;
    list.show();
    QCOMPARE(audit::findingsIn(&list), QStringList());
}

void tst_accessibility::namesEverythingInTheEditors()
{
    WorkspaceWorld world(u"Plant"_s);
    world.addBook(u"Repair"_s, u"REP"_s);
    world.currentFiles().addGlobals();
    world.currentFiles().addQuickNav(u"REP"_s);
    frmMainUI *const form = world.openMainWindow();
    QVERIFY(QTest::qWaitForWindowExposed(form));
    const QList<QStringList> places{
        {u"Globals"_s, u"welcome"_s},
        {u"Books"_s, u"Repair"_s, u"start"_s},
        {u"Quick Navigation"_s, u"The view"_s, u"The group"_s, u"The topic"_s, u"The category"_s}};
    for (int tab = 0; tab < places.size(); ++tab) {
        chooseInTree(form, places.at(tab));
        control<QTabBar>(form, "SSTab1")->setCurrentIndex(tab);
        QCoreApplication::processEvents();
        const QStringList found = findingsInAllTabs(form, control<QWidget>(form, "fraEditors"));
        QVERIFY2(found.isEmpty(), qPrintable(found.join(u'\n')));
    }
}

void tst_accessibility::namesEverythingAfterABuild()
{
    WorkspaceWorld world(u"Plant"_s);
    world.addBook(u"Repair"_s, u"REP"_s);
    world.real.handOver(u"Plant"_s, u"ENU"_s);
    world.real.show(Form::Build);
    QWidget *const window = world.real.window(Form::Build);
    QCOMPARE(audit::findingsIn(window).join(u'\n'), QString());
    click(window, "cmdNext");
    QTRY_VERIFY(isEnabled(window, "cmdBack"));
    const QStringList found = findingsInAllTabs(window, window);
    QVERIFY2(found.isEmpty(), qPrintable(found.join(u'\n')));
}

void tst_accessibility::goesFromPaneToPane()
{
    WorkspaceWorld world(u"Plant"_s);
    world.addBook(u"Repair"_s, u"REP"_s);
    frmMainUI *const form = world.openMainWindow();
    QVERIFY(QTest::qWaitForWindowActive(form));
    chooseInTree(form, {u"Books"_s, u"Repair"_s, u"start"_s});
    control<QTabBar>(form, "SSTab1")->setCurrentIndex(1);
    auto *const tree = control<QWidget>(form, "tvwProject");
    tree->setFocus();
    QStringList reached;
    do {
        QTest::keyClick(form, Qt::Key_F6);
        reached.append(form->focusWidget()->objectName());
    } while (form->focusWidget() != tree && reached.size() < 20);
    QVERIFY2(reached.contains(u"lstBooks"_s) || reached.size() > 2, qPrintable(reached.join(u' ')));
    QTest::keyClick(form, Qt::Key_F6, Qt::ShiftModifier);
    QCOMPARE(form->focusWidget()->objectName(), reached.at(reached.size() - 2));
}

QV_FORM_TEST_MAIN(tst_accessibility)
#include "tst_accessibility.moc"
