#include "controls/parts/StatusLight.h"

#include "catalogue/StatusIndicators.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 goodColour = 3046706;
constexpr qint64 warningsColour = 16361509;
constexpr qint64 failedColour = 12986408;
constexpr int shapeSize = 16; // device-independent pixels

QString wordFor(std::optional<qint64> colour)
{
    if (!colour)
        return StatusLight::tr("Not known");
    switch (*colour) {
    case neutralColour:
        return StatusLight::tr("Must run");
    case goodColour:
        return StatusLight::tr("Good");
    case warningsColour:
        return StatusLight::tr("Finished with warnings");
    case failedColour:
        return StatusLight::tr("Failed");
    default:
        return StatusLight::tr("Set by another tool (%1)").arg(*colour);
    }
}

// Each state has a shape of its own, so that nobody has to tell the colours apart.
void drawShape(QPainter &painter, std::optional<qint64> colour)
{
    const QRectF box(1.5, 1.5, shapeSize - 3, shapeSize - 3);
    if (!colour) {
        painter.drawText(QRect(0, 0, shapeSize, shapeSize), Qt::AlignCenter, u"?"_s);
    } else if (*colour == warningsColour) {
        painter.drawPolygon(
            QPolygonF{{box.center().x(), box.top()}, box.bottomRight(), box.bottomLeft()});
    } else if (*colour == failedColour) {
        painter.drawRect(box);
        painter.drawLine(box.topLeft(), box.bottomRight());
        painter.drawLine(box.topRight(), box.bottomLeft());
    } else if (*colour == goodColour || *colour == neutralColour) {
        painter.drawEllipse(box);
    } else {
        painter.drawPolygon(QPolygonF{{box.center().x(), box.top()},
                                      {box.right(), box.center().y()},
                                      {box.center().x(), box.bottom()},
                                      {box.left(), box.center().y()}});
    }
}

QPixmap shapeFor(std::optional<qint64> colour, const QWidget &on)
{
    const qreal ratio = on.devicePixelRatioF();
    QPixmap pixmap(QSize(shapeSize, shapeSize) * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);

    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(on.palette().color(QPalette::WindowText), 1.5));
    if (colour && *colour != neutralColour)
        painter.setBrush(QColor::fromRgb(static_cast<QRgb>(*colour)));
    drawShape(painter, colour);
    return pixmap;
}

} // namespace

StatusLight::StatusLight(const QString &subject, QWidget *parent)
    : QWidget(parent)
    , m_subject(subject)
    , m_shape(new QLabel(this))
    , m_word(new QLabel(this))
{
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(m_shape);
    layout->addWidget(m_word, 1);
    setColour(std::nullopt);
}

void StatusLight::setColour(std::optional<qint64> colour)
{
    m_shape->setPixmap(shapeFor(colour, *this));
    m_word->setText(wordFor(colour));
    setAccessibleName(m_subject + u": "_s + m_word->text());
}

QString StatusLight::word() const
{
    return m_word->text();
}
