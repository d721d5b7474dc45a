#pragma once

#include "tools/FolderIndex.h"

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

#include <optional>

/// A book's folder as its table of contents names it, as a plain relative path; nothing when it
/// leaves the project.
std::optional<QString> relativeBookFolder(const QString &stored);

/// Those of many that lie in the project, without case.
QSet<QString> foldedBookFolders(const QStringList &stored);

/// Where the book folders of other projects go in a merged project. A name that is taken there,
/// without regard to case, gets the first free number behind it, for which a full one gives up its
/// end. So does a folder on the way that is a book of another project.
class BookPlaces final
{
public:
    /// `folder` is the merged project's, with backslash; `bookFolders` are those it has so far.
    BookPlaces(FileSystem &files, const QString &folder, const QStringList &bookFolders);

    /// Begins with the next project: what was renamed in the last one is forgotten.
    void startProject();

    /// The place of a relative path, which is taken from then on.
    QString placeFor(const QString &relative);

    /// The folders of this project that are called otherwise now, by their relative path in it.
    [[nodiscard]] const QHash<QString, QString> &renamed() const { return m_renamed; }

private:
    QString pieceAt(const QString &from, const QString &candidate, bool isLast);
    [[nodiscard]] bool isTaken(const QString &relative);
    [[nodiscard]] bool isOpen(const QString &relative);

    FolderIndex m_index;
    QSet<QString> m_taken; ///< since the index was made
    QSet<QString> m_books;
    QHash<QString, QString> m_places; ///< of this project's folders, by their folded path in it
    QHash<QString, QString> m_renamed;
};
