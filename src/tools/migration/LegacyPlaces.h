#pragma once

#include "tools/migration/LegacyBookSet.h"
#include "tools/migration/MigrationNotes.h"
#include "tools/migration/OldPlaces.h"

#include <QStringList>

/// A book as the project has it.
struct PlacedBook
{
    std::optional<int> id = {}; ///< BookID; none for the book of pages without a book
    QString name, acronym = {}, type = {};
    QString folder = {};    ///< with backslash
    QString file = {};      ///< in the folder
    QString oldFolder = {}; ///< "" or with backslash
};

/// A file of the database: where it lay, and where it lies in the project.
struct PlacedFile
{
    QString before, now;
    int family = 0;
};

/// Where everything lies. Files stand in the order of the rows of the book set.
struct LegacyPlaces
{
    QList<PlacedBook> books; ///< in their order; that of pages without a book is the last
    QList<int> bookOfPage;   ///< place in `books`
    QList<PlacedFile> pages, globalPages;
    QList<PlacedFile> images; ///< those without a name are given one when they are written
    OldPlaces old;

    /// Files of one book are a family; so are those of a book that is missing, by its id.
    [[nodiscard]] int familyOf(const std::optional<int> &book) const;
    /// Where the files of a book lay; with nothing, of the pages that have none.
    [[nodiscard]] QString oldFolderOf(const std::optional<int> &book) const;
    /// What is meant by the name of a file in a book; of the global pages when there is no book.
    /// Null when there is nothing.
    [[nodiscard]] const MovedPlace *find(const std::optional<int> &book, const QString &file) const;

    QHash<std::optional<int>, int> families = {}; ///< of books, there or missing
};

inline constexpr int globalFamily = -1, sharedFamily = -2;

class FreePlaces;

/// Gives all books and files their names and places: safe ones, each only once.
LegacyPlaces placeFiles(const LegacyBookSet &set, FreePlaces &free, MigrationNotes &notes);
