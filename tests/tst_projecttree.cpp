#include "controls/QV_DeveloperTreeOCX.h"
#include "controls/session/ProjectPages.h"
#include "controls/session/ProjectSession.h"
#include "controls/tree/TreeMemory.h"
#include "support/FormDriver.h"
#include "support/SampleProject.h"

#include <QAbstractItemModelTester>

using namespace Qt::StringLiterals;

namespace {
/// The tree as an author uses it: nodes are found by their texts from the top.
class Tree
{
public:
    explicit Tree(SampleProject &sample)
        : session(sample.world.program)
        , ocx(session)
        , view(control<QTreeView>(&ocx, "tvwProject"))
    {
        ocx.setProjectName(sample.name);
        ocx.resize(400, 600);
        ocx.show();
    }

    QModelIndex node(const QStringList &path, bool opened = true)
    {
        QModelIndex at;
        for (const QString &text : path) {
            if (at.isValid() && opened)
                view->expand(at);
            const QModelIndex parent = at;
            at = {};
            for (int row = 0; row < view->model()->rowCount(parent); ++row) {
                const QModelIndex child = view->model()->index(row, 0, parent);
                if (child.data().toString() == text)
                    at = child;
            }
            if (!at.isValid())
                return {};
        }
        return at;
    }
    QStringList below(const QStringList &path)
    {
        const QModelIndex parent = node(path);
        view->expand(parent);
        return textsIn(view->model(), parent);
    }
    void choose(const QStringList &path) { view->setCurrentIndex(node(path)); }
    QString chosen() const { return view->currentIndex().data().toString(); }

    ProjectSession session;
    QV_DeveloperTreeOCX ocx;
    QTreeView *view;
};

const QStringList booksNode{u"Plant 300"_s, u"Books"_s};
} // namespace

class tst_projecttree final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void readsABookWhenItIsOpened();
    void tellsWhatWasChosen();
    void keepsItsPlaceOverARefresh();
    void namesTheBrokenTableOfContents();
    void filtersBooksThatWereNotReadYet();
    void asksTheEditorsByKey_data();
    void asksTheEditorsByKey();
    void asksTheEditorsByDroppingAndPasting();
    void marksWhatIsRemarkable();
    void remembersProjects();
    void isAProperModelWhateverHappens();
    void goesBackWhenThePageCannotBeLeft();

private:
    QTemporaryDir m_settings;
};

void tst_projecttree::initTestCase()
{
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_settings.path());
}

