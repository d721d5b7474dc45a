#pragma once

#include "dialogs/merge/MergeLog.h"
#include "platform/Progress.h"
#include "startup/Program.h"

/// The merge dialog's work without its boxes and lists: combines catalogued projects into a new one
/// and lists it. Safe to run on a worker thread while the windows wait.
class ProjectMerge final
{
public:
    explicit ProjectMerge(Program &program);

    /// Merges. The session's project becomes the merged one (name, ID, language).
    ///
    /// Raises 5 for fewer than two projects, the same one twice, one that is not catalogued, or
    /// when the name is in the catalogue or its folder in use (`NewProjectFolder::settle` asks
    /// before that); 70 while another author makes a project of that name; 53, 75 or 76 naming a
    /// project whose folder or table of contents cannot be read. None of these writes anything.
    ///
    /// Later errors leave what was written unlisted under the project's folder name, with the
    /// reason in Merge_Log.txt; the description says where. Stop throws Unwinding, a base project
    /// that cannot be copied CopyFailure (tell it with `endAfterFailedCopy`): nothing of the merge
    /// is left then.
    ///
    /// The merged project has a status file; making it current is left to the caller.
    MergeResult merge(const MergeRequest &request, const Progress &progress = {});

private:
    Program &m_program;
};
