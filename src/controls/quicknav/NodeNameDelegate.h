#pragma once

#include <QStyledItemDelegate>

class NodeList;

/// Edits the name of a node in its row. A name that will not do is not taken: Enter keeps the row
/// open, leaving it keeps the old name.
class NodeNameDelegate final : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit NodeNameDelegate(NodeList &list);

private:
    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model,
                      const QModelIndex &index) const override;
    bool eventFilter(QObject *watched, QEvent *event) override;

    NodeList &m_list;
};
