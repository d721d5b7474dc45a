#include "controls/pages/PreviewDocument.h"

#include "platform/Paths.h"
#include "platform/QvError.h"
#include "startup/PageText.h"
#include "tools/FileBelow.h"
#include "tools/PageReference.h"

#include <QBuffer>
#include <QImage>
#include <QImageReader>
#include <QUrl>

#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 largestFile = 32LL * 1024 * 1024;
constexpr qint64 mostPixels = 64LL * 1000 * 1000; // of all pictures of a page together

/// Stands for a picture that is not shown. Nothing can be seen of it, as pages have it as their
/// background, too.
QImage missingPicture()
{
    QImage image(1, 1, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

/// An SVG drawing may name files of its own, which its reader would open: only drawings that
/// cannot are shown.
bool isHarmlessDrawing(const QByteArray &bytes)
{
    static constexpr std::array forbidden{"image", "<!ENTITY", "<!DOCTYPE", "@import", "url("};
    const qsizetype declared = bytes.indexOf("encoding=");
    const bool utf8 = declared < 0
                      || bytes.sliced(declared + 9, qMin(qsizetype(7), bytes.size() - declared - 9))
                             .toLower()
                             .contains("utf-8");
    return utf8 && !bytes.contains('\0')
           && std::none_of(forbidden.begin(), forbidden.end(),
                           [&](const char *word) { return bytes.contains(word); });
}

bool isTrustedFormat(const QByteArray &format, const QByteArray &bytes)
{
    static constexpr std::array bitmaps{"png", "jpeg", "gif", "bmp", "webp", "ico"};
    if (format == "svg")
        return isHarmlessDrawing(bytes);
    return std::any_of(bitmaps.begin(), bitmaps.end(),
                       [&](const char *known) { return format == known; });
}

/// The bytes inside a "data:image/png;base64,..." address.
std::optional<QByteArray> inlineData(const QUrl &url)
{
    const QString data = url.path(QUrl::FullyDecoded);
    const qsizetype comma = data.indexOf(u',');
    if (comma < 0 || !data.first(comma).endsWith(";base64"_L1))
        return std::nullopt;
    return QByteArray::fromBase64(data.sliced(comma + 1).toLatin1());
}

} // namespace

PreviewDocument::PreviewDocument(FileSystem &files, QString language, QObject *parent)
    : QTextDocument(parent)
    , m_files(files)
    , m_language(std::move(language))
{
    setUndoRedoEnabled(false);
}

void PreviewDocument::startPage(const QString &projectFolder, const QString &page)
{
    clear(); // pictures of the page before, too
    m_projectFolder = projectFolder;
    m_page = page;
    m_pixels = 0;
    m_missing.clear();
}

bool PreviewDocument::isMissing(const QString &picture) const
{
    const QUrl name(picture);
    static_cast<void>(resource(ImageResource, name)); // has it read, if it was not
    return m_missing.contains(name);
}

std::optional<QString> PreviewDocument::fileInProject(const QUrl &reference) const
{
    const PageTarget target = targetOf(reference.toString(QUrl::FullyEncoded));
    if (target.place == PageTarget::Place::SamePage)
        return m_page;
    if (target.place != PageTarget::Place::Relative)
        return std::nullopt;
    const auto path = joined(parentFolder(m_page), target.path);
    return path && insideOf(m_projectFolder, *path) ? path : std::nullopt;
}

QVariant PreviewDocument::loadResource(int type, const QUrl &name)
{
    const std::optional<QByteArray> bytes =
        name.scheme() == "data"_L1 ? inlineData(name) : readFile(name);
    if (type == ImageResource) {
        const QImage image = bytes ? picture(*bytes) : QImage();
        if (image.isNull())
            m_missing.insert(name);
        return image.isNull() ? missingPicture() : image;
    }
    if (type == StyleSheetResource && bytes)
        return decodePage(*bytes, m_language).text;
    return QString(u""_s);
}

// A file that cannot be read leaves a gap in the preview; the page's problems are told elsewhere.
std::optional<QByteArray> PreviewDocument::readFile(const QUrl &reference) const
{
    const auto file = fileInProject(reference);
    if (!file || m_projectFolder.isEmpty())
        return std::nullopt;
    const auto unreadable = [](const QvError &) {};
    return trap(unreadable,
                [&] { return readFileBelow(m_files, m_projectFolder, *file, largestFile); });
}

QImage PreviewDocument::picture(const QByteArray &bytes)
{
    QBuffer buffer;
    buffer.setData(bytes);
    QImageReader reader(&buffer);
    const QSize size = reader.size();
    const qint64 pixels = qint64(size.width()) * size.height();
    if (!size.isValid() || m_pixels + pixels > mostPixels
        || !isTrustedFormat(reader.format(), bytes))
        return {};
    m_pixels += pixels;
    return reader.read();
}
