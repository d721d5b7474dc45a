#pragma once

#include "platform/FileSystem.h"

/// Unsaved text of pages, kept in UTF-8 below "_Backup\Recovered\" of the project until the author
/// uses or refuses it: under the page's name, and up to four older or newer ones of other sessions
/// as "<name>~2" and so on. Safe to be used on a worker.
class KeptTexts final
{
public:
    explicit KeptTexts(FileSystem &files);

    /// Keeps `text` of a page (path relative to the project folder, which ends in a backslash) in
    /// `place`, or where no other session keeps text when that is ""; with no such place left, in
    /// that of the oldest. Returns the place. Raises as FileSystem::replaceFile.
    QString keep(const QString &projectFolder, const QString &page, const QString &text,
                 const QString &place = {});
    /// Where text of this page is kept, the newest first.
    [[nodiscard]] QStringList placesOf(const QString &projectFolder, const QString &page);
    [[nodiscard]] QString textIn(const QString &place);
    void forget(const QString &place);

    /// The pages of which text is kept, relative to the project folder.
    [[nodiscard]] QStringList pages(const QString &projectFolder);

private:
    [[nodiscard]] QString freePlace(const QString &projectFolder, const QString &page);
    void makeFolders(const QString &projectFolder, const QString &file);
    void collect(const QString &folder, const QString &below, QStringList &pages, int depth);

    FileSystem &m_files;
};
