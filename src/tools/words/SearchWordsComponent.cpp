#include "tools/words/SearchWordsComponent.h"

#include "catalogue/ProjectCatalogue.h"
#include "catalogue/StatusIndicators.h"
#include "platform/Paths.h"
#include "platform/QvError.h"
#include "tools/build/BuildRun.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto source = "SearchWords::mGet_Words"_L1;

/// A light is set without making the project the current one.
class Nobody final : public CurrentProject
{
public:
    void handOver(const QString &, const QString &) override {}
};

class SearchWordsTool final : public SearchWordsBuilder
{
public:
    SearchWordsTool(Session &session, FileSystem &files)
        : m_session(session)
        , m_files(files)
    {
    }

    void mGet_Words(const QString &tocPath, const Progress &progress) override
    {
        Session session = m_session;
        session.projectName = projectOf(tocPath);
        session.projectLanguage = languageOf(session);
        const ToolReport report = build(session, progress);
        if (report.outcome == ToolReport::Outcome::Failed)
            throw QvError(PathFileAccess, source, report.summary);
    }

private:
    [[nodiscard]] QString projectOf(const QString &tocPath) const
    {
        const QString folder = parentFolder(tocPath);
        const QString name = lastComponent(withoutBackslash(folder));
        if (tocPath != projectFolder(m_session.serverPath, name) + ProjectFile::toc)
            throw QvError(InvalidCall, source,
                          u"This is no project's table of contents: "_s + tocPath);
        return name;
    }

    /// As the catalogue has it; the session's for what is not listed.
    [[nodiscard]] QString languageOf(Session &session)
    {
        for (const CatalogueEntry &entry : ProjectCatalogue(session, m_files).entries()) {
            if (entry.name == session.projectName && !entry.language.isEmpty())
                return entry.language;
        }
        return session.projectLanguage;
    }

    ToolReport build(Session &session, const Progress &progress)
    {
        bool isOutdated = false;
        BuildOrder order;
        order.tools = {BuildTool::SearchIndex};
        order.checks = CheckLevel::Off;
        BuildObserver observer;
        observer.outdated = [&] { isOutdated = true; };
        const BuildResult result = runBuild(session, m_files, session.projectName,
                                            session.projectLanguage, order, observer, progress);
        const ToolReport report = result.of(BuildTool::SearchIndex).value();
        Nobody nobody;
        StatusIndicators(session, m_files, nobody)
            .setLight(elementOf(BuildTool::SearchIndex),
                      isOutdated ? Light::mustRun : lightOf(report.outcome));
        return report;
    }

    Session &m_session;
    FileSystem &m_files;
};

} // namespace

std::unique_ptr<SearchWordsBuilder> makeSearchWordsBuilder(Session &session, FileSystem &files)
{
    return std::make_unique<SearchWordsTool>(session, files);
}