void tst_projecttree::readsABookWhenItIsOpened()
{
    SampleProject sample;
    sample.addBook(u"Pump"_s, u"PUMP"_s, {{u"start.htm"_s, "x"}});
    // A folder called like one that is being deleted is still the folder of a listed book.
    const TocBook late = sample.addBook(u"Valve"_s, u"VALVE.qvdel1"_s);
    sample.addBook(u"Broken"_s, u"BRK"_s);
    Tree tree(sample);
    tree.ocx.RefreshTree();

    // Files changed only now are shown as they are now: they were not read before.
    sample.world.put(sample.folder + u"Book_BRK\\Book_BRK.xml"_s, "no XML");
    Book book = BookFile(sample.world.session, sample.world.files).read(sample.name, late);
    const BookPage section{u"P0002"_s, u"Section"_s, u"s.htm"_s, {}, {}};
    book.pages = {{u"P0001"_s, u"Chapter"_s, u"c.htm"_s, {}, {section}}};
    BookFile(sample.world.session, sample.world.files).write(sample.name, late, book);

    QCOMPARE(tree.below({u"Plant 300"_s}),
             (QStringList{u"Globals"_s, u"Books"_s, u"Quick Navigation"_s}));
    QCOMPARE(tree.below(booksNode), (QStringList{u"Pump"_s, u"Valve"_s, u"Broken"_s}));
    QCOMPARE(tree.below(booksNode + QStringList{u"Pump"_s}), QStringList{u"start"_s});
    QCOMPARE(tree.below(booksNode + QStringList{u"Valve"_s, u"Chapter"_s}),
             QStringList{u"Section"_s});
    const QStringList problem = tree.below(booksNode + QStringList{u"Broken"_s});
    QCOMPARE(problem.size(), 1);
    QVERIFY2(problem.first().contains(u"Book_BRK.xml"_s), qPrintable(problem.first()));

    const QModelIndex page = tree.node(booksNode + QStringList{u"Pump"_s, u"start"_s});
    QCOMPARE(page.data(Qt::AccessibleTextRole).toString(), u"Page start"_s);
    QCOMPARE(page.data(Qt::ToolTipRole).toString(),
             u"start\n"_s + sample.world.native(u"Docs/Plant 300/Book_PUMP/start.htm"_s));

    // Two books of one name, as a merge brings them, are told apart.
    const QString toc = sample.folder + ProjectFile::toc;
    const QString text = xmlText(sample.world.bytes(toc)).section(u'\n', 1);
    sample.world.put(toc, xmlFile(QString(text).replace(u">Valve<"_s, u">Pump<"_s)));
    tree.ocx.RefreshTree();
    QCOMPARE(tree.below(booksNode),
             (QStringList{u"Pump (PUMP)"_s, u"Pump (VALVE.qvdel1)"_s, u"Broken"_s}));
    QCOMPARE(tree.node(booksNode + QStringList{u"Pump (PUMP)"_s})
                 .data(Qt::AccessibleTextRole)
                 .toString(),
             u"Book Pump (PUMP)"_s);
}

void tst_projecttree::tellsWhatWasChosen()
{
    SampleProject sample;
    sample.addBook(u"Pump"_s, u"PUMP"_s, {{u"start.htm"_s, "x"}});
    sample.addGlobals();
    sample.addQuickNav(u"PUMP"_s);
    Tree tree(sample);

    QSignalSpy globals(&tree.ocx, &QV_DeveloperTreeOCX::EvtEnableGlobalsTab);
    QSignalSpy book(&tree.ocx, &QV_DeveloperTreeOCX::evtDisplayBookName);
    QSignalSpy globalPage(&tree.ocx, &QV_DeveloperTreeOCX::evtGlobalPageName);
    QSignalSpy quickNav(&tree.ocx, &QV_DeveloperTreeOCX::evtQVTreeQuickNavInfo);

    tree.choose({u"Plant 300"_s, u"Globals"_s});
    QCOMPARE(globals.size(), 1);
    tree.choose({u"Plant 300"_s, u"Globals"_s, u"welcome"_s});
    QCOMPARE(globalPage.size(), 1);
    QCOMPARE(tree.ocx.GlobalPageName(), u"welcome"_s);
    QCOMPARE(tree.ocx.BookName(), QString());
    tree.choose(booksNode + QStringList{u"Pump"_s, u"start"_s});
    QCOMPARE(book.size(), 1);
    QCOMPARE(tree.ocx.BookName(), u"Pump"_s);
    QCOMPARE(tree.ocx.GlobalPageName(), QString());
    QCOMPARE(tree.session.currentBook()->acronym, u"PUMP"_s);
    QCOMPARE(tree.session.currentPage(), u"P0001"_s);

    QStringList path{u"Plant 300"_s, u"Quick Navigation"_s};
    QStringList names{u"Plant 300"_s, {}, {}, {}, {}};
    const QStringList levels{{}, u"The view"_s, u"The group"_s, u"The topic"_s, u"The category"_s};
    for (int level = 0; level <= 4; ++level) {
        if (level > 0) {
            path.append(levels.at(level));
            names[level] = levels.at(level);
        }
        tree.choose(path);
        QVariantList expected(names.cbegin(), names.cend());
        expected.append(level);
        QCOMPARE(quickNav.size(), level + 1);
        QCOMPARE(quickNav.last(), expected);
    }
    QCOMPARE(globals.size() + book.size() + globalPage.size(), 3);
    QCOMPARE(tree.ocx.BookName(), QString());
}

