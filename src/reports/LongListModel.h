#pragma once

#include "reports/RowOrder.h"

#include <QAbstractTableModel>
#include <QTimer>

/// A list made for very many rows: nothing is kept per row but its number, and the rows are looked
/// through a piece at a time, only while there is a filter. A new order or filter resets the model,
/// at once for short lists.
class LongListModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    /// `order` is all rows.
    void setOrder(RowOrder order);
    /// Looks through the rest of a long list at once.
    void finishFilter();

    [[nodiscard]] virtual bool isFiltered() const = 0;
    [[nodiscard]] const RowOrder &shown() const { return m_shown; }
    [[nodiscard]] quint32 numberAt(int row) const { return m_shown[static_cast<size_t>(row)]; }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

protected:
    explicit LongListModel(QStringList titles, QObject *parent);
    /// Nothing is shown while the contents behind the numbers change.
    void clear();
    /// Looks through the rows for those that pass.
    void filterAgain();
    [[nodiscard]] virtual bool passes(quint32 number) const = 0;

private:
    void filterOn();

    QStringList m_titles;
    RowOrder m_order;  ///< all of them
    RowOrder m_shown;  ///< those that pass the filter
    RowOrder m_passed; ///< so far, while the filter is at work
    size_t m_next = 0; ///< where in m_order it goes on
    QTimer m_turn;     ///< runs while it is at work
};
