#include "controls/build/BuiltProject.h"

#include "catalogue/ProjectCatalogue.h"
#include "catalogue/StatusIndicators.h"
#include "platform/Clock.h"
#include "platform/Paths.h"
#include "tools/build/BuildLock.h"

#include <algorithm>

namespace {

CatalogueEntry entryOf(Session session, FileSystem &files)
{
    for (const CatalogueEntry &entry : ProjectCatalogue(session, files).entries()) {
        if (entry.name == session.projectName)
            return entry;
    }
    return {};
}

} // namespace

BuiltProject::BuiltProject(Program &program, const QString &name, const QString &language)
    : m_session(program.session)
{
    m_session.projectName = name;
    m_session.projectLanguage = language;
}

QString BuiltProject::folder() const
{
    return projectFolder(m_session.serverPath, m_session.projectName);
}

QString BuiltProject::language(FileSystem &files) const
{
    const QString listed = entryOf(m_session, files).language;
    return listed.isEmpty() ? m_session.projectLanguage : listed;
}

QString BuiltProject::released(FileSystem &files) const
{
    return entryOf(m_session, files).addDate;
}

void BuiltProject::release(Program &program) const
{
    Session session = m_session;
    ProjectCatalogue(session, program.files).release(name(), program.clock.now().date());
}

PackPlan BuiltProject::planPack(FileSystem &files, const PackOptions &options,
                                const Progress &progress) const
{
    Session session = m_session;
    const BuildInput input = readBuildInput(session, files, name(), language(files), progress);
    const auto listing = ProjectListing::read(files, input.folder, progress);
    return ::planPack(files, input, listing, options, progress);
}

PackResult BuiltProject::pack(FileSystem &files, const PackOptions &options,
                              const Progress &progress) const
{
    Session session = m_session;
    const auto lock = lockBuild(files, folder());
    const BuildInput input = readBuildInput(session, files, name(), language(files), progress);
    return packProject(files, input, options, progress);
}

std::optional<BuiltProject::Lights> BuiltProject::lights(Program &program) const
{
    if (isNone())
        return std::nullopt;
    Session session = m_session;
    const auto stored = StatusIndicators(session, program.files, program.currentProject).lights();
    if (!stored)
        return std::nullopt;
    return Lights{stored->docToDoc, stored->contextSettings, stored->quickNav, stored->searchIndex};
}

void BuiltProject::setLight(Program &program, BuildTool tool, qint32 colour) const
{
    Session session = m_session;
    StatusIndicators(session, program.files, program.currentProject)
        .setLight(elementOf(tool), colour);
}

void BuiltProject::setAllLights(Program &program, qint32 colour) const
{
    Session session = m_session;
    StatusIndicators(session, program.files, program.currentProject).UpdateStatusXml(colour);
}

bool BuiltProject::isBuilt(Program &program) const
{
    const auto stored = lights(program);
    const auto isDone = [](std::optional<qint64> light) {
        return light && *light != Light::mustRun && *light != Light::failed;
    };
    return stored && std::all_of(stored->begin(), stored->end(), isDone);
}
