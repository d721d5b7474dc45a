#include "viewer/PictureFit.h"

#include <QEvent>
#include <QStyle>
#include <QTextBlock>
#include <QTextEdit>

namespace {

constexpr int ownWidth = QTextFormat::UserProperty + 1, ownHeight = ownWidth + 1;

/// With the size that the page means: both sides are known.
QTextImageFormat withOwnSize(const QTextImageFormat &picture, QTextDocument &page)
{
    if (picture.hasProperty(ownWidth))
        return picture;
    const QVariant image = page.resource(QTextDocument::ImageResource, QUrl(picture.name()));
    const QSizeF natural = image.value<QImage>().size();
    const qreal wide = picture.width(), high = picture.height();
    const qreal shape = natural.isEmpty() ? 1 : natural.width() / natural.height();
    QTextImageFormat known = picture;
    known.setProperty(ownWidth, wide > 0 ? wide : high > 0 ? high * shape : natural.width());
    known.setProperty(ownHeight, high > 0 ? high : wide > 0 ? wide / shape : natural.height());
    return known;
}

void fitPicture(const QTextFragment &fragment, QTextDocument &page, qreal room)
{
    const QTextImageFormat before = fragment.charFormat().toImageFormat();
    QTextImageFormat picture = withOwnSize(before, page);
    const qreal wide = picture.doubleProperty(ownWidth);
    const qreal scale = wide > room ? room / wide : 1;
    picture.setWidth(wide * scale);
    picture.setHeight(picture.doubleProperty(ownHeight) * scale);
    if (picture == before)
        return;
    QTextCursor cursor(&page);
    cursor.setPosition(fragment.position());
    cursor.setPosition(fragment.position() + fragment.length(), QTextCursor::KeepAnchor);
    cursor.setCharFormat(picture);
}

/// Changing a format may join fragments, so they are gathered first.
QList<QTextFragment> picturesOf(const QTextDocument &page)
{
    QList<QTextFragment> pictures;
    for (QTextBlock block = page.begin(); block.isValid(); block = block.next()) {
        for (auto at = block.begin(); !at.atEnd(); ++at) {
            if (at.fragment().charFormat().isImageFormat())
                pictures.append(at.fragment());
        }
    }
    return pictures;
}

} // namespace

PictureFit::PictureFit(QTextEdit *page)
    : QObject(page)
    , m_page(page)
{
    page->installEventFilter(this);
}

void PictureFit::fit()
{
    QTextDocument *const document = m_page->document();
    // As if the scroll bar were always there: else it could come and go without end.
    const int bar = m_page->style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, m_page);
    const qreal room =
        m_page->width() - bar - 2 * m_page->frameWidth() - 4 * document->documentMargin();
    for (const QTextFragment &picture : picturesOf(*document))
        fitPicture(picture, *document, qMax(1.0, room));
}

bool PictureFit::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize)
        fit();
    return QObject::eventFilter(watched, event);
}
