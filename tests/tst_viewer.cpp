// The help viewer through its window: what readers see of built sets, and of the product's help.

#include "catalogue/ProjectCatalogue.h"
#include "platform/Paths.h"
#include "platform/native/NativePlatform.h"
#include "startup/HelpTopics.h"
#include "support/Audit.h"
#include "support/FormDriver.h"
#include "support/SampleProject.h"
#include "support/System.h"
#include "tools/build/BuildRun.h"
#include "viewer/Bookmarks.h"
#include "viewer/SearchMarks.h"
#include "viewer/ViewerPage.h"
#include "viewer/ViewerWindow.h"

#include <QPdfWriter>
#include <QProcess>

using namespace Qt::StringLiterals;

namespace {

/// The viewer over a server; bookmarks and layout are kept in the world's own folder.
struct Viewer
{
    ViewerWorld parts;
    ViewerWindow window{parts};
    QTreeWidget *tree = control<QTreeWidget>(&window, "tvwContents");
    QTextBrowser *page = control<QTextBrowser>(&window, "txtPage");

    explicit Viewer(TestProgram &world)
        : parts{
            world.session, world.files, world.components.xmlCharacters,
            HelpPages(world.files, findHelpFolder(world.files, QString::fromUtf8(HELP_FOLDER), {}))}
    {
        window.showTopic({});
        window.resize(1000, 700);
        window.show();
        window.activateWindow();
        static_cast<void>(QTest::qWaitForWindowActive(&window));
    }

    /// Unfolds along a path of titles and returns the last entry.
    QTreeWidgetItem *entry(const QStringList &path)
    {
        QTreeWidgetItem *at = tree->invisibleRootItem();
        for (const QString &title : path) {
            at->setExpanded(true);
            QTreeWidgetItem *next = nullptr;
            for (int i = 0; i < at->childCount() && !next; ++i)
                next = at->child(i)->text(0) == title ? at->child(i) : nullptr;
            if (!next)
                qFatal("There is no entry %s", qPrintable(title));
            at = next;
        }
        at->setExpanded(true);
        return at;
    }
    QStringList below(const QStringList &path)
    {
        const QTreeWidgetItem *const parent = entry(path);
        QStringList titles;
        for (int i = 0; i < parent->childCount(); ++i)
            titles.append(parent->child(i)->text(0));
        return titles;
    }
    void choose(const QStringList &path)
    {
        tree->setCurrentItem(entry(path));
        tree->setFocus();
        QTest::keyClick(tree, Qt::Key_Return);
    }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers)
    {
        QTest::keyClick(page, key, modifiers);
    }
    QString text() const { return page->toPlainText(); }
    QStringList marked() const
    {
        QStringList words;
        for (const QTextEdit::ExtraSelection &mark : page->extraSelections())
            words.append(mark.cursor.selectedText());
        return words;
    }
    void search(const QString &question)
    {
        control<QTabWidget>(&window, "tabParts")->setCurrentIndex(1);
        control<QLineEdit>(&window, "txtSearch")->setText(question);
    }
    QStringList hits() const { return textsIn(control<QTreeWidget>(&window, "lstHits")->model()); }
};

class BuiltProject : public SampleProject
{
public:
    BuiltProject()
    {
        QSettings::setDefaultFormat(QSettings::IniFormat);
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, world.folder.path());
        world.list(name);
        addBook(u"Repair"_s, u"REP"_s,
                {{u"start.htm"_s,
                  "<title>start</title><body background=none.png><p style='color:black'>Old pumps "
                  "leak.</p>"
                  "<a href='valve.htm#v'>on</a>"
                  "<img src='../../Other/red.png' width=500 height=300 alt='A red lid'>"},
                 {u"valve.htm"_s,
                  "<title>valve</title><h1>Valves</h1><p>One pump. ポンプの弁</p><p id=v>V</p>"}});
        addQuickNav(u"REP"_s);
        addGlobals();
    }
    void build()
    {
        const BuildOrder order{.tools = {BuildTool::QuickNav, BuildTool::SearchIndex},
                               .checks = CheckLevel::Off};
        QVERIFY(runBuild(world.session, world.files, name, u"ENU"_s, order, {}, {}).success);
    }
};

} // namespace

