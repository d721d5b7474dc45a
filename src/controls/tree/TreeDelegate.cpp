#include "controls/tree/TreeDelegate.h"

#include "controls/tree/ProjectTreeModel.h"
#include "resources/Icons.h"

#include <QApplication>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace {
QString countOf(const TreeBadge &badge)
{
    return badge.count > 1 ? QString::number(badge.count) : QString();
}

int gapOf(const QStyleOptionViewItem &option)
{
    return option.fontMetrics.horizontalAdvance(u' ');
}

int widthOf(const TreeBadge &badge, const QStyleOptionViewItem &option)
{
    return gapOf(option) + option.decorationSize.width()
           + option.fontMetrics.horizontalAdvance(countOf(badge));
}

TreeBadgeList badgesOf(const QModelIndex &index)
{
    return index.data(ProjectTreeModel::BadgesRole).value<TreeBadgeList>();
}

int widthOf(const TreeBadgeList &badges, const QStyleOptionViewItem &option)
{
    int width = 0;
    for (const TreeBadge &badge : badges)
        width += widthOf(badge, option);
    return width;
}

/// Draws the badges from the right edge on.
void drawBadges(QPainter &painter, const TreeBadgeList &badges, const QStyleOptionViewItem &option)
{
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    const auto group =
        option.state.testFlag(QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;
    painter.setFont(option.font);
    painter.setPen(isSelected ? selectedTextColour(option.palette, group)
                              : option.palette.color(group, QPalette::Text));
    QRect area = option.rect.adjusted(0, 0, -gapOf(option), 0);
    area.setLeft(area.right() + 1 - widthOf(badges, option));
    for (const TreeBadge &badge : badges) {
        QRect place(area.topLeft() + QPoint(gapOf(option), 0),
                    QSize(option.decorationSize.width(), area.height()));
        icon(badge.icon())
            .paint(&painter, place, Qt::AlignCenter, isSelected ? QIcon::Selected : QIcon::Normal);
        place.setLeft(place.right() + 1);
        place.setWidth(area.width());
        painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter, countOf(badge));
        area.setLeft(area.left() + widthOf(badge, option));
    }
}
} // namespace

void TreeDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                         const QModelIndex &index) const
{
    const TreeBadgeList badges = badgesOf(index);
    if (badges.isEmpty()) {
        QStyledItemDelegate::paint(painter, option, index);
        return;
    }
    QStyleOptionViewItem row = option;
    initStyleOption(&row, index);
    const QStyle *style = row.widget != nullptr ? row.widget->style() : QApplication::style();
    const QRect text = style->subElementRect(QStyle::SE_ItemViewItemText, &row, row.widget);
    const int room = row.rect.right() - text.left() - widthOf(badges, row) - 3 * gapOf(row);
    row.text = row.fontMetrics.elidedText(row.text, row.textElideMode, room);
    style->drawControl(QStyle::CE_ItemViewItem, &row, painter, row.widget);

    painter->save();
    drawBadges(*painter, badges, row);
    painter->restore();
}

QSize TreeDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    // Uniform rows take the first one's height: all have room for a badge.
    return QStyledItemDelegate::sizeHint(option, index)
        .expandedTo({0, option.decorationSize.height()});
}
