#include "tools/rename/ProjectRename.h"

#include "catalogue/ProjectCatalogue.h"
#include "platform/Paths.h"
#include "platform/QvError.h"
#include "projectfiles/OpenMark.h"
#include "projectfiles/changes/FinishChanges.h"
#include "projectfiles/changes/StagedFiles.h"
#include "resources/Texts.h"
#include "startup/Session.h"

#include <algorithm>

using namespace Qt::StringLiterals;

ProjectRename::ProjectRename(Program &program, QString oldName, QString newName, bool alsoOthers)
    : m_program(program)
    , m_files(program.files)
    , m_old(std::move(oldName))
    , m_new(std::move(newName))
    , m_alsoOthers(alsoOthers)
{
}

void ProjectRename::run(const Progress &progress)
{
    claim();
    requireFree();
    requireClosed();
    const RenameSurvey survey = surveyRename(m_program, m_old, m_old, progress.piece(0, 3));
    FileChanges inside = changes(survey, folderOf(m_old), progress.piece(1, 3));
    const QList<OtherFile> outside = m_alsoOthers ? others() : QList<OtherFile>();
    const RenamePlan plan =
        writeRenamePlan(m_files, m_program.session.serverPath, {{}, m_old, m_new, m_alsoOthers});
    TakeBack takeBack;
    try {
        requireClosed(); // from now on nobody opens it
        perform(inside, takeBack, progress.piece(2, 3));
        writeOthers(outside, takeBack);
    } catch (...) {
        undo(takeBack, plan);
        throw;
    }
    complete(plan);
}

void ProjectRename::claim()
{
    m_oldClaim.emplace(m_files, withoutBackslash(folderOf(m_old)));
    if (!onlyCapitals())
        m_newClaim.emplace(m_files, withoutBackslash(folderOf(m_new)));
}

void ProjectRename::requireFree()
{
    bool listed = false;
    for (const CatalogueEntry &entry : ProjectCatalogue(m_program.session, m_files).entries()) {
        if (entry.name == m_old)
            listed = true;
        else if (entry.name.compare(m_new, Qt::CaseInsensitive) == 0)
            throw QvError(InvalidCall, {}, text(Text::ProjectAlreadyExists) + u": "_s + entry.name);
    }
    if (!listed)
        throw QvError(InvalidCall, {},
                      u"The project \"%1\" is not in the list of projects any more"_s.arg(m_old));
    if (!onlyCapitals() && m_files.exists(withoutBackslash(folderOf(m_new))))
        throw QvError(PathFileAccess, {},
                      u"There is a folder of that name already: %1. Choose another name, or move "
                      "that folder away."_s.arg(folderOf(m_new)));
}

void ProjectRename::requireClosed()
{
    if (isOpenAnywhere(m_files, folderOf(m_old)))
        throw QvError(PermissionDenied, {},
                      u"The project \"%1\" is open in the QV Developer of another author. Ask "
                      "everybody to close it, then rename it. Nothing was changed."_s.arg(m_old));
}

FileChanges ProjectRename::changes(const RenameSurvey &survey, const QString &folder,
                                   const Progress &progress) const
{
    if (!survey.locked.isEmpty())
        throw QvError(PermissionDenied, {},
                      u"%1 is locked (read-only). Nothing was changed."_s.arg(
                          folder + survey.locked.first()));
    const RenamedContent rule = content();
    StagedFiles staged(m_files, folder);
    const QStringList files = survey.files();
    for (int at = 0; at < files.size(); ++at) {
        progress.step(at, static_cast<int>(files.size()), files.at(at));
        const QString path = folder + files.at(at);
        staged.replaceFile(path, rule.of(files.at(at), staged.readFile(path)));
    }
    return staged.changes();
}

// Those that cannot be read were named to the author, and stay as they are.
QList<ProjectRename::OtherFile> ProjectRename::others() const
{
    const RenamedContent rule = content();
    QList<OtherFile> found;
    for (const auto &[project, path] : otherLinkFiles(m_program, m_new)) {
        if (project.compare(m_old, Qt::CaseInsensitive) == 0)
            continue;
        trap([](const QvError &) {},
             [&, file = path] {
                 const QByteArray before = m_files.readFile(file);
                 const QByteArray after = rule.links(file, before);
                 if (after != before)
                     found.append({file, before, after});
             });
    }
    return found;
}

// What takes a step back is noted before it: a step may be done and only not be flushed.
void ProjectRename::perform(FileChanges &changes, TakeBack &takeBack, const Progress &progress)
{
    takeBack.emplace_back([this] {
        if (hasFolder(m_new))
            moveFolder(m_new, m_old);
    });
    moveFolder(m_old, m_new);

    takeBack.emplace_back([this] {
        if (isListed(m_new))
            ProjectCatalogue(m_program.session, m_files).rename(m_new, m_old);
    });
    ProjectCatalogue(m_program.session, m_files).rename(m_old, m_new);

    applyChanges(m_files, folderOf(m_new), changes, progress);
    takeBack.emplace_back([this, &changes] {
        FileChanges back = changes.reversed();
        applyChanges(m_files, folderOf(m_new), back);
    });
}

void ProjectRename::writeOthers(const QList<OtherFile> &others, TakeBack &takeBack)
{
    for (const OtherFile &file : others) {
        if (m_files.readFile(file.path) != file.before)
            throw QvError(PathFileAccess, {},
                          u"Another author changed %1 meanwhile. Nothing was changed; please try "
                          "again."_s.arg(file.path));
        takeBack.emplace_back([this, file] {
            if (m_files.readFile(file.path) != file.before)
                m_files.replaceFile(file.path, file.before);
        });
        m_files.replaceFile(file.path, file.after);
    }
}

