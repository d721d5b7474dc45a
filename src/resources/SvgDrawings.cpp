#include "resources/Drawings.h"

#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

using namespace Qt::StringLiterals;

namespace {

constexpr auto ending = ".svg"_L1;

QByteArray source(const QString &name)
{
    QFile file(name + ending);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

QImage drawn(const QString &name, QSize size, const QColor &colour)
{
    QSvgRenderer renderer(source(name).replace("currentColor", colour.name().toLatin1()));
    if (!renderer.isValid())
        return {};
    renderer.setAspectRatioMode(Qt::KeepAspectRatio);
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    renderer.render(&painter);
    return image;
}

bool isDrawing(const QString &name)
{
    return QFile::exists(name + ending);
}
