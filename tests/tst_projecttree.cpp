#include "controls/session/ProjectSession.h"
#include "controls/QV_DeveloperTreeOCX.h"
#include "support/FormDriver.h"
#include "support/SampleProject.h"

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
    void readsABookWhenItIsOpened();
    void tellsWhatWasChosen();
    void keepsItsPlaceOverARefresh();
    void namesTheBrokenTableOfContents();
    void filtersAndObeysKeys();
    void goesBackWhenThePageCannotBeLeft();
};

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
             sample.world.native(u"Docs/Plant 300/Book_PUMP/start.htm"_s));

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
    QCOMPARE(tree.chosen(), u"Books"_s);
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

void tst_projecttree::filtersAndObeysKeys()
{
    SampleProject sample;
    const TocBook pump =
        sample.addBook(u"Pump"_s, u"PUMP"_s, {{u"start.htm"_s, "x"}, {u"stop.htm"_s, "x"}});
    sample.addBook(u"Valve"_s, u"VALVE"_s);
    Tree tree(sample);
    tree.choose(booksNode + QStringList{u"Pump"_s, u"stop"_s});

    auto *filter = control<QLineEdit>(&tree.ocx, "txtFilter");
    filter->setText(u"stop"_s);
    QCOMPARE(tree.below(booksNode), QStringList{u"Pump"_s});
    QCOMPARE(tree.below(booksNode + QStringList{u"Pump"_s}), QStringList{u"stop"_s});
    filter->clear();
    QCOMPARE(tree.below(booksNode), (QStringList{u"Pump"_s, u"Valve"_s}));

    tree.ocx.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&tree.ocx));
    QSignalSpy deletion(&tree.session, &ProjectSession::deleteRequested);
    QSignalSpy opening(&tree.session, &ProjectSession::openRequested);

    tree.view->setFocus();
    tree.choose(booksNode + QStringList{u"Pump"_s});
    QTest::keyClick(tree.view, Qt::Key_Delete);
    QCOMPARE(deletion.size(), 1);
    QCOMPARE(deletion.first().first().value<TocBook>(), pump);
    QTest::keyClick(tree.view, Qt::Key_Return);
    QCOMPARE(opening.size(), 1);
    tree.choose(booksNode + QStringList{u"Pump"_s, u"start"_s});
    QTest::keyClick(tree.view, Qt::Key_Delete);
    QCOMPARE(deletion.size(), 1);

    QTest::keyClick(tree.view, Qt::Key_F, Qt::ControlModifier);
    QVERIFY(filter->hasFocus());
}

void tst_projecttree::goesBackWhenThePageCannotBeLeft()
{
    SampleProject sample;
    sample.addBook(u"Pump"_s, u"PUMP"_s, {{u"start.htm"_s, "x"}});
    sample.addBook(u"Valve"_s, u"VALVE"_s);
    Tree tree(sample);
    tree.choose(booksNode + QStringList{u"Pump"_s, u"start"_s});
    tree.session.setLeaveGuard([] { return false; });
    QSignalSpy book(&tree.ocx, &QV_DeveloperTreeOCX::evtDisplayBookName);

    tree.choose(booksNode + QStringList{u"Valve"_s});
    QTRY_COMPARE(tree.chosen(), u"start"_s);
    QCOMPARE(tree.session.currentPage(), u"P0001"_s);
    QCOMPARE(book.size(), 0);
}

QV_FORM_TEST_MAIN(tst_projecttree)
#include "tst_projecttree.moc"
