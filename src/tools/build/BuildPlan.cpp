#include "tools/build/BuildPlan.h"

#include "platform/Paths.h"
#include "tools/PageReference.h"

#include <QCoreApplication>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QString tr(const char *text, int count = -1)
{
    return QCoreApplication::translate("BuildPlan", text, nullptr, count);
}

/// Null when there is no such file, or several in other letter case.
const ProjectListing::File *fileAt(const ProjectListing &listing, const QString &path)
{
    using Match = ProjectListing::Match;
    const auto found = listing.find(ProjectListing::listed(path));
    const bool isThere = found.match == Match::Exact || found.match == Match::OtherCase;
    return isThere ? &listing.files()[found.file] : nullptr;
}

QString globalBookPath()
{
    return withBackslash(ProjectFile::globalFolder) + ProjectFile::globalBook;
}

/// What the files of a project say about one tool.
class Reasons final
{
public:
    Reasons(const BuildInput &input, const ProjectListing &listing, ToolState &state)
        : m_input(input)
        , m_listing(listing)
        , m_state(state)
    {
    }

    void take(BuildTool tool)
    {
        takeLastRun(resultOf(tool));
        if (!m_state.lastRun.isValid()) {
            m_state.reasons = {tr("It has not run yet.")};
            return;
        }
        takeLight();
        takeFile(ProjectFile::toc, tr("The list of books changed."));
        if (tool == BuildTool::QuickNav || tool == BuildTool::SearchIndex)
            takeFile(globalBookPath(), tr("The list of global pages changed."));
        if (tool == BuildTool::QuickNav)
            takeFile(ProjectFile::quickNav, tr("The quick navigation changed."));
        if (tool == BuildTool::SearchIndex)
            takeFile(ProjectFile::keyWords, tr("The keywords changed."));
        takeBooks();
        if (tool != BuildTool::ContextSettings)
            takePages();
    }

private:
    void takeLastRun(const QString &result)
    {
        if (const ProjectListing::File *const file = fileAt(result))
            m_state.lastRun = QDateTime::fromMSecsSinceEpoch(file->modified, Qt::UTC);
    }

    void takeLight()
    {
        if (m_state.light == Light::failed)
            m_state.reasons.append(tr("The last run failed."));
        else if (m_state.light == Light::mustRun)
            m_state.reasons.append(tr("The project was edited after the last run."));
        else if (!m_state.light)
            m_state.reasons.append(tr("Its status is not known."));
    }

    void takeFile(const QString &path, const QString &reason)
    {
        if (isNewer(fileAt(path)))
            m_state.reasons.append(reason);
    }

    void takeBooks()
    {
        QStringList changed;
        for (const BuildBook &book : m_input.books) {
            if (isNewer(fileAt(book.folder + book.entry.file)))
                changed.append(book.entry.name);
        }
        if (!changed.isEmpty())
            m_state.reasons.append(
                tr("Books changed: %1.").arg(firstOf(changed, tr("%1 and %2 more"))));
    }

    void takePages()
    {
        QStringList changed;
        for (const ProjectListing::File &file : m_listing.files()) {
            const QString path = ProjectListing::shown(file.path);
            if (isNewer(&file) && isPageName(path))
                changed.append(lastComponent(path));
        }
        if (!changed.isEmpty())
            m_state.reasons.append(
                tr("Pages changed: %1.").arg(firstOf(changed, tr("%1 and %2 more"))));
    }

    static QString firstOf(const QStringList &names, const QString &more)
    {
        constexpr qsizetype shown = 3;
        const QString list = names.first(std::min(shown, names.size())).join(u", "_s);
        return names.size() > shown ? more.arg(list, QString::number(names.size() - shown)) : list;
    }

    [[nodiscard]] const ProjectListing::File *fileAt(const QString &path) const
    {
        return ::fileAt(m_listing, path);
    }

    [[nodiscard]] bool isNewer(const ProjectListing::File *file) const
    {
        return file != nullptr && file->modified > m_state.lastRun.toMSecsSinceEpoch();
    }

    const BuildInput &m_input;
    const ProjectListing &m_listing;
    ToolState &m_state;
};

/// The pages in the order of paths, then the project's own files; null for one that is not there.
std::vector<const ProjectListing::File *> sourcesOf(const BuildInput &input,
                                                    const ProjectListing &listing)
{
    std::vector<const ProjectListing::File *> sources;
    for (const ProjectListing::File &file : listing.files()) {
        if (isPageName(ProjectListing::shown(file.path)))
            sources.push_back(&file);
    }
    for (const QString &path : {QString(ProjectFile::toc), globalBookPath(),
                                QString(ProjectFile::quickNav), QString(ProjectFile::keyWords)})
        sources.push_back(fileAt(listing, path));
    for (const BuildBook &book : input.books)
        sources.push_back(fileAt(listing, book.folder + book.entry.file));
    return sources;
}

bool isAsItWas(const ProjectListing::File *before, const ProjectListing::File *now)
{
    if (before == nullptr || now == nullptr)
        return before == now;
    return before->path == now->path && before->size == now->size
           && before->modified == now->modified;
}

} // namespace

bool sourcesDiffer(const BuildInput &input, const ProjectListing &before, const ProjectListing &now)
{
    const auto old = sourcesOf(input, before);
    const auto current = sourcesOf(input, now);
    return !std::equal(old.begin(), old.end(), current.begin(), current.end(), isAsItWas);
}

BuildPlan planBuild(const BuildInput &input, const ProjectListing &listing,
                    const std::array<std::optional<qint64>, 4> &lights)
{
    BuildPlan plan;
    for (const BuildTool tool : allBuildTools) {
        ToolState &state = plan.tools[static_cast<size_t>(tool)];
        state.light = lights[static_cast<size_t>(tool)];
        Reasons(input, listing, state).take(tool);
    }
    return plan;
}
