#pragma once

#include "controls/parts/RowTable.h"
#include "controls/session/ProjectSession.h"

#include <QWidget>

class PageIndex;
class QLabel;
struct IndexedLink;
struct IndexedPage;

/// The links to the session's current page and the links that it holds, each with its state. Also
/// the places of the quick navigation that lead to it, and its keywords.
class LinksPane final : public QWidget
{
    Q_OBJECT

public:
    explicit LinksPane(ProjectSession &session, QWidget *parent = nullptr);

Q_SIGNALS:
    /// The author wants to see a place in a page: its path relative to the project folder, and the
    /// place in the page's text.
    void placeRequested(const QString &path, qsizetype start, qsizetype length);
    /// The author wants to see a category of the quick navigation: the names of its view, group,
    /// topic and its own.
    void quickNavRequested(const QStringList &names);

private:
    struct Place
    {
        QString page; ///< "" for a place of the quick navigation
        qsizetype start = 0, length = 0;
        QString target = {};
        QStringList quickNav = {}; ///< the names that lead to a place there
    };
    struct List
    {
        QLabel *heading;
        RowTable *table;
        QList<TableRow> rows;
        QList<Place> places;
    };

    void showEvent(QShowEvent *event) override;
    void layOut();
    void layOutList(List &list, const QString &objectName, const QString &name, QWidget *parent);
    void refreshLater();
    void refresh();
    void listPage(const TocBook &book, const BookPage &page);
    void listIn(const QString &path);
    void listQuickNav(const QList<QuickNavNode> &nodes, const QStringList &above,
                      const QuickNavLink &page, const QString &path);
    void listOut(const IndexedPage &page);
    void add(List &list, const QString &name, const IndexedPage &page, const IndexedLink &link);
    void showLists(const QString &problem);
    void jump(const List &list, int row);
    void followTarget();

    ProjectSession &m_session;
    QWidget *m_filter;
    List m_in, m_out;
    QLabel *m_keyWords;
    bool m_isStale = true;
};
