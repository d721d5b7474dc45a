#include "tools/migration/LegacyPlaces.h"

#include "platform/Paths.h"
#include "tools/PageReference.h"
#include "tools/migration/FreePlaces.h"
#include "tools/migration/LegacyBooks.h"
#include "tools/migration/LegacyRows.h"
#include "tools/migration/SafeNames.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// What a file wants.
struct Wanted
{
    QLatin1StringView table;
    QString row;
    QString file;                        ///< as the database has it
    QString oldFolder = {}, folder = {}; ///< below which it lay and shall lie
    int family = 0;
    bool isPage = true;
    QString nameless = {}; ///< for one that has no name
};

class FilePlacer final
{
public:
    FilePlacer(LegacyPlaces &places, FreePlaces &free, MigrationNotes &notes)
        : m_places(places)
        , m_free(free)
        , m_notes(notes)
    {
    }

    PlacedFile place(const Wanted &wanted, MovedPlace::Kind kind, qsizetype at)
    {
        QStringList pieces = safePieces(wanted.file);
        if (pieces.isEmpty())
            pieces.append(wanted.nameless);
        const QString safe = pieces.join(u'\\');
        if (wanted.isPage && !isPageName(pieces.last()))
            pieces.last() += ".htm"_L1;
        const PlacedFile placed{.before = oldPlace(wanted.oldFolder, wanted.file),
                                .now = m_free.file(wanted.folder, pieces),
                                .family = wanted.family};
        note(wanted, safe, pieces.join(u'\\'), placed.now.sliced(wanted.folder.size()));
        if (!wanted.file.isEmpty())
            m_places.old.add({placed.before, placed.now, placed.family, kind, at});
        return placed;
    }

private:
    void note(const Wanted &wanted, const QString &safe, const QString &asPage, const QString &now)
    {
        const QString wrote = oldPlace({}, wanted.file);
        if (wrote == now)
            return;
        QString text = u"Another file is named \"%1\"; this one is now %2."_s;
        if (wanted.file.trimmed().isEmpty())
            text = u"It had no file name%1; its file is now %2."_s;
        else if (safe != wrote || asPage.count(u'\\') != now.count(u'\\'))
            text = u"Its file \"%1\" cannot be named so; it is now %2."_s;
        else if (asPage != safe)
            text = u"Its file \"%1\" has no ending of a page; it is now %2."_s;
        else if (asPage.compare(now, Qt::CaseInsensitive) == 0)
            text = u"The folder of its file \"%1\" is spelled otherwise; it is now %2."_s;
        m_notes.add(wanted.table, wanted.row, text.arg(wanted.file.trimmed(), now));
    }

    LegacyPlaces &m_places;
    FreePlaces &m_free;
    MigrationNotes &m_notes;
};

/// A number for each BookID that a book, page or image has.
void numberFamilies(LegacyPlaces &places, const LegacyBookSet &set)
{
    int next = 0;
    for (const PlacedBook &book : std::as_const(places.books)) {
        if (book.id && !places.families.contains(book.id))
            places.families.insert(book.id, next);
        ++next;
    }
    const auto add = [&](const std::optional<int> &book) {
        if (!places.families.contains(book))
            places.families.insert(book, next++);
    };
    for (const LegacyPage &page : set.pages)
        add(page.book);
    for (const LegacyImage &image : set.images) {
        if (image.book)
            add(image.book);
    }
}

void placePages(LegacyPlaces &places, FilePlacer &placer, const LegacyBookSet &set,
                MigrationNotes &notes)
{
    places.pages.resize(set.pages.size());
    places.bookOfPage.resize(set.pages.size());
    for (const qsizetype at : inOrder(set.pages)) {
        const LegacyPage &page = set.pages.at(at);
        const int family = places.familyOf(page.book);
        const int book = std::min(family, static_cast<int>(places.books.size()) - 1);
        const PlacedBook &placed = places.books.at(book);
        if (!placed.id || placed.id != page.book)
            notes.add(LegacyTable::pages, nameOf(page),
                      page.book
                          ? u"There is no book with BookID %1; the page is in %2."_s.arg(*page.book)
                                .arg(placed.name)
                          : u"It has no BookID; the page is in %1."_s.arg(placed.name));
        places.bookOfPage[at] = book;
        places.pages[at] =
            placer.place({.table = LegacyTable::pages,
                          .row = nameOf(page),
                          .file = page.file,
                          .oldFolder = placed.oldFolder,
                          .folder = placed.folder,
                          .family = family,
                          .nameless = u"page_%1.htm"_s.arg(page.id.value_or(page.row))},
                         MovedPlace::Kind::Page, at);
    }
}

