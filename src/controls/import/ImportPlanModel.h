#pragma once

#include "tools/import/ImportPlan.h"

#include <QAbstractTableModel>
#include <QStyledItemDelegate>

class FileSystem;

/// The items of an import plan as a table: a check mark each, what they are, and what happens to
/// those whose name is taken, which can be edited.
class ImportPlanModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Title, File, Kind, Encoding, Size, InBook, ColumnCount };
    static constexpr int SortRole = Qt::UserRole;
    static constexpr int ActionsRole = Qt::UserRole + 1; ///< the actions offered, as texts

    ImportPlanModel(FileSystem &files, ImportPlan plan, QObject *parent = nullptr);

    [[nodiscard]] const ImportPlan &plan() const { return m_plan; }
    /// Decides all conflicts alike, as far as each offers the action.
    void decideAll(ImportAction action);
    /// Takes these rows or leaves them out; one that cannot be added stays out.
    void check(const QList<int> &rows, bool checked);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    /// Qt::CheckStateRole in Title; in InBook, Qt::EditRole takes the place among the actions.
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;

Q_SIGNALS:
    void decided(); ///< something was checked, unchecked or decided

private:
    QVariant shown(const ImportItem &item, int column) const;
    QVariant sortKey(const ImportItem &item, int column) const;
    void changed(int firstRow, int lastRow);

    FileSystem &m_files;
    ImportPlan m_plan;
};

/// Edits the InBook column with a box of the actions offered. Names are cut in their middle, what
/// this column says at its end.
class ImportActionDelegate final : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model,
                      const QModelIndex &index) const override;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override;
};