class tst_viewer final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsABuiltSet();
    void searchesAndMarks();
    void marksInEveryLanguage();
    void goesBackAndKeepsBookmarks();
    void answersOtherPrograms();
    void opensByTheCatalogueOnly();
    void staysInTheSet();
    void isReachedByKeys();
    void runsOnce();
};

void tst_viewer::showsABuiltSet()
{
    BuiltProject project;
    Viewer viewer(project.world);
    QVERIFY(viewer.text().startsWith(u"What do you want to do"_s));
    QCOMPARE(viewer.below({project.name, u"Quick navigation"_s}),
             QStringList{u"The quick navigation of this set is not built yet."_s});
    project.build();
    QTest::keyClick(&viewer.window, Qt::Key_F5);
    auto *const views = viewer.tree->topLevelItem(1)->child(2);
    QVERIFY(views->isExpanded()); // as it was before it was read again
    QCOMPARE(views->child(0)->text(0), u"The view"_s);
    QCOMPARE(viewer.below({project.name}),
             (QStringList{u"Global pages"_s, u"Books"_s, u"Quick navigation"_s}));

    viewer.choose({project.name, u"Books"_s, u"Repair"_s, u"valve"_s});
    QVERIFY(viewer.text().startsWith(u"Valves"_s));
    const QStringList path{project.name,   u"Quick navigation"_s, u"The view"_s,
                           u"The group"_s, u"The topic"_s,        u"The category"_s};
    QCOMPARE(viewer.below(path), QStringList{u"To P0001"_s}); // the dead link is left out
    viewer.choose(path + QStringList{u"To P0001"_s});
    QVERIFY(viewer.text().startsWith(u"Old pumps leak."_s));
    QCOMPARE(viewer.text(), u"Old pumps leak.\non\ufffc A red lid"_s); // the picture is outside
    const QImage shown = viewer.page->viewport()->grab().toImage(); // and no box as the background
    const QRect corner(shown.width() - 60, shown.height() - 60, 50, 50);
    QImage plain(corner.size(), shown.format());
    plain.fill(viewer.page->palette().color(QPalette::Base));
    QCOMPARE(shown.copy(corner), plain);
    QCOMPARE(viewer.page->textCursor().charFormat().foreground(), QBrush(Qt::black));
    QPalette dark(QColor(40, 40, 40));
    viewer.window.setPalette(dark);
    QTest::keyClick(&viewer.window, Qt::Key_F5); // as the page says, it could not be read
    QCOMPARE(viewer.page->textCursor().charFormat().foreground().style(), Qt::NoBrush);
    viewer.window.setPalette({});
    viewer.choose({project.name, u"Global pages"_s, u"legal"_s});
    QCOMPARE(viewer.text(), u"This page cannot be shown\nThere is no page "
                            "S:\\Docs\\Plant 300\\_Global Information\\legal.htm."_s);

    const QString folder = project.world.native(u"Docs/Plant 300/Book_REP/"_s);
    QVERIFY(QImage(3000, 300, QImage::Format_RGB32).save(folder + u"wide.png"_s));
    project.world.put(u"S:\\Docs\\Plant 300\\Book_REP\\valve.htm"_s, "<img src=wide.png>");
    viewer.choose({project.name, u"Books"_s, u"Repair"_s, u"valve"_s});
    const auto shownSize = [&] {
        QTextCursor picture(viewer.page->document());
        picture.setPosition(1);
        const QTextImageFormat format = picture.charFormat().toImageFormat();
        return QSizeF(format.width(), format.height());
    };
    const QSizeF before = shownSize();
    QVERIFY(before.width() > 100 && before.width() <= viewer.page->viewport()->width());
    QCOMPARE(before.height() * 10, before.width());
    viewer.window.resize(800, 700);
    QTRY_VERIFY(shownSize().width() < before.width());
    viewer.window.resize(1000, 700);
    QTRY_COMPARE(shownSize(), before);

    QPdfWriter printer(project.world.native(u"page.pdf"_s));
    viewer.window.findChild<ViewerPage *>()->print(printer);
    QVERIFY(QFileInfo(project.world.native(u"page.pdf"_s)).size() > 1000);
}

