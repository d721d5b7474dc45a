#pragma once

#include "dialogs/merge/MergeLog.h"
#include "dialogs/merge/MergeSources.h"
#include "platform/Progress.h"
#include "platform/TreeWalker.h"

#include <QHash>
#include <QSet>

/// Brings what the books of added projects may use though it lies in none of their folders: a
/// folder of pictures or a style sheet beside them. A name that is free in the merged project is
/// taken as it is; where it holds something else, that stays and the author is told.
class SharedFiles final
{
public:
    /// `folder` is the merged project's, with backslash; all its books are there, in `bookFolders`.
    /// `findings` must outlive this.
    SharedFiles(Program &program, const QString &folder, const QStringList &bookFolders,
                QList<MergeFinding> &findings);

    /// Brings those of one project; `renamed` gives the new relative paths of its folders. Links in
    /// them follow. Raises what copying raises.
    void bring(const MergeSource &source, const QHash<QString, QString> &renamed,
               const Progress &progress = {});

private:
    [[nodiscard]] QString freeStage(const QString &source) const;
    void stage(const MergeSource &source, const Progress &progress);
    void settle(const QString &from, const QString &to, const Progress &progress);
    void settleTaken(const TreeEntry &staged, const TreeEntry &there, const Progress &progress);
    void note(MergeFinding::Kind kind, QString detail);

    Program &m_program;
    QString m_folder;
    QSet<QString> m_books;
    QList<MergeFinding> &m_findings;
    QString m_project; ///< whose files are brought, as the next two
    QString m_stage;   ///< where they grow; in `m_folder`, with backslash
    QHash<QString, QString> m_renamed;
};
