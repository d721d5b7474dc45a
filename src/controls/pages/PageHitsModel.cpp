#include "controls/pages/PageHitsModel.h"

#include <algorithm>

using namespace Qt::StringLiterals;

PageHitsModel::PageHitsModel(QObject *parent)
    : QAbstractTableModel(parent)
{
}

void PageHitsModel::start(bool replacing)
{
    beginResetModel();
    m_pages.clear();
    m_rows.clear();
    m_firstRows.clear();
    m_hits = 0;
    m_replacing = replacing;
    endResetModel();
}

void PageHitsModel::add(const QList<FoundPage> &pages)
{
    QList<Row> rows;
    for (const FoundPage &page : pages) {
        const qsizetype number = m_pages.size();
        m_firstRows.insert(page.path, m_rows.size() + rows.size());
        m_pages.append(page);
        m_hits += page.hits.size();
        for (qsizetype hit = 0; hit < page.hits.size(); ++hit)
            rows.append(Row{number, hit, m_replacing && page.refusal.isEmpty()});
        if (page.hits.isEmpty())
            rows.append(Row{number});
    }
    if (rows.isEmpty())
        return;
    const int first = rowCount();
    beginInsertRows({}, first, first + static_cast<int>(rows.size()) - 1);
    m_rows += rows;
    endInsertRows();
}

qsizetype PageHitsModel::checkedCount() const
{
    return std::count_if(m_rows.cbegin(), m_rows.cend(),
                         [](const Row &row) { return row.checked; });
}

const FoundPage &PageHitsModel::page(int row) const
{
    return m_pages.at(m_rows.at(row).page);
}

const PageHit *PageHitsModel::hit(int row) const
{
    const Row &at = m_rows.at(row);
    return at.hit < 0 ? nullptr : &m_pages.at(at.page).hits.at(at.hit);
}

QList<FoundPage> PageHitsModel::checkedPages() const
{
    QList<FoundPage> pages;
    qsizetype last = -1;
    for (const Row &row : m_rows) {
        if (row.checked && row.page != last)
            pages.append(m_pages.at(last = row.page));
    }
    return pages;
}

bool PageHitsModel::isChecked(const QString &path, qsizetype hit) const
{
    return m_rows.at(m_firstRows.value(path) + hit).checked;
}

bool PageHitsModel::canReplace(const Row &row) const
{
    return m_replacing && row.hit >= 0 && m_pages.at(row.page).refusal.isEmpty();
}

int PageHitsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int PageHitsModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_replacing ? ColumnCount : ColumnCount - 1;
}

QVariant PageHitsModel::data(const QModelIndex &index, int role) const
{
    const Row &row = m_rows.at(index.row());
    const PageHit *const found = hit(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return text(row, index.column());
    case Qt::ToolTipRole:
        return index.column() == Line ? QVariant() : text(row, index.column());
    case Qt::TextAlignmentRole:
        return index.column() == Line ? int(Qt::AlignRight | Qt::AlignVCenter) : QVariant();
    case Qt::CheckStateRole:
        if (index.column() == Page && canReplace(row))
            return row.checked ? Qt::Checked : Qt::Unchecked;
        return {};
    case BeginRole:
        return index.column() == Text && found != nullptr ? QVariant(found->begin) : QVariant();
    case LengthRole:
        return found != nullptr ? QVariant(found->length) : QVariant();
    default:
        return {};
    }
}

QString PageHitsModel::text(const Row &row, int column) const
{
    const FoundPage &page = m_pages.at(row.page);
    const PageHit *const found = row.hit < 0 ? nullptr : &page.hits.at(row.hit);
    switch (column) {
    case Page:
        return page.path;
    case Line:
        return found != nullptr ? QString::number(found->line) : QString();
    case Text:
        if (found != nullptr)
            return found->text;
        return page.problem.isEmpty() ? tr("The search took too long for this page.")
                                      : page.problem;
    case After:
        return after(row);
    default:
        return {};
    }
}

QString PageHitsModel::after(const Row &row) const
{
    if (row.hit < 0)
        return {};
    const FoundPage &page = m_pages.at(row.page);
    if (!page.refusal.isEmpty())
        return tr("Refused: %1").arg(page.refusal);
    const PageHit &found = page.hits.at(row.hit);
    QString line = found.text;
    line.replace(found.begin, found.length, found.after);
    line.replace(u'\n', u' ').replace(u'\r', u' ');
    return page.locked ? tr("(locked) %1").arg(line) : line;
}

bool PageHitsModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    Row &row = m_rows[index.row()];
    if (role != Qt::CheckStateRole || index.column() != Page || !canReplace(row))
        return false;
    row.checked = value.toInt() == Qt::Checked;
    Q_EMIT dataChanged(index, index, {role});
    Q_EMIT checksChanged();
    return true;
}

Qt::ItemFlags PageHitsModel::flags(const QModelIndex &index) const
{
    const Qt::ItemFlags usual = QAbstractTableModel::flags(index);
    return index.column() == Page && canReplace(m_rows.at(index.row()))
               ? usual | Qt::ItemIsUserCheckable
               : usual;
}

QVariant PageHitsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    const QStringList names{tr("Page"), tr("Line"), m_replacing ? tr("Before") : tr("Text"),
                            tr("After")};
    return names.value(section);
}
