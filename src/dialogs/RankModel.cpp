#include "dialogs/RankModel.h"

#include "catalogue/ProjectCatalogue.h"
#include "resources/Texts.h"

#include <QBrush>
#include <QGuiApplication>
#include <QPalette>
#include <QTextDocument>

using namespace Qt::StringLiterals;

RankModel::Row RankModel::rowOf(const QString &entry)
{
    const qsizetype mark = entry.lastIndexOf(u'#');
    Row row{entry.first(mark < 0 ? entry.size() : mark).trimmed(),
            mark < 0 ? QString() : entry.sliced(mark + 1)};
    if (row.rank.trimmed().isEmpty())
        row.rank = defaultRank;
    return row;
}

void RankModel::fill(const QStringList &data)
{
    beginResetModel();
    m_rows.clear();
    for (const QString &entry : data) {
        if (const Row row = rowOf(entry); !entry.isEmpty() && row.name != favourites)
            m_rows.append(row);
    }
    endResetModel();
}

QStringList RankModel::entries(SystemLocale &locale) const
{
    QStringList all;
    for (const Row &row : m_rows) {
        if (row.name.isEmpty())
            continue;
        const std::optional<int> rank = rankIn(row.rank.trimmed(), locale);
        all.append(row.name + u'#' + (rank ? QString::number(*rank) : defaultRank));
    }
    return all;
}

QString RankModel::name(int row) const
{
    return m_rows.at(row).name;
}

int RankModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int RankModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant RankModel::data(const QModelIndex &index, int role) const
{
    const Row &row = m_rows.at(index.row());
    const bool isName = index.column() == Name;
    switch (role) {
    case Qt::DisplayRole:
        return isName ? row.name + u' ' : row.rank;
    case Qt::ToolTipRole:
        return isName ? Qt::convertFromPlainText(row.name) : QVariant();
    case Qt::BackgroundRole:
        return isName ? QGuiApplication::palette().button() : QVariant();
    case Qt::ForegroundRole: // not greyed out although nothing can be done there
        return isName ? QGuiApplication::palette().buttonText() : QVariant();
    case Qt::AccessibleTextRole:
        return isName ? row.name : tr("%1, rank %2").arg(row.name, row.rank);
    default:
        return {};
    }
}

/// Only for screen readers: what is seen in the header are the boxes over it.
QVariant RankModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::AccessibleTextRole)
        return {};
    return text(section == Name ? Text::BookSetNameHeader : Text::RankHeader);
}

Qt::ItemFlags RankModel::flags(const QModelIndex &index) const
{
    return index.column() == Rank ? Qt::ItemIsEnabled | Qt::ItemIsSelectable
                                  : Qt::ItemFlags(Qt::NoItemFlags);
}

void RankModel::setRank(int row, const QString &rank)
{
    m_rows[row].rank = rank;
    const QModelIndex cell = index(row, Rank);
    Q_EMIT dataChanged(cell, cell);
}
