#include "indexmanager/PageOpening.h"

#include "platform/FileSystem.h"
#include "platform/Paths.h"
#include "platform/Processes.h"
#include "platform/QvError.h"
#include "startup/Session.h"

#include <QCoreApplication>

void openStoredPage(Program &program, const QString &stored)
{
    const QString docs = docsFolder(program.session.serverPath);
    const qsizetype anchor = stored.lastIndexOf(u'#');
    auto page = insideOf(docs, stored);
    if (anchor >= 0 && (!page || !program.files.fileExists(*page)))
        page = insideOf(docs, stored.first(anchor)); // the whole may be a file's name
    if (!page)
        throw QvError(PathFileAccess, {},
                      QCoreApplication::translate(
                          "PageOpening", "%1 lies outside the Docs folder and is not opened.")
                          .arg(stored));
    program.processes.openPage(*page);
}