void tst_viewer::searchesAndMarks()
{
    BuiltProject project;
    Viewer viewer(project.world);
    viewer.search(u"pump"_s);
    const auto *const told = control<QLabel>(&viewer.window, "lblHits");
    QVERIFY2(told->text().contains(u"Search_Pages.xml"_s), qPrintable(told->text())); // not built
    project.build();
    QTest::keyClick(&viewer.window, Qt::Key_F5);
    QCOMPARE(told->text(), u"2 pages found."_s);

    QTest::keyClick(control<QLineEdit>(&viewer.window, "txtSearch"), Qt::Key_Return);
    QCOMPARE(QApplication::focusWidget()->objectName(), u"lstHits"_s);
    QCOMPARE(viewer.hits(), (QStringList{u"valve"_s, u"start"_s})); // typed exactly so comes first
    QCOMPARE(viewer.marked(), QStringList{u"pump"_s});
    auto *const hits = control<QTreeWidget>(&viewer.window, "lstHits");
    QTest::keyClick(hits, Qt::Key_Down);
    QTest::keyClick(hits, Qt::Key_Return);
    QCOMPARE(viewer.marked(), QStringList{u"pumps"_s});

    viewer.search(u"val"_s); // still being typed
    QCOMPARE(viewer.hits(), QStringList{u"valve"_s});
    QTest::keyClick(control<QLineEdit>(&viewer.window, "txtSearch"), Qt::Key_Return);
    QCOMPARE(viewer.marked(), QStringList{u"Valves"_s});
    viewer.search(u"val "_s);
    QCOMPARE(told->text(), u"No page holds: val."_s);

    viewer.search(u"ポンプ"_s);
    QTest::keyClick(control<QLineEdit>(&viewer.window, "txtSearch"), Qt::Key_Return);
    QCOMPARE(viewer.marked(), QStringList{u"ポンプ"_s});
    viewer.search(u"nowhere"_s);
    QCOMPARE(told->text(), u"No page holds: nowhere."_s);
    QCOMPARE(viewer.hits(), QStringList());

    viewer.key(Qt::Key_F, Qt::ControlModifier);
    QTest::keyClicks(QApplication::focusWidget(), u"valves"_s);
    QCOMPARE(viewer.page->textCursor().selectedText(), u"Valves"_s);
}

void tst_viewer::marksInEveryLanguage()
{
    struct Row
    {
        QString language, text, question, marked;
    };
    const Row rows[] = {
        {u"ENU"_s, u"The old pumps, new PUMP; pumpkin"_s, u"the \"pump\" valve"_s, u"pumps|PUMP"_s},
        {u"DEU"_s, u"Die Ölpumpen der Straße"_s, u"oelpumpe strasse"_s, u"Ölpumpen|Straße"_s},
        {u"JPN"_s, u"ポンプの弁"_s, u"ポンプ"_s, u"ポンプ"_s},
        {u"CHS"_s, u"水泵和阀门"_s, u"阀门水泵"_s, u"水泵|阀门"_s}, // not together
        {u"CHT"_s, u"水泵 R100"_s, u"r100 水"_s, u"水|R100"_s},
        {u"KOR"_s, u"펌프를 끄다"_s, u"펌프"_s, u"펌프"_s},
        {u"ENU"_s, u"Pumpkins, valves"_s, u"valve pump"_s, u"Pumpkins|valves"_s}, // unfinished
        {u"ENU"_s, u"Pumpkins, a pump"_s, u"pump"_s, u"pump"_s},
        {u"ENU"_s, u"Pumpkins"_s, u"pump "_s, {}},
        {u"DEU"_s, u"Ölpumpen"_s, u"oelp"_s, u"Ölpumpen"_s},
        {u"ENU"_s, u"Old circulators of a kind"_s, u"pump\nkind of wheel\ncirculator"_s,
         u"circulators"_s}, // by another name, which must stand there whole
    };
    for (const Row &row : rows) {
        QStringList marked;
        for (const TextPiece &piece :
             searchMarks(row.text, row.question.split(u'\n'), row.language))
            marked.append(row.text.mid(piece.start, piece.length));
        QCOMPARE(marked.join(u'|'), row.marked);
    }
}

