#include "qvdev/ConsoleWorld.h"

#include "platform/Paths.h"
#include "platform/QvError.h"

#include <QDir>

using namespace Qt::StringLiterals;

ConsoleWorld::ConsoleWorld(bool asJson)
    : output(asJson, progressLine)
{
}

void ConsoleWorld::findServer(const QString &native)
{
    if (!native.isEmpty())
        settings.setServer(withBackslash(productPath(native)));
    const auto explain = [](const QvError &error) {
        throw QvError(error.number(), {},
                      error.description()
                          + u". Start QV Developer once to choose it, or give --server DIR"_s);
    };
    session.serverPath = trap(explain, [&] { return parts.registryAccess.GetQVServer(); });
    messages.paths().add(session.serverPath, files.nativePath(session.serverPath));
    if (!files.folderExists(withoutBackslash(docsFolder(session.serverPath))))
        throw QvError(PathNotFound, {},
                      u"There is no folder Docs in %1, so it is not the folder of a Quovane "
                      "server. Name the folder that holds Docs"_s.arg(
                          native.isEmpty() ? session.serverPath : native));
}

// What is meant by a relative path only the machine's own folders can say.
QString ConsoleWorld::productPath(const QString &native)
{
    const QString whole =
        QDir::toNativeSeparators(QDir::cleanPath(QDir::current().absoluteFilePath(native)));
    const QString product = files.productPath(whole);
    messages.paths().add(product, whole);
    return product;
}

CatalogueEntry ConsoleWorld::project(const QString &name)
{
    for (const CatalogueEntry &entry : catalogue().entries()) {
        if (entry.name == name && name != favourites)
            return entry;
    }
    throw QvError(InvalidCall, {},
                  u"There is no project \"%1\" in the list of projects. \"qvdev list\" shows "
                  "them"_s.arg(name));
}

void ConsoleWorld::requireBuilt(const BuiltProject &built)
{
    if (!built.isBuilt(program))
        throw QvError(InvalidCall, {},
                      u"The project \"%1\" is not built as it is now. Build it, then release "
                      "it"_s.arg(built.name()));
}

Progress ConsoleWorld::progress()
{
    return {
        [this](int done, int total, const QString &what) { progressLine.show(done, total, what); },
        stopSignals.token()};
}