void ProjectRename::undo(TakeBack &takeBack, const RenamePlan &plan)
{
    const auto explain = [&](const QvError &error) {
        throw QvError(error.number(), {},
                      u"Renaming \"%1\" to \"%2\" failed in the middle, and so did taking it back. "
                      "%3. The next start of QV Developer finishes it."_s.arg(m_old, m_new,
                                                                              error.description()));
    };
    trap(explain, [&] {
        for (auto step = takeBack.rbegin(); step != takeBack.rend(); ++step)
            (*step)();
        m_files.removeFile(plan.path, true);
    });
}

// The packed copy holds the old name in all its paths. What cannot be removed here does no harm: a
// plan of which everything is done is dropped at the next start.
void ProjectRename::complete(const RenamePlan &plan)
{
    trap([](const QvError &) {},
         [&] {
             const QString packed = folderOf(m_new) + u"QV%1_Server.Zip"_s.arg(m_old);
             if (m_files.fileExists(packed))
                 m_files.removeFile(packed, true);
             m_files.removeFile(plan.path, true);
         });
}

bool ProjectRename::finish(Program &program, const RenamePlan &plan)
{
    ProjectRename rename(program, plan.oldName, plan.newName, plan.alsoOthers);
    bool isHeld = false;
    const auto held = [&](const QvError &error) {
        if (error.number() != PermissionDenied)
            throw error;
        isHeld = true;
    };
    trap(held, [&] { rename.claim(); });
    if (isHeld)
        return false;
    // Another program may have finished it meanwhile, and its file be about something else.
    if (renamePlans(program.files, program.session.serverPath).contains(plan))
        rename.finishFrom(plan);
    return true;
}

void ProjectRename::finishFrom(const RenamePlan &plan)
{
    const bool begun = hasFolder(m_new) ? !hasFolder(m_old) || isListed(m_new)
                                        : hasFolder(m_old) && isListed(m_new);
    if (begun) {
        if (!hasFolder(m_new))
            moveFolder(m_old, m_new);
        if (isListed(m_old) && !isListed(m_new))
            ProjectCatalogue(m_program.session, m_files).rename(m_old, m_new);
        (void)finishChanges(m_files, folderOf(m_new));
        FileChanges inside =
            changes(surveyRename(m_program, m_new, m_old), folderOf(m_new), Progress());
        applyChanges(m_files, folderOf(m_new), inside);
        TakeBack unused;
        if (m_alsoOthers)
            writeOthers(others(), unused);
    }
    complete(plan);
}

RenamedContent ProjectRename::content() const
{
    const QString language = languageOf(m_program, isListed(m_new) ? m_new : m_old);
    const QString typed = m_new.sliced(languagePrefix(m_new, language).size());
    return {m_old, m_new, language, splitProjectName(typed, m_program.locale)};
}

void ProjectRename::moveFolder(const QString &from, const QString &to)
{
    m_files.move(withoutBackslash(folderOf(from)), withoutBackslash(folderOf(to)));
    m_files.syncFolder(withoutBackslash(docsFolder(m_program.session.serverPath)));
}

QString ProjectRename::folderOf(const QString &name) const
{
    return projectFolder(m_program.session.serverPath, name);
}

bool ProjectRename::isListed(const QString &name) const
{
    const QList<CatalogueEntry> entries = ProjectCatalogue(m_program.session, m_files).entries();
    return std::any_of(entries.cbegin(), entries.cend(),
                       [&](const CatalogueEntry &entry) { return entry.name == name; });
}

bool ProjectRename::hasFolder(const QString &name) const
{
    if (!onlyCapitals())
        return m_files.folderExists(withoutBackslash(folderOf(name)));
    const QList<FolderEntry> all = m_files.kinds(docsFolder(m_program.session.serverPath));
    return std::any_of(all.cbegin(), all.cend(),
                       [&](const FolderEntry &entry) { return entry.name == name; });
}

bool ProjectRename::onlyCapitals() const
{
    return m_old.compare(m_new, Qt::CaseInsensitive) == 0;
}

QString languagePrefix(const QString &project, const QString &language)
{
    const QString prefix = language + u'_';
    const bool hasOne = !language.isEmpty() && language != "ENU"_L1 && project.startsWith(prefix)
                        && project.size() > prefix.size();
    return hasOne ? prefix : QString();
}

QStringList finishRenames(Program &program)
{
    QStringList problems;
    for (const RenamePlan &plan : renamePlans(program.files, program.session.serverPath)) {
        const auto note = [&](const QvError &error) {
            problems.append(
                u"The project \"%1\" is half renamed to \"%2\", because the program ended "
                "meanwhile, and this cannot be finished now: %3"_s.arg(plan.oldName, plan.newName,
                                                                       error.description()));
        };
        trap(note, [&] { ProjectRename::finish(program, plan); });
    }
    return problems;
}

void finishRenamesOf(Program &program, const QString &project)
{
    for (const RenamePlan &plan : renamePlans(program.files, program.session.serverPath)) {
        if (plan.oldName != project && plan.newName != project)
            continue;
        const QString names = u"\"%1\" to \"%2\""_s.arg(plan.oldName, plan.newName);
        if (!ProjectRename::finish(program, plan))
            throw QvError(PermissionDenied, {},
                          u"Another author's QV Developer is just renaming the project %1. Try "
                          "again when it is done."_s.arg(names));
        const QString old = projectFolder(program.session.serverPath, plan.oldName);
        if (plan.oldName == project && !program.files.folderExists(old))
            throw QvError(PathNotFound, {}, u"Another author renamed the project %1."_s.arg(names));
    }
}