void tst_viewer::goesBackAndKeepsBookmarks()
{
    BuiltProject project;
    {
        Viewer viewer(project.world);
        QVERIFY(!control<QAction>(&viewer.window, "mnuBack")->isEnabled());
        viewer.choose({project.name, u"Books"_s, u"Repair"_s, u"start"_s});
        Q_EMIT viewer.page->anchorClicked(QUrl(u"valve.htm#v"_s));
        QVERIFY(viewer.text().startsWith(u"Valves"_s));
        viewer.key(Qt::Key_D, Qt::ControlModifier);
        viewer.key(Qt::Key_D, Qt::ControlModifier); // kept already
        viewer.key(Qt::Key_Left, Qt::AltModifier);
        QVERIFY(viewer.text().startsWith(u"Old pumps"_s));
        QCOMPARE(viewer.tree->currentItem()->text(0), u"start"_s); // the contents go along
        viewer.key(Qt::Key_Right, Qt::AltModifier);
        QVERIFY(viewer.text().startsWith(u"Valves"_s));
        QVERIFY(!control<QAction>(&viewer.window, "mnuForward")->isEnabled());
        viewer.key(Qt::Key_Home, Qt::AltModifier);
        QVERIFY(viewer.text().startsWith(u"What do you want"_s));
        viewer.key(Qt::Key_Plus, Qt::ControlModifier);
    }
    Viewer again(project.world);
    QVERIFY(again.page->font().pointSizeF() > QApplication::font().pointSizeF());
    auto *const list = control<QListWidget>(&again.window, "lstBookmarks");
    QCOMPARE(textsIn(list->model()), QStringList{u"valve (Plant 300)"_s});
    control<QTabWidget>(&again.window, "tabParts")->setCurrentIndex(2);
    list->setCurrentRow(0);
    list->setFocus();
    QTest::keyClick(list, Qt::Key_Return);
    QVERIFY(again.text().startsWith(u"Valves"_s));
    QTest::keyClick(list, Qt::Key_Delete);
    QCOMPARE(list->count(), 0);
    QVERIFY(readBookmarks().isEmpty());
}

void tst_viewer::answersOtherPrograms()
{
    BuiltProject project;
    Viewer viewer(project.world);
    viewer.window.answerRequest(u"Content"_s, u"QVT@qv@qvdev_ug@qv@building A project"_s);
    QVERIFY(viewer.window.isMaximized());
    QVERIFY(viewer.text().startsWith(u"Building a project"_s));
    viewer.window.answerRequest({}, {}); // only wanted in front
    QVERIFY(viewer.text().startsWith(u"Building a project"_s));

    project.world.list(u"Newcomer"_s);
    viewer.window.answerRequest(u"Content"_s, {});
    QVERIFY(viewer.text().startsWith(u"What do you want"_s));
    QCOMPARE(viewer.tree->topLevelItemCount(), 3); // read again
}

void tst_viewer::opensByTheCatalogueOnly()
{
    BuiltProject project;
    for (const QString &set : {u"Zebra"_s, u"alpha"_s}) // no folders of theirs
        project.world.list(set);
    project.world.components.projectRanking.UpdateProjectRank(u"Zebra"_s, u"7"_s);
    Viewer viewer(project.world);
    QStringList sets;
    for (int i = 0; i < viewer.tree->topLevelItemCount(); ++i)
        sets.append(viewer.tree->topLevelItem(i)->text(0));
    QCOMPARE(sets, (QStringList{u"QV Developer Help"_s, u"Zebra"_s, u"alpha"_s, u"Plant 300"_s}));
    const QString note = viewer.below({u"Zebra"_s, u"Books"_s}).value(0);
    QVERIFY2(note.contains(u"S:\\Docs\\Zebra"_s), qPrintable(note));

    project.world.session.serverPath.clear();
    QTest::keyClick(&viewer.window, Qt::Key_F5);
    QCOMPARE(
        control<QLabel>(&viewer.window, "lblNotes")->text(),
        u"No server folder is set. Start QV Developer once to choose it; then its book sets are "
        "shown here."_s);
}

