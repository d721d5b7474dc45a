#pragma once

#include "platform/Progress.h"
#include "startup/Program.h"

#include <QString>

/// The work of deleting a project, without the boxes. A refusal says what, where and what now.
class ProjectDeletion final
{
public:
    enum class Outcome {
        Unlisted,      ///< taken out of the list; its files were to stay
        Deleted,       ///< taken out of the list, and its folder is gone
        FolderWasGone, ///< taken out of the list; there was no folder any more
        LeftAside,     ///< as Deleted, but Stop left files aside, which the next start removes
    };
    struct Result
    {
        Outcome outcome;
        QString leftAside; ///< the folder with what is left
    };

    explicit ProjectDeletion(Program &program);

    /// Whether a QV Developer, of this author or another, has the project open. False as well when
    /// that cannot be found out.
    [[nodiscard]] bool isInUse(const QString &name) const;
    /// Takes a project out of the list, and out of the installation's links; before that, when
    /// `alsoFiles`, deletes its folder with read-only files and all. The progress counts files.
    /// Raises 75, and changes nothing, when the folder may not or cannot be deleted: the name names
    /// no folder directly below Docs, it is a link, another project has the same folder, the
    /// project is not listed any more, or the system says so. When only a later file cannot be
    /// deleted the project stays in the list; deleting it again takes it out. Stop throws Unwinding
    /// as long as nothing has changed.
    Result remove(const QString &name, bool alsoFiles, const Progress &progress = {});

private:
    Result removeFolder(const QString &name, const Progress &progress);
    void requireItsOwn(const QString &name);
    [[noreturn]] void refuse(const QString &name, const QString &reason) const;

    Program &m_program;
};
