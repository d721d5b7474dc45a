#pragma once

#include "projectfiles/BookFile.h"
#include "projectfiles/KeyWordFile.h"
#include "tools/migration/LegacyPlaces.h"
#include "tools/migration/LegacyTree.h"

/// The outlines of all books.
class LegacyOutlines final
{
public:
    LegacyOutlines(const LegacyBookSet &set, const LegacyPlaces &places, MigrationNotes &notes);

    /// Acronym and id of a page or global page; nothing for another place.
    [[nodiscard]] std::optional<KeyWord::Page> keyOf(const MovedPlace *place) const;
    /// The pages of a book as its file lists them; `titles` and `linkIds` in the order of rows.
    [[nodiscard]] QList<BookPage> pagesOf(qsizetype book, const QStringList &titles,
                                          const QList<QStringList> &linkIds) const;

private:
    const LegacyPlaces &m_places;
    QList<QList<TreePlace>> m_outlines; ///< of books; rows are places in the table
    QStringList m_pageIds, m_globalIds; ///< in the order of rows
};
