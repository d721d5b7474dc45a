#pragma once

#include "catalogue/ProjectCatalogue.h"
#include "components/Components.h"
#include "components/ConverterProgram.h"
#include "components/NameRules.h"
#include "components/ProductInfoFromRegistry.h"
#include "components/RegistryAccessComponent.h"
#include "components/WindowHelperComponent.h"
#include "projectfiles/CategoryFile.h"
#include "projectfiles/GlobalBook.h"
#include "reports/LinkMerger.h"
#include "tools/words/SearchWordsComponent.h"

/// The product's components over a set of ports.
struct ProductComponents
{
    ProductComponents(Session &session, Registry &registry, DesktopWindows &windows,
                      FileSystem &files, Processes &processes, Messages &messages)
        : registryAccess(registry)
        , windowHelper(windows)
        , installInfo(registry)
        , nameRules(messages)
        , categories(makeCategories(files))
        , globalInformation(makeGlobalInformation(files))
        , ranking(makeProjectRanking(session, files))
        , serverProducts(makeServerProducts(session, files))
        , linkIDMerger(makeLinkIDMerger(session, files, nameRules))
        , converter(installInfo, processes)
        , searchWords(makeSearchWordsBuilder(session, files))
        , all{registryAccess,  windowHelper,  generalTasks,       installInfo,
              nameRules,       *categories,   *globalInformation, *ranking,
              *serverProducts, *linkIDMerger, converter,          *searchWords}
    {
    }

    RegistryAccessComponent registryAccess;
    WindowHelperComponent windowHelper;
    GeneralTasksComponent generalTasks;
    InstallInfoFromRegistry installInfo;
    NameRules nameRules;
    std::unique_ptr<Categories> categories;
    std::unique_ptr<GlobalInformation> globalInformation;
    std::unique_ptr<ProjectRanking> ranking;
    std::unique_ptr<ServerProducts> serverProducts;
    std::unique_ptr<LinkIDMerger> linkIDMerger;
    ConverterProgram converter;
    std::unique_ptr<SearchWordsBuilder> searchWords;
    Components all;
};
