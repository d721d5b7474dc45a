#include "platform/widgets/MarksStyle.h"

#include <QPainter>
#include <QStyleOption>

namespace {

bool isMark(QStyle::PrimitiveElement element)
{
    return element == QStyle::PE_IndicatorCheckBox || element == QStyle::PE_IndicatorRadioButton
           || element == QStyle::PE_IndicatorItemViewItemCheck;
}

} // namespace

void MarksStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option,
                               QPainter *painter, const QWidget *widget) const
{
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    const QPalette &palette = option->palette;
    if (!isMark(element) || palette.color(QPalette::Base).lightness() > 127)
        return;
    QColor frame = palette.color(QPalette::Text);
    frame.setAlphaF(0.6F);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(frame);
    painter->setBrush(Qt::NoBrush);
    const QRectF mark = QRectF(option->rect).adjusted(1.5, 1.5, -1.5, -1.5);
    if (element == PE_IndicatorRadioButton)
        painter->drawEllipse(mark);
    else
        painter->drawRoundedRect(mark, 2, 2);
    painter->restore();
}
