#pragma once

#include "projectfiles/changes/FileChanges.h"

#include <QObject>

#include <functional>

/// The structure commands of an author in the open project, to be undone and redone by name. It
/// outlives saving; it forgets the oldest ones when they hold too much memory.
class ChangeHistory final : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// A command that was done; what was undone before can no longer be redone.
    void add(const QString &name, FileChanges changes);
    void clear();
    /// What was done, or undone, so far can no longer be reached.
    void forgetUndo();
    void forgetRedo();
    /// Gives all contents that it holds other bytes: what `rule` makes of the file at a path,
    /// relative to the project folder.
    using Rule = std::function<QByteArray(const QString &path, const QByteArray &bytes)>;
    void rewrite(const Rule &rule);

    [[nodiscard]] bool canUndo() const { return m_done > 0; }
    [[nodiscard]] bool canRedo() const { return m_done < m_entries.size(); }
    [[nodiscard]] QString undoName() const; ///< "" when there is none
    [[nodiscard]] QString redoName() const;

    /// What takes back the last command, and what does the next one again.
    [[nodiscard]] FileChanges undoing() const;
    [[nodiscard]] FileChanges redoing() const;
    /// They were applied; `changes` as applying left them.
    void undone(const FileChanges &changes);
    void redone(const FileChanges &changes);

Q_SIGNALS:
    void changed();

private:
    struct Entry
    {
        QString name;
        FileChanges changes; ///< as the last application left them: done, or taken back
    };
    void forgetOldest();

    QList<Entry> m_entries;
    qsizetype m_done = 0; ///< so many of them are done, the others were undone
};
