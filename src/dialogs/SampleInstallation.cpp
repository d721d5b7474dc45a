#include "dialogs/SampleInstallation.h"

#include "catalogue/ProjectCatalogue.h"
#include "components/Components.h"
#include "components/RegistryAccess.h"
#include "dialogs/CompanionPrograms.h"
#include "platform/FileSystem.h"
#include "platform/Paths.h"
#include "platform/QvError.h"
#include "projectfiles/CategoryFile.h"
#include "startup/FileHelpers.h"

using namespace Qt::StringLiterals;

namespace {

QList<Category> sampleCategories()
{
    return {
        {{}, u"Getting Started"_s, u"First steps, safety, how this documentation is arranged"_s},
        {{}, u"Operation"_s, u"Everyday work with the product"_s},
        {{}, u"Maintenance"_s, u"Inspection, cleaning, replacement of parts"_s},
        {{}, u"Troubleshooting"_s, u"Symptoms, causes, remedies"_s},
        {{}, u"Reference"_s, u"Technical data, commands, settings"_s},
        {{}, u"Drawings"_s, u"Diagrams, plans, parts lists"_s},
    };
}

void requireUnused(FileSystem &files, const QString &folder)
{
    if (files.exists(folder) && !(files.folderExists(folder) && files.entries(folder).isEmpty()))
        throw QvError(PathFileAccess, {},
                      u"There is already something at %1. Choose another place for the sample "
                      "installation."_s.arg(folder));
}

} // namespace

void createSampleInstallation(Program &program, const QString &folder, const QString &programFolder)
{
    const QString base = withoutBackslash(folder);
    const QString server = base + u"\\Server\\"_s;
    const QString client = base + u"\\Client\\"_s;
    requireUnused(program.files, base);

    FileHelpers helpers(program.session, program.files);
    helpers.mbCreateFilePath(withoutBackslash(docsFolder(server)));
    helpers.mbCreateFilePath(client + u"Bin"_s);
    CategoryFile(program.files).write(defaultCategoriesPath(server), sampleCategories());
    ProjectCatalogue(program.session, program.files).CreateSelectionFile(cataloguePath(server));
    copyCompanions(program.files, programFolder, client + u"Bin\\"_s);

    RegistryAccess &registry = program.components.registryAccess;
    registry.SetValueName(Hive::LocalMachine, RegistryKey::product, u"Client"_s, client);
    registry.SetQVServer(server);
}
