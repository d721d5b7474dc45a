#include "dialogs/ProjectCreation.h"

#include "catalogue/NameClaim.h"
#include "catalogue/ProjectCatalogue.h"
#include "catalogue/StatusIndicators.h"
#include "components/Components.h"
#include "dialogs/FirstLines.h"
#include "platform/Messages.h"
#include "platform/Paths.h"
#include "platform/QvError.h"
#include "platform/Xml.h"
#include "projectfiles/CategoryFile.h"
#include "projectfiles/GlobalBook.h"
#include "projectfiles/ProjectCopy.h"
#include "projectfiles/TableOfContents.h"
#include "resources/Texts.h"
#include "startup/ContentFiles.h"
#include "startup/Session.h"

using namespace Qt::StringLiterals;

namespace {

/// Names the step in the error, which the wizard shows behind the reason.
template <typename Body>
auto step(QLatin1StringView procedure, Body &&body)
{
    const auto onError = [procedure](const QvError &error) {
        throw QvError(error.number(), ProjectCreation::formTag + procedure, error.description());
    };
    return trap(onError, std::forward<Body>(body));
}

} // namespace

ProjectCreation::ProjectCreation(Program &program)
    : m_program(program)
    , m_folder(program)
{
}

void ProjectCreation::name(const QString &typedName, const QString &id, const QString &language)
{
    Session &session = m_program.session;
    session.projectLanguage = language;
    session.projectName = language == "ENU"_L1 ? typedName : language + u'_' + typedName;
    session.projectId = id;
}

bool ProjectCreation::nameIsFree()
{
    return ProjectCatalogue(m_program.session, m_program.files).bCheckQVSelectionforProdName();
}

ProjectCreation::FolderAnswer ProjectCreation::settleFolder()
{
    return m_folder.settle();
}

bool ProjectCreation::addNew(const QString &typedName)
{
    Session &session = m_program.session;
    FileSystem &files = m_program.files;
    const NameClaim claim(files, m_folder.place());
    m_folder.make();
    step("CreateQVTOCFile"_L1, [&] {
        return TableOfContents(session, files).CreateQVTOCFile(folder() + ProjectFile::toc);
    });
    const bool filled = step("UpdateQVTocwithProdInfo"_L1, [&] {
        return fillHeader(session, files, m_program.clock, m_program.locale, typedName);
    });
    if (!filled) {
        m_program.messages.show({text(Text::NoTocFile)});
        return false;
    }
    files.syncTree(folder());
    ProjectCatalogue(session, files).UpdateQVSelection();
    makeGlobalBook();
    makeCurrent();
    return true;
}

void ProjectCreation::addCopy(const QString &source, const Runner &run)
{
    try {
        const NameClaim claim(m_program.files, m_folder.place());
        run([&](const Progress &progress) { makeCopy(source, progress); });
        ProjectCatalogue(m_program.session, m_program.files).UpdateQVSelection();
    } catch (const CopyFailure &failure) {
        endAfterFailedCopy(m_program, failure);
    }
    makeGlobalBook();
    step("AddQVBookCategories"_L1, [&] {
        seedCategories(m_program.session, m_program.files, m_program.components.categories, source,
                       mstrCategories);
    });
    makeCurrent();
    tellWhatWasLeftOut();
}

// What a stopped or failed copy leaves is removed here, under the progress display as well: it may
// be much.
void ProjectCreation::makeCopy(const QString &source, const Progress &progress)
{
    requireTableOfContents(source);
    m_folder.startGrowing();
    try {
        copyFiles(source, progress);
    } catch (...) {
        m_folder.folder().discard();
        throw;
    }
}

// Known before anything is copied.
void ProjectCreation::requireTableOfContents(const QString &source)
{
    FileSystem &files = m_program.files;
    (void)loadXml(files,
                  existingProjectFolder(files, m_program.session.serverPath, source)
                      + ProjectFile::toc,
                  "QV_Master");
}

void ProjectCreation::copyFiles(const QString &source, const Progress &progress)
{
    Session &session = m_program.session;
    FileSystem &files = m_program.files;
    ContentFiles content(session, files);
    const QString growing = withBackslash(m_folder.folder().growing());
    m_leftOut = ProjectCopy(session, files, m_program.clock, m_program.locale, growing)
                    .CopyProjectFolder(source, progress)
                    .all();
    m_leftOut += content.QVUpdateFiles(growing, source, 1, progress);
    for (QString &line : m_leftOut)
        line = m_folder.inPlace(line);
    progress.step(0, 0); // busy for a while
    content.SecureContentFiles(growing);
    m_folder.folder().putInPlace(progress);
}

void ProjectCreation::tellWhatWasLeftOut()
{
    if (m_leftOut.isEmpty())
        return;
    m_program.messages.show(
        {u"The project was copied, except for what is listed here: links to other places are not "
         "copied, and what cannot be read is kept as it was, pages under another name.\n\n%1"_s.arg(
             firstOf(m_leftOut))});
}

void ProjectCreation::listAgain()
{
    Session &session = m_program.session;
    FileSystem &files = m_program.files;
    (void)TableOfContents(session, files).read(session.projectName);
    ProjectCatalogue(session, files).UpdateQVSelection();
    makeGlobalBook();
    makeCurrent();
}

void ProjectCreation::makeGlobalBook()
{
    step("UpdatePSModuleFrame_Dynamic"_L1, [&] {
        makeGlobalBookIfMissing(m_program.session, m_program.files,
                                m_program.components.globalInformation);
    });
}

void ProjectCreation::makeCurrent()
{
    StatusIndicators(m_program.session, m_program.files, m_program.currentProject).AddProjectName();
}

QString ProjectCreation::folder() const
{
    return projectFolder(m_program.session.serverPath, m_program.session.projectName);
}
