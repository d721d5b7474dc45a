#include "reports/LinkMerger.h"

#include "catalogue/ProjectCatalogue.h"
#include "platform/Paths.h"
#include "platform/QvError.h"
#include "platform/Xml.h"
#include "reports/MergedLinks.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto rootName = "LINKS";

pugi::xml_document loadOrMake(FileSystem &files, const QString &path)
{
    if (files.exists(path))
        return loadXml(files, path, rootName);
    pugi::xml_document document;
    document.append_child(rootName);
    return document;
}

bool sameFolder(const QString &one, const QString &other)
{
    return one.compare(other, Qt::CaseInsensitive) == 0;
}

/// True when a path stored in the entry lies in the project's folder.
bool liesIn(const QString &project, const pugi::xml_node &entry, const char *pathName)
{
    for (const pugi::xml_node &path : entry.children(pathName)) {
        const QString stored = textOf(path).trimmed();
        if (leadingFolder(stored).compare(project, Qt::CaseInsensitive) == 0)
            return true;
    }
    return false;
}

/// Takes the entries that lie in the project's folder out. False when there are none.
bool removeEntries(const pugi::xml_node &links, const QString &project, const char *sectionName,
                   const char *entryName, const char *pathName)
{
    QList<pugi::xml_node> found;
    for (const pugi::xml_node &section : links.children(sectionName)) {
        for (const pugi::xml_node &entry : section.children(entryName)) {
            if (liesIn(project, entry, pathName))
                found.append(entry);
        }
    }
    for (const pugi::xml_node &entry : found)
        entry.parent().remove_child(entry);
    return !found.isEmpty();
}

class LinkMerger final : public LinkIDMerger
{
public:
    LinkMerger(Session &session, FileSystem &files, const XmlCharacters &characters)
        : m_session(session)
        , m_files(files)
        , m_characters(characters)
    {
    }

    void MergeLinkIDFiles(const QString &mergedFile, const QString &sourceFile) override
    {
        if (const QString project = projectOf(sourceFile); !project.isEmpty())
            mergeAll(mergedFile, projectOf(mergedFile), {{sourceFile, project, {}}});
    }
    QStringList mergeAll(const QString &mergedFile, const QString &mergedProject,
                         const QList<LinkSource> &sources, const Progress &progress = {}) override;
    void UnMergeQVSelection(const QString &projectName) override;

private:
    [[nodiscard]] QString projectOf(const QString &linkFile) const;
    QStringList takeIn(MergedLinks &merged, const LinkSource &source);
    void removeLinks(const QString &project);

    Session &m_session;
    FileSystem &m_files;
    const XmlCharacters &m_characters;
};

/// The project in whose folder a link file lies; "" when it lies in none.
QString LinkMerger::projectOf(const QString &linkFile) const
{
    const QString folder = withoutBackslash(parentFolder(linkFile));
    const QString docs = withoutBackslash(docsFolder(m_session.serverPath));
    return sameFolder(withoutBackslash(parentFolder(folder)), docs) ? lastComponent(folder)
                                                                    : QString();
}

QStringList LinkMerger::mergeAll(const QString &mergedFile, const QString &mergedProject,
                                 const QList<LinkSource> &sources, const Progress &progress)
{
    const bool wasThere = m_files.exists(mergedFile);
    MergedLinks merged(m_characters, loadOrMake(m_files, mergedFile), mergedProject);
    QStringList notes;
    int done = 0;
    for (const LinkSource &source : sources) {
        progress.step(done++, static_cast<int>(sources.size()), source.project);
        notes += takeIn(merged, source);
    }
    progress.step(done, done);
    if (merged.isChanged() || !wasThere)
        saveXml(m_files, mergedFile, merged.document());
    return notes + merged.conflicts();
}

/// A source that cannot be read is told and keeps nobody else's links back.
QStringList LinkMerger::takeIn(MergedLinks &merged, const LinkSource &source)
{
    QStringList notes;
    if (source.project.isEmpty())
        return notes;
    const auto tell = [&](const QvError &error) {
        notes.append(u"The links of the project %1 were left out. %2"_s.arg(source.project,
                                                                            error.description()));
    };
    trap(tell, [&] {
        if (m_files.exists(source.path))
            merged.add(source, loadXml(m_files, source.path, rootName));
    });
    return notes;
}

void LinkMerger::UnMergeQVSelection(const QString &projectName)
{
    ProjectCatalogue(m_session, m_files).remove(projectName);
    if (isSafeName(projectName))
        removeLinks(projectName);
}

void LinkMerger::removeLinks(const QString &project)
{
    const QString path = docsFolder(m_session.serverPath) + ProjectFile::links;
    QByteArray bytes;
    pugi::xml_document document;
    trap([](const QvError &) {}, // a file that cannot be read is left as it is
         [&] {
             if (!m_files.exists(path))
                 return;
             bytes = m_files.readFile(path);
             document = parseXml(bytes, path, rootName);
         });
    const pugi::xml_node links = document.document_element();
    const bool targets = removeEntries(links, project, "IBD", "ID", "LinkIDSourceFile");
    const bool references = removeEntries(links, project, "IBS", "USER", "FilePath");
    if (!targets && !references)
        return;
    if (m_files.readFile(path) == bytes)
        saveXml(m_files, path, document);
    else
        removeLinks(project); // another program has written it meanwhile
}

} // namespace

std::unique_ptr<LinkIDMerger> makeLinkIDMerger(Session &session, FileSystem &files,
                                               const XmlCharacters &characters)
{
    return std::make_unique<LinkMerger>(session, files, characters);
}
