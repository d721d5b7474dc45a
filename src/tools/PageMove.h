#pragma once

#include "platform/Progress.h"
#include "tools/PageIndex.h"

#include <QHash>
#include <QList>
#include <QString>

/// A file or folder of the project that gets another path. Both are relative to the project folder.
struct PathMove
{
    QString from, to;
    bool isFolder = false;
};

/// Where things lie after some moves. Paths are compared without regard to case.
class MovedPaths final
{
public:
    explicit MovedPaths(const QList<PathMove> &moves);
    /// `path` itself when it stays. What lies in a moved folder goes with it.
    [[nodiscard]] QString newPath(const QString &path) const;

private:
    QHash<QString, QString> m_moves;
    bool m_hasFolders = false;
};

/// A reference that must be written otherwise when files move.
struct LinkChange
{
    QString page; ///< where it lies before the move
    int line = 0;
    qsizetype start = 0, length = 0; ///< place in the page's text
    QString before, after;           ///< as written
    QString problem = {};            ///< why it stays as it is; "" when it changes
    bool isLocked = false;           ///< the page's read-only bit is set
};

/// Moves, and what they mean for the links of the project.
struct PageMove
{
    QList<PathMove> moves;
    QList<LinkChange> changes; ///< page by page, in the order of each page

    [[nodiscard]] QStringList lockedPages() const; ///< in which links would change
    [[nodiscard]] int changeCount() const;         ///< without those that have a problem
    /// The same moves with the changes in what moves itself; who stays keeps its links.
    [[nodiscard]] PageMove withOwnLinksOnly() const;
};

/// Works out every link that must change when these files move: in all pages and style sheets that
/// refer to them, and in those that move. `index` must be up to date. Reads nothing.
PageMove planPageMove(const PageIndex &index, const QList<PathMove> &moves);

/// Changes the links of a plan in `files`, reading and writing each page once; all bytes but those
/// of the links stay. Raises 75 naming the page when it is no longer what the plan was made from
/// or cannot be written unharmed.
void rewriteLinks(FileSystem &files, const QString &projectFolder, const PageMove &move,
                  const QString &language, const Progress &progress = {});
/// Moves the files and folders themselves; folders that are needed are made.
void moveFiles(FileSystem &files, const QString &projectFolder, const QList<PathMove> &moves);
