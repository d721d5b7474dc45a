#include "tools/rename/RenameSurvey.h"

#include "catalogue/ProjectCatalogue.h"
#include "platform/Paths.h"
#include "platform/QvError.h"
#include "platform/TreeWalker.h"
#include "platform/Xml.h"
#include "projectfiles/TableOfContents.h"
#include "startup/Session.h"

using namespace Qt::StringLiterals;

namespace {

bool isBelow(const QString &path, QLatin1StringView folder)
{
    return carriedOver(path, folder, {}).has_value();
}

/// Looks at one project for what names it.
class Surveyor final
{
public:
    Surveyor(Program &program, const QString &project, const QString &oldName)
        : m_program(program)
        , m_files(program.files)
        , m_project(project)
        , m_oldName(oldName)
        , m_folder(existingProjectFolder(m_files, program.session.serverPath, project))
        // Into itself: what would change is found, nothing else is said.
        , m_content(oldName, oldName, languageOf(program, project), {})
    {
    }

    RenameSurvey survey(const Progress &progress)
    {
        findBooks();
        findPages(progress);
        findPacked();
        const QString links = m_folder + ProjectFile::links;
        m_found.hasLinks = m_files.fileExists(links) && isReadable(links, "LINKS");
        findOthers();
        for (const QString &file : m_found.files()) {
            if (m_files.status(m_folder + file).readOnly)
                m_found.locked.append(file);
        }
        return m_found;
    }

private:
    // A merged list may name one file twice, and the global book as well.
    void findBooks()
    {
        QStringList listed{ProjectFile::globalFolder + u"\\"_s + ProjectFile::globalBook};
        const Toc toc = TableOfContents(m_program.session, m_files).read(m_project);
        for (const TocBook &book : toc.books)
            listed.append(book.folder + u'\\' + book.file);
        for (const QString &stored : std::as_const(listed)) {
            const auto path = insideOf(m_folder, stored);
            if (!path || !m_files.fileExists(*path))
                continue;
            const QString relative = path->sliced(m_folder.size());
            if (!m_found.books.contains(relative, Qt::CaseInsensitive)
                && isReadable(*path, "Book_Master"))
                m_found.books.append(relative);
        }
    }

    bool isReadable(const QString &path, const char *root)
    {
        const auto note = [&](const QvError &error) {
            m_found.remarks.append(error.description());
        };
        return trap(note, [&] {
            (void)loadXml(m_files, path, root);
            return true;
        });
    }

    void findPages(const Progress &progress)
    {
        QStringList pages;
        walkTree(m_files, withoutBackslash(m_folder), [&](const TreeEntry &entry) {
            if (entry.status.kind == FileKind::File && RenamedContent::isPage(entry.relative)
                && !isBelow(entry.relative, ProjectFile::backupFolder))
                pages.append(entry.relative);
        });
        for (int at = 0; at < pages.size(); ++at) {
            progress.step(at, static_cast<int>(pages.size()), pages.at(at));
            if (holdsMarker(m_folder + pages.at(at)))
                m_found.pages.append(pages.at(at));
        }
    }

    bool holdsMarker(const QString &path)
    {
        const auto note = [&](const QvError &error) {
            m_found.remarks.append(error.description());
        };
        return trap(note, [&] { return m_content.hasMarker(m_files.readFile(path)); });
    }

    void findPacked()
    {
        const QString name = u"QV%1_Server.Zip"_s.arg(m_oldName);
        if (m_files.fileExists(m_folder + name))
            m_found.packed.append(name);
    }

    void findOthers()
    {
        for (const auto &[project, path] : otherLinkFiles(m_program, m_project)) {
            const auto note = [&](const QvError &error) {
                m_found.remarks.append(error.description());
            };
            int count = 0;
            trap(note,
                 [&, file = path] { (void)m_content.links(file, m_files.readFile(file), &count); });
            if (count > 0)
                m_found.others.append({project, count});
        }
    }

    Program &m_program;
    FileSystem &m_files;
    QString m_project, m_oldName, m_folder;
    RenamedContent m_content;
    RenameSurvey m_found;
};

} // namespace

QStringList RenameSurvey::files() const
{
    QStringList all{ProjectFile::toc};
    if (hasLinks)
        all.append(ProjectFile::links);
    return all + books + pages;
}

RenameSurvey surveyRename(Program &program, const QString &project, const QString &oldName,
                          const Progress &progress)
{
    return Surveyor(program, project, oldName).survey(progress);
}

QString languageOf(Program &program, const QString &project)
{
    for (const CatalogueEntry &entry : ProjectCatalogue(program.session, program.files).entries()) {
        if (entry.name.compare(project, Qt::CaseInsensitive) == 0 && !entry.language.isEmpty())
            return entry.language;
    }
    return program.session.projectLanguage;
}

QList<std::pair<QString, QString>> otherLinkFiles(Program &program, const QString &project)
{
    QList<std::pair<QString, QString>> found;
    const QString docs = docsFolder(program.session.serverPath);
    const auto add = [&](const QString &name, const QString &path) {
        if (program.files.fileExists(path))
            found.append({name, path});
    };
    add({}, docs + ProjectFile::links);
    for (const CatalogueEntry &entry : ProjectCatalogue(program.session, program.files).entries()) {
        if (entry.name != favourites && isSafeName(entry.name)
            && entry.name.compare(project, Qt::CaseInsensitive) != 0)
            add(entry.name,
                projectFolder(program.session.serverPath, entry.name) + ProjectFile::links);
    }
    return found;
}
