#include "reports/LongListModel.h"

#include <algorithm>
#include <utility>

namespace {

constexpr size_t rowsPerTurn = 10'000; ///< a few milliseconds: the window stays alive

} // namespace

LongListModel::LongListModel(QStringList titles, QObject *parent)
    : QAbstractTableModel(parent)
    , m_titles(std::move(titles))
{
    connect(&m_turn, &QTimer::timeout, this, &LongListModel::filterOn);
}

void LongListModel::clear()
{
    m_turn.stop();
    beginResetModel();
    m_order.clear();
    m_shown.clear();
    endResetModel();
}

void LongListModel::setOrder(RowOrder order)
{
    m_order = std::move(order);
    filterAgain();
}

void LongListModel::filterAgain()
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

void LongListModel::finishFilter()
{
    while (m_turn.isActive())
        filterOn();
}

/// One turn. What was shown before stays until the last one.
void LongListModel::filterOn()
{
    const size_t end = std::min(m_order.size(), m_next + rowsPerTurn);
    for (; m_next < end; ++m_next) {
        if (passes(m_order[m_next]))
            m_passed.push_back(m_order[m_next]);
    }
    if (m_next < m_order.size())
        return;
    m_turn.stop();
    beginResetModel();
    m_shown = std::exchange(m_passed, {});
    endResetModel();
}

int LongListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_shown.size());
}

int LongListModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_titles.size());
}

QVariant LongListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return {};
    if (role == Qt::TextAlignmentRole)
        return QVariant(Qt::AlignLeft | Qt::AlignVCenter);
    return role == Qt::DisplayRole ? QVariant(m_titles.value(section)) : QVariant();
}
