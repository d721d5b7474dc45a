#include "tools/migration/LegacyFiles.h"

#include "platform/Paths.h"
#include "tools/PageCharset.h"
#include "tools/PageSkeleton.h"
#include "tools/html/HtmlScan.h"
#include "tools/migration/LegacyLinks.h"
#include "tools/migration/LegacyRows.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr auto freshFolder = ".fresh"_L1; // no file of the project begins with a dot

bool isAscii(const QString &text)
{
    constexpr char16_t last = 0x7F;
    return std::all_of(text.cbegin(), text.cend(), [](QChar c) { return c.unicode() <= last; });
}

/// A title out of a page as the project's files can hold it.
QString cleanTitle(QString title)
{
    constexpr char16_t firstPrintable = 0x20, firstNoncharacter = 0xFFFE;
    for (QChar &c : title) {
        if (c.unicode() < firstPrintable || c.unicode() >= firstNoncharacter)
            c = u' ';
    }
    return title;
}

/// The ending for a file that has no name, as its first bytes tell.
QString endingOf(const QByteArray &data)
{
    struct Beginning
    {
        QByteArrayView bytes;
        QLatin1StringView ending;
    };
    static constexpr Beginning known[]{{"\x89PNG", ".png"_L1},      {"GIF8", ".gif"_L1},
                                       {"\xFF\xD8\xFF", ".jpg"_L1}, {"BM", ".bmp"_L1},
                                       {"%PDF", ".pdf"_L1},         {"<svg", ".svg"_L1}};
    for (const auto &[bytes, ending] : known) {
        if (data.startsWith(bytes))
            return ending;
    }
    return u".bin"_s;
}

} // namespace

struct LegacyFiles::Page
{
    QLatin1StringView table;
    QString row, title;
    const PlacedFile &file;
};

LegacyFiles::LegacyFiles(FileSystem &files, Where where, const LegacyBookSet &set,
                         const LegacyPlaces &places, MigrationNotes &notes)
    : m_files(files)
    , m_where(std::move(where))
    , m_set(set)
    , m_places(places)
    , m_notes(notes)
    , m_pageTitles(set.pages.size())
    , m_globalTitles(set.globalPages.size())
{
}

void LegacyFiles::write(LegacyContents &contents, FreePlaces &free, const Progress &progress)
{
    m_files.makeFolder(m_where.folder + freshFolder);
    contents.pages([&](qsizetype at, const std::optional<QString> &html) {
        const LegacyPage &page = m_set.pages.at(at);
        const PlacedFile &file = m_places.pages.at(at);
        step(progress, file.now);
        m_pageTitles[at] = writePage({LegacyTable::pages, nameOf(page), page.title, file}, html);
    });
    contents.globalPages([&](qsizetype at, const std::optional<QString> &html) {
        const LegacyGlobalPage &page = m_set.globalPages.at(at);
        const PlacedFile &file = m_places.globalPages.at(at);
        step(progress, file.now);
        m_globalTitles[at] =
            writePage({LegacyTable::globalPages, nameOf(page), page.title, file}, html);
    });
    contents.images([&](qsizetype at, const std::optional<QByteArray> &data) {
        step(progress, m_places.images.at(at).now);
        writeImage(at, data, free);
    });
    m_files.removeFolder(m_where.folder + freshFolder);
    m_notes.count(LegacyTable::pages, m_set.pages.size());
    m_notes.count(LegacyTable::globalPages, m_set.globalPages.size());
    m_notes.count(LegacyTable::images, m_set.images.size(), m_imagesLost);
}

void LegacyFiles::step(const Progress &progress, const QString &what)
{
    const qsizetype total = m_set.pages.size() + m_set.globalPages.size() + m_set.images.size();
    progress.step(m_done++, static_cast<int>(total), what);
}

/// The title under which the project lists it.
QString LegacyFiles::writePage(const Page &page, const std::optional<QString> &html)
{
    const QString title = titleOf(page, html.value_or(QString()));
    if (html && !html->isEmpty()) {
        put(page.file.now, bytesOf(page, *html));
        return title;
    }
    m_notes.add(page.table, page.row, u"It has no text; an empty page stands in its place."_s);
    put(page.file.now, newPage(title, m_where.language));
    return title;
}

QString LegacyFiles::titleOf(const Page &page, const QString &html)
{
    if (!page.title.trimmed().isEmpty())
        return page.title;
    QString title = cleanTitle(scanHtml(html).title);
    if (title.isEmpty())
        title = lastComponent(page.file.now);
    m_notes.add(page.table, page.row, u"It has no title; it is called \"%1\"."_s.arg(title));
    return title;
}

QByteArray LegacyFiles::bytesOf(const Page &page, const QString &html)
{
    PageText text = inUtf8(LinkFollower(m_places.old, page.file).page(html));
    if (isAscii(text.text) || text.text.startsWith(QChar(QChar::ByteOrderMark)))
        text.encoding.mark = false;
    return encodePage(text.text, text.encoding);
}

void LegacyFiles::writeImage(qsizetype at, const std::optional<QByteArray> &data, FreePlaces &free)
{
    PlacedFile file = m_places.images.at(at);
    const LegacyImage &image = m_set.images.at(at);
    if (!data) {
        ++m_imagesLost;
        m_notes.add(LegacyTable::images, nameOf(image),
                    u"It holds nothing; there is no file \"%1\"."_s.arg(image.file));
        return;
    }
    if (file.now.isEmpty() || file.now.endsWith(u'\\')) {
        file.now = free.file(file.now, {u"image_%1"_s.arg(image.row) + endingOf(*data)});
        m_notes.add(LegacyTable::images, nameOf(image),
                    u"Its file name \"%1\" cannot be used; its file is now %2."_s.arg(image.file,
                                                                                      file.now));
    }
    const bool isSheet = file.now.endsWith(".css"_L1, Qt::CaseInsensitive);
    put(file.now, isSheet ? followedSheet(file, *data) : *data);
}

QByteArray LegacyFiles::followedSheet(const PlacedFile &sheet, const QByteArray &bytes)
{
    const PageText css = decodePage(bytes, m_where.language);
    const QString followed = LinkFollower(m_places.old, sheet).styleSheet(css.text);
    if (followed == css.text || css.damaged || encodePage(css.text, css.encoding) != bytes)
        return bytes;
    return encodePage(followed, css.encoding);
}

// Its name is free. In a folder of thousands, looking for others like it, as replacing a file does,
// would take longer than all the rest; in a folder of its own it takes no time.
void LegacyFiles::put(const QString &path, const QByteArray &bytes)
{
    makeFolder(withoutBackslash(parentFolder(path)));
    const QString fresh = m_where.folder + freshFolder + u"\\file"_s;
    m_files.replaceFile(fresh, bytes);
    m_files.move(fresh, m_where.folder + path, NameCheck::Exact);
}

void LegacyFiles::makeFolder(const QString &folder)
{
    if (folder.isEmpty() || m_made.contains(folder))
        return;
    makeFolder(withoutBackslash(parentFolder(folder)));
    if (!m_files.folderExists(m_where.folder + folder))
        m_files.makeFolder(m_where.folder + folder);
    m_made.insert(folder);
}
