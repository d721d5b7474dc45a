#pragma once

#include "platform/Progress.h"
#include "projectfiles/changes/FileChanges.h"
#include "startup/PageText.h"
#include "tools/PageReference.h"

#include <QHash>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

#include <optional>

/// One reference in a page to a file of the same project.
struct IndexedLink
{
    PageReference::Kind kind = PageReference::Kind::Link;
    QString target; ///< relative to the project folder, as the page says it; there or not
    QString anchor; ///< decoded, without "#"; a link within the page has its own page as target
    qsizetype start = 0, length = 0; ///< place in the page's text
    int line = 1;
    QString written = {}; ///< the reference as the page writes it
    QString text = {};    ///< what the reader clicks on
};

/// What one page says.
struct IndexedPage
{
    QString path; ///< relative to the project folder, as spelled on the disk
    FileStamp stamp;
    bool readOnly = false;
    bool isStyleSheet = false; ///< no page, but it refers to files
    bool hasBase = false;      ///< <base>: its relative references mean something else
    PageEncoding encoding;
    bool damaged = false; ///< some bytes are no text in that encoding
    QString title;        ///< of <title>, else the first heading, else the file's name
    QStringList headings; ///< h1 to h3, as shown
    QStringList anchors;  ///< ids and names that links can mean
    QList<IndexedLink> links;
    /// References that do not lead into the project: other machines, mail, roots of disks, places
    /// above the project's folder. Their `target` is null.
    QList<IndexedLink> outside;
    /// Where <base> leads, when that is in the project.
    std::optional<IndexedLink> base;
    QString linkFolder; ///< where relative references begin: "" or with a backslash at its end
    QString problem;    ///< why it could not be read; "" when it could
};

/// A place that refers to a page.
struct PageUse
{
    QString page;       ///< the page that holds the link
    qsizetype link = 0; ///< place in its `links`
};

/// What is wrong with a link, if anything.
enum class LinkState {
    Good,
    FileMissing,
    IsFolder,
    PlaceMissing,    ///< the page is there, but has no such anchor
    OtherLetterCase, ///< good here, and dead where letter case counts
    LeavesProject,
    Elsewhere, ///< another machine, mail: not checked
};

/// What the pages of a project say and how they refer to each other; all pages are read once and
/// after that only those that changed. Paths are compared without regard to case. A value: copies
/// are cheap, so that a worker can update one while the editors use another.
class PageIndex final
{
public:
    /// Brings it up to date with all pages below the given folders (relative to the project folder,
    /// which ends in a backslash); pages elsewhere are forgotten. Never follows links. When it is
    /// stopped it keeps what it read so far, for the next time.
    void update(FileSystem &files, const QString &projectFolder, const QStringList &folders,
                const QString &language, const Progress &progress = {});
    /// The files at these paths, and in folders at them, are read next time whatever their stamps
    /// say.
    void outdate(const QStringList &paths);

    [[nodiscard]] QStringList pages() const;   ///< without style sheets
    [[nodiscard]] QStringList sources() const; ///< with them, in no order
    /// Pages and style sheets that could not be read.
    [[nodiscard]] QStringList unreadable() const;
    /// Null when there is no such page or style sheet.
    [[nodiscard]] const IndexedPage *page(const QString &path) const;
    /// The links of other pages and of its own that lead to a file or to one of its anchors.
    [[nodiscard]] QList<PageUse> usesOf(const QString &path) const;
    /// Everything that links lead to.
    [[nodiscard]] QStringList targets() const;

    [[nodiscard]] LinkState stateOf(const IndexedLink &link) const;
    /// The same in words; "" for a good link.
    [[nodiscard]] QString problemOf(const IndexedLink &link) const;
    /// How many links of a page are not good; what is elsewhere does not count.
    [[nodiscard]] int problemsIn(const QString &path) const;
    [[nodiscard]] const QString &projectName() const { return m_project; }

private:
    struct Entry
    {
        IndexedPage page;
        QSet<QString> anchors;
    };

    struct Found;
    [[nodiscard]] static Found look(FileSystem &files, const QString &projectFolder,
                                    const QStringList &folders);
    void forgetMissing(const Found &found);
    void readStale(FileSystem &files, const QString &projectFolder, const Found &found,
                   const QString &language, const Progress &progress);
    void replace(Entry entry, bool withUses);
    void addUses(const IndexedPage &page);
    void removeUses(const IndexedPage &page);
    void countUsesAgain();
    void lookForOthers(FileSystem &files, const QString &projectFolder);

    QString m_project;
    QHash<QString, Entry> m_pages;
    QHash<QString, QList<PageUse>> m_uses; ///< by target
    QHash<QString, QString> m_files;       ///< all files that links may mean, as spelled on disk
    QSet<QString> m_folders;
};