void tst_projecttree::keepsItsPlaceOverARefresh()
{
    SampleProject sample;
    const TocBook pump = sample.addBook(u"Pump"_s, u"PUMP"_s, {{u"start.htm"_s, "x"}});
    Tree tree(sample);
    tree.choose(booksNode + QStringList{u"Pump"_s, u"start"_s});

    QSignalSpy book(&tree.ocx, &QV_DeveloperTreeOCX::evtDisplayBookName);
    sample.addBook(u"Valve"_s, u"VALVE"_s);
    tree.ocx.RefreshTree();
    QCOMPARE(tree.chosen(), u"start"_s);
    QVERIFY(tree.view->isExpanded(tree.node(booksNode + QStringList{u"Pump"_s}, false)));
    QCOMPARE(tree.below(booksNode), (QStringList{u"Pump"_s, u"Valve"_s}));
    QCOMPARE(book.size(), 0);

    TableOfContents(sample.world.session, sample.world.files).removeBook(sample.name, pump);
    tree.session.noticeChanges();
    QTRY_COMPARE(tree.chosen(), u"Books"_s);
    QVERIFY(!tree.session.currentBook());
}

void tst_projecttree::namesTheBrokenTableOfContents()
{
    SampleProject sample;
    sample.addBook(u"Pump"_s, u"PUMP"_s);
    Tree tree(sample);

    sample.world.put(u"S:\\Docs\\Broken\\QV_Toc.xml"_s, "<QV_Master>");
    for (const auto &[project, number] :
         QList<QPair<QString, int>>{{u"Broken"_s, PathFileAccess}, {u"Nowhere"_s, PathNotFound}}) {
        const QvError error = raisedBy([&, name = project] { tree.ocx.setProjectName(name); });
        QCOMPARE(error.number(), number);
        QVERIFY2(error.description().contains(project), error.what());
        QCOMPARE(tree.ocx.ProjectName(), QString());
        QCOMPARE(tree.view->model()->rowCount(), 0);
    }
    tree.ocx.setProjectName(sample.name);
    QCOMPARE(tree.below(booksNode), QStringList{u"Pump"_s});

    // A refresh that fails leaves what was read.
    sample.world.put(sample.folder + ProjectFile::toc, "<QV_Master>");
    QVERIFY_THROWS_EXCEPTION(QvError, tree.ocx.RefreshTree());
    QCOMPARE(tree.below(booksNode), QStringList{u"Pump"_s});
}

