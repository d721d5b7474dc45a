#pragma once

#include "catalogue/RankRule.h"

#include <QAbstractTableModel>

class SystemLocale;

/// The book sets of the catalogue with their ranks as the author left them, valid or not.
class RankModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Name, Rank, ColumnCount };

    using QAbstractTableModel::QAbstractTableModel;

    /// Takes "<name>#<rank>" entries, the rank behind the last "#"; empty ones and "My Favorites"
    /// are no book sets. An entry without a rank has the default one.
    void fill(const QStringList &data);
    /// "<name>#<rank>" of every named row in order; a rank that is none is the default one.
    [[nodiscard]] QStringList entries(SystemLocale &locale) const;
    [[nodiscard]] QString name(int row) const;
    void setRank(int row, const QString &rank);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    /// The names are fixed: they can be neither chosen nor changed.
    Qt::ItemFlags flags(const QModelIndex &index) const override;

private:
    struct Row
    {
        QString name;
        QString rank;
    };
    static Row rowOf(const QString &entry);

    QList<Row> m_rows;
};
