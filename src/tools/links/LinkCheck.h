#pragma once

#include "platform/Progress.h"
#include "tools/build/BuildInput.h"
#include "tools/build/ScannedPages.h"

#include <vector>

class PageAnchors;

/// What is wrong with a reference.
enum class RefState : quint8 {
    Good,
    FileMissing,
    IsFolder,        ///< and the folder has no index page
    OtherLetterCase, ///< good here, dead on a server where letter case counts
    SeveralSpellings,
    PlaceMissing, ///< the page is there, but has no such anchor
    LeavesProject,
    Absolute,
    Elsewhere, ///< another machine, mail: not looked at
    UnknownLinkID,
};

/// A reference that is not good.
struct BadRef
{
    quint32 page = 0; ///< place in `ScannedPages::pages()`
    quint32 ref = 0;  ///< place in its `refs`
    RefState state = RefState::FileMissing;
};

/// What all references of a project's pages lead to, worked out once for the linking tool and the
/// quality checks.
class LinkCheck final
{
public:
    LinkCheck(const BuildInput &input, const ScannedPages &pages, const PageAnchors &anchors,
              const Progress &progress = {});

    [[nodiscard]] const std::vector<BadRef> &bad() const { return m_bad; } ///< in page order
    [[nodiscard]] qint64 count() const { return m_count; }                 ///< references looked at
    /// Whether any page or style sheet refers to a file (place in the listing).
    [[nodiscard]] bool isUsed(quint32 file) const { return m_used[file]; }

private:
    std::vector<BadRef> m_bad;
    std::vector<bool> m_used;
    qint64 m_count = 0;
};

/// A bad reference as the logs show it: "LINK01" to "LINK08" by its state, `subject` what it leads
/// to.
Finding findingOf(const BuildInput &input, const ScannedPages &pages, const BadRef &bad);