void tst_projecttree::filtersBooksThatWereNotReadYet()
{
    SampleProject sample;
    sample.addBook(u"Pump"_s, u"PUMP"_s, {{u"start.htm"_s, "x"}, {u"stop.htm"_s, "x"}});
    sample.addBook(u"Valve"_s, u"VALVE"_s, {{u"stop late.htm"_s, "x"}});
    sample.addBook(u"Broken"_s, u"BRK"_s);
    sample.world.put(sample.folder + u"Book_BRK\\Book_BRK.xml"_s, "no XML");
    Tree tree(sample);
    tree.choose(booksNode + QStringList{u"Valve"_s});
    tree.ocx.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&tree.ocx));
    QSignalSpy book(&tree.ocx, &QV_DeveloperTreeOCX::evtDisplayBookName);
    auto *filter = control<QLineEdit>(&tree.ocx, "txtFilter");
    auto *count = control<QLabel>(&tree.ocx, "lblMatches");

    tree.view->setFocus();
    QTest::keyClick(tree.view, Qt::Key_F, Qt::ControlModifier);
    QVERIFY(filter->hasFocus());
    QTest::keyClicks(filter, u"stop"_s);
    QTRY_COMPARE(count->text(), u"2 matches"_s);
    QCOMPARE(filter->accessibleDescription(), u"2 matches"_s);
    const QModelIndex pump = tree.node(booksNode + QStringList{u"Pump"_s}, false);
    QVERIFY(tree.view->isExpanded(pump));
    QCOMPARE(textsIn(tree.view->model(), pump), QStringList{u"stop"_s});
    QCOMPARE(textsIn(tree.view->model(), pump.parent()), (QStringList{u"Pump"_s, u"Valve"_s}));
    QTest::keyClicks(filter, u" LATE"_s);
    QCOMPARE(count->text(), u"1 match"_s);
    QCOMPARE(tree.chosen(), u"Valve"_s); // it leads to the match
    QCOMPARE(book.size(), 0);

    // A book that matches keeps its pages; what another author adds meanwhile is filtered too.
    filter->setText(u"pump"_s);
    QCOMPARE(tree.below(booksNode + QStringList{u"Pump"_s}), (QStringList{u"start"_s, u"stop"_s}));
    sample.addBook(u"Pump room"_s, u"ROOM"_s);
    tree.ocx.RefreshTree();
    QTRY_COMPARE(count->text(), u"2 matches"_s);
    filter->setText(u"nowhere"_s);
    QTRY_COMPARE(count->text(), u"No match"_s);

    QTest::keyClick(filter, Qt::Key_Escape);
    QCOMPARE(filter->text(), QString());
    QVERIFY(count->isHidden());
    QCOMPARE(tree.chosen(), u"Valve"_s);
    QVERIFY(!tree.view->isExpanded(tree.node(booksNode + QStringList{u"Pump"_s}, false)));
    QTest::keyClick(filter, Qt::Key_Down);
    QVERIFY(tree.view->hasFocus());
}

void tst_projecttree::asksTheEditorsByKey_data()
{
    QTest::addColumn<QStringList>("node");
    QTest::addColumn<QKeySequence>("key");
    QTest::addColumn<int>("action"); // -1: none
    QTest::addColumn<QString>("said");

    using Action = ProjectRequest::Action;
    const QStringList globals{u"Plant 300"_s, u"Globals"_s};
    const QStringList pump = booksNode + QStringList{u"Pump"_s};
    const QStringList quickNav{u"Plant 300"_s, u"Quick Navigation"_s};
    const auto row = [](const char *name, const QStringList &node, const QKeySequence &key,
                        Action action) {
        QTest::newRow(name) << node << key << static_cast<int>(action) << QString();
    };
    const auto refusal = [](const char *name, const QStringList &node, const QKeySequence &key,
                            const QString &said) {
        QTest::newRow(name) << node << key << -1 << said;
    };
    const QKeySequence ins(Qt::Key_Insert), del(Qt::Key_Delete), f2(Qt::Key_F2);
    const QKeySequence up(u"Alt+Up"_s), down(u"Alt+Down"_s), left(u"Alt+Left"_s),
        right(u"Alt+Right"_s);
    row("new book", booksNode, ins, Action::New);
    row("new page", pump + QStringList{u"start"_s}, ins, Action::New);
    row("new view", quickNav, ins, Action::New);
    refusal("nothing below a category",
            quickNav
                + QStringList{u"The view"_s, u"The group"_s, u"The topic"_s, u"The category"_s},
            ins, {});
    row("rename project", {u"Plant 300"_s}, f2, Action::Rename);
    row("rename global page", globals + QStringList{u"legal"_s}, f2, Action::Rename);
    refusal("a section keeps its name", booksNode, f2, {});
    row("delete book", pump, del, Action::Delete);
    refusal("a project is deleted elsewhere", {u"Plant 300"_s}, del, {});
    row("book down", pump, down, Action::MoveDown);
    refusal("first book", pump, up, u"It is the first one."_s);
    row("page up", pump + QStringList{u"stop"_s}, up, Action::MoveUp);
    refusal("last page", pump + QStringList{u"stop"_s}, down, u"It is the last one."_s);
    row("demote", pump + QStringList{u"stop"_s}, right, Action::Demote);
    refusal("first page", pump + QStringList{u"start"_s}, right, u"No page stands before it."_s);
    refusal("top page", pump + QStringList{u"stop"_s}, left, u"It is at the top of its book."_s);
}

