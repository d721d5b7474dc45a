#include "controls/links/LinkTable.h"

#include "controls/parts/ListCommands.h"
#include "controls/parts/PlainTip.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QPainter>
#include <QSortFilterProxyModel>
#include <QTextDocument>

using namespace Qt::StringLiterals;

namespace {

constexpr int markSize = 16; // device-independent pixels
constexpr int lineColumn = 1;
constexpr int sortRole = Qt::UserRole;

void drawMark(QPainter &painter, LinkMark mark)
{
    const QPen white(Qt::white, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    painter.setPen(Qt::NoPen);
    switch (mark) {
    case LinkMark::Good:
        painter.setBrush(QColor(46, 125, 50));
        painter.drawEllipse(QRectF(1, 1, 14, 14));
        painter.setPen(white);
        painter.drawPolyline(QPolygonF{{4.5, 8.5}, {7, 11}, {11.5, 5.5}});
        break;
    case LinkMark::Warning:
        painter.setBrush(QColor(178, 95, 0));
        painter.drawPolygon(QPolygonF{{8, 1}, {15.5, 15}, {0.5, 15}});
        painter.setPen(white);
        painter.drawLine(QPointF(8, 6), QPointF(8, 10));
        painter.drawPoint(QPointF(8, 12.5));
        break;
    case LinkMark::Bad:
        painter.setBrush(QColor(198, 40, 40));
        painter.drawRoundedRect(QRectF(1, 1, 14, 14), 2, 2);
        painter.setPen(white);
        painter.drawLine(QPointF(5, 5), QPointF(11, 11));
        painter.drawLine(QPointF(11, 5), QPointF(5, 11));
        break;
    case LinkMark::Unchecked:
        painter.setBrush(QColor(105, 105, 120));
        painter.drawPolygon(QPolygonF{{8, 1}, {15, 8}, {8, 15}, {1, 8}});
        break;
    case LinkMark::None:
        break;
    }
}

QPixmap markAt(LinkMark mark, int ratio)
{
    QPixmap pixmap(QSize(markSize, markSize) * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    drawMark(painter, mark);
    return pixmap;
}

} // namespace

QIcon linkMarkIcon(LinkMark mark)
{
    QIcon icon;
    for (const int ratio : {1, 2, 3}) {
        for (const QIcon::Mode mode : {QIcon::Normal, QIcon::Selected}) // the same: not tinted
            icon.addPixmap(markAt(mark, ratio), mode);
    }
    return icon;
}

LinkTableModel::LinkTableModel(QStringList headers, QObject *parent)
    : QAbstractTableModel(parent)
    , m_headers(std::move(headers))
{
}

void LinkTableModel::setRows(QList<LinkTableRow> rows)
{
    beginResetModel();
    m_rows = std::move(rows);
    endResetModel();
}

int LinkTableModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int LinkTableModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_headers.size());
}

QVariant LinkTableModel::data(const QModelIndex &index, int role) const
{
    const LinkTableRow &row = m_rows.at(index.row());
    const QString text = row.texts.value(index.column());
    const bool isLast = index.column() == m_headers.size() - 1;
    switch (role) {
    case Qt::DisplayRole:
        return text;
    case Qt::DecorationRole:
        return isLast && row.mark != LinkMark::None ? QVariant(linkMarkIcon(row.mark)) : QVariant();
    case Qt::ToolTipRole:
        return plainTip(isLast && !row.tip.isEmpty() ? row.tip : text);
    case Qt::TextAlignmentRole:
        return index.column() == lineColumn ? QVariant(Qt::AlignRight | Qt::AlignVCenter)
                                            : QVariant();
    case sortRole:
        return index.column() == lineColumn ? QVariant(text.toInt()) : QVariant(text);
    default:
        return {};
    }
}

QVariant LinkTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    return orientation == Qt::Horizontal && role == Qt::DisplayRole
               ? QVariant(m_headers.at(section))
               : QVariant();
}

LinkTable::LinkTable(QStringList headers, const QList<int> &letters, QWidget *parent)
    : QTreeView(parent)
    , m_model(new LinkTableModel(std::move(headers), this))
    , m_sorted(new QSortFilterProxyModel(this))
{
    m_sorted->setSourceModel(m_model);
    m_sorted->setSortRole(sortRole);
    m_sorted->setSortCaseSensitivity(Qt::CaseInsensitive);
    m_sorted->setFilterCaseSensitivity(Qt::CaseInsensitive);
    m_sorted->setFilterKeyColumn(-1);
    setModel(m_sorted);
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setAlternatingRowColors(true);
    setTextElideMode(Qt::ElideMiddle);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setSortingEnabled(true);
    setTabKeyNavigation(false);
    header()->setSortIndicatorClearable(true);
    sortByColumn(-1, Qt::AscendingOrder);
    for (int column = 0; column < letters.size(); ++column)
        header()->resizeSection(column, letters[column] * fontMetrics().averageCharWidth());
    connect(this, &QTreeView::activated, this,
            [this](const QModelIndex &index) { Q_EMIT rowActivated(rowOf(index)); });
    setContextMenuPolicy(Qt::ActionsContextMenu);
    addCommand(tr("&Copy"), QKeySequence::Copy, [this] { copyRows(); });
}

void LinkTable::setRows(QList<LinkTableRow> rows)
{
    const int row = currentIndex().row();
    m_model->setRows(std::move(rows));
    if (shownCount() > 0)
        setCurrentIndex(m_sorted->index(qBound(0, row, shownCount() - 1), 0));
}

void LinkTable::setFilter(const QString &text)
{
    m_sorted->setFilterFixedString(text);
}

int LinkTable::rowOf(const QModelIndex &index) const
{
    return index.isValid() ? m_sorted->mapToSource(index).row() : -1;
}

int LinkTable::currentRow() const
{
    return rowOf(currentIndex());
}

int LinkTable::shownCount() const
{
    return m_sorted->rowCount();
}

void LinkTable::copyRows() const
{
    QStringList lines;
    for (int row = 0; row < m_sorted->rowCount(); ++row) {
        const QModelIndex at = m_sorted->index(row, 0);
        if (selectionModel()->isSelected(at))
            lines.append(m_model->rows().at(rowOf(at)).texts.join(u'\t'));
    }
    QGuiApplication::clipboard()->setText(lines.join(u'\n'));
}

void LinkTable::addCommand(const QString &text, const QKeySequence &keys,
                           const std::function<void()> &run)
{
    addListAction(this, text, {}, keys, [this, run] {
        if (currentRow() >= 0)
            run();
    });
}
