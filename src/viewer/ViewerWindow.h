#pragma once

#include "viewer/PlaceHistory.h"
#include "viewer/ViewerWorld.h"

#include <QMainWindow>

class BookmarksTab;
class ContentsTree;
class QLabel;
class QMenu;
class QTabWidget;
class QToolBar;
class SearchTab;
class ViewerPage;

/// The window by which other programs find the viewer.
inline constexpr QLatin1StringView viewerCaption{"Quovane"};

/// The help viewer: contents, search and bookmarks beside the page that is shown.
class ViewerWindow final : public QMainWindow
{
    Q_OBJECT

public:
    explicit ViewerWindow(ViewerWorld &world, QWidget *parent = nullptr);

    /// Shows the help page of a topic path; the contents for a blank one.
    void showTopic(const QString &topic);
    /// What another program wants: the window in front, maximized; and, when there is a kind, the
    /// topic, with the book sets as they are now.
    void answerRequest(const QString &kind, const QString &topic);

private:
    void layOut();
    [[nodiscard]] QWidget *contentsTab();
    void connectParts();
    // ViewerWindowActions.cpp: menus and tool bar
    void makeActions();
    void makeGoMenu();
    void makeViewMenu();
    QAction *action(QMenu *menu, const char *name, const QString &text, const QKeySequence &keys,
                    QLatin1StringView iconName, const std::function<void()> &does);
    void zoomTo(int steps);
    void useZoom(int steps);
    void print();

    void open(const ViewerPlace &place, const QStringList &asked = {});
    void go(int steps);
    void shown(const ViewerPlace &place);
    void reread();
    void rereadPage();
    void addBookmark();

    ViewerWorld &m_world;
    PlaceHistory m_history;
    QToolBar *m_tools;
    QTabWidget *m_tabs;
    ContentsTree *m_contents;
    QLabel *lblNotes; ///< below the contents
    SearchTab *m_search;
    BookmarksTab *m_bookmarks;
    ViewerPage *m_page;
    QAction *m_back = nullptr, *m_forward = nullptr;
    int m_zoom = 0;
};
