#include "controls/pages/PageHitsModel.h"

#include "controls/pages/HitDelegate.h"
#include "resources/PlainTip.h"

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

Qt::CheckState PageHitsModel::checksOfAll() const
{
    const auto checked = checkedCount();
    const auto all = std::count_if(m_rows.cbegin(), m_rows.cend(),
                                   [this](const Row &row) { return canReplace(row); });
    return checked == 0 ? Qt::Unchecked : checked == all ? Qt::Checked : Qt::PartiallyChecked;
}

void PageHitsModel::checkAll(bool checked)
{
    if (m_rows.isEmpty())
        return;
    for (Row &row : m_rows)
        row.checked = checked && canReplace(row);
    Q_EMIT dataChanged(index(0, Page), index(rowCount() - 1, Page), {Qt::CheckStateRole});
    Q_EMIT checksChanged();
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
    switch (role) {
    case Qt::DisplayRole:
        return text(row, index.column());
    case Qt::ToolTipRole:
        return index.column() == Line ? QVariant() : plainTip(text(row, index.column()));
    case Qt::TextAlignmentRole:
        return index.column() == Line ? int(Qt::AlignRight | Qt::AlignVCenter) : QVariant();
    case Qt::CheckStateRole:
        if (index.column() == Page && canReplace(row))
            return row.checked ? Qt::Checked : Qt::Unchecked;
        return {};
    case HitDelegate::BeginRole:
    case HitDelegate::LengthRole:
        return place(row, index.column(), role);
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
        return m_replacing && page.locked ? tr("%1 (locked)").arg(page.path) : page.path;
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
    return line;
}

/// Where the hit, or what takes its place, stands in the text of a column.
QVariant PageHitsModel::place(const Row &row, int column, int role) const
{
    const FoundPage &page = m_pages.at(row.page);
    const bool isPlain = column == Text || (column == After && page.refusal.isEmpty());
    if (row.hit < 0 || !isPlain)
        return {};
    const PageHit &found = page.hits.at(row.hit);
    if (role == HitDelegate::LengthRole)
        return column == Text ? found.length : found.after.size();
    return found.begin;
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
