#include "tools/links/DocToDoc.h"

#include "platform/Paths.h"
#include "platform/Xml.h"
#include "resources/Counted.h"
#include "tools/build/FreshFolder.h"
#include "tools/links/DocLinksFile.h"
#include "tools/links/LinkCheck.h"
#include "tools/links/LinkFileUpdate.h"
#include "tools/links/LinkIdentifiers.h"

#include <QCoreApplication>
#include <QHash>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr auto folderName = "DocToDoc"_L1;
constexpr auto linksName = "DocLinks.xml"_L1;
constexpr auto logName = "DocToDoc_Log.txt"_L1;

QString tr(const char *text)
{
    return QCoreApplication::translate("DocToDoc", text);
}

/// What the project publishes and asks for, and what is wrong with that.
class IdentifierLists final
{
public:
    IdentifierLists(const BuildInput &input, const ScannedPages &pages)
        : m_start(input.project + u'\\')
    {
        m_links.project = input.project;
        for (const PublishedTarget &target : publishedTargets(input, pages))
            take(target);
        for (const AskedIdentifier &asked : askedIdentifiers(pages))
            m_links.references.append({asked.identifier, linkIdentifier(m_start + asked.file)});
        noteUnread(input, pages);
        m_links.isThere = [&listing = pages.listing(), start = m_start](const QString &file) {
            return file.startsWith(start, Qt::CaseInsensitive)
                   && !listing.spelled(file.sliced(start.size())).isEmpty();
        };
    }

    [[nodiscard]] const ProjectLinks &links() const { return m_links; }
    [[nodiscard]] const QList<Finding> &findings() const { return m_findings; }

private:
    void take(const PublishedTarget &target)
    {
        if (!target.isThere) {
            find(u"LINK10"_s, Severity::Error, target,
                 tr("The identifier %1 is published for this page, which is not there.")
                     .arg(target.identifier));
            return;
        }
        const auto first = m_places.constFind(target.identifier);
        if (first == m_places.cend())
            m_places.insert(target.identifier, target.place());
        else if (*first != target.place())
            find(u"LINK09"_s, Severity::Warning, target,
                 tr("The identifier %1 is published by %2 already, which is where links lead.")
                     .arg(target.identifier, *first));
        m_links.targets.append({target.identifier, linkIdentifier(m_start + target.place())});
    }

    void find(const QString &code, Severity severity, const PublishedTarget &target,
              const QString &text)
    {
        m_findings.append({code, severity, target.file, target.line, text, target.identifier});
    }

    void noteUnread(const BuildInput &input, const ScannedPages &pages)
    {
        for (const BuildBook &book : input.books) {
            if (!book.problem.isEmpty() && !book.folder.isEmpty())
                m_links.unread.append(m_start + book.folder);
        }
        for (const ScannedPage &page : pages.pages()) {
            if (page.problem.isEmpty())
                continue;
            const QString file = ProjectListing::shown(pages.pathOf(page));
            m_links.unread.append(m_start + file);
            m_findings.append(
                {u"LINK12"_s, Severity::Error, file, 0,
                 tr("The page cannot be read, so its links are not known: %1").arg(page.problem)});
        }
    }

    const QString m_start;
    ProjectLinks m_links;
    QHash<QString, QString> m_places; ///< by identifier, the first
    QList<Finding> m_findings;
};

Finding goneFinding(int gone)
{
    return {u"LINK11"_s, Severity::Note, ProjectFile::links, 0,
            tr("Entries that nothing in the project says any more, and that were left out: %1.")
                .arg(gone)};
}

QList<Finding> badLinks(const BuildInput &input, const ScannedPages &pages, const LinkCheck &check)
{
    QList<Finding> findings;
    for (const BadRef &bad : check.bad()) {
        const ScannedPage &page = pages.pages()[bad.page];
        if (page.facts.refs[bad.ref].kind == PageReference::Kind::Link)
            findings.append(findingOf(input, pages, bad));
    }
    return findings;
}

qsizetype worseThanNotes(const QList<Finding> &findings)
{
    return std::count_if(findings.cbegin(), findings.cend(),
                         [](const Finding &finding) { return finding.severity != Severity::Note; });
}

ToolReport reportOf(const QList<Finding> &others, const QList<Finding> &badLinks, int links,
                    const ProjectLinks &identifiers)
{
    const qsizetype bad = worseThanNotes(badLinks);
    return {bad + worseThanNotes(others) == 0 ? ToolReport::Outcome::Good
                                              : ToolReport::Outcome::Warnings,
            tr("%1; %2; %3, %4.")
                .arg(counted(links, tr("1 link between pages"), tr("%1 links between pages")),
                     counted(bad, tr("1 bad link"), tr("%1 bad links")),
                     counted(identifiers.targets.size(), tr("1 published identifier"),
                             tr("%1 published identifiers")),
                     counted(identifiers.references.size(), tr("1 reference to identifiers"),
                             tr("%1 references to identifiers"))),
            others + badLinks};
}

/// The file as it is. Raises when there is one that cannot be read: it may hold what nothing else
/// says.
pugi::xml_document linkFile(FileSystem &files, const QString &path)
{
    return files.exists(path) ? loadXml(files, path, "LINKS") : pugi::xml_document();
}

} // namespace

ToolReport linkDocuments(FileSystem &files, const BuildInput &input, const ScannedPages &pages,
                         const LinkCheck &check, const Progress &progress)
{
    const QString linkPath = input.folder + ProjectFile::links;
    const pugi::xml_document old = linkFile(files, linkPath);
    const IdentifierLists lists(input, pages);
    const LinkFileUpdate update = updatedLinkFile(old, lists.links());
    const DocLinksFile docLinks = docLinksFile(pages, check, progress);

    QList<Finding> findings = input.bookProblems() + lists.findings();
    if (update.gone > 0)
        findings.append(goneFinding(update.gone));
    const ToolReport report =
        reportOf(findings, badLinks(input, pages, check), docLinks.links, lists.links());

    constexpr ReplaceOptions ours{.throughReadOnly = true};
    FreshFolder folder(files, input, folderName);
    folder.write(linksName, docLinks.bytes);
    folder.keepOthers();
    files.replaceFile(input.folder + logName, logFile(tr("Document to document links"), report),
                      ours);
    files.replaceFile(linkPath, update.bytes, ours);
    folder.putInPlace(); // last: its time says that all was written
    return report;
}
