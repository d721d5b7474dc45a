#pragma once

#include "platform/Progress.h"
#include "projectfiles/BookFile.h"
#include "tools/FolderIndex.h"
#include "tools/html/HtmlScan.h"
#include "tools/import/ImportPlan.h"

#include <QHash>
#include <QSet>
#include <QStringList>

#include <memory>
#include <optional>

/// Works out the plan of one import: finds the pages, reads each once, follows what they use, and
/// looks what the book has already.
class ImportPlanner final
{
public:
    /// `bookFolder` ends in a backslash; `language` reads pages that declare no charset; `scratch`
    /// is where archives are unpacked, a free path whose parent is there.
    ImportPlanner(FileSystem &files, QString bookFolder, QString language, QString scratch,
                  const Progress &progress);

    /// Fills items and omissions of `plan`, which names command, project and book; `sources` are
    /// those of the book. For newer files they take the place of `picked`.
    void work(ImportPlan &plan, const QStringList &picked, const QList<BookSource> &sources);

private:
    /// An item's place among the files picked: the top folder its pages may refer into.
    struct Origin
    {
        FolderIndex *top = nullptr;
        QString relative; ///< below `top`
    };
    struct Archive
    {
        QString path;
        QDateTime modified;
    };

    // What was picked, in ImportPicks.cpp.
    void noteSources(const QList<BookSource> &sources);
    void take(const QString &path);
    void takeFile(const QString &path, const FileStatus &status);
    void takeFolder(const QString &folder);
    QString unpacked(const QString &archive, const FileStatus &status);
    void takeNewer(const BookSource &source);
    std::optional<QString> whereIsNow(const BookSource &source);
    [[nodiscard]] bool isWanted(const QString &name) const;
    ImportItem *addPage(const QString &top, const QString &relative, const FileStatus &status);
    int itemOf(const Origin &origin, const FileStatus &status, bool made = false);
    void uncheckExcluded();

    void omit(const QString &reference, const QString &page, const QString &reason);

    struct ReadPage;
    void readFiles();
    void readPages();
    [[nodiscard]] ReadPage read(const ImportItem &item, const QString &relative) const;
    void takePage(int index, const ReadPage &page);
    void readStyle(int index);
    void follow(int index, QStringView text, const QList<PageReference> &references);
    void followOne(int index, PageReference::Kind kind, QStringView reference);
    void use(int index, const FolderIndex::Entry &entry);

    void findConflicts();
    void findConflict(ImportItem &item);
    QString refusalOf(const ImportItem &item);
    void offerImportConflict(ImportItem &item);
    void offerBookConflict(ImportItem &item, const FolderIndex::Entry &existing);
    void offerNewVersion(ImportItem &item, const BookSource &earlier, const FileStatus &page);
    bool wasEdited(const BookSource &earlier, const QString &page);
    QString freeName(const QString &target);
    bool sameBytes(const ImportItem &item, const QString &other, qint64 otherSize);

    FileSystem &m_files;
    QString m_bookFolder;
    QString m_language;
    QString m_scratch;
    const Progress &m_progress;
    ImportPlan *m_plan = nullptr;

    QHash<QString, std::shared_ptr<FolderIndex>> m_tops;
    QList<Origin> m_origins;                      ///< one per item
    QHash<QString, int> m_itemOfSource, m_madeOf; ///< files as they are, and pages made of them
    QHash<QString, Archive> m_archives;           ///< by the top folder where it was unpacked
    QHash<QString, QString> m_topOfArchive;
    QHash<QString, BookSource> m_sources;     ///< by page, without case
    QSet<QString> m_excluded;                 ///< sources that the author left out the last time
    QHash<QString, QString> m_sourceOfTarget; ///< the first source that wants it
    QSet<QString> m_omitted;
    QString m_base;                 ///< where the references of the page being followed start
    QSet<QString> m_seenReferences; ///< its references
    QSet<int> m_seenUses;
    FolderIndex m_book;
    QSet<QString> m_wanted, m_given; ///< targets of this import, without case: all, so far
};