void tst_projecttree::asksTheEditorsByKey()
{
    QFETCH(const QStringList, node);
    QFETCH(const QKeySequence, key);
    QFETCH(const int, action);
    QFETCH(const QString, said);
    SampleProject sample;
    sample.addBook(u"Pump"_s, u"PUMP"_s, {{u"start.htm"_s, "x"}, {u"stop.htm"_s, "x"}});
    sample.addBook(u"Valve"_s, u"VALVE"_s);
    sample.addGlobals();
    sample.addQuickNav(u"PUMP"_s);
    Tree tree(sample);
    tree.choose(node);
    QSignalSpy requested(&tree.session, &ProjectSession::requested);
    QSignalSpy done(&tree.session, &ProjectSession::done);

    QTest::keyClick(tree.view, key[0].key(), key[0].keyboardModifiers());
    QCOMPARE(requested.size(), action < 0 ? 0 : 1);
    QCOMPARE(done.size(), said.isEmpty() ? 0 : 1);
    if (!said.isEmpty())
        QCOMPARE(done.first().first().toString(), said);
    if (action < 0)
        return;
    const auto request = requested.first().first().value<ProjectRequest>();
    QCOMPARE(static_cast<int>(request.action), action);
    QCOMPARE(request.node.book.has_value(), node.size() > 2 && node.at(1) == u"Books"_s);
    QCOMPARE(request.node.page.isEmpty(), node.size() < (request.node.book ? 4 : 3));
    QCOMPARE(request.node.kind == ProjectRequest::Node::Kind::Project, node.size() == 1);
}

