#include "controls/books/BookChoiceDialog.h"
#include "controls/parts/NameDialog.h"
#include "support/BooksDesk.h"
#include "support/NextDialog.h"

using namespace Qt::StringLiterals;

namespace {

using Action = ProjectRequest::Action;
using Node = ProjectRequest::Node;

Node nodeOf(const TocBook &book, const QString &page = {})
{
    return {
        .kind = page.isEmpty() ? Node::Kind::Book : Node::Kind::Page, .book = book, .page = page};
}

/// Two books that link to each other.
class Books : public SampleProject
{
public:
    const TocBook pump = addBook(u"Pump"_s, u"PUMP"_s,
                                 {{u"a.htm"_s, "<a href=b.htm>"}, {u"b.htm"_s, "<img src=p.png>"}});
    const TocBook valve =
        addBook(u"Valve"_s, u"VALVE"_s, {{u"v.htm"_s, "<a href='../Book_PUMP/a.htm'>"}});

    QByteArray bytes(const QString &path) { return world.bytes(folder + path); }
};

/// What an input method enters into the field of a dialog.
void type(const QWidget *dialog, const QString &name)
{
    auto *const field = control<QLineEdit>(dialog, "txtNewName");
    field->selectAll();
    field->insert(name);
}

} // namespace

class tst_books final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pagesGoToAnotherBook();
    void aBookGetsAnotherFolder();
    void aCategoryIsMadeAndGivenInOneStep();
    void aCopyLiesBesideItsOriginal();
    void otherControlsAskForBooksAndPages();
    void draggedPagesTakeTheirPlaceInAnotherBook();
};

void tst_books::pagesGoToAnotherBook()
{
    Books project;
    Desk desk(project);
    QSignalSpy changed(&desk.tab, &ctlBooksTab::pagesChanged);
    desk.open(project.pump);
    desk.pages()->selectAll();
    desk.books()->setCurrentRow(1);
    QCOMPARE(desk.pages()->selectedItems().size(), 0); // pages of one id are not the same page
    desk.open(project.pump);
    control<QAction>(&desk.tab, "mnuMoveToBook")->trigger();
    QPointer dialog = desk.tab.findChild<BookChoiceDialog *>();
    QCOMPARE(textsIn(control<QComboBox>(dialog, "cboBook")->model()),
             QStringList{u"Valve (VALVE)"_s});
    QStringList shown;
    answerDialog("cmdChangeLinks", [&](const QWidget *list) {
        shown = textsIn(control<QTreeView>(list, "lstChanges")->model());
    });
    click(dialog, "cmdMove");
    QCOMPARE(shown, (QStringList{u"Book_PUMP\\a.htm"_s, u"Book_VALVE\\v.htm"_s}));
    QCOMPARE(project.bytes(u"Book_VALVE\\a.htm"_s), "<a href=../Book_PUMP/b.htm>");
    QCOMPARE(project.bytes(u"Book_VALVE\\v.htm"_s), "<a href='a.htm'>");
    QCOMPARE(desk.books()->currentItem()->text(), u"Valve (VALVE)"_s);
    QCOMPARE(desk.outline(), u"v a"_s);
    QCOMPARE(desk.pages()->currentItem()->text(0), u"a"_s);
    QCOMPARE(desk.source()->toPlainText(), u"<a href=../Book_PUMP/b.htm>"_s);
    QCOMPARE(changed, (QList<QVariantList>{{true}}));
    QCOMPARE(project.world.messages.shown, QStringList());
}

void tst_books::aBookGetsAnotherFolder()
{
    Books project;
    Desk desk(project);
    desk.open(project.pump, {});
    click(&desk.tab, "cmdBookFolder");
    QPointer dialog = desk.tab.findChild<NameDialog *>();
    type(dialog, u"book_valve"_s);
    QVERIFY(!isEnabled(dialog, "cmdAcceptName"));
    type(dialog, u"Book_\u6a5f\u68b0"_s);
    answerDialog("cmdChangeLinks");
    click(dialog, "cmdAcceptName");
    QCOMPARE(control<QLineEdit>(&desk.tab, "txtFolder")->text(), u"Book_\u6a5f\u68b0"_s);
    QCOMPARE(project.bytes(u"Book_VALVE\\v.htm"_s), "<a href='../Book_%E6%A9%9F%E6%A2%B0/a.htm'>");
    QCOMPARE(desk.outline(), u"a b"_s);
    desk.session.undo();
    QCOMPARE(control<QLineEdit>(&desk.tab, "txtFolder")->text(), u"Book_PUMP"_s);
    QCOMPARE(project.bytes(u"Book_VALVE\\v.htm"_s), "<a href='../Book_PUMP/a.htm'>");
    QCOMPARE(desk.outline(), u"a b"_s);
}

