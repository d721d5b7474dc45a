#include "driver/Commands.h"

#include "catalogue/StatusIndicators.h"
#include "controls/pages/PageStore.h"
#include "platform/Paths.h"
#include "platform/QvError.h"
#include "projectfiles/BookFile.h"
#include "projectfiles/BookOutline.h"
#include "qvdev/OpenedProject.h"
#include "reports/LinkIdFile.h"
#include "tools/rename/ProjectRename.h"

#include <QFileInfo>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace {

/// A file of any folder, in the place that it would have on a server.
struct PlacedFile
{
    PlacedFile(ConsoleWorld &world, const QFileInfo &from, int foldersBelowDocs)
    {
        QDir docs = from.absoluteDir();
        for (int step = 0; step < foldersBelowDocs; ++step) {
            folders.prepend(docs.dirName());
            docs.cdUp();
        }
        QFile::link(docs.path(), server.filePath(u"Docs"_s));
        world.session.serverPath = withBackslash(world.files.productPath(server.path()));
        world.session.projectName = folders.value(0);
        world.session.projectLanguage = u"ENU"_s;
    }

    const QTemporaryDir server;
    QStringList folders; ///< from Docs on
};

StatusIndicators statusOf(ConsoleWorld &world)
{
    return {world.session, world.files, world.windows};
}

ExitStatus readCatalogue(ConsoleWorld &world, const QFileInfo &file)
{
    const PlacedFile place(world, file, 0);
    return world.catalogue().entries().isEmpty() ? Findings : Done;
}

ExitStatus readStatus(ConsoleWorld &world, const QFileInfo &file)
{
    const PlacedFile place(world, file, 1);
    return statusOf(world).lights() ? Done : Findings;
}

ExitStatus readToc(ConsoleWorld &world, const QFileInfo &file)
{
    const PlacedFile place(world, file, 1);
    (void)TableOfContents(world.session, world.files).read(place.folders.at(0));
    return Done;
}

ExitStatus readBook(ConsoleWorld &world, const QFileInfo &file)
{
    const PlacedFile place(world, file, 2);
    TocBook entry;
    entry.folder = place.folders.at(1);
    entry.file = file.fileName();
    (void)BookFile(world.session, world.files).read(place.folders.at(0), entry);
    return Done;
}

/// A link file counts as empty when it cannot be read.
ExitStatus readLinks(ConsoleWorld &world, const QFileInfo &file)
{
    struct Counter final : LinkVisitor
    {
        int entries = 0;
        void identifier(QStringView) override {}
        void path(QStringView) override {}
        void entryEnds() override { ++entries; }
    } counter;
    const bool isRead = trap([](const QvError &) {}, // it counts as empty
                             [&] {
                                 readLinkIdFile(world.files, world.parts.nameRules,
                                                world.productPath(file.absoluteFilePath()),
                                                {&counter, &counter, nullptr}, {});
                                 return counter.entries > 0;
                             });
    return isRead ? Done : Findings;
}

ExitStatus read(ConsoleWorld &world, const Call &call)
{
    static const QHash<QString, ExitStatus (*)(ConsoleWorld &, const QFileInfo &)> readers{
        {u"catalogue"_s, readCatalogue}, {u"status"_s, readStatus}, {u"toc"_s, readToc},
        {u"book"_s, readBook},           {u"linkid"_s, readLinks},
    };
    const auto reader = readers.value(call.arguments.at(0));
    if (!reader)
        throw QvError(InvalidCall, {}, u"What is a "_s + call.arguments.at(0));
    return reader(world, QFileInfo(call.arguments.at(1)));
}

ExitStatus append(ConsoleWorld &world, const Call &call)
{
    world.session.projectName = call.arguments.at(0);
    world.session.projectId = call.arguments.at(1);
    world.session.projectLanguage = call.arguments.at(2);
    world.catalogue().bCheckQVSelectionforProdName();
    world.catalogue().UpdateQVSelection();
    return Done;
}

ExitStatus makeCurrent(ConsoleWorld &world, const Call &call)
{
    world.session.projectName = world.project(call.arguments.at(0)).name;
    statusOf(world).AddProjectName();
    return Done;
}

ExitStatus setLights(ConsoleWorld &world, const Call &call)
{
    world.session.projectName = world.project(call.arguments.at(0)).name;
    statusOf(world).UpdateStatusXml(call.arguments.at(1).toInt());
    return Done;
}

/// Every listed project opens, with all its books and pages.
ExitStatus verify(ConsoleWorld &world, const Call &)
{
    for (const CatalogueEntry &entry : world.catalogue().entries()) {
        if (entry.name == favourites)
            continue;
        OpenedProject project(world, entry);
        for (const TocBook &book : project.session.books()) {
            for (const BookPage &page : flattened(project.session.book(book).pages))
                (void)PageStore(project.session).read({book, page});
        }
    }
    return Done;
}

ExitStatus renameProject(ConsoleWorld &world, const Call &call)
{
    ProjectRename(world.program, call.arguments.at(0), call.arguments.at(1), true).run();
    return Done;
}

} // namespace

QList<Command> installationCommands()
{
    return {
        {u"read"_s,
         u"catalogue|status|toc|book|linkid FILE"_s,
         2,
         2,
         u"Read one file of any folder."_s,
         {},
         {},
         read},
        {u"append"_s, u"NAME ID LANGUAGE"_s, 3, 3, u"List a project."_s, {}, {}, append},
        {u"open"_s, u"NAME"_s, 1, 1, u"Make a project current."_s, {}, {}, makeCurrent},
        {u"lights"_s, u"NAME COLOUR"_s, 2, 2, u"Set all lights."_s, {}, {}, setLights},
        {u"verify"_s, {}, 0, 0, u"Open every project, book and page."_s, {}, {}, verify},
        {u"rename-project"_s,
         u"NAME NEW-NAME"_s,
         2,
         2,
         u"Rename a project."_s,
         {},
         {},
         renameProject},
    };
}
