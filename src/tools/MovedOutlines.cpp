#include "tools/MovedOutlines.h"

#include "platform/Paths.h"
#include "platform/QvError.h"
#include "platform/Xml.h"
#include "projectfiles/GlobalBook.h"
#include "projectfiles/TableOfContents.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

bool overlap(const QString &a, const QString &b)
{
    return carriedOver(a, b, b).has_value() || carriedOver(b, a, a).has_value();
}

/// A path of a file of ours as relative paths are compared: with backslashes.
QString plain(const QString &path)
{
    return withoutBackslash(QString(path).replace(u'/', u'\\'));
}

QString bookFolder(const TocBook &book)
{
    return plain(book.folder) + u'\\';
}

/// A page file of a book whose folder was `before` and is `now`.
QString newFile(const QString &file, const QString &before, const QString &now,
                const MovedPaths &paths)
{
    const QString old = before + plain(file);
    const QString path = paths.newPath(old);
    const bool stays = path == old || file.isEmpty() || !path.startsWith(now, Qt::CaseInsensitive);
    if (stays)
        return file;
    const QString relative = path.sliced(now.size());
    return relative == plain(file) ? file
           : file.contains(u'/')   ? QString(relative).replace(u'\\', u'/')
                                   : relative;
}

void followInPages(QList<BookPage> &pages, const std::function<QString(const QString &)> &newName)
{
    for (BookPage &page : pages) {
        page.file = newName(page.file);
        followInPages(page.pages, newName);
    }
}

void followInBook(BookFile &file, const QString &project, const TocBook &entry, const TocBook &now,
                  const MovedPaths &paths)
{
    Book book = file.read(project, entry);
    const auto name = [&](const QString &old) {
        return newFile(old, bookFolder(entry), bookFolder(now), paths);
    };
    followInPages(book.pages, name);
    for (BookSource &source : book.sources)
        source.page = name(source.page);
    if (now.folder != entry.folder)
        book.path = u"Docs\\%1\\%2\\"_s.arg(project, now.folder);
    file.write(project, entry, book);
}

// "<project>\<path>#anchor"
QString newStored(const QString &stored, const QString &project, const MovedPaths &paths)
{
    const QString top = project + u'\\';
    const QString path = QString(stored).replace(u'/', u'\\');
    if (!path.startsWith(top, Qt::CaseInsensitive))
        return stored;
    const qsizetype hash = path.lastIndexOf(u'#');
    for (const qsizetype end : {path.size(), hash}) {
        const QString old = path.mid(top.size(), std::max<qsizetype>(end - top.size(), 0));
        const QString now = paths.newPath(old);
        if (now != old)
            return stored.first(top.size()) + now + stored.sliced(end);
    }
    return stored;
}

void followInGlobals(Session &session, FileSystem &files, const QString &project,
                     const QList<PathMove> &moves)
{
    const bool concerned = std::any_of(moves.cbegin(), moves.cend(), [](const PathMove &move) {
        return overlap(ProjectFile::globalFolder, move.from);
    });
    if (!concerned)
        return;
    const MovedPaths paths(moves);
    const QString folder = ProjectFile::globalFolder + u"\\"_s;
    QList<GlobalPage> pages = readGlobalPages(session, files, project);
    for (GlobalPage &page : pages)
        page.file = newFile(page.file, folder, folder, paths);
    writeGlobalPages(session, files, project, pages);
}

void followInLinkIds(FileSystem &files, const QString &path, const QString &project,
                     const MovedPaths &paths)
{
    if (!files.fileExists(path))
        return;
    const pugi::xml_document document = loadXml(files, path, "LINKS");
    bool changed = false;
    for (const char *place : {"LINKS/IBD/ID/LinkIDSourceFile", "LINKS/IBS/USER/FilePath"}) {
        for (const pugi::xpath_node &found : document.select_nodes(place)) {
            const QString stored = textOf(found.node()).trimmed();
            const QString now = newStored(stored, project, paths);
            if (now == stored)
                continue;
            setText(found.node(), now);
            changed = true;
        }
    }
    if (changed)
        saveXml(files, path, document);
}

} // namespace

void followInProject(Session &session, FileSystem &files, const QString &project,
                     const QList<PathMove> &moves)
{
    const MovedPaths paths(moves);
    BookFile bookFile(session, files);
    TableOfContents contents(session, files);
    const QList<TocBook> books = contents.read(project).books;
    for (const TocBook &book : books) {
        const QString folder = plain(book.folder);
        const bool concerned = std::any_of(moves.cbegin(), moves.cend(), [&](const PathMove &move) {
            return overlap(folder, move.from);
        });
        if (!concerned)
            continue;
        TocBook now = book;
        if (const QString moved = paths.newPath(folder); moved != folder)
            now.folder = moved;
        if (files.fileExists(bookFile.folder(project, book) + book.file))
            followInBook(bookFile, project, book, now, paths);
        if (now != book)
            contents.changeBook(project, book, now);
    }
    followInGlobals(session, files, project, moves);
    const QString linkIds = projectFolder(session.serverPath, project) + ProjectFile::links;
    // It is made anew by the linking tool, and one that cannot be read counts as empty everywhere.
    trap([](const QvError &) {}, [&] { followInLinkIds(files, linkIds, project, paths); });
}
