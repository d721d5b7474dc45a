#pragma once

#include "controls/pages/KeptPlace.h"

/// Text of a page that a program which has ended left behind.
struct KeptText
{
    QString place;
    bool mayBeNeeded = false; ///< nobody can tell whether its program has ended
};

/// Unsaved text of pages, kept in UTF-8 below "_Backup\Recovered\" of the project until the author
/// uses or refuses it: under the page's name, and up to four older or newer ones of other sessions
/// as "<name>~2" and so on. What a running program keeps is its own: the others neither see nor
/// touch it. Safe to be used on a worker.
class KeptTexts final
{
public:
    explicit KeptTexts(FileSystem &files);

    /// A place for text of a page (path relative to the project folder, which ends in a backslash)
    /// where nobody keeps any; with no such place left, that of the oldest text left behind. Raises
    /// 70 when all belong to running programs, and as FileSystem::makeFolder.
    [[nodiscard]] std::unique_ptr<KeptPlace> take(const QString &projectFolder,
                                                  const QString &page);
    /// Raises as FileSystem::replaceFile.
    void keep(const KeptPlace &place, const QString &text);
    void forget(const KeptPlace &place);

    /// What was left behind of this page, the newest first.
    [[nodiscard]] QList<KeptText> leftOf(const QString &projectFolder, const QString &page);
    [[nodiscard]] QString textIn(const QString &place);
    /// Removes what was left behind. Raises 70 when a running program keeps it, or may do so.
    void discard(const QString &place);

    /// The pages of which text was left behind, relative to the project folder.
    [[nodiscard]] QStringList pages(const QString &projectFolder);

private:
    [[nodiscard]] std::unique_ptr<KeptPlace> freePlace(const QString &projectFolder,
                                                       const QString &page);
    [[nodiscard]] std::unique_ptr<KeptPlace> oldestPlace(const QString &projectFolder,
                                                         const QString &page);
    void makeFolders(const QString &projectFolder, const QString &file);
    void collect(const QString &folder, const QString &below, QStringList &pages, int depth);

    FileSystem &m_files;
};
