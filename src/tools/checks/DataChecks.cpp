#include "tools/checks/DataChecks.h"

#include "platform/Paths.h"
#include "platform/QvError.h"
#include "platform/Xml.h"
#include "tools/build/BuildTools.h"
#include "tools/pack/PackContents.h"

#include <QCoreApplication>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("DataChecks", text);
}

class DataCheck final
{
public:
    DataCheck(FileSystem &files, const BuildInput &input, const ScannedPages &pages,
              FindingList &findings)
        : m_files(files)
        , m_input(input)
        , m_listing(pages.listing())
        , m_pages(pages)
        , m_findings(findings)
    {
    }

    void run()
    {
        m_findings.startFile(ProjectFile::status);
        const auto unreadable = [this](const QvError &error) {
            if (m_findings.takes("DATA01"_L1))
                m_findings.add("DATA01"_L1, 0, error.description());
        };
        trap(unreadable, [this] { takeLights(); });
        takePackedCopy();
    }

private:
    void takeLights()
    {
        const QString path = m_input.folder + ProjectFile::status;
        if (!m_files.exists(path))
            return;
        const pugi::xml_document document = loadXml(m_files, path, "QV_StatusIndicator");
        for (const BuildTool tool : allBuildTools) {
            const QLatin1StringView element = elementOf(tool);
            const QString light = textOf(document.document_element().child(element.data()));
            if (saysDone(light.toLongLong()))
                takeTool(tool);
        }
    }

    static bool saysDone(qint64 light) { return light == Light::good || light == Light::warnings; }

    /// The file of the tool's data was perhaps written a moment ago: the listing is older.
    void takeTool(BuildTool tool)
    {
        const QString result = resultOf(tool);
        const FileStatus status = m_files.status(m_input.folder + result);
        const bool isThere = status.kind == FileKind::File;
        const bool isOld = isThere && status.modified.toMSecsSinceEpoch() < newestSourceOf(tool);
        if (isThere && !isOld)
            return;
        if (!m_findings.takes("DATA02"_L1))
            return;
        const QString text =
            isThere ? tr("\"%1\" is marked as done, but %2 is older than what it was made from.")
                    : tr("\"%1\" is marked as done, but there is no file %2.");
        m_findings.add("DATA02"_L1, 0, text.arg(nameOf(tool), result), elementOf(tool));
    }

    [[nodiscard]] qint64 newestSourceOf(BuildTool tool) const
    {
        qint64 newest = modified(ProjectFile::toc);
        const auto take = [&](const QString &path) { newest = std::max(newest, modified(path)); };
        for (const BuildBook &book : m_input.books)
            take(book.folder + book.entry.file);
        if (tool == BuildTool::QuickNav)
            take(ProjectFile::quickNav);
        if (tool == BuildTool::SearchIndex)
            take(ProjectFile::keyWords);
        return tool == BuildTool::ContextSettings ? newest : std::max(newest, newestPage());
    }

    [[nodiscard]] qint64 modified(const QString &path) const
    {
        const ProjectListing::Found found = m_listing.find(ProjectListing::listed(path));
        const bool isFile = found.match == ProjectListing::Match::Exact
                            || found.match == ProjectListing::Match::OtherCase;
        return isFile ? m_listing.files()[found.file].modified : 0;
    }

    [[nodiscard]] qint64 newestPage() const
    {
        qint64 newest = 0;
        for (const ScannedPage &page : m_pages.pages())
            newest = std::max(newest, m_listing.files()[page.file].modified);
        return newest;
    }

    void takePackedCopy()
    {
        const QString pack = packName(m_input.project);
        const qint64 packed = modified(pack);
        const auto isNewer = [&](const ScannedPage &page) {
            return m_listing.files()[page.file].modified > packed;
        };
        const std::vector<ScannedPage> &all = m_pages.pages();
        const auto newer = packed == 0 ? 0 : std::count_if(all.begin(), all.end(), isNewer);
        m_findings.startFile(pack);
        if (newer > 0 && m_findings.takes("DATA03"_L1))
            m_findings.add("DATA03"_L1, 0,
                           tr("Pages that changed after the project was packed: %1.").arg(newer));
    }

    FileSystem &m_files;
    const BuildInput &m_input;
    const ProjectListing &m_listing;
    const ScannedPages &m_pages;
    FindingList &m_findings;
};

} // namespace

void checkData(FileSystem &files, const BuildInput &input, const ScannedPages &pages,
               FindingList &findings)
{
    DataCheck(files, input, pages, findings).run();
}
