#include "controls/pages/HitDelegate.h"

#include <QApplication>
#include <QPainter>
#include <QTextLayout>

using namespace Qt::StringLiterals;

namespace {

/// The text from where its hit can be seen, and the hit's place in it.
QString shownText(const QString &line, const QFontMetrics &metrics, int width, qsizetype &begin)
{
    qsizetype from = 0;
    while (from < begin && line[from].isSpace())
        ++from;
    if (metrics.horizontalAdvance(line.sliced(from, begin - from)) > width / 2) {
        while (from < begin
               && metrics.horizontalAdvance(line.sliced(from, begin - from)) > width / 3)
            from += qMax<qsizetype>(1, (begin - from) / 8);
        begin += 1 - from;
        return u'\u2026' + line.sliced(from);
    }
    begin -= from;
    return line.sliced(from);
}

} // namespace

void HitDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                        const QModelIndex &index) const
{
    const QVariant beginData = index.data(BeginRole);
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    const QString line = item.text;
    if (beginData.isNull()) {
        QStyledItemDelegate::paint(painter, option, index);
        return;
    }
    item.text.clear();
    const QStyle *style = item.widget != nullptr ? item.widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &item, painter, item.widget);
    const QRect area = item.rect.adjusted(4, 0, -4, 0);
    qsizetype begin = beginData.toLongLong();
    QTextLayout layout(shownText(line, item.fontMetrics, area.width(), begin), item.font);
    QTextLayout::FormatRange hit;
    hit.start = static_cast<int>(begin);
    hit.length = index.data(LengthRole).toInt();
    hit.format.setFontWeight(QFont::Bold);
    hit.format.setFontUnderline(true);
    layout.setFormats({hit});
    layout.beginLayout();
    const QTextLine drawn = layout.createLine();
    layout.endLayout();
    painter->save();
    painter->setClipRect(area);
    const bool chosen = item.state & QStyle::State_Selected;
    painter->setPen(item.palette.color(chosen ? QPalette::HighlightedText : QPalette::Text));
    layout.draw(painter, QPointF(area.left(), area.top() + (area.height() - drawn.height()) / 2));
    painter->restore();
}
