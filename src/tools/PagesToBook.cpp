#include "tools/MovedOutlines.h"

#include "platform/Paths.h"
#include "platform/QvError.h"
#include "projectfiles/KeyWordFile.h"
#include "projectfiles/QuickNavFile.h"

#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QString folderOf(const TocBook &book)
{
    return withBackslash(QString(book.folder).replace(u'/', u'\\'));
}

QString plain(const QString &file)
{
    return QString(file).replace(u'/', u'\\');
}

/// Takes the pages of these ids out of an outline, with all below them, in its order.
QList<BookPage> take(QList<BookPage> &pages, const QStringList &ids)
{
    QList<BookPage> taken;
    for (qsizetype i = 0; i < pages.size();) {
        if (ids.contains(pages[i].id)) {
            taken.append(pages.takeAt(i));
        } else {
            taken.append(take(pages[i].pages, ids));
            ++i;
        }
    }
    return taken;
}

QList<BookPage> *childrenOf(QList<BookPage> &pages, const QString &id)
{
    if (id.isEmpty())
        return &pages;
    for (BookPage &page : pages) {
        if (page.id == id)
            return &page.pages;
        if (QList<BookPage> *const found = childrenOf(page.pages, id))
            return found;
    }
    return nullptr;
}

qsizetype placeIn(const QList<BookPage> &children, int row)
{
    return row < 0 ? children.size() : std::min<qsizetype>(row, children.size());
}

/// Which child stands before the place, when pages that go away stand before it too.
int rowWithout(const QList<BookPage> &children, int row, const QStringList &ids)
{
    if (row < 0)
        return row;
    int left = 0;
    for (qsizetype i = 0; i < std::min<qsizetype>(row, children.size()); ++i)
        left += ids.contains(children[i].id) ? 0 : 1;
    return left;
}

void giveFiles(QList<BookPage> &pages, const OutlineMove &move, const MovedPaths &paths,
               bool newIds)
{
    for (BookPage &page : pages) {
        if (!page.file.isEmpty()) {
            const QString path = paths.newPath(folderOf(move.from) + plain(page.file));
            if (path.startsWith(folderOf(move.to), Qt::CaseInsensitive))
                page.file = path.sliced(folderOf(move.to).size());
        }
        if (newIds)
            page.id.clear();
        giveFiles(page.pages, move, paths, newIds);
    }
}

void redirect(Session &session, FileSystem &files, const QString &project,
              const QList<std::pair<QuickNavTarget, QuickNavTarget>> &moved)
{
    QuickNav quickNav = readQuickNav(session, files, project);
    QList<KeyWord> keyWords = readKeyWords(session, files, project);
    int links = 0;
    bool words = false;
    for (const auto &[from, to] : moved) {
        links += redirectLinks(quickNav, from, to);
        for (KeyWord &keyWord : keyWords) {
            const qsizetype at = keyWord.pages.indexOf(KeyWord::Page{from.book, from.page});
            if (at >= 0)
                keyWord.pages[at] = {to.book, to.page};
            words |= at >= 0;
        }
    }
    if (links > 0)
        writeQuickNav(session, files, project, quickNav);
    if (words)
        writeKeyWords(session, files, project, keyWords);
}

QString freeName(FileSystem &files, const QString &folder, const QString &name,
                 const QSet<QString> &taken)
{
    const qsizetype dot = name.lastIndexOf(u'.');
    const QString stem = dot > 0 ? name.first(dot) : name;
    QString found = name;
    for (int number = 2; files.exists(folder + found) || taken.contains(found.toCaseFolded());
         ++number)
        found = stem + u"-%1"_s.arg(number) + name.sliced(stem.size());
    return found;
}

} // namespace

QList<PathMove> fileMoves(Session &session, FileSystem &files, const QString &project,
                          const OutlineMove &move)
{
    BookFile bookFile(session, files);
    QList<BookPage> outline = bookFile.read(project, move.from).pages;
    const QList<BookPage> chosen = take(outline, move.ids);
    if (chosen.isEmpty())
        throw QvError(InvalidCall, {}, u"The pages are no longer in the book."_s);
    const QString base = projectFolder(session.serverPath, project);
    const QString target = folderOf(move.to) + move.folder;
    QList<PathMove> moves;
    QSet<QString> taken, done;
    for (const BookPage &page : flattened(chosen)) {
        const QString from = folderOf(move.from) + plain(page.file);
        const QString key = from.toCaseFolded();
        const bool stays = parentFolder(from).compare(target, Qt::CaseInsensitive) == 0;
        if (page.file.isEmpty() || stays || done.contains(key)
            || !files.fileExists(bookFile.pagePath(project, move.from, page.file)))
            continue;
        const QString name = freeName(files, base + target, lastComponent(from), taken);
        taken.insert(name.toCaseFolded());
        done.insert(key);
        moves.append({from, target + name});
    }
    return moves;
}

QHash<QString, QString> moveInOutlines(Session &session, FileSystem &files, const QString &project,
                                       const OutlineMove &move, const QList<PathMove> &moves)
{
    BookFile bookFile(session, files);
    const bool sameBook = identityOf(move.from) == identityOf(move.to);
    Book source = bookFile.read(project, move.from);
    Book other = sameBook ? Book() : bookFile.read(project, move.to);
    Book &target = sameBook ? source : other;
    int row = move.row;
    if (const auto *children = childrenOf(target.pages, move.parent); sameBook && children)
        row = rowWithout(*children, row, move.ids);
    QList<BookPage> pages = take(source.pages, move.ids);
    const QList<BookPage> before = flattened(pages);
    QList<BookPage> *const children = childrenOf(target.pages, move.parent);
    if (children == nullptr)
        throw QvError(InvalidCall, {}, u"Pages cannot be moved below themselves."_s);

    giveFiles(pages, move, MovedPaths(moves), !sameBook);
    const qsizetype place = placeIn(*children, row);
    for (qsizetype i = 0; i < pages.size(); ++i)
        children->insert(place + i, pages[i]);
    bookFile.write(project, move.from, source);
    QHash<QString, QString> ids;
    if (sameBook) {
        for (const BookPage &page : before)
            ids.insert(page.id, page.id);
        return ids;
    }

    bookFile.write(project, move.to, other);
    other = bookFile.read(project, move.to); // with the ids they got
    const QList<BookPage> now =
        flattened(childrenOf(other.pages, move.parent)->mid(place, pages.size()));
    QList<std::pair<QuickNavTarget, QuickNavTarget>> moved;
    for (qsizetype i = 0; i < before.size(); ++i) {
        moved.append({{move.from.acronym, before[i].id}, {move.to.acronym, now[i].id}});
        ids.insert(before[i].id, now[i].id);
    }
    redirect(session, files, project, moved);
    return ids;
}
