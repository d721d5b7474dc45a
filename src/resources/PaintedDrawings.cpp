#include "resources/Drawings.h"

#include <QFile>
#include <QPainter>

#include <array>

using namespace Qt::StringLiterals;

namespace {

// The widths in which the build paints each drawing; those in the colour of text are black.
constexpr std::array widths{16, 20, 24, 32, 48, 64, 96, 128, 256, 521, 1042, 1563};

QString fileOf(const QString &name, int width, QLatin1StringView kind)
{
    return name + u'.' + QString::number(width) + kind + u".png"_s;
}

constexpr auto inColours = ""_L1;
constexpr auto inTextColour = "t"_L1;

/// The narrowest one that is wide enough, else the widest.
QImage painted(const QString &name, int width, QLatin1StringView kind)
{
    QString best;
    for (const int each : widths) {
        const QString file = fileOf(name, each, kind);
        if (QFile::exists(file))
            best = file;
        if (!best.isEmpty() && each >= width)
            break;
    }
    return best.isEmpty() ? QImage() : QImage(best);
}

void tint(QImage &image, const QColor &colour)
{
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), colour);
}

} // namespace

QImage drawn(const QString &name, QSize size, const QColor &colour)
{
    QImage picture = painted(name, size.width(), inColours);
    const bool isTinted = picture.isNull();
    if (isTinted)
        picture = painted(name, size.width(), inTextColour);
    if (picture.isNull())
        return {};
    picture = picture.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    if (isTinted)
        tint(picture, QColor(colour.rgb()));
    const QImage scaled = picture.scaled(size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.drawImage(
        QRect(QPoint((size.width() - scaled.width()) / 2, (size.height() - scaled.height()) / 2),
              scaled.size()),
        scaled);
    return image;
}

bool isDrawing(const QString &name)
{
    return !painted(name, 0, inColours).isNull() || !painted(name, 0, inTextColour).isNull();
}
