#pragma once

#include <QStyledItemDelegate>

/// Draws a line of text with its hit in bold, and begins it so that the hit is in view.
class HitDelegate final : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;
    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
};
