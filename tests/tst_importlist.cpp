// Adding files to a book through the books editor, by keyboard: the list of what becomes which
// page, what was left out the last time, newer sources, and files dropped from the desktop.

#include "controls/ctlBooksTab.h"
#include "controls/import/AddSourceFilesDialog.h"
#include "controls/session/ProjectSession.h"
#include "support/FormDriver.h"
#include "support/SampleProject.h"

#include <QMimeData>

using namespace Qt::StringLiterals;

namespace {

const QString source = u"S:\\Source\\"_s;

/// The books editor with one empty book chosen.
class Desk
{
public:
    SampleProject sample;
    TestProgram &world = sample.world;
    const TocBook pump = sample.addBook(u"Pump"_s, u"PUMP"_s);
    ProjectSession session{world.program};
    ctlBooksTab tab{world.program, session};
    QSignalSpy sourcesAdded{&tab, &ctlBooksTab::OnAddSourceFiles};
    QSignalSpy importsAdded{&tab, &ctlBooksTab::OnAddImportFiles};

    Desk()
    {
        tab.setProjectName(sample.name);
        tab.resize(1000, 600);
        tab.show();
        tab.activateWindow();
        static_cast<void>(QTest::qWaitForWindowActive(&tab));
        session.select(pump);
    }

    /// Chooses a command of the buttons below the outline; the list that opens.
    AddSourceFilesDialog *open(const char *command, const QString &picked = {})
    {
        world.dialogs.paths = {picked};
        control<QAction>(&tab, command)->trigger();
        return shownList();
    }
    AddSourceFilesDialog *shownList()
    {
        auto *list = openWindow<AddSourceFilesDialog>();
        if (list != nullptr) {
            list->activateWindow();
            static_cast<void>(QTest::qWaitForWindowActive(list));
        }
        return list;
    }
    QString page(const QString &name)
    {
        return QString::fromUtf8(world.bytes(sample.folder + u"Book_PUMP\\"_s + name));
    }
    bool has(const QString &name)
    {
        return world.files.exists(sample.folder + u"Book_PUMP\\"_s + name);
    }
    QStringList outline() { return textsIn(control<QTreeWidget>(&tab, "tvwPages")->model()); }
};

/// "title|check mark|what happens, up to the colon" of each row.
QStringList rowsOf(const AddSourceFilesDialog *list)
{
    const QAbstractItemModel *rows = control<QTableView>(list, "lstFiles")->model();
    QStringList texts;
    for (int row = 0; row < rows->rowCount(); ++row) {
        const bool checked = rows->index(row, 0).data(Qt::CheckStateRole).toInt() == Qt::Checked;
        texts.append(rows->index(row, 0).data().toString() + (checked ? u"|x|"_s : u"| |"_s)
                     + rows->index(row, 5).data().toString().section(u':', 0, 0));
    }
    return texts;
}

/// What the author types, wherever the focus of the list is.
void press(AddSourceFilesDialog *list, Qt::Key key)
{
    QTRY_VERIFY(list->focusWidget());
    QTest::keyClick(list->focusWidget(), key);
}

} // namespace

class tst_importlist final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void remembersWhatWasLeftOut();
    void takesNewerSourcesButKeepsEdits();
    void takesFilesThatAreDropped();
};

void tst_importlist::remembersWhatWasLeftOut()
{
    Desk desk;
    desk.world.put(source + u"a.htm"_s, "<title>A</title>");
    desk.world.put(source + u"b.htm"_s, "<title>B</title>");
    QPointer list = desk.open("mnuAddFolder", withoutBackslash(source));
    QVERIFY(list);
    QTRY_COMPARE(list->focusWidget(), control<QTableView>(list, "lstFiles"));
    press(list, Qt::Key_Down);
    press(list, Qt::Key_Delete);
    QCOMPARE(rowsOf(list), (QStringList{u"A|x|New"_s, u"B| |New"_s}));
    press(list, Qt::Key_Return);
    QTRY_VERIFY(!list);
    QCOMPARE(desk.outline(), QStringList{u"A"_s});
    QVERIFY(!desk.has(u"b.htm"_s));
    QCOMPARE(desk.sourcesAdded, (QList<QVariantList>{{true}}));
    QCOMPARE(desk.session.history().undoName(), u"Add 1 page to Pump"_s);

    list = desk.open("mnuAddFolder", withoutBackslash(source));
    QCOMPARE(rowsOf(list), (QStringList{u"A|x|Already there"_s, u"B| |New"_s}));
    press(list, Qt::Key_Escape);
    QTRY_VERIFY(!list);

    list = desk.open("mnuAddFolder", withoutBackslash(source));
    press(list, Qt::Key_Down);
    press(list, Qt::Key_Insert);
    press(list, Qt::Key_Return);
    QTRY_VERIFY(!list);
    QCOMPARE(desk.outline(), (QStringList{u"A"_s, u"B"_s}));
    desk.session.undo();
    QCOMPARE(desk.outline(), QStringList{u"A"_s});
    QVERIFY(!desk.has(u"b.htm"_s));
    QCOMPARE(desk.world.messages.shown, QStringList());
}