void tst_projecttree::asksTheEditorsByDroppingAndPasting()
{
    SampleProject sample;
    const TocBook pump =
        sample.addBook(u"Pump"_s, u"PUMP"_s, {{u"start.htm"_s, "x"}, {u"stop.htm"_s, "x"}});
    sample.addBook(u"Valve"_s, u"VALVE"_s);
    sample.addGlobals();
    sample.addQuickNav(u"PUMP"_s);
    Tree tree(sample);
    QAbstractItemModel *model = tree.view->model();
    const QStringList globals{u"Plant 300"_s, u"Globals"_s};
    const QStringList pumpNode = booksNode + QStringList{u"Pump"_s};
    const QStringList valveNode = booksNode + QStringList{u"Valve"_s};
    const QStringList startNode = pumpNode + QStringList{u"start"_s};
    const QStringList group{u"Plant 300"_s, u"Quick Navigation"_s, u"The view"_s, u"The group"_s};
    const QStringList category = group + QStringList{u"The topic"_s, u"The category"_s};
    QSignalSpy requested(&tree.session, &ProjectSession::requested);

    // "<action> <place>" of what dropping asks for; "no" when it is refused while dragging.
    const auto drop = [&](const QMimeData *mime, const QStringList &at, int row) {
        requested.clear();
        const QModelIndex parent = tree.node(at);
        const int column = row < 0 ? -1 : 0;
        if (!model->canDropMimeData(mime, Qt::MoveAction, row, column, parent))
            return u"no"_s;
        model->dropMimeData(mime, Qt::MoveAction, row, column, parent);
        QCoreApplication::processEvents();
        const auto request = requested.value(0).value(0).value<ProjectRequest>();
        return u"%1 %2"_s.arg(static_cast<int>(request.action)).arg(request.place);
    };
    const auto dragged = [&](const QList<QStringList> &nodes) {
        QModelIndexList indexes;
        for (const QStringList &node : nodes)
            indexes.append(tree.node(node));
        return std::unique_ptr<QMimeData>(model->mimeData(indexes));
    };
    using Action = ProjectRequest::Action;
    const auto asks = [](Action action, int place) {
        return u"%1 %2"_s.arg(static_cast<int>(action)).arg(place);
    };

    const auto page = dragged({startNode});
    QCOMPARE(drop(page.get(), pumpNode, 2), asks(Action::MoveTo, -1));
    QCOMPARE(drop(page.get(), pumpNode, 1), u"no"_s); // where it is
    QCOMPARE(drop(page.get(), startNode, -1), u"no"_s);
    QCOMPARE(drop(page.get(), pumpNode + QStringList{u"stop"_s}, -1), asks(Action::MoveTo, -1));
    QCOMPARE(drop(page.get(), valveNode, -1), asks(Action::MoveTo, -1));
    QCOMPARE(drop(page.get(), booksNode, 0), u"no"_s);
    QCOMPARE(drop(page.get(), group, -1), u"no"_s);
    QCOMPARE(drop(page.get(), category, -1), asks(Action::AddLink, -1));
    auto request = requested.first().first().value<ProjectRequest>();
    QCOMPARE(request.node.book, pump);
    QCOMPARE(request.node.page, u"P0001"_s);
    QCOMPARE(request.target->path, category.sliced(2));

    const auto two = dragged({pumpNode + QStringList{u"stop"_s}, startNode});
    QCOMPARE(drop(two.get(), valveNode, -1), asks(Action::MoveTo, -1));
    request = requested.first().first().value<ProjectRequest>();
    QCOMPARE(request.node.page, u"P0001"_s); // in the order of the tree
    QCOMPARE(request.others.size(), 1);
    QCOMPARE(request.others.first().page, u"P0002"_s);

    QCOMPARE(drop(dragged({valveNode}).get(), booksNode, 0), asks(Action::MoveTo, 0));
    QCOMPARE(drop(dragged({valveNode}).get(), pumpNode, -1), u"no"_s);
    QCOMPARE(drop(dragged({pumpNode, valveNode}).get(), booksNode, 0), u"no"_s); // one at a time
    QCOMPARE(drop(dragged({group}).get(), group.first(2), -1), u"no"_s);
    const auto topic = dragged({group + QStringList{u"The topic"_s}});
    QCOMPARE(drop(topic.get(), group.first(3), 0), u"no"_s);

    QMimeData files;
    const QString native = sample.world.native(u"notes.md"_s);
    files.setUrls({QUrl::fromLocalFile(native)});
    QCOMPARE(drop(&files, pumpNode, -1), asks(Action::AddFiles, -1));
    request = requested.first().first().value<ProjectRequest>();
    QCOMPARE(request.files, QStringList{sample.world.files.productPath(native)});
    QCOMPARE(drop(&files, booksNode, -1), u"no"_s);
    QCOMPARE(drop(&files, globals, -1), u"no"_s); // they are pages
    files.setUrls({QUrl::fromLocalFile(sample.world.native(u"notes.exe"_s))});
    QCOMPARE(drop(&files, pumpNode, -1), u"no"_s);
    files.setUrls({QUrl::fromLocalFile(sample.world.native(u"Help.HTM"_s))});
    QCOMPARE(drop(&files, globals + QStringList{u"legal"_s}, -1), asks(Action::AddFiles, -1));
    request = requested.first().first().value<ProjectRequest>();
    QCOMPARE(request.node.kind == ProjectRequest::Node::Kind::Globals, true);

    // The same by keys: cut pages move behind the chosen one, copied ones only become links.
    const auto press = [&](const QStringList &node, Qt::Key key) {
        tree.choose(node);
        QTest::keyClick(tree.view, key, Qt::ControlModifier);
    };
    requested.clear();
    press(startNode, Qt::Key_C);
    press(pumpNode + QStringList{u"stop"_s}, Qt::Key_V);
    QCOMPARE(requested.size(), 0);
    press(category, Qt::Key_V);
    QCOMPARE(requested.size(), 1);
    press(startNode, Qt::Key_X);
    const auto spoken = [&] {
        return tree.node(startNode).data(Qt::AccessibleTextRole).toString();
    };
    QCOMPARE(spoken(), u"Page start, cut"_s);
    QCOMPARE(tree.node(startNode).data(Qt::ForegroundRole).value<QBrush>(),
             QGuiApplication::palette().brush(QPalette::PlaceholderText));
    press(pumpNode + QStringList{u"stop"_s}, Qt::Key_V);
    QCOMPARE(spoken(), u"Page start"_s);
    QCOMPARE(requested.size(), 2);
    request = requested.last().first().value<ProjectRequest>();
    QCOMPARE(static_cast<int>(request.action), static_cast<int>(Action::MoveTo));
    QCOMPARE(request.target->book, pump);
    press(valveNode, Qt::Key_V); // it was moved already
    QCOMPARE(requested.size(), 2);
}

