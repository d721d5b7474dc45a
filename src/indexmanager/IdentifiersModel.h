#pragma once

#include "controls/links/LinkTable.h"
#include "indexmanager/IdentifierOrder.h"

#include <QAbstractTableModel>
#include <QHash>
#include <QTimer>

#include <memory>

/// What an author calls a state, why it is one, and its shape.
QString wordFor(IdentifierState state);
QString reasonFor(IdentifierState state);
LinkMark markFor(IdentifierState state);

/// The list of identifiers, made for very many: nothing is kept per row but a number, and rows are
/// looked through a piece at a time while there is a filter.
class IdentifiersModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    explicit IdentifiersModel(QObject *parent = nullptr);

    /// `order` is all of them; the filter stays.
    void setIndex(std::shared_ptr<const IdentifierIndex> index, IdentifierOrder order);
    void setOrder(IdentifierOrder order);
    void setFilter(const IdentifierFilter &filter);

    [[nodiscard]] const IdentifierIndex &index() const { return *m_index; }
    using QAbstractTableModel::index;
    [[nodiscard]] quint32 identifier(int row) const { return m_shown[static_cast<size_t>(row)]; }
    [[nodiscard]] bool isFiltered() const { return !m_filter.passesAll(); }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    [[nodiscard]] QString shownText(quint32 identifier, IdentifierColumn column) const;
    void startFilter();
    void filterOn();

    std::shared_ptr<const IdentifierIndex> m_index;
    QHash<IdentifierState, QIcon> m_marks;
    IdentifierOrder m_order; ///< all of them
    IdentifierOrder m_shown; ///< those that pass the filter
    IdentifierFilter m_filter;
    IdentifierOrder m_passed; ///< so far, while the filter is at work
    size_t m_next = 0;        ///< where in m_order it goes on
    QTimer m_turn;            ///< runs while it is at work
};