void placeGlobalPages(LegacyPlaces &places, FilePlacer &placer, const LegacyBookSet &set,
                      const QString &folder)
{
    places.globalPages.resize(set.globalPages.size());
    for (const qsizetype at : inOrder(set.globalPages)) {
        const LegacyGlobalPage &page = set.globalPages.at(at);
        places.globalPages[at] =
            placer.place({.table = LegacyTable::globalPages,
                          .row = nameOf(page),
                          .file = page.file,
                          .oldFolder = folder,
                          .folder = folder,
                          .family = globalFamily,
                          .nameless = u"page_%1.htm"_s.arg(page.id.value_or(page.row))},
                         MovedPlace::Kind::GlobalPage, at);
    }
}

void placeImages(LegacyPlaces &places, FilePlacer &placer, const LegacyBookSet &set,
                 MigrationNotes &notes)
{
    for (qsizetype at = 0; at < set.images.size(); ++at) {
        const LegacyImage &image = set.images.at(at);
        Wanted wanted{.table = LegacyTable::images,
                      .row = nameOf(image),
                      .file = image.file,
                      .family = sharedFamily,
                      .isPage = false,
                      .nameless = u"image_%1"_s.arg(image.row)};
        if (image.book) {
            wanted.family = places.familyOf(image.book);
            const int book = std::min(wanted.family, static_cast<int>(places.books.size()) - 1);
            wanted.oldFolder = places.books.at(book).oldFolder;
            wanted.folder = places.books.at(book).folder;
            if (places.books.at(book).id != image.book)
                notes.add(LegacyTable::images, wanted.row,
                          u"There is no book with BookID %1; the file is in %2."_s.arg(*image.book)
                              .arg(places.books.at(book).name));
        }
        places.images.append(safePieces(image.file).isEmpty()
                                 ? PlacedFile{{}, wanted.folder, wanted.family}
                                 : placer.place(wanted, MovedPlace::Kind::Image, at));
    }
}

} // namespace

int LegacyPlaces::familyOf(const std::optional<int> &book) const
{
    constexpr int unknown = -3;
    return families.value(book, unknown);
}

QString LegacyPlaces::oldFolderOf(const std::optional<int> &book) const
{
    const int family = familyOf(book);
    if (family < 0 || books.isEmpty())
        return {};
    return books.at(std::min<qsizetype>(family, books.size() - 1)).oldFolder;
}

const MovedPlace *LegacyPlaces::find(const std::optional<int> &book, const QString &file) const
{
    if (!book) {
        const QString folder = ProjectFile::globalFolder + u"\\"_s;
        if (const MovedPlace *page = old.find(oldPlace(folder, file), globalFamily))
            return page;
    }
    const int family = familyOf(book);
    if (family < 0 || file.isEmpty())
        return nullptr;
    return old.find(oldPlace(oldFolderOf(book), file), family);
}

LegacyPlaces placeFiles(const LegacyBookSet &set, FreePlaces &free, MigrationNotes &notes)
{
    LegacyPlaces places;
    places.books = placeBooks(set, free, notes);
    numberFamilies(places, set);
    FilePlacer placer(places, free, notes);
    placePages(places, placer, set, notes);
    const QString globals = free.globalFolder();
    free.file(globals, {ProjectFile::globalBook});
    placeGlobalPages(places, placer, set, globals);
    placeImages(places, placer, set, notes);
    return places;
}
