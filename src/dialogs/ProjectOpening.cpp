#include "dialogs/ProjectOpening.h"

#include "catalogue/StatusIndicators.h"
#include "platform/Paths.h"
#include "platform/QvError.h"
#include "projectfiles/TableOfContents.h"

#include <QScopedValueRollback>

#include <algorithm>

using namespace Qt::StringLiterals;

CatalogueEntry projectToContinue(Program &program, const QString &name)
{
    const QList<CatalogueEntry> entries =
        ProjectCatalogue(program.session, program.files).entries();
    const auto found = std::find_if(entries.cbegin(), entries.cend(), [&](const auto &entry) {
        return entry.name == name && entry.addDate.isEmpty();
    });
    if (found == entries.cend())
        throw QvError(InvalidCall, {},
                      u"The project \"%1\" is no longer among those to continue: it was deleted "
                      "or released meanwhile. Go back to see the list as it is now"_s.arg(name));
    return *found;
}

void continueProject(Program &program, const CatalogueEntry &project)
{
    Session &session = program.session;
    FileSystem &files = program.files;
    (void)existingProjectFolder(files, session.serverPath, project.name);
    (void)TableOfContents(session, files).read(project.name);

    QScopedValueRollback name(session.projectName, project.name);
    QScopedValueRollback id(session.projectId, project.id);
    QScopedValueRollback language(session.projectLanguage, project.language);
    StatusIndicators(session, files, program.currentProject).AddProjectName();
    name.commit();
    id.commit();
    language.commit();
}
