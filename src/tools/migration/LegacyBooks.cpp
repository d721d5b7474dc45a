#include "tools/migration/LegacyBooks.h"

#include "platform/Paths.h"
#include "tools/migration/LegacyRows.h"
#include "tools/migration/SafeNames.h"

#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr auto lostName = "Pages without a book"_L1;
constexpr auto lostAcronym = "LOST"_L1;

/// Acronyms that are free, without regard to case.
class FreeAcronyms final
{
public:
    QString take(const QString &wanted)
    {
        QString acronym = wanted;
        for (int number = 2; m_taken.contains(acronym.toCaseFolded()); ++number)
            acronym = wanted + QString::number(number);
        m_taken.insert(acronym.toCaseFolded());
        return acronym;
    }

private:
    QSet<QString> m_taken{u"global"_s}; // the book of the global pages
};

/// Acronyms become part of file names and of keys.
QString plainAcronym(const QString &acronym)
{
    QString plain = acronym.trimmed();
    const auto isForbidden = [](QChar c) { return u"<>\"'/\\:*?|#%@"_s.contains(c); };
    std::replace_if(plain.begin(), plain.end(), isForbidden, u'_');
    return plain.isEmpty() ? u"BOOK"_s : plain;
}

/// Names that merging takes for the product's own.
bool isReserved(const QString &name)
{
    const QString plain = name.trimmed();
    return plain.compare("DynamicHelp"_L1, Qt::CaseInsensitive) == 0
           || plain.compare("Global Information"_L1, Qt::CaseInsensitive) == 0;
}

class BookPlacer final
{
public:
    BookPlacer(FreePlaces &free, MigrationNotes &notes)
        : m_free(free)
        , m_notes(notes)
    {
    }

    PlacedBook place(const LegacyBook &book)
    {
        PlacedBook placed{.id = book.id, .name = book.name, .type = book.type.trimmed()};
        m_row = nameOf(book);
        placed.acronym = acronymFor(book);
        if (placed.name.trimmed().isEmpty()) {
            placed.name = placed.acronym;
            note(u"It had no name; it is called \"%1\"."_s.arg(placed.name));
        }
        if (isReserved(placed.name)) {
            placed.name += " 2"_L1;
            note(u"Its name is one that the product uses itself; it is now \"%1\"."_s.arg(
                placed.name));
        }
        placeFolder(placed, book);
        placeFile(placed, book.file);
        return placed;
    }

    PlacedBook lost()
    {
        PlacedBook placed{.name = lostName, .acronym = m_acronyms.take(lostAcronym)};
        placed.folder = m_free.ownFolder({safeName(u"Book_"_s + placed.acronym)});
        placed.oldFolder = placed.folder;
        placed.file = fileFor(placed.acronym);
        m_free.file(placed.folder, {placed.file});
        return placed;
    }

private:
    void note(const QString &text) { m_notes.add(LegacyTable::books, m_row, text); }

    QString acronymFor(const LegacyBook &book)
    {
        const QString wanted = plainAcronym(book.acronym);
        const QString acronym = m_acronyms.take(wanted);
        if (book.acronym.trimmed().isEmpty())
            note(u"It had no acronym; it is now %1."_s.arg(acronym));
        else if (acronym != wanted)
            note(u"Its acronym %1 is taken; it is now %2."_s.arg(book.acronym, acronym));
        else if (acronym != book.acronym)
            note(u"Its acronym \"%1\" cannot be used; it is now %2."_s.arg(book.acronym, acronym));
        return acronym;
    }

    void placeFolder(PlacedBook &placed, const LegacyBook &book)
    {
        QStringList pieces = safePieces(book.folder);
        if (pieces.isEmpty())
            pieces.append(safeName(u"Book_"_s + placed.acronym));
        placed.oldFolder = oldPlace({}, book.folder);
        placed.folder = m_free.ownFolder(pieces);
        const QString name = withoutBackslash(placed.folder);
        if (book.folder.trimmed().isEmpty())
            note(u"It had no folder; its folder is now %1."_s.arg(name));
        else if (name != placed.oldFolder)
            note(u"Its folder \"%1\" %2; it is now %3."_s.arg(
                book.folder,
                pieces.join(u'\\') == placed.oldFolder ? u"is taken"_s : u"cannot be used"_s,
                name));
        if (!placed.oldFolder.isEmpty())
            placed.oldFolder += u'\\';
    }

    void placeFile(PlacedBook &placed, const QString &file)
    {
        QStringList pieces = safePieces(file);
        if (pieces.isEmpty())
            pieces.append(fileFor(placed.acronym));
        if (!pieces.last().endsWith(".xml"_L1, Qt::CaseInsensitive))
            pieces.last() += ".xml"_L1;
        placed.file = m_free.file(placed.folder, pieces).sliced(placed.folder.size());
        if (file.trimmed().isEmpty())
            note(u"It had no file; its file is now %1."_s.arg(placed.file));
        else if (placed.file != oldPlace({}, file))
            note(u"Its file \"%1\" cannot be used; it is now %2."_s.arg(file, placed.file));
    }

    static QString fileFor(const QString &acronym)
    {
        return safeName(u"Book_%1.xml"_s.arg(acronym));
    }

    FreePlaces &m_free;
    MigrationNotes &m_notes;
    FreeAcronyms m_acronyms;
    QString m_row;
};

bool hasLost(const LegacyBookSet &set)
{
    QSet<int> ids;
    for (const LegacyBook &book : set.books) {
        if (book.id)
            ids.insert(*book.id);
    }
    const auto isLost = [&](const auto &row) { return row.book && !ids.contains(*row.book); };
    return std::any_of(set.images.cbegin(), set.images.cend(), isLost)
           || std::any_of(set.pages.cbegin(), set.pages.cend(),
                          [&](const LegacyPage &page) { return !page.book || isLost(page); });
}

} // namespace

QList<PlacedBook> placeBooks(const LegacyBookSet &set, FreePlaces &free, MigrationNotes &notes)
{
    BookPlacer placer(free, notes);
    QList<PlacedBook> books;
    QSet<int> ids;
    for (const qsizetype at : inOrder(set.books)) {
        const LegacyBook &book = set.books.at(at);
        books.append(placer.place(book));
        if (book.id && ids.contains(*book.id))
            notes.add(
                LegacyTable::books, nameOf(book),
                u"Row %1 has the same BookID as an earlier one, which gets the pages of both."_s
                    .arg(book.row));
        if (book.id)
            ids.insert(*book.id);
    }
    if (hasLost(set))
        books.append(placer.lost());
    return books;
}