void tst_projecttree::marksWhatIsRemarkable()
{
    SampleProject sample;
    sample.addBook(u"Pump"_s, u"PUMP"_s,
                   {{u"start.htm"_s, "<a href='stop.htm'>1</a><a href='no.htm'>2</a><a "
                                     "href='none.htm'>3</a>"},
                    {u"stop.htm"_s, "x"},
                    {u"gone.htm"_s, "x"}});
    sample.world.files.removeFile(sample.folder + u"Book_PUMP\\gone.htm"_s);
    sample.world.files.setAttributes(sample.folder + u"Book_PUMP\\stop.htm"_s, ReadOnlyFile);
    Tree tree(sample);
    tree.session.pages().current();

    const auto spoken = [&](const QStringList &below) {
        return tree.node(booksNode + QStringList{u"Pump"_s} + below)
            .data(Qt::AccessibleTextRole)
            .toString();
    };
    QCOMPARE(spoken({}), u"Book Pump, 2 broken links"_s);
    QCOMPARE(spoken({u"start"_s}), u"Page start, 2 broken links"_s);
    QCOMPARE(spoken({u"stop"_s}), u"Page stop, locked"_s);
    QCOMPARE(spoken({u"gone"_s}), u"Page gone, file missing"_s);
    tree.session.setPageState(sample.folder + u"Book_PUMP\\start.htm"_s, {true, true});
    QCOMPARE(spoken({u"start"_s}), u"Page start, not saved yet, changed on disk, 2 broken links"_s);
    tree.session.setPageState(sample.folder + u"Book_PUMP\\start.htm"_s, {});
    QVERIFY(tree.node(booksNode + QStringList{u"Pump"_s, u"start"_s})
                .data(Qt::ToolTipRole)
                .toString()
                .endsWith(u"\n2 broken links"_s));
}

void tst_projecttree::remembersProjects()
{
    SampleProject sample;
    sample.addBook(u"Pump"_s, u"PUMP"_s, {{u"start.htm"_s, "x"}});
    sample.addBook(u"Valve"_s, u"VALVE"_s, {{u"stop.htm"_s, "x"}});
    {
        Tree tree(sample);
        tree.choose(booksNode + QStringList{u"Valve"_s, u"stop"_s});
        control<QLineEdit>(&tree.ocx, "txtFilter")->setText(u"pump"_s); // is not remembered
    }
    Tree tree(sample);
    QCOMPARE(tree.chosen(), u"stop"_s);
    QVERIFY(tree.view->isExpanded(tree.node(booksNode + QStringList{u"Valve"_s}, false)));
    QVERIFY(!tree.view->isExpanded(tree.node(booksNode + QStringList{u"Pump"_s}, false)));
    QTRY_COMPARE(tree.session.currentPage(), u"P0001"_s);

    for (int i = 0; i < TreeMemory::projectsKept; ++i)
        TreeMemory::remember(u"/project %1"_s.arg(i), {{{u"a"_s, u"b"_s}}, {u"a"_s}, 7});
    QCOMPARE(TreeMemory::recall(u"/project 0"_s).expanded, (QList<QStringList>{{u"a"_s, u"b"_s}}));
    QVERIFY(TreeMemory::recall(sample.world.native(u"Docs/Plant 300/"_s)).chosen.isEmpty());
}

