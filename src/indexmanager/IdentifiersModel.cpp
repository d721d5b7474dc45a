#include "indexmanager/IdentifiersModel.h"

#include "resources/PlainTip.h"

#include <QCoreApplication>
#include <QLocale>

using namespace Qt::StringLiterals;

namespace {

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
        return translated("The page that links lead to, the first that publishes it, is not there "
                          "or is empty: links to it are dead. Repair finds pages that moved.");
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
    : LongListModel(
        {tr("Identifier"), tr("State"), tr("Set"), tr("Published at"), tr("References")}, parent)
    , m_index(std::make_shared<IdentifierIndex>())
{
    for (const IdentifierState state : allIdentifierStates)
        m_marks.insert(state, linkMarkIcon(markFor(state)));
}

void IdentifiersModel::setIndex(std::shared_ptr<const IdentifierIndex> index, RowOrder order)
{
    clear();
    m_index = std::move(index);
    setOrder(std::move(order));
}

void IdentifiersModel::setFilter(const IdentifierFilter &filter)
{
    m_filter = filter;
    filterAgain();
}

bool IdentifiersModel::passes(quint32 identifier) const
{
    return m_filter.passes(*m_index, identifier);
}

QString IdentifiersModel::line(int row) const
{
    QStringList texts;
    for (int column = 0; column < identifierColumns; ++column)
        texts.append(shownText(numberAt(row), static_cast<IdentifierColumn>(column)));
    return texts.join(u'\t');
}

QVariant IdentifiersModel::data(const QModelIndex &index, int role) const
{
    const quint32 number = numberAt(index.row());
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
