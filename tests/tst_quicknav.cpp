#include "controls/ctlQuickNav.h"
#include "controls/quicknav/LinkSuggestions.h"
#include "controls/quicknav/NodeList.h"
#include "controls/quicknav/QuickNavCommands.h"
#include "controls/quicknav/QuickNavLinkTable.h"
#include "controls/session/ProjectSession.h"
#include "controls/tree/ProjectMime.h"
#include "platform/QvError.h"
#include "platform/Xml.h"
#include "support/Errors.h"
#include "support/FormDriver.h"
#include "support/SampleProject.h"

#include <QRandomGenerator>

using namespace Qt::StringLiterals;

namespace {
using Node = ProjectRequest::Node;

/// The editor on a project with two books and one category, shown in an active window.
class Desk
{
public:
    explicit Desk(const QString &quickNav = {})
        : session(sample.world.program)
        , tab(session)
        , written(&tab, &ctlQuickNav::evtRefreshTree)
        , deleted(&tab, &ctlQuickNav::evtOnDeletionofQuickNavInfo)
        , said(&session, &ProjectSession::done)
    {
        pump = sample.addBook(
            u"Pump"_s, u"PUMP"_s,
            {{u"Start the pump.htm"_s, "<h1>a</h1>"}, {u"Stop.htm"_s, "b"}, {u"Valve.htm"_s, "c"}});
        sample.addQuickNav(u"PUMP"_s);
        if (!quickNav.isEmpty())
            sample.world.put(path(), xmlFile(quickNav));
        tab.setProjectName(sample.name);
        tab.resize(1000, 700);
        tab.show();
        tab.activateWindow();
        static_cast<void>(QTest::qWaitForWindowActive(&tab));
    }

    QString path() const { return sample.folder + ProjectFile::quickNav; }
    QByteArray bytes() { return sample.world.bytes(path()); }
    QuickNav nav() { return readQuickNav(sample.world.session, sample.world.files, sample.name); }
    NodeList *list(const char *name) const { return control<NodeList>(&tab, name); }
    QStringList shown(const char *name) const { return textsIn(list(name)->model()); }
    QuickNavLinkTable *links() const { return control<QuickNavLinkTable>(&tab, "tvwLinks"); }
    QString text(const char *label) const { return control<QLabel>(&tab, label)->text(); }
    QString lastSaid() const { return said.value(said.size() - 1).value(0).toString(); }

    /// Chooses a node as the tree does.
    void load(QStringList names)
    {
        int level = static_cast<int>(names.size());
        names.resize(4);
        QString project = sample.name;
        tab.LoadQuickNavInfo(project, names[0], names[1], names[2], names[3], level);
    }
    void loadCategory()
    {
        load({u"The view"_s, u"The group"_s, u"The topic"_s, u"The category"_s});
    }
    /// Types into the row that is being edited.
    void type(const QString &text)
    {
        auto *edit = control<QLineEdit>(&tab, "txtNodeName");
        edit->selectAll();
        QTest::keyClicks(edit, text);
    }
    void enter(const QString &text)
    {
        type(text);
        QTest::keyClick(control<QLineEdit>(&tab, "txtNodeName"), Qt::Key_Return);
        QTRY_VERIFY(!tab.findChild<QLineEdit *>(u"txtNodeName"_s));
    }

    SampleProject sample;
    TocBook pump;
    ProjectSession session;
    ctlQuickNav tab;
    QSignalSpy written, deleted, said;
};

/// "name(child,child)" for each node, with "name[Page Page]" for a category.
QString outline(const QList<QuickNavNode> &nodes)
{
    QStringList all;
    for (const QuickNavNode &node : nodes) {
        QStringList pages;
        for (const QuickNavLink &link : node.links)
            pages.append(link.page);
        QString one = node.name;
        if (!node.children.isEmpty())
            one += u'(' + outline(node.children) + u')';
        if (!pages.isEmpty())
            one += u'[' + pages.join(u' ') + u']';
        all.append(one);
    }
    return all.join(u',');
}

std::unique_ptr<QMimeData> pagesOfTree(Desk &desk, const QStringList &ids)
{
    DraggedNodes dragged{desk.session.folder(), false, {}};
    for (const QString &id : ids)
        dragged.nodes.append(
            {{.kind = Node::Kind::Page, .book = desk.pump, .page = id}, {}, u"Page "_s + id});
    auto mime = std::make_unique<QMimeData>();
    putNodes(*mime, dragged);
    return mime;
}

void drop(QAbstractItemView *view, const QMimeData *mime, const QPoint &at)
{
    const Qt::DropActions actions = Qt::CopyAction | Qt::MoveAction;
    QDragEnterEvent entered(at, actions, mime, Qt::LeftButton, {}); // without it no drop arrives
    QCoreApplication::sendEvent(view->viewport(), &entered);
    QDropEvent dropped(at, actions, mime, Qt::LeftButton, {});
    QCoreApplication::sendEvent(view->viewport(), &dropped);
}
} // namespace

