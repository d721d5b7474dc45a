#pragma once

#include "platform/Progress.h"
#include "tools/FolderIndex.h"
#include "tools/HtmlScan.h"
#include "tools/ImportPlan.h"

#include <QHash>
#include <QSet>
#include <QStringList>

#include <memory>

/// Works out the plan of one import: finds the pages, reads each once, follows what they use, and
/// looks what the book has already.
class ImportPlanner final
{
public:
    /// `bookFolder` ends in a backslash; `language` reads pages that declare no charset.
    ImportPlanner(FileSystem &files, QString bookFolder, QString language,
                  const Progress &progress);

    /// Fills items and omissions of `plan`, which names project and book.
    void work(ImportPlan &plan, const QStringList &picked);

private:
    /// An item's place among the files picked: the top folder its pages may refer into.
    struct Origin
    {
        FolderIndex *top = nullptr;
        QString relative; ///< below `top`
    };

    void take(const QString &path);
    void takeFolder(const QString &folder);
    void addPage(const QString &top, const QString &relative, const FileStatus &status);
    void omit(const QString &reference, const QString &page, const QString &reason);
    FolderIndex &topFolder(const QString &path);

    void readPages();
    void readPage(int index);
    void readStyle(int index);
    void follow(int index, QStringView text, const QList<PageReference> &references);
    void followOne(int index, PageReference::Kind kind, QStringView reference);
    void use(int index, const FolderIndex::Entry &entry);
    int itemOf(const Origin &origin, const FileStatus &status);

    void findConflicts();
    void findConflict(ImportItem &item);
    QString refusalOf(const ImportItem &item);
    void offerImportConflict(ImportItem &item);
    void offerBookConflict(ImportItem &item, const FolderIndex::Entry &existing);
    QString freeName(const QString &target);
    bool sameBytes(const ImportItem &item, const QString &other, qint64 otherSize);

    FileSystem &m_files;
    QString m_bookFolder;
    QString m_language;
    const Progress &m_progress;
    ImportPlan *m_plan = nullptr;

    QHash<QString, std::shared_ptr<FolderIndex>> m_tops;
    QList<Origin> m_origins; ///< one per item
    QHash<QString, int> m_itemOfSource;
    QHash<QString, QString> m_sourceOfTarget; ///< the first source that wants it
    QSet<QString> m_omitted;
    QSet<QString> m_seenReferences; ///< of the page being followed
    QSet<int> m_seenUses;
    FolderIndex m_book;
    QSet<QString> m_wanted, m_given; ///< targets of this import, without case: all, so far
};
