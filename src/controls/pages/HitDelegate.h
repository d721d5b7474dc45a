#pragma once

#include <QStyledItemDelegate>

/// Draws a line of text with its hit, or what differs in it, in bold, and begins it so that this is
/// in view. Where the model says nothing about a hit it draws the text as usual.
class HitDelegate final : public QStyledItemDelegate
{
    Q_OBJECT

public:
    enum Role { BeginRole = Qt::UserRole, LengthRole }; ///< of the hit in the text

    using QStyledItemDelegate::QStyledItemDelegate;
    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
};
