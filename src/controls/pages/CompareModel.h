#pragma once

#include "tools/TextDiff.h"

#include <QAbstractTableModel>
#include <QPalette>

/// The lines of two texts side by side, with a sign, a colour and words for what differs.
class CompareModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { LeftLine, LeftText, Sign, RightLine, RightText, ColumnCount };

    CompareModel(const QString &left, const QString &right, const QPalette &palette,
                 QObject *parent);

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role) const override;

    /// The first row of the next (1) or previous (-1) run of differing lines; -1 for none.
    [[nodiscard]] int difference(int from, int direction) const;
    [[nodiscard]] int differences() const; ///< runs of differing lines

private:
    [[nodiscard]] bool begins(int row) const;
    [[nodiscard]] QString text(const DiffRow &row, int column) const;
    [[nodiscard]] QVariant place(const DiffRow &row, int column, int role) const;
    [[nodiscard]] QString words(const DiffRow &row) const;

    QStringList m_left, m_right;
    QList<DiffRow> m_rows;
    QPalette m_palette;
};
