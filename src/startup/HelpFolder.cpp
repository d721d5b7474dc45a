#include "startup/HelpFolder.h"

#include "platform/FileSystem.h"
#include "platform/Paths.h"

using namespace Qt::StringLiterals;

QString findHelpFolder(FileSystem &files, const QString &named, const QString &programFolder)
{
    for (const QString &native :
         {named, programFolder + u"/help"_s, programFolder + u"/../share/quovane/help"_s,
          programFolder + u"/../../share/quovane/help"_s}) {
        if (native.isEmpty())
            continue;
        const QString folder = withBackslash(files.productPath(native));
        if (files.fileExists(folder + helpStartPage))
            return folder;
    }
    return {};
}
