#pragma once

#include "projectfiles/GrowingFolder.h"
#include "projectfiles/ProjectCopy.h"
#include "startup/Program.h"

#include <QString>

#include <optional>

/// The folder of the session's project while that is being made, and what to ask when it is in use.
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

    /// Makes the folder's place, empty, for the folder to grow beside it. Raises 5 when it is in
    /// use.
    GrowingFolder &startGrowing();
    [[nodiscard]] GrowingFolder &folder() { return *m_folder; } ///< since `startGrowing`
    [[nodiscard]] const GrowingFolder &folder() const { return *m_folder; }

    /// Where the folder lies, without a backslash at the end.
    [[nodiscard]] QString place() const;
    /// A text that names files in `growing()`, as it is once they are in place.
    [[nodiscard]] QString inPlace(QString line) const;

private:
    [[nodiscard]] bool isUnused();
    void moveAside();
    [[noreturn]] void raiseExists() const;

    Program &m_program;
    std::optional<GrowingFolder> m_folder;
};

/// Tells of a copy that cannot be written, and ends the program: it never returns.
void endAfterFailedCopy(Program &program, const CopyFailure &failure);
