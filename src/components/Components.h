#pragma once

class RegistryAccess;
class WindowHelper;
class GeneralTasks;
class InstallInfo;
class XmlCharacters;
class Categories;
class GlobalInformation;
class ProjectRanking;
class ServerProducts;
class LinkIDMerger;
class DatabaseConverter;
class SearchWordsBuilder;

/// The product's components by role, made once in main and once per test.
struct Components
{
    RegistryAccess &registryAccess;
    WindowHelper &windowHelper;
    GeneralTasks &generalTasks;
    InstallInfo &installInfo;
    XmlCharacters &xmlCharacters;
    Categories &categories;
    GlobalInformation &globalInformation;
    ProjectRanking &projectRanking;
    ServerProducts &serverProducts;
    LinkIDMerger &linkIDMerger;
    DatabaseConverter &databaseConverter;
    SearchWordsBuilder &searchWords;
};
