#include "controls/globals/ProjectNaming.h"

#include "catalogue/ProjectCatalogue.h"
#include "components/NameRules.h"
#include "platform/Paths.h"
#include "platform/QvError.h"
#include "resources/Texts.h"
#include "startup/Session.h"
#include "tools/rename/ProjectRename.h"

#include <QScopeGuard>

using namespace Qt::StringLiterals;

ProjectNaming::ProjectNaming(ProjectSession &session)
    : m_session(session)
    , m_program(session.program())
{
}

CatalogueEntry ProjectNaming::entry() const
{
    for (const CatalogueEntry &entry :
         ProjectCatalogue(m_program.session, m_program.files).entries()) {
        if (entry.name.compare(m_session.projectName(), Qt::CaseInsensitive) == 0)
            return entry;
    }
    return {};
}

QString ProjectNaming::prefix() const
{
    return languagePrefix(m_session.projectName(), entry().language);
}

QString ProjectNaming::problemOfName(const QString &typed) const
{
    if (typed.trimmed().isEmpty())
        return tr("Enter the name of the project.");
    const QString problem = NameRules::problemOf(typed, XmlCharacters::What::ProjectName);
    if (!problem.isEmpty())
        return problem;
    const QString name = prefix() + typed.trimmed();
    const QString &now = m_session.projectName();
    if (name == now)
        return tr("This is the project's name now.");
    if (name.compare(now, Qt::CaseInsensitive) == 0)
        return {};
    for (const CatalogueEntry &entry :
         ProjectCatalogue(m_program.session, m_program.files).entries()) {
        if (entry.name.compare(name, Qt::CaseInsensitive) == 0)
            return text(Text::ProjectAlreadyExists);
    }
    const QString folder = projectFolder(m_program.session.serverPath, name);
    return m_program.files.exists(withoutBackslash(folder))
               ? tr("There is a folder of that name already.")
               : QString();
}

QString ProjectNaming::problemOfId(const QString &id)
{
    return id.trimmed().isEmpty() ? tr("Enter the ID of the project.")
                                  : NameRules::problemOf(id, XmlCharacters::What::ProjectId);
}

bool ProjectNaming::rename(const QString &typed, bool alsoOthers)
{
    // The open page is put away: nothing is written into a folder that goes.
    const auto book = m_session.currentBook();
    const QString page = m_session.currentPage();
    if (!m_session.mayLeave() || !m_session.select({}))
        return false;
    const auto goBack = qScopeGuard([&] { m_session.select(book, page); });

    const QString now = prefix() + typed.trimmed();
    m_session.letGo();
    const auto takeHold = qScopeGuard([&] { m_session.takeHold(); });
    ProjectRename rename(m_program, m_session.projectName(), now, alsoOthers);
    m_session.runLong(tr("Renaming the project..."),
                      [&](const Progress &progress) { rename.run(progress); });
    m_program.session.projectName = now;
    const RenamedContent content = rename.content();
    m_session.wasRenamed(now, [&](const QString &path, const QByteArray &bytes) {
        QByteArray renamed = bytes; // what does not do was left as it is on the disk, too
        trap([](const QvError &) {}, [&] { renamed = content.of(path, bytes); });
        return renamed;
    });
    return true;
}

void ProjectNaming::setId(const QString &id)
{
    if (const QString problem = problemOfId(id); !problem.isEmpty())
        throw QvError(InvalidCall, {}, problem);
    ProjectCatalogue(m_program.session, m_program.files)
        .setId(m_session.projectName(), id.trimmed());
    m_program.session.projectId = id.trimmed();
}
