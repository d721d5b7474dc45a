#pragma once

#include "platform/Progress.h"
#include "reports/LinkEntries.h"
#include "startup/Program.h"

class LinkListing;

/// Reads the link files of all projects of the server and says which links are good. Every link
/// file is read once per call; one that cannot be read counts as empty.
class LinkReport final
{
public:
    explicit LinkReport(Program &program);
    /// The same with a number of threads of its own.
    LinkReport(Program &program, int threads);

    /// Published targets, in catalogue and file order: good when the target's file is there and
    /// its first line is not empty. Throws Unwinding when Stop was pressed.
    LinkEntries GetIBD_Details(const Progress &progress = {});
    /// References, in the same order: good when the target of the identifier is.
    LinkEntries GetIBS_Details(const Progress &progress = {});
    /// True when the target document of the identifier is there and its first line is not empty.
    /// The first candidate of all projects, in order, decides.
    bool CheckLinkIDExist(const QString &LinkID);

private:
    [[nodiscard]] LinkListing listing() const;

    Program &m_program;
    int m_threads;
};