void tst_projecttree::isAProperModelWhateverHappens()
{
    SampleProject sample;
    TocBook pump = sample.addBook(u"Pump"_s, u"PUMP"_s, {{u"start.htm"_s, "x"}});
    sample.addBook(u"Valve"_s, u"VALVE"_s, {{u"stop.htm"_s, "x"}});
    sample.addGlobals();
    sample.addQuickNav(u"PUMP"_s);
    Tree tree(sample);
    using Mode = QAbstractItemModelTester::FailureReportingMode;
    auto *shown = qobject_cast<QAbstractProxyModel *>(tree.view->model());
    auto *filter = control<QLineEdit>(&tree.ocx, "txtFilter");
    const QStringList startNode = booksNode + QStringList{u"Pump"_s, u"start"_s};

    tree.choose(startNode);
    QSignalSpy told(&tree.ocx, &QV_DeveloperTreeOCX::evtDisplayBookName);
    for (const QString &text : {QString(), u"st"_s}) {
        filter->setText(text);
        QAbstractItemModelTester proper(text.isEmpty() ? shown->sourceModel() : shown,
                                        Mode::QtTest);
        proper.setUseFetchMore(false);
        sample.world.put(sample.folder + ProjectFile::quickNav, xmlFile(u"<QV_QuickNav/>"_s));
        tree.ocx.DeleteQuickNavInfo();
        sample.addQuickNav(u"PUMP"_s);
        tree.session.forgetQuickNav();
        tree.session.forgetBook(pump);
        tree.session.rereadBooks();
        Q_EMIT tree.session.globalPagesChanged();
        QCOMPARE(tree.chosen(), u"start"_s);
    }
    filter->clear();

    QAbstractItemModelTester proper(shown->sourceModel(), Mode::QtTest);
    proper.setUseFetchMore(false);

    // A new title, undone and done again, is followed; the place in the tree stays.
    tree.session.perform(u"Rename"_s, [&](StagedFiles &files) {
        BookFile file(sample.world.session, files);
        Book book = file.read(sample.name, pump);
        book.pages.first().title = u"Begin"_s;
        file.write(sample.name, pump, book);
    });
    QCOMPARE(tree.chosen(), u"Begin"_s);
    tree.session.undo();
    QCOMPARE(tree.chosen(), u"start"_s);
    tree.session.redo();
    QCOMPARE(tree.chosen(), u"Begin"_s);
    QCOMPARE(told.size(), 0);
}

void tst_projecttree::goesBackWhenThePageCannotBeLeft()
{
    SampleProject sample;
    sample.addBook(u"Pump"_s, u"PUMP"_s, {{u"start.htm"_s, "x"}});
    sample.addBook(u"Valve"_s, u"VALVE"_s);
    Tree tree(sample);
    tree.choose(booksNode + QStringList{u"Pump"_s, u"start"_s});
    tree.session.setLeaveGuard(&tree.ocx, [] { return false; });
    QSignalSpy book(&tree.ocx, &QV_DeveloperTreeOCX::evtDisplayBookName);

    tree.choose(booksNode + QStringList{u"Valve"_s});
    QTRY_COMPARE(tree.chosen(), u"start"_s);
    QCOMPARE(tree.session.currentPage(), u"P0001"_s);
    QCOMPARE(book.size(), 0);
}

QV_FORM_TEST_MAIN(tst_projecttree)
#include "tst_projecttree.moc"
