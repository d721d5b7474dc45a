#pragma once

#include "platform/FileSystem.h"
#include "platform/Progress.h"
#include "tools/build/BuildInput.h"
#include "tools/build/PageFacts.h"
#include "tools/build/ProjectListing.h"
#include "tools/build/ReadablePage.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

/// A page or style sheet of the project, and what was found in it.
struct ScannedPage
{
    quint32 file = 0; ///< place in the listing
    bool isStyleSheet = false;
    quint64 sum = 0; ///< checksum of its bytes
    /// Read and scanned in this run; else its facts come from the run before.
    bool isFresh = true;
    QString problem = {}; ///< why it could not be read; it has no facts then
    PageFacts facts;
};

/// Told what readers see of each page that is read in this run, on the thread that read it.
class PageTextTaker
{
public:
    virtual ~PageTextTaker() = default;
    /// `page` is its place in `ScannedPages::pages()`; several threads call at once, each with a
    /// `thread` of its own, counted from 0.
    virtual void take(int thread, quint32 page, const ReadablePage &text) = 0;
    /// Whether what it knows of a page with this checksum is still good, so that the page need not
    /// be read for it.
    [[nodiscard]] virtual bool knows(std::string_view path, quint64 sum) const = 0;
};

struct ScanWishes
{
    PageTextTaker *words = nullptr; ///< null: nobody asks for the text
    bool everything = false;        ///< read every page again, whatever was known
    int threads = 2;
};

/// All pages and style sheets of a project's books and global pages, each read and scanned once.
/// What was found is kept in "QV_PageFacts.bin" of the project folder, so that the next build reads
/// only what changed.
class ScannedPages final
{
public:
    /// Raises `Unwinding{Stopped}`; a page that cannot be read is a problem of that page. A cache
    /// that is missing, damaged or of another version is no error: everything is read.
    static ScannedPages read(FileSystem &files, const BuildInput &input, const ScanWishes &wishes,
                             const Progress &progress = {});

    [[nodiscard]] const ProjectListing &listing() const { return m_listing; }
    [[nodiscard]] const std::vector<ScannedPage> &pages() const { return m_pages; } ///< by path
    [[nodiscard]] std::string_view pathOf(const ScannedPage &page) const
    {
        return m_listing.files()[page.file].path;
    }

    /// The table of targets: what the pages' references mean, each path once; relative to the
    /// project folder, there or not.
    [[nodiscard]] const std::vector<std::string> &targets() const { return m_targets; }

    /// How many pages were read in this run.
    [[nodiscard]] int freshCount() const { return m_fresh; }

    /// Puts the cache in place, when anything changed.
    void save(FileSystem &files, const BuildInput &input) const;

private:
    class Run;
    void numberTargets(const std::vector<std::string> &targets);

    ProjectListing m_listing;
    std::vector<ScannedPage> m_pages;
    std::vector<qint64> m_readAt; ///< when each was read, milliseconds since 1970, UTC
    std::vector<std::string> m_targets;
    int m_fresh = 0;
    bool m_changed = false; ///< the cache says something else
};
