#include "reports/LinkReportModel.h"

#include "platform/FileSystem.h"
#include "platform/QvError.h"
#include "resources/LinkMarks.h"
#include "resources/PlainTip.h"
#include "resources/Texts.h"

LinkReportModel::LinkReportModel(FileSystem &files, QObject *parent)
    : LongListModel({text(Text::StatusColumn), text(Text::LinkIdColumn), text(Text::AddressColumn)},
                    parent)
    , m_files(files)
    , m_good(linkMarkIcon(LinkMark::Good))
    , m_bad(linkMarkIcon(LinkMark::Bad))
{
}

void LinkReportModel::setLinks(LinkEntries links, RowOrder order)
{
    clear();
    m_links = std::move(links);
    setOrder(std::move(order));
}

void LinkReportModel::setFilter(const LinkFilter &filter)
{
    m_filter = filter;
    filterAgain();
}

bool LinkReportModel::passes(quint32 link) const
{
    return m_filter.passes(m_links, link);
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
    const quint32 link = numberAt(row);
    return QStringList{m_links.status(link), m_links.identifier(link), m_links.address(link)}.join(
        u'\t');
}

QVariant LinkReportModel::data(const QModelIndex &index, int role) const
{
    const quint32 link = numberAt(index.row());
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
    return plainTip(column == static_cast<int>(LinkColumn::Address)
                        ? nativeAddress(row)
                        : shownText(numberAt(row), column));
}
