#pragma once

#include "indexmanager/IdentifierOrder.h"
#include "reports/LongListModel.h"
#include "resources/LinkMarks.h"

#include <QHash>
#include <QIcon>

#include <memory>

/// What an author calls a state, why it is one, and its shape.
QString wordFor(IdentifierState state);
QString reasonFor(IdentifierState state);
LinkMark markFor(IdentifierState state);

/// The list of identifiers.
class IdentifiersModel final : public LongListModel
{
    Q_OBJECT

public:
    explicit IdentifiersModel(QObject *parent = nullptr);

    /// `order` is all of them; the filter stays.
    void setIndex(std::shared_ptr<const IdentifierIndex> index, RowOrder order);
    void setFilter(const IdentifierFilter &filter);

    [[nodiscard]] bool isFiltered() const override { return !m_filter.passesAll(); }
    [[nodiscard]] const IdentifierIndex &index() const { return *m_index; }
    using QAbstractTableModel::index;
    [[nodiscard]] QString textAt(int row) const { return m_index->text(numberAt(row)).toString(); }
    /// All columns of a row, separated by tabs.
    [[nodiscard]] QString line(int row) const;

    QVariant data(const QModelIndex &index, int role) const override;

private:
    [[nodiscard]] bool passes(quint32 identifier) const override;
    [[nodiscard]] QString shownText(quint32 identifier, IdentifierColumn column) const;

    std::shared_ptr<const IdentifierIndex> m_index;
    QHash<IdentifierState, QIcon> m_marks;
    IdentifierFilter m_filter;
};
