#pragma once

#include "dialogs/merge/BookPlaces.h"
#include "dialogs/merge/MergeLog.h"
#include "dialogs/merge/MergeSources.h"
#include "platform/Progress.h"
#include "projectfiles/TocMerge.h"

/// Brings the books of one project into a merged one: their folders, their markers and links, their
/// book files. Everything is planned before the first file is copied.
class MergedBooks final
{
public:
    /// Plans where the folders of the added ones of `books` go, and sets Book_Folder where one gets
    /// another name. Books left out are passed over. `source`, `places` and `findings`, to which
    /// what the author should know is added, must outlive this.
    MergedBooks(Program &program, const MergeSource &source, QList<MergedBook> books,
                BookPlaces &places, QList<MergeFinding> &findings);

    /// Copies the folders into `folder` (with backslash), which becomes that of the session's
    /// project. Raises what copying raises.
    void bring(const QString &folder, const Progress &progress = {});

    /// The book folders of this project that have another name now.
    [[nodiscard]] const QHash<QString, QString> &renamedFolders() const { return m_renamed; }

private:
    /// A folder that is copied as a whole; those of other books may lie in it.
    struct Root
    {
        QString from;  ///< relative, as spelled on disk
        QString place; ///< relative, in the merged project
    };

    void findFolders();
    void placeRoots(BookPlaces &places);
    void settleFolder(const MergedBook &book);
    [[nodiscard]] QString folderOf(const MergedBook &book) const;
    [[nodiscard]] QString rootOf(const QString &folder) const;
    void copy(const Root &root, const Progress &progress);
    void rewriteLinks(const Progress &progress);
    void settleFile(const MergedBook &book);
    void note(MergeFinding::Kind kind, const QString &detail, const MergedBook &book = {});

    Program &m_program;
    const MergeSource &m_source;
    QList<MergedBook> m_books;
    QList<MergeFinding> &m_findings;
    QHash<QString, QString> m_folders; ///< book folders that are there, as spelled; by folded path
    QList<Root> m_roots;
    QHash<QString, QString> m_rootPlaces; ///< by the folded path of the root
    QHash<QString, QString> m_renamed;
    QString m_folder;
};
