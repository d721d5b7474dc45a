#include "tools/build/BuildRun.h"

#include "platform/Paths.h"
#include "platform/QvError.h"
#include "platform/TreeWalker.h"
#include "resources/Counted.h"
#include "tools/SideWork.h"
#include "tools/build/BuildLock.h"
#include "tools/build/BuildPlan.h"
#include "tools/build/FreshFolder.h"
#include "tools/build/PageAnchors.h"
#include "tools/build/ScannedPages.h"
#include "tools/checks/QualityChecks.h"
#include "tools/context/ContextSettings.h"
#include "tools/links/DocToDoc.h"
#include "tools/links/LinkCheck.h"
#include "tools/navigation/QuickNavIndex.h"
#include "tools/words/SearchWords.h"

#include <QCoreApplication>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("BuildRun", text);
}

/// Folders that tools write anew as a whole.
constexpr std::array freshFolders{"DocToDoc"_L1, "DynamicHelp"_L1, "Search_Words"_L1};

BuildStage stageOf(BuildTool tool)
{
    constexpr std::array stages{BuildStage::DocToDoc, BuildStage::ContextSettings,
                                BuildStage::QuickNav, BuildStage::SearchIndex};
    return stages[static_cast<size_t>(tool)];
}

/// One build while it runs.
class Run final
{
public:
    Run(FileSystem &files, const BuildInput &input, const BuildOrder &order,
        const BuildObserver &observer, const Progress &progress)
        : m_files(files)
        , m_input(input)
        , m_order(order)
        , m_observer(observer)
        , m_progress(progress)
    {
    }

    BuildResult result()
    {
        try {
            runStages();
        } catch (const Unwinding &) {
            tellChanges(); // what tools did before the stop is there
            throw;
        }
        tellChanges();
        m_result.success = std::none_of(m_result.tools.begin(), m_result.tools.end(), hasFailed)
                           && !hasFailed(m_result.checks);
        return std::move(m_result);
    }

private:
    /// What tools work out runs beside the others; what they made takes its place in their turn.
    void runStages()
    {
        recover();
        readPages();
        SideWork words = aside([this](const Progress &progress) {
            if (m_words)
                m_words->prepare(m_pages, progress);
        });
        const PageAnchors anchors(m_pages);
        const LinkCheck links(m_input, m_pages, anchors, m_progress);
        QualityChecks checks(m_files, m_input, m_pages, links, m_order.checks);
        SideWork looking = aside([&](const Progress &progress) {
            if (m_order.checks != CheckLevel::Off)
                checks.look(progress);
        });
        runLinkTools(links, anchors);
        // What cannot be kept is read again by the next build.
        trap([](const QvError &) {}, [this] { m_pages.save(m_files, m_input); });
        runTool(BuildTool::SearchIndex, [&](const Progress &progress) {
            words.finish(progress);
            return m_words->putInPlace();
        });
        if (m_order.checks != CheckLevel::Off) {
            m_result.checks = runStage(BuildStage::Checks, [&](const Progress &progress) {
                looking.finish(progress);
                return checks.finish();
            });
        }
    }

    void runLinkTools(const LinkCheck &links, const PageAnchors &anchors)
    {
        runTool(BuildTool::DocToDoc, [&](const Progress &progress) {
            return linkDocuments(m_files, m_input, m_pages, links, progress);
        });
        runTool(BuildTool::ContextSettings, [&](const Progress &progress) {
            return writeContextSettings(m_files, m_input, m_pages, progress);
        });
        runTool(BuildTool::QuickNav, [&](const Progress &progress) {
            return writeQuickNavIndex(m_files, m_input, m_pages, anchors, progress);
        });
    }

    [[nodiscard]] SideWork aside(SideWork::Work work) const
    {
        return SideWork(std::move(work), m_order.threads > 1);
    }

    void runTool(BuildTool tool, const std::function<ToolReport(const Progress &)> &work)
    {
        if (wants(tool))
            m_result.tools[static_cast<size_t>(tool)] = runStage(stageOf(tool), work);
    }

    void tellChanges() const
    {
        const bool hasMade =
            std::any_of(m_result.tools.begin(), m_result.tools.end(),
                        [](const std::optional<ToolReport> &report) { return report.has_value(); });
        if (hasMade && m_observer.outdated && hasChanged())
            m_observer.outdated();
    }

