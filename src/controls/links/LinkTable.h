#pragma once

#include <QAbstractTableModel>
#include <QIcon>
#include <QTreeView>

#include <functional>

class QSortFilterProxyModel;

/// How good a row is: a shape of its own each, so that nobody has to tell the colours apart.
enum class LinkMark { None, Good, Warning, Bad, Unchecked };
QIcon linkMarkIcon(LinkMark mark);

/// One row of a list of links. The second text is a line number; the mark stands at the last one.
struct LinkTableRow
{
    QStringList texts;
    LinkMark mark = LinkMark::None;
    QString tip = {};
};

/// Links as a table, in the order given.
class LinkTableModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    explicit LinkTableModel(QStringList headers, QObject *parent = nullptr);
    void setRows(QList<LinkTableRow> rows);
    [[nodiscard]] const QList<LinkTableRow> &rows() const { return m_rows; }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    QStringList m_headers;
    QList<LinkTableRow> m_rows;
};

/// Shows such a table: sorted by clicking a column's title, filtered by a text, rows copied with
/// Ctrl+C. Long texts are elided in their middle.
class LinkTable final : public QTreeView
{
    Q_OBJECT

public:
    /// `letters` are the widths of the columns but the last.
    LinkTable(QStringList headers, const QList<int> &letters, QWidget *parent = nullptr);

    void setRows(QList<LinkTableRow> rows); ///< the current row stays where it was
    void setFilter(const QString &text);
    /// Place of the current row in what `setRows` got; -1 when there is none.
    [[nodiscard]] int currentRow() const;
    [[nodiscard]] int shownCount() const;
    void copyRows() const;
    /// One more line in the context menu; `run` is called when there is a current row.
    void addCommand(const QString &text, const QKeySequence &keys,
                    const std::function<void()> &run);

Q_SIGNALS:
    void rowActivated(int row); ///< double click or Enter

private:
    [[nodiscard]] int rowOf(const QModelIndex &index) const;

    LinkTableModel *m_model;
    QSortFilterProxyModel *m_sorted;
};
