#include "resources/Drawings.h"

#include <QFile>
#include <QPainter>

#include <array>

using namespace Qt::StringLiterals;

namespace {

// The widths in which cmake/PaintedPictures.cmake paints the drawings: those up to 256 icons, the
// others pictures. What is drawn in the colour of text is black there.
constexpr std::array widths{16, 20, 24, 32, 48, 64, 96, 128, 256, 521, 1042, 1563};

QString fileOf(const QString &name, int width, QLatin1StringView kind)
{
    return name + u'.' + QString::number(width) + kind + u".png"_s;
}

constexpr auto inColours = ""_L1;
constexpr auto inTextColour = "t"_L1;

/// The narrowest one that is wide enough, else the widest; empty when there is none.
QString paintedFile(const QString &name, int width, QLatin1StringView kind)
{
    QString best;
    for (const int each : widths) {
        const QString file = fileOf(name, each, kind);
        if (QFile::exists(file))
            best = file;
        if (!best.isEmpty() && each >= width)
            break;
    }
    return best;
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
    const QString inColour = paintedFile(name, size.width(), inColours);
    const bool isTinted = inColour.isEmpty();
    const QString file = isTinted ? paintedFile(name, size.width(), inTextColour) : inColour;
    if (file.isEmpty())
        return {};
    QImage picture = QImage(file).convertToFormat(QImage::Format_ARGB32_Premultiplied);
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
    return !paintedFile(name, 0, inColours).isEmpty()
           || !paintedFile(name, 0, inTextColour).isEmpty();
}
