#include "resources/Icons.h"

#include "resources/Drawings.h"

#include <QApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPixmapCache>
#include <QProxyStyle>

using namespace Qt::StringLiterals;

// A static library's resources are found only when they are asked for by name; the macro must not
// stand in a namespace.
static void initPictures()
{
    Q_INIT_RESOURCE(pictures);
}

namespace {

bool marksRowsLightly()
{
    const QStyle *style = QApplication::style();
    if (const auto *proxy = qobject_cast<const QProxyStyle *>(style))
        style = proxy->baseStyle();
    return style->name().compare("windowsvista"_L1, Qt::CaseInsensitive) == 0;
}

QColor textColour(QIcon::Mode mode)
{
    const QPalette palette = QApplication::palette();
    switch (mode) {
    case QIcon::Disabled:
        return palette.color(QPalette::Disabled, QPalette::WindowText);
    case QIcon::Selected:
        return selectedTextColour(palette);
    default:
        return palette.color(QPalette::Active, QPalette::WindowText);
    }
}

/// Draws one drawing, with `currentColor` standing for the palette's text colour of the moment.
class DrawnIcon final : public QIconEngine
{
public:
    explicit DrawnIcon(QString path)
        : m_path(std::move(path))
    {
    }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        const qreal ratio = painter->device()->devicePixelRatio();
        painter->drawPixmap(rect, scaledPixmap(rect.size() * ratio, mode, state, ratio));
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State) override
    {
        const QColor colour = textColour(mode);
        const QString key = u"qv %1 %2 %3x%4"_s.arg(m_path, colour.name(QColor::HexArgb))
                                .arg(size.width())
                                .arg(size.height());
        QPixmap result;
        if (!QPixmapCache::find(key, &result)) {
            result = render(size, colour);
            QPixmapCache::insert(key, result);
        }
        return result;
    }

    QIconEngine *clone() const override { return new DrawnIcon(m_path); }
    QString key() const override { return u"qv-drawn"_s; }

private:
    QPixmap render(const QSize &size, const QColor &colour) const
    {
        QPixmap result(size);
        result.fill(Qt::transparent);
        QPainter painter(&result);
        painter.setOpacity(colour.alphaF());
        painter.drawImage(0, 0, drawn(m_path, size, colour));
        return result;
    }

    QString m_path;
};

} // namespace

QIcon icon(QLatin1StringView name)
{
    initPictures();
    const QString path = u":/icons/"_s + name;
    return isDrawing(path) ? QIcon(new DrawnIcon(path)) : QIcon();
}

QPixmap picture(QLatin1StringView name, QSize size, qreal devicePixelRatio)
{
    initPictures();
    const QImage image = drawn(u":/pictures/"_s + name, size * devicePixelRatio, Qt::black);
    if (image.isNull())
        return {};
    QPixmap result(image.size());
    result.fill(Qt::white);
    QPainter(&result).drawImage(0, 0, image);
    result.setDevicePixelRatio(devicePixelRatio);
    return result;
}

QColor selectedTextColour(const QPalette &palette, QPalette::ColorGroup group)
{
    return marksRowsLightly() ? palette.color(QPalette::Active, QPalette::Text)
                              : palette.color(group, QPalette::HighlightedText);
}
