#include "dialogs/ProjectDeletion.h"

#include "catalogue/NameClaim.h"
#include "catalogue/ProjectCatalogue.h"
#include "components/Components.h"
#include "components/LinkIDMerger.h"
#include "platform/Paths.h"
#include "platform/QvError.h"
#include "platform/TreeWalker.h"
#include "projectfiles/OpenMark.h"

#include <optional>

using namespace Qt::StringLiterals;

namespace {

/// A folder below the server path in the form in which two are compared.
QString comparable(QString folder)
{
    folder = folder.trimmed().toCaseFolded();
    folder.replace(u'/', u'\\');
    while (folder.endsWith(u'\\') || folder.endsWith(u'.') || folder.endsWith(u' '))
        folder.chop(1);
    return folder;
}

/// True when the entry stands for `folder`, by its name or by where it says that it lies.
bool standsFor(const CatalogueEntry &entry, const QString &folder, const QString &serverPath)
{
    const QString wanted = comparable(folder);
    if (comparable(u"Docs\\"_s + entry.name) == wanted)
        return true;
    QString location = entry.location;
    if (location.startsWith(serverPath, Qt::CaseInsensitive))
        location = location.sliced(serverPath.size());
    return (comparable(location) + u'\\').startsWith(wanted + u'\\');
}

} // namespace

ProjectDeletion::ProjectDeletion(Program &program)
    : m_program(program)
{
}

bool ProjectDeletion::isInUse(const QString &name) const
{
    return trap([](const QvError &) {}, // what stands in the way is said when it is deleted
                [&] {
                    return isSafeName(name)
                           && isOpenAnywhere(m_program.files,
                                             projectFolder(m_program.session.serverPath, name));
                });
}

ProjectDeletion::Result ProjectDeletion::remove(const QString &name, bool alsoFiles,
                                                const Progress &progress)
{
    if (name == favourites)
        throw QvError(PathFileAccess, {}, name + u" is no project and cannot be deleted."_s);
    const Result result = alsoFiles ? removeFolder(name, progress) : Result{Outcome::Unlisted, {}};
    const auto explain = [&](const QvError &error) {
        if (!alsoFiles)
            throw error;
        throw QvError(
            error.number(), {},
            u"The files of the project \"%1\" are gone, but what is listed about it could "
            "not all be taken out. %2. Delete it again to do that."_s.arg(name,
                                                                          error.description()));
    };
    trap(explain, [&] { m_program.components.linkIDMerger.UnMergeQVSelection(name); });
    return result;
}

// The content files are not secured before: what is read-only is deleted all the same, and when the
// folder cannot be renamed aside every attribute must be as it was.
ProjectDeletion::Result ProjectDeletion::removeFolder(const QString &name, const Progress &progress)
{
    FileSystem &files = m_program.files;
    const QString &server = m_program.session.serverPath;
    if (!isSafeName(name))
        refuse(name, u"This cannot be the name of a folder in "_s + docsFolder(server));
    const QString folder = withoutBackslash(projectFolder(server, name));
    const auto nothingChanged = [&](const QvError &error) { refuse(name, error.description()); };
    std::optional<NameClaim> claim; // nobody makes a project of this name meanwhile
    const bool isThere = trap(nothingChanged, [&] {
        claim.emplace(files, folder);
        return files.exists(folder);
    });
    if (!isThere)
        return {Outcome::FolderWasGone, {}};
    trap(nothingChanged, [&] { requireItsOwn(name); });

    const auto explain = [&](const QvError &error) {
        if (files.exists(folder))
            nothingChanged(error);
        throw QvError(error.number(), {},
                      u"The files of the project \"%1\" could not all be deleted. %2. What is left "
                      "lies aside. The project is still in the list: delete it again to take it "
                      "out. The next start of QV Developer then removes what is left."_s.arg(
                          name, error.description()));
    };
    const QString left = trap(explain, [&] { return deleteTree(files, folder, progress); });
    return {left.isEmpty() ? Outcome::Deleted : Outcome::LeftAside, left};
}

/// Raises unless the folder is a real one, and the project in the list is the only one it belongs
/// to.
void ProjectDeletion::requireItsOwn(const QString &name)
{
    const QString &server = m_program.session.serverPath;
    const QString folder = existingProjectFolder(m_program.files, server, name);
    bool listed = false;
    for (const CatalogueEntry &entry :
         ProjectCatalogue(m_program.session, m_program.files).entries()) {
        if (entry.name == name)
            listed = true;
        else if (standsFor(entry, u"Docs\\"_s + name, server))
            throw QvError(PathFileAccess, {},
                          u"The project \"%1\" in the list has the same folder, %2"_s.arg(
                              entry.name, folder));
    }
    if (!listed)
        throw QvError(PathFileAccess, {}, u"It is not in the list of projects any more"_s);
}

void ProjectDeletion::refuse(const QString &name, const QString &reason) const
{
    throw QvError(
        PathFileAccess, {},
        u"The files of the project \"%1\" are not deleted. %2. Nothing was changed. To "
        "take it out of the list only, delete it again without its files."_s.arg(name, reason));
}