void tst_importlist::takesNewerSourcesButKeepsEdits()
{
    Desk desk;
    for (const QString &name : {u"a.md"_s, u"b.md"_s, u"c.md"_s})
        desk.world.put(source + name, "# Old " + name.toUtf8());
    QPointer list = desk.open("mnuImportFolder", withoutBackslash(source));
    press(list, Qt::Key_Return);
    QTRY_VERIFY(!list);
    QCOMPARE(desk.importsAdded.size(), 1);
    QVERIFY(!desk.open("mnuImportNewer"));
    QCOMPARE(desk.world.messages.shown,
             QStringList{u"No source of the book Pump has changed since it was added."_s});

    for (const QString &name : {u"a.md"_s, u"b.md"_s, u"c.md"_s})
        desk.world.put(source + name, "# New " + name.toUtf8());
    desk.world.put(desk.sample.folder + u"Book_PUMP\\b.htm"_s, "my own words");
    desk.world.put(desk.sample.folder + u"Book_PUMP\\c.htm"_s, "mine too");
    list = desk.open("mnuImportNewer");
    QCOMPARE(list->windowTitle(), u"Re-import newer files"_s);
    QCOMPARE(rowsOf(list), (QStringList{u"New a.md|x|Replace (the old one is backed up)"_s,
                                        u"New b.md|x|Skip"_s, u"New c.md|x|Skip"_s}));
    // Only a page that the author decides on loses its edits.
    auto *rows = control<QTableView>(list, "lstFiles");
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Down})
        press(list, key);
    for (int column = 0; column < 5; ++column)
        press(list, Qt::Key_Right);
    press(list, Qt::Key_F2);
    auto *choice = rows->findChild<QComboBox *>();
    QVERIFY(choice && choice->hasFocus());
    QTest::keyClick(choice, Qt::Key_Down);
    QTest::keyClick(choice, Qt::Key_Return);
    QTRY_COMPARE(rowsOf(list).last(), u"New c.md|x|Replace (the old one is backed up)"_s);
    rows->setFocus();
    press(list, Qt::Key_Return);
    QTRY_VERIFY(!list);
    QVERIFY(desk.page(u"a.htm"_s).contains("New a.md"_L1));
    QCOMPARE(desk.page(u"b.htm"_s), u"my own words"_s);
    QVERIFY(desk.page(u"c.htm"_s).contains("New c.md"_L1));
    QCOMPARE(desk.session.history().undoName(), u"Re-import 2 pages of Pump"_s);
    desk.session.undo();
    QCOMPARE(desk.page(u"c.htm"_s), u"mine too"_s);
    QVERIFY(desk.page(u"a.htm"_s).contains("Old a.md"_L1));
}

void tst_importlist::takesFilesThatAreDropped()
{
    Desk desk;
    desk.world.put(source + u"Notiz.txt"_s, "Note\n\ntext");
    desk.world.put(source + u"page.htm"_s, "<title>Page</title>");
    QMimeData files;
    files.setUrls({QUrl::fromLocalFile(desk.world.native(u"Source/Notiz.txt"_s)),
                   QUrl::fromLocalFile(desk.world.native(u"Source/page.htm"_s))});
    auto *pages = control<QTreeWidget>(&desk.tab, "tvwPages");
    QDragEnterEvent enter({5, 5}, Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(pages->viewport(), &enter);
    QDropEvent drop({5, 5}, Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(pages->viewport(), &drop);
    QPointer list = desk.shownList();
    QVERIFY(list);
    QCOMPARE(list->windowTitle(), u"Add import files"_s);
    QCOMPARE(rowsOf(list), (QStringList{u"Note|x|New"_s, u"Page|x|New"_s}));
    press(list, Qt::Key_Return);
    QTRY_VERIFY(!list);
    QCOMPARE(desk.outline(), (QStringList{u"Note"_s, u"Page"_s}));
    QVERIFY(desk.page(u"Notiz.htm"_s).contains("<h1>Note</h1>"_L1));
    QCOMPARE(desk.importsAdded, (QList<QVariantList>{{true}}));
    QCOMPARE(desk.sourcesAdded.size(), 0);

    // A folder without a page has nothing to add as it is.
    desk.world.put(source + u"texts\\Second.txt"_s, "Second");
    files.setUrls({QUrl::fromLocalFile(desk.world.native(u"Source/texts"_s))});
    QCoreApplication::sendEvent(pages->viewport(), &enter);
    QCoreApplication::sendEvent(pages->viewport(), &drop);
    list = desk.shownList();
    QVERIFY(list);
    QCOMPARE(list->windowTitle(), u"Add import files"_s);
    QCOMPARE(rowsOf(list), QStringList{u"Second|x|New"_s});
}

QV_FORM_TEST_MAIN(tst_importlist)
#include "tst_importlist.moc"
