#include "tools/build/BuildRun.h"

#include "platform/Paths.h"
#include "platform/QvError.h"
#include "platform/TreeWalker.h"
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
        recover();
        readPages();
        const PageAnchors anchors(m_pages);
        const LinkCheck check = checkLinks(anchors);
        const auto run = [&](BuildTool tool,
                             const std::function<ToolReport(const Progress &)> &work) {
            if (wants(tool))
                m_result.tools[static_cast<size_t>(tool)] = runStage(stageOf(tool), work);
        };
        run(BuildTool::DocToDoc, [&](const Progress &progress) {
            return linkDocuments(m_files, m_input, m_pages, check, progress);
        });
        run(BuildTool::ContextSettings, [&](const Progress &progress) {
            return writeContextSettings(m_files, m_input, m_pages, progress);
        });
        run(BuildTool::QuickNav, [&](const Progress &progress) {
            return writeQuickNavIndex(m_files, m_input, m_pages, anchors, progress);
        });
        run(BuildTool::SearchIndex,
            [&](const Progress &progress) { return m_words->finish(m_pages, progress); });
        if (m_order.checks != CheckLevel::Off) {
            m_result.checks = runStage(BuildStage::Checks, [&](const Progress &progress) {
                return checkQuality(m_files, m_input, m_pages, check, m_order.checks, progress);
            });
        }
        m_result.success = std::none_of(m_result.tools.begin(), m_result.tools.end(), hasFailed)
                           && !hasFailed(m_result.checks);
        return std::move(m_result);
    }

private:
    static bool hasFailed(const std::optional<ToolReport> &report)
    {
        return report && report->outcome == ToolReport::Outcome::Failed;
    }

    [[nodiscard]] bool wants(BuildTool tool) const { return m_order.tools.contains(tool); }

    void recover()
    {
        for (const QLatin1StringView folder : freshFolders)
            recoverFreshFolder(m_files, m_input.folder + folder);
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
        m_pages.save(m_files, m_input);
        end(BuildStage::Pages,
            {ToolReport::Outcome::Good, tr("%1 pages and style sheets, %2 of them read anew.")
                                            .arg(m_pages.pages().size())
                                            .arg(m_pages.freshCount())});
    }

    [[nodiscard]] LinkCheck checkLinks(const PageAnchors &anchors) const
    {
        return {m_input, m_pages, anchors, m_progress};
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
    const BuildInput input = readBuildInput(session, files, project, language, progress);
    return runBuild(files, input, order, observer, progress);
}

BuildResult runBuild(FileSystem &files, const BuildInput &input, const BuildOrder &order,
                     const BuildObserver &observer, const Progress &progress)
{
    return Run(files, input, order, observer, progress).result();
}
