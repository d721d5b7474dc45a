#include "controls/build/PackItemsModel.h"

#include <QLocale>

namespace {

QString worded(PackItem::Change change)
{
    using Model = PackItemsModel;
    switch (change) {
    case PackItem::Change::Added:
        return Model::tr("New");
    case PackItem::Change::Changed:
        return Model::tr("Changed");
    case PackItem::Change::Removed:
        return Model::tr("Removed");
    case PackItem::Change::Unchanged:
        break;
    }
    return Model::tr("Unchanged");
}

QString shownSize(qint64 bytes)
{
    return QLocale().formattedDataSize(bytes);
}

QString text(const PackItem &item, int column)
{
    using Change = PackItem::Change;
    switch (column) {
    case PackItemsModel::Change:
        return worded(item.change);
    case PackItemsModel::File:
        return item.path;
    case PackItemsModel::Size:
        return item.change == Change::Removed ? QString() : shownSize(item.size);
    case PackItemsModel::Before:
        return item.change == Change::Added ? QString() : shownSize(item.before);
    default:
        return {};
    }
}

} // namespace

void PackItemsModel::setItems(const QList<PackItem> &items)
{
    beginResetModel();
    m_items = items;
    choose();
    endResetModel();
}

void PackItemsModel::showUnchanged(bool shown)
{
    beginResetModel();
    m_showUnchanged = shown;
    choose();
    endResetModel();
}

void PackItemsModel::choose()
{
    m_shown.clear();
    for (qsizetype i = 0; i < m_items.size(); ++i) {
        if (m_showUnchanged || m_items.at(i).change != PackItem::Change::Unchanged)
            m_shown.append(i);
    }
}

int PackItemsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_shown.size());
}

int PackItemsModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant PackItemsModel::data(const QModelIndex &index, int role) const
{
    const PackItem &item = m_items.at(m_shown.at(index.row()));
    if (role == Qt::DisplayRole)
        return text(item, index.column());
    if (role == Qt::ToolTipRole && index.column() == File)
        return item.path;
    if (role == Qt::TextAlignmentRole && index.column() >= Size)
        return int(Qt::AlignRight | Qt::AlignVCenter);
    return {};
}

QVariant PackItemsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role == Qt::TextAlignmentRole && section >= Size)
        return int(Qt::AlignRight | Qt::AlignVCenter);
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    const QStringList heads{tr("Change"), tr("File"), tr("Size"), tr("In the last pack")};
    return heads.at(section);
}