void tst_books::aCategoryIsMadeAndGivenInOneStep()
{
    Books project;
    Desk desk(project);
    desk.open(project.pump, {});
    const auto checkMarks = [&] {
        QStringList marks;
        const auto *list = control<QListWidget>(&desk.tab, "lstBookCategories");
        for (int row = 0; row < list->count(); ++row)
            marks.append(list->item(row)->data(Qt::EditRole).toString()
                         + (list->item(row)->checkState() == Qt::Checked ? u"+"_s : QString()));
        return marks;
    };
    const QStringList before = checkMarks();
    QSignalSpy changed(&desk.tab, &ctlBooksTab::pagesChanged);
    click(&desk.tab, "cmdNewCategory");
    QPointer dialog = desk.tab.findChild<NameDialog *>();
    type(dialog, u"\u5b89\u5168"_s);
    click(dialog, "cmdAcceptName");
    QCOMPARE(desk.listed().first().categories, QStringList{u"\u5b89\u5168"_s});
    QCOMPARE(checkMarks().size(), before.size() + 1);
    QCOMPARE(changed.size(), 1);
    desk.session.undo();
    QVERIFY(!desk.session.history().canUndo());
    QCOMPARE(desk.listed().first().categories, QStringList());
    QCOMPARE(checkMarks(), before);
}

// What a page refers to lies where the page lies.
void tst_books::aCopyLiesBesideItsOriginal()
{
    Books project;
    const TocBook oil = project.addBook(u"Oil"_s, u"OIL"_s);
    project.world.put(project.folder + u"Book_OIL\\sub\\x.htm"_s, "<img src=x.png>");
    Desk desk(project);
    desk.open(oil, {});
    click(&desk.tab, "cmdRemedy"); // lists the page that it finds
    QCOMPARE(desk.pages()->topLevelItem(0)->text(1), u"sub\\x.htm"_s);
    desk.open(oil);
    control<QAction>(&desk.tab, "mnuDuplicatePage")->trigger();
    QCOMPARE(desk.pages()->topLevelItem(1)->text(1), u"sub\\x-2.htm"_s);
    QCOMPARE(project.bytes(u"Book_OIL\\sub\\x-2.htm"_s), "<img src=x.png>");
    QCOMPARE(desk.pages()->currentItem()->text(1), u"sub\\x-2.htm"_s);
}

void tst_books::otherControlsAskForBooksAndPages()
{
    Books project;
    Desk desk(project);
    const auto ask = [&](Action action, const Node &node, const Node &target = {}, int place = -1) {
        Q_EMIT desk.session.requested(
            {.action = action, .node = node, .target = target, .place = place});
    };
    const auto names = [&] {
        QString all;
        for (const TocBook &book : desk.listed())
            all += book.name.first(1);
        return all;
    };
    project.addBook(u"Oil"_s, u"OIL"_s);
    desk.session.reread();
    ask(Action::MoveUp, nodeOf(project.pump));
    QCOMPARE(names(), u"PVO"_s); // it is the first already
    ask(Action::MoveTo, nodeOf(project.pump), {}, 2);
    QCOMPARE(names(), u"VPO"_s);
    ask(Action::MoveTo, nodeOf(project.pump));
    QCOMPARE(names(), u"VOP"_s);
    ask(Action::MoveUp, nodeOf(project.pump));
    QCOMPARE(names(), u"VPO"_s);

    desk.open(project.pump);
    ask(Action::Demote, nodeOf(project.pump, u"P0002"_s));
    QCOMPARE(desk.outline(), u"a(b)"_s);
    ask(Action::MoveTo, nodeOf(project.pump, u"P0002"_s), nodeOf(project.pump), 0);
    QCOMPARE(desk.outline(), u"b a"_s);
    const QString page = project.folder + u"Book_PUMP\\a.htm"_s;
    project.world.files.setAttributes(page, ReadOnlyFile);
    ask(Action::Unlock, nodeOf(project.pump, u"P0001"_s));
    QVERIFY(!project.world.files.status(page).readOnly);
    QCOMPARE(desk.session.history().undoName(), u"Move page b"_s);

    // What is no longer there is not asked for.
    TocBook gone = project.pump;
    gone.file = u"Gone.xml"_s;
    gone.folder = u"Gone"_s;
    ask(Action::Delete, nodeOf(gone));
    QVERIFY(desk.tab.findChildren<QDialog *>().isEmpty());
    QCOMPARE(project.world.messages.shown, QStringList());
}

// The page that is open goes along below another; where links stay as they are, its own do not.
void tst_books::draggedPagesTakeTheirPlaceInAnotherBook()
{
    Books project;
    Desk desk(project);
    desk.open(project.pump, u"P0002"_s);
    const Node a = nodeOf(project.pump, u"P0001"_s), b = nodeOf(project.pump, u"P0002"_s);
    Q_EMIT desk.session.requested({.action = Action::Demote, .node = b});
    QCOMPARE(desk.outline(), u"a(b)"_s);
    answerDialog("cmdFilesOnly");
    Q_EMIT desk.session.requested(
        {.action = Action::MoveTo, .node = a, .target = nodeOf(project.valve), .place = 0});
    QCOMPARE(desk.outline(), u"a(b) v"_s);
    QCOMPARE(desk.pages()->currentItem()->text(0), u"b"_s);
    QCOMPARE(desk.source()->toPlainText(), u"<img src=../Book_PUMP/p.png>"_s);
    QCOMPARE(project.bytes(u"Book_VALVE\\a.htm"_s), "<a href=b.htm>");
    QCOMPARE(project.bytes(u"Book_VALVE\\v.htm"_s), "<a href='../Book_PUMP/a.htm'>");
    QCOMPARE(project.world.messages.shown, QStringList());
}

QV_FORM_TEST_MAIN(tst_books)
#include "tst_books.moc"
