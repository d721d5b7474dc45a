#include "controls/pages/MissingPictures.h"

#include "controls/pages/PreviewDocument.h"

#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPalette>
#include <QTextBlock>
#include <QTextCursor>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {

constexpr auto boxName = "missing:"_L1;

QImage box(const QColor &colour)
{
    QImage image(24, 24, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setPen(colour);
    painter.drawRect(1, 1, 21, 21);
    painter.drawLine(7, 7, 16, 16);
    painter.drawLine(16, 7, 7, 16);
    return image;
}

struct MissingPicture
{
    int position;
    QTextImageFormat format;
};

/// The last comes first, so that replacing one leaves the places of the others as they are.
QList<MissingPicture> missingIn(const PreviewDocument &page)
{
    QList<MissingPicture> missing;
    for (QTextBlock block = page.begin(); block.isValid(); block = block.next()) {
        for (auto at = block.begin(); !at.atEnd(); ++at) {
            const QTextFragment fragment = at.fragment();
            const QTextImageFormat format = fragment.charFormat().toImageFormat();
            if (!format.isValid() || !page.isMissing(format.name()))
                continue;
            for (int i = 0; i < fragment.length(); ++i) // several of the same one
                missing.prepend({fragment.position() + i, format});
        }
    }
    return missing;
}

void replace(const MissingPicture &picture, const QColor &colour, PreviewDocument &page)
{
    QTextImageFormat shown = picture.format;
    shown.setName(boxName);
    shown.clearProperty(QTextFormat::ImageWidth);
    shown.clearProperty(QTextFormat::ImageHeight);
    QTextCharFormat text = picture.format;
    text.setObjectType(QTextFormat::NoObject);
    text.clearProperty(QTextFormat::ImageName);
    text.setForeground(colour);
    QTextCursor cursor(&page);
    cursor.setPosition(picture.position);
    cursor.deleteChar();
    cursor.insertImage(shown);
    const QString told = picture.format.stringProperty(QTextFormat::ImageAltText).simplified();
    if (!told.isEmpty())
        cursor.insertText(u'\u00a0' + told, text);
}

} // namespace

void showMissingPictures(PreviewDocument &page)
{
    const QList<MissingPicture> missing = missingIn(page);
    if (missing.isEmpty())
        return;
    const QColor colour = QGuiApplication::palette().color(QPalette::PlaceholderText);
    page.addResource(QTextDocument::ImageResource, QUrl(boxName), box(colour));
    QTextCursor edit(&page);
    edit.beginEditBlock();
    for (const MissingPicture &picture : missing)
        replace(picture, colour, page);
    edit.endEditBlock();
}
