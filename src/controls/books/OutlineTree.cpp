#include "controls/books/OutlineTree.h"

#include "controls/books/CheckedDelegate.h"
#include "controls/books/PageRules.h"

#include <QDragEnterEvent>
#include <QHeaderView>
#include <QMimeData>
#include <QSet>
#include <QTreeWidgetItemIterator>
#include <QUrl>

#include <algorithm>

using namespace Qt::StringLiterals;

OutlineTree::OutlineTree(QWidget *parent)
    : QTreeWidget(parent)
{
    setObjectName(u"tvwPages"_s);
    setAccessibleName(tr("Pages of the book"));
    setHeaderLabels({tr("Page"), tr("File"), tr("Context ids"), tr("Problem")});
    setUniformRowHeights(true);
    setTextElideMode(Qt::ElideMiddle);
    setSelectionMode(ExtendedSelection);
    setDragEnabled(true);
    setAcceptDrops(true);
    setDropIndicatorShown(true);
    setDragDropMode(DragDrop);
    setDefaultDropAction(Qt::MoveAction);
    setEditTriggers(NoEditTriggers); // the command does it
    auto *titles = new CheckedDelegate(
        u"txtPageTitle"_s, tr("Title of the page"),
        [](const QModelIndex &, const QString &title) { return PageRules::titleProblem(title); },
        TitleRole, this);
    setItemDelegateForColumn(TitleColumn, titles);
    connect(titles, &CheckedDelegate::judged, this, &OutlineTree::titleJudged);
    connect(
        titles, &CheckedDelegate::entered, this,
        [this](const QString &page, int, const QString &title) {
            Q_EMIT titleEntered(page, title);
        },
        Qt::QueuedConnection);
    setExpandsOnDoubleClick(false);
    const int letter = fontMetrics().averageCharWidth();
    header()->resizeSection(TitleColumn, 34 * letter);
    header()->resizeSection(FileColumn, 17 * letter);
    header()->resizeSection(ContextColumn, 12 * letter);
}

void OutlineTree::setBook(const QString &projectFolder, const TocBook &book)
{
    m_projectFolder = projectFolder;
    m_book = book;
}

QTreeWidgetItem *OutlineTree::itemOf(const QString &page) const
{
    for (QTreeWidgetItemIterator at(const_cast<OutlineTree *>(this)); *at != nullptr; ++at) {
        if ((*at)->data(TitleColumn, IdRole).toString() == page)
            return *at;
    }
    return nullptr;
}

QStringList OutlineTree::chosen() const
{
    QStringList pages;
    for (QTreeWidgetItemIterator at(const_cast<OutlineTree *>(this),
                                    QTreeWidgetItemIterator::Selected);
         *at != nullptr; ++at)
        pages.append((*at)->data(TitleColumn, IdRole).toString());
    return pages;
}

void OutlineTree::choose(const QStringList &pages)
{
    const QSet<QString> wanted(pages.cbegin(), pages.cend());
    for (QTreeWidgetItemIterator at(this); *at != nullptr; ++at) {
        if (wanted.contains((*at)->data(TitleColumn, IdRole).toString()))
            (*at)->setSelected(true);
    }
}

bool OutlineTree::edit(const QModelIndex &index, EditTrigger trigger, QEvent *event)
{
    return QTreeWidget::edit(index.siblingAtColumn(TitleColumn), trigger, event);
}

QStringList OutlineTree::mimeTypes() const
{
    return {projectMimeType, u"text/uri-list"_s};
}

QMimeData *OutlineTree::mimeData(const QList<QTreeWidgetItem *> &) const
{
    DraggedNodes nodes{m_projectFolder, true, {}};
    for (QTreeWidgetItemIterator at(const_cast<OutlineTree *>(this),
                                    QTreeWidgetItemIterator::Selected);
         *at != nullptr; ++at) {
        const QString page = (*at)->data(TitleColumn, IdRole).toString();
        nodes.nodes.append(
            {{.kind = ProjectRequest::Node::Kind::Page, .book = m_book, .page = page},
             (*at)->data(TitleColumn, PathRole).toString(),
             (*at)->text(TitleColumn)});
    }
    auto *mime = new QMimeData;
    putNodes(*mime, nodes);
    return mime;
}

Qt::DropActions OutlineTree::supportedDropActions() const
{
    return Qt::MoveAction | Qt::CopyAction | Qt::LinkAction;
}

void OutlineTree::dragEnterEvent(QDragEnterEvent *event)
{
    const bool isOurs = nodesIn(event->mimeData()).arePagesOf(m_projectFolder);
    if (m_book.acronym.isEmpty() || !(isOurs || event->mimeData()->hasUrls()))
        event->ignore();
    else
        QTreeWidget::dragEnterEvent(event);
}

// The view must not move rows of its own: the outline is shown anew after the command.
void OutlineTree::dropEvent(QDropEvent *event)
{
    const DraggedNodes nodes = nodesIn(event->mimeData());
    QStringList paths;
    for (const QUrl &url : event->mimeData()->urls()) {
        if (url.isLocalFile())
            paths.append(url.toLocalFile());
    }
    event->setDropAction(Qt::CopyAction);
    event->accept();
    setState(NoState);
    if (nodes.arePagesOf(m_projectFolder))
        Q_EMIT nodesDropped(nodes, placeAt(event->position().toPoint()));
    else if (!paths.isEmpty())
        Q_EMIT filesDropped(paths);
}

// On a row: below it. Near its upper or lower edge: beside it. On no row: at the end.
OutlinePlace OutlineTree::placeAt(const QPoint &position) const
{
    const QTreeWidgetItem *const item = itemAt(position);
    if (item == nullptr)
        return {};
    const QRect row = visualItemRect(item);
    const int edge = row.height() / 4;
    const QString page = item->data(TitleColumn, IdRole).toString();
    if (position.y() < row.top() + edge)
        return {OutlinePlace::Where::Before, page};
    if (position.y() > row.bottom() - edge && !item->isExpanded())
        return {OutlinePlace::Where::After, page};
    return {OutlinePlace::Where::Below, page};
}