class tst_quicknav final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepsWhatItDoesNotKnowInTheFile();
    void refusesWhatTheFileHasNoPlaceFor();
    void editsNodesByKeys();
    void pastesAndDropsNodes();
    void keepsWhatIsTypedWithItsRow();
    void editsLinks();
    void takesPagesOfTheTree();
    void showsAndFillsTheOverview();
    void suggestsPages();
    void suggestsByResemblance();
    void doesWhatTheTreeAsksFor();
    void leavesATornFileAlone();
    void undoesAWalkOfCommands();
    void namesEverythingThatTakesTheKeyboard();
};

void tst_quicknav::keepsWhatItDoesNotKnowInTheFile()
{
    SampleProject sample;
    TestProgram &world = sample.world;
    const QString path = sample.folder + ProjectFile::quickNav;
    world.put(path, xmlFile(uR"(<QV_QuickNav>
<View ID="V0007" Colour="red"><View_Name>One</View_Name><Hint>keep</Hint>
<Group><Group_Name>A</Group_Name><Topic ID="T1"><Topic_Name>X</Topic_Name>
<Category ID="C1"><Category_Name>How</Category_Name>
<Link Book="PUMP" Page="P0001" Weight="3"><Link_Title>Old</Link_Title></Link>
<Link Book="pump" Page="P0002"/></Category></Topic></Group>
<Group ID="G0001"><Group_Name>B</Group_Name></Group></View>
<View ID="V0007"><View_Name>Two</View_Name></View><!-- theirs --></QV_QuickNav>)"_s));
    QuickNav nav = readQuickNav(world.session, world.files, sample.name);
    QCOMPARE(nav.views.at(1).id, u"V0008"_s); // it had the id of another one
    QuickNavNode topic = nav.views[0].children[0].children.takeFirst();
    QCOMPARE(redirectLinks(nav, {u"PUMP"_s, {}}, {u"REP"_s, {}}), 0);
    topic.children[0].links.swapItemsAt(0, 1);
    nav.views[0].children[1].children.append(topic);
    nav.views.removeAt(1);
    nav.views.prepend({{}, u"Zero"_s, {}, {}});
    nav.categories.append(u"How"_s);
    QCOMPARE(redirectLinks(nav, {u"PUMP"_s, u"P0002"_s}, {u"REP"_s, u"P0009"_s}), 1);
    writeQuickNav(world.session, world.files, sample.name, nav);

    QCOMPARE(
        xmlText(world.bytes(path)).section(u'\n', 1),
        uR"(<QV_QuickNav NextView="10" NextGroup="3" NextTopic="2" NextCategory="2" NextLink="3">
	<View ID="V0009">
		<View_Name>Zero</View_Name>
	</View>
	<View ID="V0007" Colour="red">
		<View_Name>One</View_Name>
		<Hint>keep</Hint>
		<Group ID="G0002">
			<Group_Name>A</Group_Name>
		</Group>
		<Group ID="G0001">
			<Group_Name>B</Group_Name>
			<Topic ID="T1">
				<Topic_Name>X</Topic_Name>
				<Category ID="C1">
					<Category_Name>How</Category_Name>
					<Link Book="REP" Page="P0009" ID="L0002">
						<Link_Title />
						<Link_Anchor />
					</Link>
					<Link Book="PUMP" Page="P0001" Weight="3" ID="L0001">
						<Link_Title>Old</Link_Title>
						<Link_Anchor />
					</Link>
				</Category>
			</Topic>
		</Group>
	</View>
	<!-- theirs -->
	<QuickNav_Categories>
		<QuickNav_Category>How</QuickNav_Category>
	</QuickNav_Categories>
</QV_QuickNav>
)"_s);
    const QByteArray once = world.bytes(path);
    writeQuickNav(world.session, world.files, sample.name,
                  readQuickNav(world.session, world.files, sample.name));
    QCOMPARE(world.bytes(path), once);
    QCOMPARE(world.below(sample.folder + u"_Backup\\QuickNav"_s).size(), 2);
}

void tst_quicknav::refusesWhatTheFileHasNoPlaceFor()
{
    SampleProject sample;
    TestProgram &world = sample.world;
    const auto refused = [&](const QuickNavNode &view) {
        return raisedBy([&] {
                   writeQuickNav(world.session, world.files, sample.name, {{view}, {}});
               })
            .number();
    };
    const QuickNavNode leaf{{}, u"x"_s, {}, {{u"PUMP"_s, u"P0001"_s, {}, {}}}};
    QuickNavNode deep = leaf;
    for (int level = 0; level < 4; ++level)
        deep = {{}, u"y"_s, {deep}, {}};
    QCOMPARE(refused(leaf), 5);
    QCOMPARE(refused(deep), 5);
    QVERIFY(!world.files.exists(sample.folder + ProjectFile::quickNav));
}

void tst_quicknav::editsNodesByKeys()
{
    Desk desk;
    const QByteArray before = desk.bytes();
    auto *views = desk.list("lstViews");
    QCOMPARE(desk.shown("lstViews"), QStringList{u"The view (1, \u26A0 1 dead)"_s});
    views->setFocus(Qt::TabFocusReason);
    QTest::keyClick(views, Qt::Key_Insert);
    desk.type(u" THE VIEW "_s);
    QCOMPARE(desk.text("lblNameProblem"),
             u"\u26A0 There is a view named \"The view\" here already."_s);
    QTest::keyClick(control<QLineEdit>(&desk.tab, "txtNodeName"), Qt::Key_Return);
    QVERIFY(views->isEditing()); // Enter does not take it
    desk.enter(u"Second"_s);
    QTRY_COMPARE(outline(desk.nav().views),
                 u"The view(The group(The topic(The category[P0001 P0009]))),Second"_s);
    QCOMPARE(desk.written.takeLast(), (QVariantList{QString(), QString(), true}));
    QCOMPARE(desk.lastSaid(), u"The view Second was added."_s);
    QCOMPARE(desk.session.history().undoName(), u"Add view Second"_s);
    QVERIFY(views->hasFocus());

    QTest::keyClick(views, Qt::Key_Up, Qt::AltModifier);
    QCOMPARE(desk.shown("lstViews").first(), u"Second (0)"_s);
    QCOMPARE(views->currentRow(), 0);
    QTest::keyClick(views, Qt::Key_F2);
    desk.enter(u"First"_s);
    QTRY_COMPARE(desk.shown("lstViews").first(), u"First (0)"_s);
    QTest::keyClick(views, Qt::Key_Right);
    QTest::keyClick(desk.list("lstGroups"), Qt::Key_Insert);
    desk.enter(u"Inner"_s);
    QTRY_COMPARE(desk.shown("lstGroups"), QStringList{u"Inner (0)"_s});
    QTest::keyClick(desk.list("lstGroups"), Qt::Key_Left);
    QVERIFY(views->hasFocus());

    // Escape leaves no row behind.
    QTest::keyClick(views, Qt::Key_Insert);
    QTest::keyClick(control<QLineEdit>(&desk.tab, "txtNodeName"), Qt::Key_Escape);
    QTRY_COMPARE(desk.shown("lstViews").size(), 2);

    desk.load({u"The view"_s});
    QTest::keyClick(views, Qt::Key_D, Qt::ControlModifier);
    QTRY_VERIFY(outline(desk.nav().views)
                    .endsWith(u"The view 2(The group(The topic(The category[P0001 P0009])))"_s));
    desk.sample.world.messages.answers = {Answer::No, Answer::Yes};
    QTest::keyClick(views, Qt::Key_Delete);
    QCOMPARE(desk.sample.world.messages.shown.last(), u"Delete the view \"The view 2\"?"_s);
    QCOMPARE(desk.sample.world.messages.boxes.last().details,
             u"3 entries below it and 2 links will go with it."_s);
    QCOMPARE(desk.nav().views.size(), 3);
    QTest::keyClick(views, Qt::Key_Delete);
    QCOMPARE(desk.nav().views.size(), 2);
    QCOMPARE(desk.deleted.size(), 1);
    QCOMPARE(desk.lastSaid(), u"The view The view 2 was deleted with 2 links."_s);

    while (desk.session.history().canUndo())
        desk.session.undo();
    QCOMPARE(desk.bytes(), before);
    QTRY_COMPARE(desk.shown("lstViews"), QStringList{u"The view (1, \u26A0 1 dead)"_s});
    QCOMPARE(views->currentRow(), 0); // the author's place is the nearest that is left
    desk.session.redo();
    QTRY_COMPARE(desk.shown("lstViews").size(), 2);
}

void tst_quicknav::pastesAndDropsNodes()
{
    Desk desk(uR"(<QV_QuickNav><View ID="1"><View_Name>V</View_Name>
<Group ID="2"><Group_Name>A</Group_Name><Topic ID="3"><Topic_Name>X</Topic_Name></Topic>
<Topic ID="4"><Topic_Name>Y</Topic_Name></Topic></Group>
<Group ID="5"><Group_Name>B</Group_Name><Topic ID="6"><Topic_Name>x</Topic_Name></Topic></Group>
</View></QV_QuickNav>)"_s);
    auto *groups = desk.list("lstGroups");
    auto *topics = desk.list("lstTopics");
    desk.load({u"V"_s, u"A"_s, u"Y"_s});
    topics->setFocus();
    QTest::keyClick(topics, Qt::Key_X, Qt::ControlModifier);
    desk.load({u"V"_s, u"B"_s});
    groups->setFocus();
    QTest::keyClick(groups, Qt::Key_V, Qt::ControlModifier);
    QTRY_COMPARE(outline(desk.nav().views), u"V(A(X),B(x,Y))"_s);

    // A topic dragged onto a group that has one of that name stays, and the author is told.
    desk.load({u"V"_s, u"A"_s, u"X"_s});
    QMimeData mime;
    putItems(mime, {desk.session.folder(), 2, {u"3"_s}});
    drop(groups, &mime, groups->visualItemRect(groups->item(1)).center());
    QTRY_COMPARE(desk.sample.world.messages.shown.value(0),
                 u"There is a topic named \"x\" here already."_s);
    QCOMPARE(outline(desk.nav().views), u"V(A(X),B(x,Y))"_s);
    putItems(mime, {desk.session.folder(), 1, {u"5"_s}});
    drop(groups, &mime, groups->visualItemRect(groups->item(0)).topLeft() + QPoint(5, 1));
    QTRY_COMPARE(outline(desk.nav().views), u"V(B(x,Y),A(X))"_s);
    // What comes from another project is none of this one's.
    putItems(mime, {u"S:\\Docs\\Other\\"_s, 1, {u"5"_s}});
    drop(groups, &mime, groups->visualItemRect(groups->item(1)).center());
    QCoreApplication::processEvents();
    QCOMPARE(outline(desk.nav().views), u"V(B(x,Y),A(X))"_s);
}

// A click elsewhere ends the typing. By then other rows are shown.
void tst_quicknav::keepsWhatIsTypedWithItsRow()
{
    Desk desk(uR"(<QV_QuickNav><View ID="1"><View_Name>V</View_Name>
<Group ID="2"><Group_Name>A</Group_Name><Topic ID="3"><Topic_Name>X</Topic_Name>
<Category ID="4"><Category_Name>C</Category_Name><Link Book="PUMP" Page="P0001"><Link_Title>One</Link_Title></Link></Category>
<Category ID="5"><Category_Name>D</Category_Name><Link Book="PUMP" Page="P0002"><Link_Title>Two</Link_Title></Link></Category>
</Topic></Group></View>
<View ID="6"><View_Name>W</View_Name><Group ID="7"><Group_Name>B</Group_Name></Group></View></QV_QuickNav>)"_s);
    const auto clickRow = [&](const char *name, int row) {
        auto *nodes = desk.list(name);
        QTest::mouseClick(nodes->viewport(), Qt::LeftButton, {},
                          nodes->visualItemRect(nodes->item(row)).center());
    };
    desk.load({u"V"_s, u"A"_s, u"X"_s, u"C"_s});
    desk.links()->setFocus();
    QTest::keyClick(desk.links(), Qt::Key_F2);
    QTest::keyClicks(control<QLineEdit>(desk.links(), "txtLink"), u"Typed"_s);
    clickRow("lstCategories", 1);
    const auto titles = [&] {
        QStringList all;
        const QuickNav nav = desk.nav();
        for (const QuickNavNode &category : nav.views[0].children[0].children[0].children)
            all.append(category.links.first().title);
        return all;
    };
    QTRY_COMPARE(titles(), (QStringList{u"Typed"_s, u"Two"_s}));

    auto *groups = desk.list("lstGroups");
    desk.load({u"V"_s, u"A"_s});
    groups->setFocus();
    QTest::keyClick(groups, Qt::Key_F2);
    desk.type(u"Renamed"_s);
    clickRow("lstViews", 1);
    QTRY_COMPARE(outline(desk.nav().views), u"V(Renamed(X(C[P0001],D[P0002]))),W(B)"_s);
    desk.load({u"V"_s});
    groups->setFocus();
    QTest::keyClick(groups, Qt::Key_Insert);
    desk.type(u"Fresh"_s);
    clickRow("lstViews", 1);
    QTRY_COMPARE(outline(desk.nav().views), u"V(Renamed(X(C[P0001],D[P0002])),Fresh),W(B)"_s);
}

void tst_quicknav::editsLinks()
{
    Desk desk;
    QVERIFY(!isEnabled(&desk.tab, "cmdAddLink"));
    QCOMPARE(control<QWidget>(&desk.tab, "cmdAddLink")->toolTip(), u"Choose a category first."_s);
    desk.loadCategory();
    QuickNavLinkTable *links = desk.links();
    QCOMPARE(links->topLevelItem(0)->text(QuickNavLinkTable::State), u"good"_s);
    QCOMPARE(links->topLevelItem(1)->text(QuickNavLinkTable::State), u"\u26A0 no such page"_s);

    links->setFocus(Qt::TabFocusReason);
    QTest::keyClick(links, Qt::Key_Insert);
    auto *chooser = desk.tab.findChild<QDialog *>(u"PageChooser"_s);
    QVERIFY(chooser);
    QTest::keyClicks(control<QLineEdit>(chooser, "txtPageFilter"), u"valve"_s);
    QTest::keyClick(chooser, Qt::Key_Return);
    QTRY_COMPARE(outline(desk.nav().views),
                 u"The view(The group(The topic(The category[P0001 P0009 P0003])))"_s);
    QCOMPARE(desk.lastSaid(), u"1 link was added to The category."_s);
    QCOMPARE(desk.written.last().at(1).toString(), u"The category"_s);

    // The dead link gets another page.
    links->setCurrentItem(links->topLevelItem(1));
    click(&desk.tab, "cmdOtherPage");
    chooser = nullptr;
    for (QDialog *open : desk.tab.findChildren<QDialog *>(u"PageChooser"_s))
        chooser = open->isVisible() ? open : chooser;
    QTest::keyClicks(control<QLineEdit>(chooser, "txtPageFilter"), u"stop"_s);
    QTest::keyClick(chooser, Qt::Key_Return);
    QTRY_COMPARE(links->topLevelItem(1)->text(QuickNavLinkTable::Page), u"Stop"_s);
    QCOMPARE(links->topLevelItem(1)->text(QuickNavLinkTable::State), u"good"_s);
    QCOMPARE(links->topLevelItem(1)->text(QuickNavLinkTable::Title), u"To P0009"_s);

    desk.tab.activateWindow();
    links->setFocus();
    QTest::keyClick(links, Qt::Key_F2);
    auto *edit = control<QLineEdit>(links, "txtLink");
    edit->selectAll();
    QTest::keyClicks(edit, u"How to stop"_s);
    QTest::keyClick(edit, Qt::Key_Return);
    QTRY_COMPARE(links->topLevelItem(1)->text(QuickNavLinkTable::Title), u"How to stop"_s);
    QTest::keyClick(links, Qt::Key_Up, Qt::AltModifier);
    QTRY_COMPARE(outline(desk.nav().views),
                 u"The view(The group(The topic(The category[P0002 P0001 P0003])))"_s);
    QCOMPARE(links->currentItem()->text(QuickNavLinkTable::Title), u"How to stop"_s);

    QSignalSpy opened(&desk.session, &ProjectSession::openRequested);
    QTest::keyClick(links, Qt::Key_Return);
    QCOMPARE(opened.size(), 1);
    QCOMPARE(desk.session.currentPage(), u"P0002"_s);
    QTest::keyClick(links, Qt::Key_Delete);
    QTRY_COMPARE(links->topLevelItemCount(), 2);

    // A file that goes while the author looks: the link says so.
    desk.sample.world.files.removeFile(desk.sample.folder + u"Book_PUMP\\Valve.htm"_s);
    desk.session.forgetBook(desk.pump);
    QTRY_COMPARE(links->topLevelItem(1)->text(QuickNavLinkTable::State), u"\u26A0 file missing"_s);
    desk.session.undo();
    QTRY_COMPARE(links->topLevelItemCount(), 3);
    desk.tab.ResetQuickNavView();
    QCOMPARE(links->topLevelItemCount(), 0);
    desk.tab.SelectQuickNavCategory(u"The category"_s);
    QCOMPARE(links->topLevelItemCount(), 3);
}

void tst_quicknav::takesPagesOfTheTree()
{
    Desk desk;
    desk.loadCategory();
    QuickNavLinkTable *links = desk.links();
    const auto pages = pagesOfTree(desk, {u"P0002"_s, u"P0001"_s});
    drop(links, pages.get(),
         links->visualItemRect(links->topLevelItem(0)).topLeft() + QPoint(5, 1));
    QTRY_COMPARE(outline(desk.nav().views),
                 u"The view(The group(The topic(The category[P0002 P0001 P0009])))"_s);
    QCOMPARE(links->topLevelItem(0)->text(QuickNavLinkTable::Title),
             u"Page P0002"_s); // P0001 was there

    QGuiApplication::clipboard()->setMimeData(pagesOfTree(desk, {u"P0003"_s}).release());
    links->setFocus();
    links->setCurrentItem(links->topLevelItem(2));
    QTest::keyClick(links, Qt::Key_V, Qt::ControlModifier);
    QTRY_COMPARE(outline(desk.nav().views),
                 u"The view(The group(The topic(The category[P0002 P0001 P0009 P0003])))"_s);

    // Links dragged onto another category move there.
    auto *categories = desk.list("lstCategories");
    QuickNavCommands(desk.session).add({2, u"3"_s}, u"Other"_s);
    QTRY_COMPARE(categories->count(), 2);
    QMimeData mime;
    putItems(mime, {desk.session.folder(),
                    QuickNavItems::linkLevel,
                    {desk.nav().views[0].children[0].children[0].children[0].links[1].id}});
    drop(categories, &mime, categories->visualItemRect(categories->item(1)).center());
    QTRY_COMPARE(outline(desk.nav().views),
                 u"The view(The group(The topic(The category[P0002 P0009 P0003],Other[P0001])))"_s);
}

void tst_quicknav::showsAndFillsTheOverview()
{
    Desk desk(uR"(<QV_QuickNav><View ID="1"><View_Name>V</View_Name>
<Group ID="2"><Group_Name>A</Group_Name><Topic ID="3"><Topic_Name>X</Topic_Name>
<Category ID="4"><Category_Name>how</Category_Name><Link Book="PUMP" Page="P0001"/><Link Book="NO" Page="P1"/></Category>
</Topic><Topic ID="5"><Topic_Name>Y</Topic_Name><Category ID="6"><Category_Name>Why</Category_Name></Category></Topic></Group>
<Group ID="7"><Group_Name>B</Group_Name></Group></View>
<QuickNav_Categories><QuickNav_Category>How</QuickNav_Category></QuickNav_Categories></QV_QuickNav>)"_s);
    auto *tabs = control<QTabWidget>(&desk.tab, "tabQuickNav");
    auto *table = control<QTableView>(&desk.tab, "tblOverview");
    tabs->setCurrentIndex(1);
    const QAbstractItemModel *model = table->model();
    const auto cells = [&] {
        QStringList rows;
        for (int row = 0; row < model->rowCount(); ++row)
            rows.append(model->headerData(row, Qt::Vertical).toString() + u": "_s
                        + model->index(row, 0).data().toString() + u'|'
                        + model->index(row, 1).data().toString());
        return rows;
    };
    QCOMPARE(model->headerData(0, Qt::Horizontal).toString(), u"How"_s);
    QCOMPARE(cells(), (QStringList{u"V \u203A A \u203A X: 2  \u26A0 1|"_s,
                                   u"V \u203A A \u203A Y: |0"_s, u"V \u203A B: |"_s}));
    QCOMPARE(model->index(0, 0).data(Qt::AccessibleTextRole).toString(),
             u"V \u203A A \u203A X, How: 2 links, 1 of them dead"_s);

    auto *filter = control<QLineEdit>(&desk.tab, "txtOverviewFilter");
    filter->setText(u"\u203A y"_s);
    QVERIFY(table->isRowHidden(0) && !table->isRowHidden(1) && !table->isColumnHidden(1));
    filter->setText(u"why"_s); // no row has it
    QVERIFY(!table->isRowHidden(0) && table->isColumnHidden(0) && !table->isColumnHidden(1));
    filter->clear();
    control<QComboBox>(&desk.tab, "cboOverviewShow")->setCurrentIndex(2);
    QVERIFY(!table->isRowHidden(0) && table->isRowHidden(1));
    control<QComboBox>(&desk.tab, "cboOverviewShow")->setCurrentIndex(0);

    // Enter makes the category that is not there, and shows it.
    table->setFocus();
    table->setCurrentIndex(model->index(1, 0));
    QTest::keyClick(table, Qt::Key_Return);
    QTRY_COMPARE(outline(desk.nav().views), u"V(A(X(how[P0001 P1]),Y(Why,How)),B)"_s);
    QCOMPARE(tabs->currentIndex(), 0);
    QCOMPARE(desk.list("lstCategories")->currentItem()->data(Qt::EditRole).toString(), u"How"_s);
    QVERIFY(desk.list("lstCategories")->hasFocus());
}

void tst_quicknav::suggestsPages()
{
    Desk desk(
        uR"(<QV_QuickNav><View ID="1"><View_Name>Operator</View_Name><Group ID="2"><Group_Name>Pumps</Group_Name>
<Topic ID="3"><Topic_Name>Valves</Topic_Name><Category ID="4"><Category_Name>C</Category_Name>
<Link Book="PUMP" Page="P0003"/></Category></Topic></Group></View></QV_QuickNav>)"_s);
    desk.load({u"Operator"_s, u"Pumps"_s, u"Valves"_s});
    click(&desk.tab, "cmdSuggest");
    auto *dialog = desk.tab.findChild<QDialog *>(u"SuggestionsDialog"_s);
    auto *list = control<QTreeWidget>(dialog, "tvwSuggestions");
    QCOMPARE(textsIn(list->model()), QStringList{u"Start the pump"_s}); // the valve is linked
    QCOMPARE(list->topLevelItem(0)->text(2), u"title contains 'pumps'"_s);
    QVERIFY(!isEnabled(dialog, "cmdAddTicked"));
    QTest::keyClick(list, Qt::Key_Space);
    click(dialog, "cmdAddTicked");
    QTRY_COMPARE(outline(desk.nav().views), u"Operator(Pumps(Valves(C[P0003 P0001])))"_s);
}

void tst_quicknav::suggestsByResemblance()
{
    const QList<SuggestionPage> pages{
        {u"General"_s, {u"\u00DCberdruck"_s}},
        {u"\u00DCBERDRUCK beheben"_s, {}},
        {u"\u30DD\u30F3\u30D7\u306E\u8D77\u52D5"_s, {}}, // starting the pump
        {u"Die und das"_s, {}}};
    const auto found = [&](const QStringList &names) {
        QStringList all;
        for (const Suggestion &suggestion : LinkSuggestions(pages).resembling(names, 10))
            all.append(QString::number(suggestion.page) + u' ' + suggestion.reason);
        return all;
    };
    QCOMPARE(
        found({u"Die Pumpe"_s, u"Uberdruck"_s}),
        (QStringList{u"1 title contains 'uberdruck'"_s, u"0 a heading contains 'uberdruck'"_s}));
    QCOMPARE(found({u"\u8D77\u52D5\u65B9\u6CD5"_s}),
             QStringList{u"2 title contains '\u8D77\u52D5'"_s});
    QCOMPARE(found({u"das Pferd"_s}), QStringList());
}

void tst_quicknav::doesWhatTheTreeAsksFor()
{
    Desk desk;
    const auto at = [](const QStringList &path) {
        return Node{.kind = Node::Kind::QuickNav, .path = path};
    };
    const QStringList group{u"The view"_s, u"The group"_s};
    Q_EMIT desk.session.requested({.action = ProjectRequest::Action::New, .node = at(group)});
    auto *dialog = desk.tab.findChild<QDialog *>(u"NameDialog"_s);
    QVERIFY(dialog && !isEnabled(dialog, "cmdAcceptName"));
    QTest::keyClicks(control<QLineEdit>(dialog, "txtNewName"), u"Extra"_s);
    click(dialog, "cmdAcceptName");
    QTRY_COMPARE(outline(desk.nav().views),
                 u"The view(The group(The topic(The category[P0001 P0009]),Extra))"_s);
    Q_EMIT desk.session.requested(
        {.action = ProjectRequest::Action::MoveUp, .node = at(group + QStringList{u"Extra"_s})});
    Q_EMIT desk.session.requested(
        {.action = ProjectRequest::Action::AddLink,
         .node = {.kind = Node::Kind::Page, .book = desk.pump, .page = u"P0002"_s},
         .target = at(group + QStringList{u"The topic"_s, u"The category"_s})});
    QTRY_COMPARE(outline(desk.nav().views),
                 u"The view(The group(Extra,The topic(The category[P0001 P0009 P0002])))"_s);
    // Twins, as other programs may write them, are told apart.
    QuickNav twins = desk.nav();
    QuickNavNode twin = twins.views[0].children[0].children[0];
    twin.id.clear();
    twin.children = {{{}, u"Inside"_s, {}, {}}};
    twins.views[0].children[0].children.append(twin);
    desk.session.perform(u"Twin"_s, [&](StagedFiles &files) {
        writeQuickNav(desk.sample.world.session, files, desk.sample.name, twins);
    });
    Node second = at(group + QStringList{u"Extra"_s});
    second.page = desk.nav().views[0].children[0].children.last().id;
    desk.sample.world.messages.answers = {Answer::Yes};
    Q_EMIT desk.session.requested({.action = ProjectRequest::Action::Delete, .node = second});
    QCOMPARE(outline(desk.nav().views),
             u"The view(The group(Extra,The topic(The category[P0001 P0009 P0002])))"_s);
    desk.deleted.clear();
    desk.tab.hide(); // it works from behind as well
    Q_EMIT desk.session.requested(
        {.action = ProjectRequest::Action::Delete, .node = at(group + QStringList{u"Extra"_s})});
    QCOMPARE(outline(desk.nav().views),
             u"The view(The group(The topic(The category[P0001 P0009 P0002])))"_s);
    QCOMPARE(desk.deleted.size(), 1);
}

void tst_quicknav::leavesATornFileAlone()
{
    Desk desk;
    desk.sample.world.put(desk.path(), "<QV_QuickNav><View>");
    desk.session.noticeChanges();
    QTRY_VERIFY(desk.text("lblQuickNavProblem").contains(u"Book_QuickNav.xml cannot be read"_s));
    QCOMPARE(desk.shown("lstViews"), QStringList());
    desk.list("lstViews")->setFocus();
    QTest::keyClick(desk.list("lstViews"), Qt::Key_Insert);
    desk.enter(u"New"_s);
    QTRY_VERIFY(
        desk.sample.world.messages.shown.value(0).contains(u"Book_QuickNav.xml cannot be read"_s));
    QCOMPARE(desk.bytes(), "<QV_QuickNav><View>"_ba);
    QCOMPARE(desk.written.size(), 0);
    desk.sample.addQuickNav(u"PUMP"_s);
    desk.session.noticeChanges();
    QTRY_COMPARE(desk.shown("lstViews").size(), 1);
    QVERIFY(!control<QLabel>(&desk.tab, "lblQuickNavProblem")->isVisible());
}

// Everything at random, in an order that the seed fixes; then all of it is taken back and done
// again.
void tst_quicknav::undoesAWalkOfCommands()
{
    Desk desk;
    QuickNavCommands commands(desk.session);
    QRandomGenerator random(20260314);
    const QByteArray before = desk.bytes();
    const auto anyNode = [&](int level) {
        QList<QuickNavRef> refs;
        QList<QuickNavNode> nodes = desk.session.quickNav().views;
        for (int at = 0; at < level; ++at) {
            QList<QuickNavNode> below;
            for (const QuickNavNode &node : std::as_const(nodes))
                below += node.children;
            nodes = below;
        }
        const auto count = static_cast<quint32>(nodes.size());
        return count == 0 ? QuickNavRef() : QuickNavRef{level, nodes.at(random.bounded(count)).id};
    };
    int done = 0;
    for (int step = 0; step < 300; ++step) {
        const int level = static_cast<int>(random.bounded(4u));
        const QuickNavRef node = anyNode(level);
        const QuickNavRef parent = level == 0 ? QuickNavRef() : anyNode(level - 1);
        const int place = static_cast<int>(random.bounded(4u)) - 1;
        trap([](const QvError &error) { QCOMPARE(error.number(), int(PathFileAccess)); },
             [&] {
                 switch (random.bounded(7u)) {
                 case 0:
                     commands.add(parent, u"n%1"_s.arg(step), place);
                     break;
                 case 1:
                     commands.rename(node, u"r%1"_s.arg(random.bounded(50u)));
                     break;
                 case 2:
                     commands.copyTo(node, parent, place);
                     break;
                 case 3:
                     commands.moveTo(node, parent, place);
                     break;
                 case 4:
                     commands.moveBy(node, place);
                     break;
                 case 5:
                     commands.addLinks(anyNode(3),
                                       {{u"PUMP"_s, u"P%1"_s.arg(random.bounded(9u)), {}, {}}},
                                       place);
                     break;
                 default:
                     if (random.bounded(3u) == 0)
                         commands.remove(node);
                 }
                 ++done;
             });
    }
    QVERIFY2(done > 150, qPrintable(QString::number(done)));
    const QByteArray after = desk.bytes();
    while (desk.session.history().canUndo())
        desk.session.undo();
    QCOMPARE(desk.bytes(), before);
    while (desk.session.history().canRedo())
        desk.session.redo();
    QCOMPARE(desk.bytes(), after);
}

void tst_quicknav::namesEverythingThatTakesTheKeyboard()
{
    Desk desk;
    desk.loadCategory();
    for (const QWidget *widget : desk.tab.findChildren<QWidget *>()) {
        const auto *button = qobject_cast<const QAbstractButton *>(widget);
        const bool isNamed =
            !widget->accessibleName().isEmpty() || (button && !button->text().isEmpty());
        if ((widget->focusPolicy() & Qt::TabFocus) && !widget->objectName().startsWith(u"qt_"_s)
            && qobject_cast<const QSplitter *>(widget) == nullptr
            && !qobject_cast<const QTabBar *>(widget)
            && !qobject_cast<const QTabBar *>(widget->parentWidget()))
            QVERIFY2(isNamed, qPrintable(widget->objectName() + u' '
                                         + QLatin1StringView(widget->metaObject()->className())));
    }
    // From the filter to the links and back by keys alone.
    QTest::keyClick(desk.links(), Qt::Key_F, Qt::ControlModifier);
    QVERIFY(control<QLineEdit>(&desk.tab, "txtQuickNavFilter")->hasFocus());
    QTest::keyClicks(control<QLineEdit>(&desk.tab, "txtQuickNavFilter"), u"nothing"_s);
    QCOMPARE(desk.shown("lstViews"), QStringList());
    control<QLineEdit>(&desk.tab, "txtQuickNavFilter")->clear();
    desk.loadCategory();
    desk.list("lstViews")->setFocus();
    for (const char *column : {"lstGroups", "lstTopics", "lstCategories", "tvwLinks"}) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right, Qt::AltModifier);
        QCOMPARE(QApplication::focusWidget()->objectName(), QLatin1StringView(column));
    }
}

QV_FORM_TEST_MAIN(tst_quicknav)
#include "tst_quicknav.moc"
