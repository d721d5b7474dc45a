// The part of the tour that spends a day in the editors.
#include "Tour.h"
#include "startup/FormWindow.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QTabBar>
#include <QTabWidget>
#include <QTimer>
#include <QTreeView>

using namespace Qt::StringLiterals;

namespace {

/// The open window of that object name; the tour fails without it.
QWidget *openWindow(QLatin1StringView name)
{
    for (QWidget *const top : QApplication::topLevelWidgets()) {
        if (top->objectName() == name && top->isVisible())
            return top;
    }
    tourFails(u"There is no window "_s + name);
}

} // namespace

void Tour::lookAtPage()
{
    QWidget *main = window(Form::MainUI);
    child<QTabBar>(main, "SSTab1")->setCurrentIndex(1);
    auto *books = child<QWidget>(main, "ctlBooksTab1");
    child<QListWidget>(books, "lstBooks")->setCurrentRow(0);
    settle(200);
    auto *pages = child<QTreeView>(books, "tvwPages");
    pages->setCurrentIndex(pages->model()->index(4, 0));
    settle(200);
    auto *tabs = child<QTabWidget>(books, "tabDetails");
    const QList<std::pair<QString, QString>> pictures{
        {u"page-details"_s, u"What the book knows of a page"_s},
        {u"page-source-2"_s, u"Its source"_s},
        {u"page-preview-2"_s, u"Its preview"_s},
        {u"page-links"_s, u"What leads to the page and where it leads"_s},
        {u"page-keywords"_s, u"Its search keywords"_s}};
    for (int i = 0; i < pictures.size(); ++i) {
        tabs->setCurrentIndex(i + 1);
        settle(400);
        m_camera.take(main, pictures.at(i).first, pictures.at(i).second);
    }
}

void Tour::renamePage()
{
    QWidget *main = window(Form::MainUI);
    auto *books = child<QWidget>(main, "ctlBooksTab1");
    child<QTabWidget>(books, "tabDetails")->setCurrentIndex(1);
    settle(200);
    whenModal([this](QWidget *dialog) {
        auto *name = dialog->findChild<QLineEdit *>();
        name->clear();
        type(name, u"finding-packages.html"_s);
        m_camera.take(dialog, u"rename-file"_s, u"A page's file gets another name"_s);
        QTimer::singleShot(100, qApp, [this] {
            whenModal([this](QWidget *list) {
                m_camera.take(list, u"links-to-change"_s, u"The links that will follow"_s);
                child<QAbstractButton>(list, "cmdChangeLinks")->click();
            });
        });
        child<QAbstractButton>(dialog, "cmdAcceptName")->click();
    });
    click(books, "cmdRenameFile");
    settle(1500);
    m_camera.take(main, u"file-renamed"_s, u"The file and all links to it have been changed"_s);
    auto *undo = child<QAction>(main, "mnuUndo");
    if (!undo->isEnabled())
        tourFails(u"The rename cannot be undone"_s);
    undo->trigger();
    settle(1500);
    m_camera.take(main, u"undone"_s, u"Undo takes all of it back"_s);
}

void Tour::findInPages()
{
    QWidget *main = window(Form::MainUI);
    child<QAction>(main, "mnuFindInPages")->trigger();
    settle(300);
    QWidget *find = openWindow("dlgFindInPages"_L1);
    auto *text = find->findChild<QLineEdit *>();
    text->clear();
    type(text, u"package"_s);
    settle(200);
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QCoreApplication::sendEvent(text, &enter);
    settle(1500);
    m_camera.take(find, u"find-in-pages"_s, u"Finding over all pages of the project"_s);
    find->close();
}

void Tour::planQuickNav()
{
    QWidget *main = window(Form::MainUI);
    child<QTabBar>(main, "SSTab1")->setCurrentIndex(2);
    settle(300);
    m_camera.take(main, u"quick-navigation-plan"_s, u"The quick navigation before it is planned"_s);
}

void Tour::lookAtGlobals()
{
    QWidget *main = window(Form::MainUI);
    child<QTabBar>(main, "SSTab1")->setCurrentIndex(0);
    auto *tabs = child<QTabWidget>(main, "tabGlobals");
    const QStringList names{u"project"_s, u"global-pages"_s, u"categories"_s,
                            u"quick-navigation-categories"_s};
    for (int i = 0; i < names.size(); ++i) {
        tabs->setCurrentIndex(i);
        settle(300);
        m_camera.take(main, names.at(i), u"Globals: "_s + tabs->tabText(i).remove(u'&'));
    }
    tabs->setCurrentIndex(0);
    child<QTabBar>(main, "SSTab1")->setCurrentIndex(1);
}

/// A smaller project in every editor.
void Tour::lookThrough(QWidget *main)
{
    const auto chooseFirst = [](QAbstractItemView *list, int row = 0) {
        list->setCurrentIndex(list->model()->index(row, 0));
        settle(200);
    };
    main->resize(1190, 640);
    settle(300);
    auto *books = child<QWidget>(main, "ctlBooksTab1");
    auto *pages = child<QTreeView>(books, "tvwPages");
    pages->setCurrentIndex(pages->model()->index(0, 0, pages->model()->index(0, 0)));
    const QStringList details{u"book"_s,    u"page"_s,  u"source"_s,
                              u"preview"_s, u"links"_s, u"keywords"_s};
    for (int i = 0; i < details.size(); ++i) {
        child<QTabWidget>(books, "tabDetails")->setCurrentIndex(i);
        settle(300);
        m_camera.take(main, u"small-"_s + details.at(i), u"A small project: "_s + details.at(i));
    }
    main->resize(960, 620);
    child<QTabWidget>(books, "tabDetails")->setCurrentIndex(0);
    settle(300);
    m_camera.take(main, u"small-window"_s, u"A small project in a smaller window"_s);
    child<QTabBar>(main, "SSTab1")->setCurrentIndex(2);
    settle(200);
    for (const char *const column : {"lstViews", "lstGroups", "lstTopics", "lstCategories"})
        chooseFirst(child<QAbstractItemView>(main, column));
    m_camera.take(main, u"small-quick-navigation"_s, u"A small project: quick navigation"_s);

    child<QTabBar>(main, "SSTab1")->setCurrentIndex(0);
    child<QTabWidget>(main, "tabGlobals")->setCurrentIndex(1);
    chooseFirst(child<QAbstractItemView>(main, "tvwGlobalPages"));
    m_camera.take(main, u"small-global-pages"_s, u"A small project: global pages"_s);
    child<QTabWidget>(main, "tabGlobals")->setCurrentIndex(2);
    chooseFirst(child<QAbstractItemView>(main, "tvwCategories"));
    m_camera.take(main, u"small-categories"_s, u"A small project: categories"_s);
    child<QTabWidget>(main, "tabGlobals")->setCurrentIndex(0);
    child<QTabBar>(main, "SSTab1")->setCurrentIndex(1);
    main->resize(1240, 800);
}
