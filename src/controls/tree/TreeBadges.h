#pragma once

#include "controls/session/ProjectSession.h"

#include <QMetaType>

class TreeFindings;

/// A mark at the right of a row of the project tree.
struct TreeBadge
{
    enum class Kind {
        Unsaved,       ///< text of the author that is not on disk yet
        ChangedOnDisk, ///< by somebody else, since it was opened
        Missing,       ///< the file is not there
        Unreadable,
        BrokenLinks,
        Findings, ///< of the last quality checks, links aside
        Locked,
    } kind = Kind::Unsaved;
    int count = 1;
    friend bool operator==(const TreeBadge &, const TreeBadge &) = default;

    [[nodiscard]] QLatin1StringView icon() const;
    [[nodiscard]] QString words() const; ///< "2 broken links"
};
using TreeBadgeList = QList<TreeBadge>;
Q_DECLARE_METATYPE(TreeBadgeList)

/// "2 broken links, locked"
QString wordsOf(const TreeBadgeList &badges);

/// What is remarkable about the pages of the project, from what the session knows already: no file
/// is touched for it. Paths are relative to the project folder.
class TreeBadges final : public QObject
{
    Q_OBJECT

public:
    explicit TreeBadges(ProjectSession &session, QObject *parent = nullptr);

    [[nodiscard]] const TreeBadgeList &ofPage(const QString &path);
    /// The sums of all pages in a folder and below, as the disk has them.
    [[nodiscard]] const TreeBadgeList &ofFolder(const QString &folder);
    [[nodiscard]] bool isLocked(const QString &path);

Q_SIGNALS:
    void changed();

private:
    void forget(const QStringList &paths);
    void takeUpdate();
    void takeFindings();
    [[nodiscard]] TreeBadgeList look(const QString &path) const;
    [[nodiscard]] TreeBadgeList sumOf(const QString &folder);

    ProjectSession &m_session;
    TreeFindings *m_findings;
    // What was asked for since the last change; pages in one letter case.
    QHash<QString, TreeBadgeList> m_pages, m_folders;
    QStringList m_sorted; ///< paths of all pages
    bool m_isSorted = false;
    QSet<QString> m_written; ///< files written since the pages were read, in one letter case
};
