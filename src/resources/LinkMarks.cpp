#include "resources/LinkMarks.h"

#include <QPainter>
#include <QPixmap>

namespace {

void drawMark(QPainter &painter, LinkMark mark)
{
    const QPen white(Qt::white, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    painter.setPen(Qt::NoPen);
    switch (mark) {
    case LinkMark::Good:
        painter.setBrush(QColor(46, 125, 50));
        painter.drawEllipse(QRectF(1, 1, 14, 14));
        painter.setPen(white);
        painter.drawPolyline(QPolygonF{{4.5, 8.5}, {7, 11}, {11.5, 5.5}});
        break;
    case LinkMark::Warning:
        painter.setBrush(QColor(178, 95, 0));
        painter.drawPolygon(QPolygonF{{8, 1}, {15.5, 15}, {0.5, 15}});
        painter.setPen(white);
        painter.drawLine(QPointF(8, 6), QPointF(8, 10));
        painter.drawPoint(QPointF(8, 12.5));
        break;
    case LinkMark::Bad:
        painter.setBrush(QColor(198, 40, 40));
        painter.drawRoundedRect(QRectF(1, 1, 14, 14), 2, 2);
        painter.setPen(white);
        painter.drawLine(QPointF(5, 5), QPointF(11, 11));
        painter.drawLine(QPointF(11, 5), QPointF(5, 11));
        break;
    case LinkMark::Unchecked:
        painter.setBrush(QColor(105, 105, 120));
        painter.drawPolygon(QPolygonF{{8, 1}, {15, 8}, {8, 15}, {1, 8}});
        break;
    case LinkMark::None:
        break;
    }
}

QPixmap markAt(LinkMark mark, int ratio)
{
    QPixmap pixmap(QSize(linkMarkSize, linkMarkSize) * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    drawMark(painter, mark);
    return pixmap;
}

} // namespace

QIcon linkMarkIcon(LinkMark mark)
{
    QIcon icon;
    for (const int ratio : {1, 2, 3}) {
        for (const QIcon::Mode mode : {QIcon::Normal, QIcon::Selected}) // the same: not tinted
            icon.addPixmap(markAt(mark, ratio), mode);
    }
    return icon;
}