    [[nodiscard]] bool hasChanged() const
    {
        // A project that is gone by now made the tools fail, which says more.
        return trap([](const QvError &) {},
                    [this] {
                        const auto now = ProjectListing::read(m_files, m_input.folder);
                        return sourcesDiffer(m_input, m_pages.listing(), now);
                    });
    }

    static bool hasFailed(const std::optional<ToolReport> &report)
    {
        return report && report->outcome == ToolReport::Outcome::Failed;
    }

    [[nodiscard]] bool wants(BuildTool tool) const { return m_order.tools.contains(tool); }

    void recover()
    {
        // What is in the way now is told by the tool that needs the folder.
        for (const QLatin1StringView folder : freshFolders)
            trap([](const QvError &) {},
                 [&] { recoverFreshFolder(m_files, m_input.folder + folder); });
    }

    void readPages()
    {
        if (wants(BuildTool::SearchIndex))
            m_words.emplace(m_files, m_input, m_order.threads, m_order.everything);
        const ScanWishes wishes{.words = m_words ? &*m_words : nullptr,
                                .everything = m_order.everything,
                                .threads = m_order.threads};
        begin(BuildStage::Pages);
        m_pages = ScannedPages::read(m_files, m_input, wishes, stageProgress());
        end(BuildStage::Pages,
            {ToolReport::Outcome::Good,
             tr("%1, %2 of them read anew.")
                 .arg(counted(qsizetype(m_pages.pages().size()), tr("1 page or style sheet"),
                              tr("%1 pages and style sheets")))
                 .arg(m_pages.freshCount())});
    }

    /// What a tool raises makes it fail; the others go on.
    ToolReport runStage(BuildStage stage, const std::function<ToolReport(const Progress &)> &work)
    {
        begin(stage);
        ToolReport report;
        const auto failed = [&](const QvError &error) {
            report = {ToolReport::Outcome::Failed, error.description()};
        };
        trap(failed, [&] { report = work(stageProgress()); });
        end(stage, report);
        return report;
    }

    [[nodiscard]] Progress stageProgress() const { return m_progress.piece(m_stage, stageCount()); }

    [[nodiscard]] int stageCount() const
    {
        return 1 + static_cast<int>(m_order.tools.size()) + (m_order.checks != CheckLevel::Off);
    }

    void begin(BuildStage stage) const
    {
        if (m_observer.begins)
            m_observer.begins(stage);
    }

    void end(BuildStage stage, const ToolReport &report)
    {
        ++m_stage;
        if (m_observer.ends)
            m_observer.ends(stage, report);
    }

    FileSystem &m_files;
    const BuildInput &m_input;
    const BuildOrder &m_order;
    const BuildObserver &m_observer;
    const Progress &m_progress;
    std::optional<SearchWords> m_words;
    ScannedPages m_pages;
    BuildResult m_result;
    int m_stage = 0;
};

} // namespace

QString nameOf(BuildStage stage)
{
    switch (stage) {
    case BuildStage::Pages:
        return tr("Reading the pages");
    case BuildStage::DocToDoc:
        return nameOf(BuildTool::DocToDoc);
    case BuildStage::ContextSettings:
        return nameOf(BuildTool::ContextSettings);
    case BuildStage::QuickNav:
        return nameOf(BuildTool::QuickNav);
    case BuildStage::SearchIndex:
        return nameOf(BuildTool::SearchIndex);
    case BuildStage::Checks:
        return tr("Quality checks");
    }
    return {};
}

BuildResult runBuild(Session &session, FileSystem &files, const QString &project,
                     const QString &language, const BuildOrder &order,
                     const BuildObserver &observer, const Progress &progress)
{
    const QString folder = existingProjectFolder(files, session.serverPath, project);
    const auto lock = lockBuild(files, folder);
    const BuildInput input = readBuildInput(session, files, project, language, progress);
    return runBuild(files, input, order, observer, progress);
}

BuildResult runBuild(FileSystem &files, const BuildInput &input, const BuildOrder &order,
                     const BuildObserver &observer, const Progress &progress)
{
    return Run(files, input, order, observer, progress).result();
}
