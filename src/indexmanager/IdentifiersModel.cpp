#include "indexmanager/IdentifiersModel.h"

#include "controls/parts/PlainTip.h"

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr size_t rowsPerTurn = 10'000; ///< a few milliseconds: the window stays alive

constexpr std::array allStates{IdentifierState::Good, IdentifierState::PageMissing,
                               IdentifierState::Conflict, IdentifierState::NotPublished,
                               IdentifierState::Unused};

QString translated(const char *text)
{
    return QCoreApplication::translate("IdentifiersModel", text);
}

} // namespace

QString wordFor(IdentifierState state)
{
    switch (state) {
    case IdentifierState::Good:
        return translated("Good");
    case IdentifierState::PageMissing:
        return translated("Page missing");
    case IdentifierState::Conflict:
        return translated("Published twice");
    case IdentifierState::NotPublished:
        return translated("Not published");
    case IdentifierState::Unused:
        return translated("Never used");
    }
    return {};
}

QString reasonFor(IdentifierState state)
{
    switch (state) {
    case IdentifierState::Good:
        return translated("One place publishes it, and pages link to it.");
    case IdentifierState::PageMissing:
        return translated("The page that publishes it is not there, or is empty: links to it are "
                          "dead. Repair finds pages that moved.");
    case IdentifierState::Conflict:
        return translated("Different places publish it. Links lead to the first of them.");
    case IdentifierState::NotPublished:
        return translated("Pages ask for it, but no set publishes it: these links are dead.");
    case IdentifierState::Unused:
        return translated("It is published, but no page asks for it.");
    }
    return {};
}

LinkMark markFor(IdentifierState state)
{
    switch (state) {
    case IdentifierState::Good:
        return LinkMark::Good;
    case IdentifierState::Conflict:
        return LinkMark::Warning;
    case IdentifierState::Unused:
        return LinkMark::Unchecked;
    case IdentifierState::PageMissing:
    case IdentifierState::NotPublished:
        break;
    }
    return LinkMark::Bad;
}

IdentifiersModel::IdentifiersModel(QObject *parent)
    : QAbstractTableModel(parent)
    , m_index(std::make_shared<IdentifierIndex>())
{
    for (const IdentifierState state : allStates)
        m_marks.insert(state, linkMarkIcon(markFor(state)));
    connect(&m_turn, &QTimer::timeout, this, &IdentifiersModel::filterOn);
}

void IdentifiersModel::setIndex(std::shared_ptr<const IdentifierIndex> index, IdentifierOrder order)
{
    beginResetModel();
    m_index = std::move(index);
    m_order = std::move(order);
    m_shown.clear();
    endResetModel();
    startFilter();
}

void IdentifiersModel::setOrder(IdentifierOrder order)
{
    m_order = std::move(order);
    startFilter();
}

void IdentifiersModel::setFilter(const IdentifierFilter &filter)
{
    m_filter = filter;
    startFilter();
}

void IdentifiersModel::startFilter()
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
void IdentifiersModel::filterOn()
{
    const size_t end = std::min(m_order.size(), m_next + rowsPerTurn);
    for (; m_next < end; ++m_next) {
        if (m_filter.passes(*m_index, m_order[m_next]))
            m_passed.push_back(m_order[m_next]);
    }
    if (m_next < m_order.size())
        return;
    m_turn.stop();
    beginResetModel();
    m_shown = std::exchange(m_passed, {});
    endResetModel();
}

int IdentifiersModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_shown.size());
}

int IdentifiersModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : identifierColumns;
}

QVariant IdentifiersModel::data(const QModelIndex &index, int role) const
{
    const quint32 number = identifier(index.row());
    const auto column = static_cast<IdentifierColumn>(index.column());
    const bool isState = column == IdentifierColumn::State;
    switch (role) {
    case Qt::DisplayRole:
        return shownText(number, column);
    case Qt::DecorationRole:
        return isState ? QVariant(m_marks.value(m_index->state(number))) : QVariant();
    case Qt::ToolTipRole:
        return plainTip(isState ? reasonFor(m_index->state(number)) : shownText(number, column));
    case Qt::TextAlignmentRole:
        return column == IdentifierColumn::References ? QVariant(Qt::AlignRight | Qt::AlignVCenter)
                                                      : QVariant();
    default:
        return {};
    }
}

QString IdentifiersModel::shownText(quint32 identifier, IdentifierColumn column) const
{
    switch (column) {
    case IdentifierColumn::Identifier:
        return m_index->text(identifier).isEmpty() ? tr("(no identifier)")
                                                   : m_index->text(identifier).toString();
    case IdentifierColumn::State:
        return wordFor(m_index->state(identifier));
    case IdentifierColumn::Set:
        return publishingSet(*m_index, identifier);
    case IdentifierColumn::Place:
        return publishedPlace(*m_index, identifier);
    case IdentifierColumn::References:
        return QLocale().toString(m_index->references(identifier).size());
    }
    return {};
}

QVariant IdentifiersModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return {};
    if (role == Qt::TextAlignmentRole)
        return QVariant(Qt::AlignLeft | Qt::AlignVCenter);
    if (role != Qt::DisplayRole)
        return {};
    return QStringList{tr("Identifier"), tr("State"), tr("Set"), tr("Published at"),
                       tr("References")}
        .value(section);
}
