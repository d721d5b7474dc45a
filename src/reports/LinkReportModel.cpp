#include "reports/LinkReportModel.h"

#include "platform/FileSystem.h"
#include "platform/QvError.h"
#include "resources/Texts.h"

#include <QPainter>
#include <QTextDocument>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr std::size_t rowsPerTurn = 10'000; ///< a few milliseconds: the window stays alive
constexpr int markSize = 16;                ///< device-independent pixels

/// A green disc with a tick or a red square with a cross, both in white: told apart without
/// colours, and clear on light and dark.
QPixmap statusMark(bool good, int ratio)
{
    QPixmap pixmap(QSize(markSize, markSize) * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const QPen white(Qt::white, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    if (good) {
        painter.setBrush(QColor(46, 125, 50));
        painter.drawEllipse(QRectF(1, 1, 14, 14));
        painter.setPen(white);
        painter.drawPolyline(QPolygonF{{4.5, 8.5}, {7, 11}, {11.5, 5.5}});
    } else {
        painter.setBrush(QColor(198, 40, 40));
        painter.drawRoundedRect(QRectF(1, 1, 14, 14), 2, 2);
        painter.setPen(white);
        painter.drawLine(QPointF(5, 5), QPointF(11, 11));
        painter.drawLine(QPointF(11, 5), QPointF(5, 11));
    }
    return pixmap;
}

QIcon statusIcon(bool good)
{
    QIcon icon;
    for (const int ratio : {1, 2, 3}) {
        for (const QIcon::Mode mode : {QIcon::Normal, QIcon::Selected}) // the same: not tinted
            icon.addPixmap(statusMark(good, ratio), mode);
    }
    return icon;
}

// Texts out of link files must not be taken for markup.
QString plainTip(const QString &text)
{
    return Qt::mightBeRichText(text) ? u"<span>%1</span>"_s.arg(text.toHtmlEscaped()) : text;
}

} // namespace

LinkReportModel::LinkReportModel(FileSystem &files, QObject *parent)
    : QAbstractTableModel(parent)
    , m_files(files)
    , m_good(statusIcon(true))
    , m_bad(statusIcon(false))
{
    connect(&m_turn, &QTimer::timeout, this, &LinkReportModel::filterOn);
}

void LinkReportModel::setLinks(LinkEntries links, LinkOrder order)
{
    beginResetModel();
    m_links = std::move(links);
    m_order = std::move(order);
    m_shown.clear();
    endResetModel();
    startFilter();
}

void LinkReportModel::setOrder(LinkOrder order)
{
    m_order = std::move(order);
    startFilter();
}

void LinkReportModel::setFilter(const LinkFilter &filter)
{
    m_filter = filter;
    startFilter();
}

void LinkReportModel::finishFilter()
{
    while (m_turn.isActive())
        filterOn();
}

void LinkReportModel::startFilter()
{
    m_passed.clear();
    m_next = 0;
    if (!isFiltered()) {
        m_passed = m_order;
        m_next = m_order.size();
    }
    m_turn.start(0);
    filterOn();
}

/// One turn. What was shown before stays until the last one.
void LinkReportModel::filterOn()
{
    const std::size_t end = std::min(m_order.size(), m_next + rowsPerTurn);
    for (; m_next < end; ++m_next) {
        if (m_filter.passes(m_links, m_order[m_next]))
            m_passed.push_back(m_order[m_next]);
    }
    if (m_next < m_order.size())
        return;
    m_turn.stop();
    beginResetModel();
    m_shown = std::exchange(m_passed, {});
    endResetModel();
}

QString LinkReportModel::nativeAddress(int row) const
{
    const QString product = address(row);
    try {
        return m_files.nativePath(product);
    } catch (const QvError &) {
        return product; // an address that can be no path here
    }
}

QString LinkReportModel::line(int row) const
{
    const quint32 link = m_shown[indexOf(row)];
    return QStringList{m_links.status(link), m_links.identifier(link), m_links.address(link)}.join(
        u'\t');
}

int LinkReportModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_shown.size());
}

int LinkReportModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : 3;
}

QVariant LinkReportModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return {};
    if (role == Qt::TextAlignmentRole)
        return QVariant(Qt::AlignLeft | Qt::AlignVCenter);
    if (role != Qt::DisplayRole)
        return {};
    return QList{text(Text::StatusColumn), text(Text::LinkIdColumn), text(Text::AddressColumn)}
        .value(section);
}

QVariant LinkReportModel::data(const QModelIndex &index, int role) const
{
    const quint32 link = m_shown[indexOf(index.row())];
    switch (role) {
    case Qt::DisplayRole:
        return shownText(link, index.column());
    case Qt::DecorationRole:
        if (index.column() == static_cast<int>(LinkColumn::Status))
            return m_links.isGood(link) ? m_good : m_bad;
        return {};
    case Qt::ToolTipRole:
        return toolTip(index.row(), index.column());
    default:
        return {};
    }
}

QString LinkReportModel::shownText(quint32 link, int column) const
{
    switch (static_cast<LinkColumn>(column)) {
    case LinkColumn::Status:
        return m_links.status(link);
    case LinkColumn::LinkID:
        return m_links.identifier(link);
    default:
        return m_links.address(link);
    }
}

QString LinkReportModel::toolTip(int row, int column) const
{
    if (column == static_cast<int>(LinkColumn::Address))
        return plainTip(nativeAddress(row));
    return plainTip(shownText(m_shown[indexOf(row)], column));
}