void tst_viewer::staysInTheSet()
{
    BuiltProject project;
    const QString secret = u"S:\\Docs\\Other\\secret.htm"_s;
    project.world.put(secret, "<p>secret</p>");
    project.world.list(u"Other"_s);
    const QByteArray linkFile =
        xmlFile(u"<LINKS><IBD><ID><LinkID>SECRET</LinkID><LinkIDSourceFile>Other\\secret.htm#top"
                "</LinkIDSourceFile></ID></IBD></LINKS>\n"_s);
    here::link(project.world.native(u"Docs/Other/secret.htm"_s),
               project.world.native(u"Docs/Plant 300/Book_REP/door.htm"_s));
    Viewer viewer(project.world);
    viewer.choose({project.name, u"Books"_s, u"Repair"_s, u"start"_s});
    for (const QString &address : {u"../../Other/secret.htm"_s, u"http://127.0.0.1:9/secret.htm"_s,
                                   u"file://"_s + project.world.native(u"Docs/Other/secret.htm"_s),
                                   u"javascript:alert(1)"_s}) {
        Q_EMIT viewer.page->anchorClicked(QUrl(address));
        QVERIFY2(viewer.text().startsWith(u"Old pumps"_s), qPrintable(address));
    }
    const auto told = [&] { return viewer.window.statusBar()->currentMessage(); };
    Q_EMIT viewer.page->anchorClicked(QUrl(u"valve.pdf"_s));
    QCOMPARE(told(), u"Book_REP\\valve.pdf is no page and is not opened."_s);

    // Other sets are reached by the identifiers that they publish.
    Q_EMIT viewer.page->anchorClicked(QUrl(u"qvlink:SECRET"_s));
    QCOMPARE(told(), u"No book set publishes the target SECRET."_s);
    project.world.put(u"S:\\Docs\\Other\\QV_LinkID.xml"_s, linkFile);
    Q_EMIT viewer.page->anchorClicked(QUrl(u"qvlink:SECRET"_s));
    QCOMPARE(viewer.text(), u"secret"_s);

    viewer.key(Qt::Key_Left, Qt::AltModifier);
    Q_EMIT viewer.page->anchorClicked(QUrl(u"door.htm"_s)); // a link of the file system
    QVERIFY(viewer.text().startsWith(u"This page cannot be shown"_s));
}

void tst_viewer::isReachedByKeys()
{
    BuiltProject project;
    Viewer viewer(project.world);
    for (int tab = 0; tab < 3; ++tab) {
        control<QTabWidget>(&viewer.window, "tabParts")->setCurrentIndex(tab);
        QCOMPARE(audit::namelessIn(&viewer.window), QStringList());
        QCOMPARE(audit::doubleLettersIn(&viewer.window), QStringList());
        QCOMPARE(audit::returnsIn(&viewer.window), QStringList());
    }
    const auto focused = [] { return QApplication::focusWidget()->objectName(); };
    viewer.key(Qt::Key_L, Qt::ControlModifier);
    QCOMPARE(focused(), u"txtSearch"_s);
    viewer.key(Qt::Key_F6, Qt::NoModifier);
    QCOMPARE(focused(), u"txtPage"_s);
    viewer.key(Qt::Key_F6, Qt::ShiftModifier);
    QCOMPARE(focused(), u"txtSearch"_s);
    viewer.key(Qt::Key_F1, Qt::NoModifier);
    QCOMPARE(focused(), u"tvwContents"_s);
}

void tst_viewer::runsOnce()
{
    const QTemporaryDir folder;
    for (const char *place : {"XDG_RUNTIME_DIR", "QUOVANE_SETTINGS", "QUOVANE_DRIVES"})
        qputenv(place, folder.path().toUtf8());
    const QString program = QString::fromUtf8(VIEWER_PROGRAM);
    QProcess first;
    first.start(program, {u" "_s});
    const SingleInstance own("tst_viewer");
    NativeWindows windows(own);
    QTRY_VERIFY(windows.exists({}, viewerCaption));
    QCOMPARE(QProcess::execute(program, {helpTopics().constLast()}), 0); // did not stay
    QCOMPARE(first.state(), QProcess::Running);
    windows.close({}, viewerCaption);
    QTRY_COMPARE(first.state(), QProcess::NotRunning);
    QCOMPARE(first.exitCode(), 0);
    QVERIFY(QFile::exists(folder.filePath(u"quovane/viewer.ini"_s))); // place and size
}

QV_FORM_TEST_MAIN(tst_viewer)
#include "tst_viewer.moc"
