#pragma once

#include "platform/Progress.h"
#include "projectfiles/ProjectCopy.h"
#include "startup/Program.h"

#include <QString>

/// The folder of the session's project while that is being made. It grows as "<name>.qvnew" beside
/// its place, so that no half project ever stands under a project's name.
class NewProjectFolder final
{
public:
    enum class Answer { MakeNew, ListAgain, Cancel };

    explicit NewProjectFolder(Program &program);

    /// Asks what to do when the folder is in use; moves it aside when the author says so. Raises 5
    /// when another author listed it while the question was open.
    Answer settle();
    /// Makes the folder, empty. Raises 5 when it is in use.
    void make();

    /// Makes room for `growing()`, which the caller then fills: the folder itself stands empty in
    /// its place, and what a killed program left is removed.
    void startGrowing();
    /// Flushes what has grown and puts it in place. The step before the project is listed.
    void putInPlace(const Progress &progress);
    /// Puts what has grown in place as it is, after a failure. When that fails too, it stays where
    /// `path()` says.
    void leaveInPlace();
    /// Removes all that `startGrowing` and its caller made, as far as the disk lets it.
    void discard();

    /// Where the project's files lie now; all without a backslash at the end.
    [[nodiscard]] QString path() const;
    [[nodiscard]] QString place() const;
    [[nodiscard]] QString growing() const;
    /// A text that names files in `growing()`, as it is once they are in place.
    [[nodiscard]] QString inPlace(QString line) const;

private:
    [[nodiscard]] bool isUnused(); ///< not there, or nothing is in it
    void moveAside();
    void move();
    [[noreturn]] void raiseExists() const;

    Program &m_program;
    bool m_wasThere = false;
    bool m_isInPlace = false;
};

/// Tells of a copy that cannot be written, and ends the program: it never returns.
void endAfterFailedCopy(Program &program, const CopyFailure &failure);
