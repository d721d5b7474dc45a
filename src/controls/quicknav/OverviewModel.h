#pragma once

#include "controls/quicknav/QuickNavContents.h"

#include <QAbstractTableModel>

/// The quick navigation as a table: topics down, the names of categories across, and in each cell
/// how many links the topic's category of that name has. Views and groups without topics have a row
/// too, so that they are not overlooked.
class OverviewModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    struct Cell
    {
        QString category; ///< id; "" when the topic has no category of that name
        int links = 0, dead = 0;
    };

    explicit OverviewModel(QuickNavContents &contents, QObject *parent = nullptr);

    void rebuild();
    [[nodiscard]] const Cell &cell(const QModelIndex &index) const;
    /// The topic of a row, or the view or group that has none.
    [[nodiscard]] QuickNavRef node(int row) const;
    [[nodiscard]] bool isTopic(int row) const;
    [[nodiscard]] QString columnName(int column) const { return m_columns.at(column); }
    [[nodiscard]] QString rowName(int row) const; ///< "view > group > topic"
    [[nodiscard]] bool hasGaps(int row) const;    ///< a category is missing or has no links
    [[nodiscard]] bool hasDead(int row) const;

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role) const override;

private:
    struct Row
    {
        QuickNavRef node;
        QStringList names;
        QList<Cell> cells; ///< one for each column
    };
    void addRows(const QuickNavNode &node, int level, const QStringList &above);
    void addColumn(const QString &name);
    void fillCells(Row &row, const QuickNavNode &topic) const;
    [[nodiscard]] QString inWords(const QModelIndex &index) const;
    [[nodiscard]] QVariant look(const QModelIndex &index, int role) const;

    QuickNavContents &m_contents;
    QStringList m_columns;
    QHash<QString, qsizetype> m_columnOf; ///< by folded name
    QList<Row> m_rows;
};
