#pragma once

#include <QStyledItemDelegate>

class QuickNavLinkTable;

/// Edits title and place of a link in its row; the places of the page are offered while typing.
class QuickNavLinkDelegate final : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit QuickNavLinkDelegate(QuickNavLinkTable &table);

private:
    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model,
                      const QModelIndex &index) const override;

    QuickNavLinkTable &m_table;
};
