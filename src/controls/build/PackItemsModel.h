#pragma once

#include "tools/pack/PackPlan.h"

#include <QAbstractTableModel>

/// The files of the next pack beside those of the last as a table.
class PackItemsModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Change, File, Size, Before, ColumnCount };

    using QAbstractTableModel::QAbstractTableModel;

    void setItems(const QList<PackItem> &items);
    /// Files that are the same are left out unless they are wanted.
    void showUnchanged(bool shown);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    void choose();

    QList<PackItem> m_items;
    QList<qsizetype> m_shown; ///< places in m_items
    bool m_showUnchanged = false;
};
