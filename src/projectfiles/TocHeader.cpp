#include "platform/Paths.h"
#include "platform/Xml.h"
#include "projectfiles/FileElements.h"
#include "projectfiles/TableOfContents.h"

PlatformAndVariation splitProjectName(const QString &name, SystemLocale &locale)
{
    const QString last = name.split(u' ').last();
    if (last.isEmpty() || !locale.isNumeric(last))
        return {.platform = name, .variation = {}};
    return {.platform = name.first(name.indexOf(last)), .variation = last};
}

bool fillHeader(Session &session, FileSystem &files, Clock &clock, SystemLocale &locale,
                const QString &typedName)
{
    const QString path = projectFolder(session.serverPath, session.projectName) + ProjectFile::toc;
    if (!files.exists(path))
        return false;

    const auto [platform, variation] = splitProjectName(typedName, locale);
    const pugi::xml_document document = loadXml(files, path, "QV_Master");
    const pugi::xml_node header = requiredChild(document.document_element(), "QV", path);
    setText(requiredChild(header, "QV_Platform", path), platform);
    setText(requiredChild(header, "QV_Variation", path), variation);
    setText(requiredChild(header, "QV_ID", path), {});
    setText(requiredChild(header, "QV_Date_Process", path), locale.shortDate(clock.now().date()));
    saveXml(files, path, document);
    return true;
}
