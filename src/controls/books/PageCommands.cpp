#include "controls/books/PageCommands.h"

#include "controls/books/KeyWordCommands.h"
#include "controls/books/PageRules.h"
#include "platform/Clock.h"
#include "platform/Paths.h"
#include "platform/QvError.h"
#include "startup/FileHelpers.h"
#include "startup/Session.h"
#include "tools/PageNames.h"
#include "tools/PageSkeleton.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {
BookPage &required(Book &book, const QString &id)
{
    BookPage *const page = OutlineEdit::find(book.pages, id);
    if (page == nullptr)
        throw QvError(InvalidCall, {},
                      u"The book \"%1\" has no page %2 any more."_s.arg(book.name, id));
    return *page;
}

QSet<QString> asSet(const QStringList &ids)
{
    return {ids.cbegin(), ids.cend()};
}

QString titleOf(const BookPage &page)
{
    return page.title.isEmpty() ? page.file : page.title;
}
} // namespace

bool editBook(ProjectSession &session, StagedFiles &files, const TocBook &entry,
              const std::function<bool(Book &)> &edit)
{
    BookFile file(session.program().session, files);
    Book book = file.read(session.projectName(), entry);
    if (!edit(book))
        return false;
    book.dateChanged = session.program().clock.now().date().toString(Qt::ISODate);
    file.write(session.projectName(), entry, book);
    return true;
}

PageCommands::PageCommands(ProjectSession &session)
    : m_session(session)
{
}

QString PageCommands::proposedFile(const TocBook &entry, const QString &title)
{
    return freeFile(entry, {}, title);
}

QString PageCommands::freeFile(const TocBook &entry, const QString &folder, const QString &title)
{
    FileSystem &files = m_session.program().files;
    const BookFile book(m_session.program().session, files);
    return folder + newPageFile(title, [&](const QString &file) {
               return files.exists(book.pagePath(m_session.projectName(), entry, folder + file));
           });
}

QString PageCommands::add(const TocBook &entry, const QString &title, const QString &file,
                          const OutlinePlace &place)
{
    QString id;
    m_session.perform(tr("Add page %1").arg(title), [&](StagedFiles &files) {
        const BookPage page{{}, title, file, {}, {}};
        id = addFile(files, entry, page,
                     newPage(title, m_session.program().session.projectLanguage), place);
    });
    return id;
}

QString PageCommands::duplicate(const TocBook &entry, const QString &id)
{
    QList<BookPage> pages = m_session.book(entry).pages;
    const BookPage *const original = OutlineEdit::find(pages, id);
    if (original == nullptr)
        return {};
    const QString name = lastComponent(QString(original->file).replace(u'/', u'\\'));
    // Beside the original: what it refers to lies there.
    const QString file =
        freeFile(entry, original->file.chopped(name.size()), name.section(u'.', 0, -2));
    const BookPage copy{{}, tr("Copy of %1").arg(titleOf(*original)), file, {}, {}};
    QString made;
    m_session.perform(tr("Duplicate page %1").arg(titleOf(*original)), [&](StagedFiles &files) {
        const QString from = BookFile(m_session.program().session, files)
                                 .pagePath(m_session.projectName(), entry, original->file);
        made = addFile(files, entry, copy, files.readFile(from), {OutlinePlace::Where::After, id});
    });
    return made;
}

// The book is read again, for the id that the page got.
QString PageCommands::addFile(StagedFiles &files, const TocBook &entry, const BookPage &page,
                              const QByteArray &bytes, const OutlinePlace &place)
{
    BookFile book(m_session.program().session, files);
    const QString path = book.pagePath(m_session.projectName(), entry, page.file);
    if (files.exists(path))
        throw QvError(PathFileAccess, {},
                      tr("There is a file \"%1\" in the book already.").arg(page.file));
    files.replaceFile(path, bytes);
    editBook(m_session, files, entry, [&](Book &edited) {
        if (!OutlineEdit::insert(edited.pages, {page}, place))
            required(edited, place.page);
        return true;
    });
    for (const BookPage &listed : flattened(book.read(m_session.projectName(), entry).pages)) {
        if (listed.file == page.file)
            return listed.id;
    }
    return {};
}

bool PageCommands::list(const TocBook &entry, const QStringList &files, const QStringList &titles)
{
    const QString name = files.size() == 1 ? tr("List page %1").arg(titles.first())
                                           : tr("List %1 pages").arg(files.size());
    return change(name, entry, [&](Book &book) {
        for (qsizetype i = 0; i < files.size(); ++i)
            book.pages.append({{}, titles.at(i), files.at(i), {}, {}});
        return !files.isEmpty();
    });
}

bool PageCommands::remove(const TocBook &entry, const QStringList &ids, bool alsoFiles)
{
    const QString name =
        (alsoFiles ? tr("Delete %1") : tr("Take %1 out of the book")).arg(named(entry, ids));
    return m_session.perform(name, [&](StagedFiles &files) {
        QList<BookPage> gone, left;
        editBook(m_session, files, entry, [&](Book &book) {
            gone = flattened(OutlineEdit::take(book.pages, asSet(ids)));
            left = book.pages;
            return !gone.isEmpty();
        });
        QStringList goneIds;
        for (const BookPage &page : std::as_const(gone))
            goneIds.append(page.id);
        KeyWordCommands::forgetPages(m_session, files, entry, goneIds);
        if (alsoFiles)
            setFilesAside(files, entry, gone, left);
    });
}

void PageCommands::setFilesAside(StagedFiles &files, const TocBook &entry,
                                 const QList<BookPage> &gone, const QList<BookPage> &left)
{
    const BookFile book(m_session.program().session, files);
    QSet<QString> kept = filesOfOthers(entry);
    for (const BookPage &page : flattened(left))
        kept.insert(book.pagePath(m_session.projectName(), entry, page.file).toCaseFolded());
    QString bin;
    for (const BookPage &page : gone) {
        const QString path = book.pagePath(m_session.projectName(), entry, page.file);
        if (kept.contains(path.toCaseFolded()) || !files.fileExists(path))
            continue;
        if (bin.isEmpty())
            bin = parentFolder(m_session.binPlace(page.file));
        files.setAside(path, bin + page.id + u'-' + lastComponent(path));
    }
}

// What books list whose folders lie within or around this one's.
QSet<QString> PageCommands::filesOfOthers(const TocBook &entry)
{
    const BookFile file(m_session.program().session, m_session.program().files);
    const QString folder = file.folder(m_session.projectName(), entry);
    QSet<QString> paths;
    for (const TocBook &other : QList(m_session.books())) {
        const auto place = insideOf(m_session.folder(), other.folder);
        const bool isNear = place
                            && (withBackslash(*place).startsWith(folder, Qt::CaseInsensitive)
                                || folder.startsWith(withBackslash(*place), Qt::CaseInsensitive));
        if (!isNear || identityOf(other) == identityOf(entry))
            continue;
        for (const BookPage &page : flattened(m_session.book(other).pages))
            paths.insert(withBackslash(*place).toCaseFolded()
                         + QString(page.file).replace(u'/', u'\\').toCaseFolded());
    }
    return paths;
}

bool PageCommands::rename(const TocBook &entry, const QString &id, const QString &title)
{
    if (const QString problem = PageRules::titleProblem(title); !problem.isEmpty())
        throw QvError(InvalidCall, {}, problem);
    return change(tr("Rename %1").arg(named(entry, {id})), entry, [&](Book &book) {
        return std::exchange(required(book, id).title, title) != title;
    });
}

bool PageCommands::moveUp(const TocBook &entry, const QStringList &ids)
{
    return rearrange(tr("Move %1 up"), entry, ids, &OutlineEdit::moveUp);
}

bool PageCommands::moveDown(const TocBook &entry, const QStringList &ids)
{
    return rearrange(tr("Move %1 down"), entry, ids, &OutlineEdit::moveDown);
}

bool PageCommands::promote(const TocBook &entry, const QStringList &ids)
{
    return rearrange(tr("Promote %1"), entry, ids, &OutlineEdit::promote);
}

bool PageCommands::demote(const TocBook &entry, const QStringList &ids)
{
    return rearrange(tr("Demote %1"), entry, ids, &OutlineEdit::demote);
}

bool PageCommands::rearrange(const QString &name, const TocBook &entry, const QStringList &ids,
                             Rearrange how)
{
    return change(name.arg(named(entry, ids)), entry,
                  [&](Book &book) { return how(book.pages, asSet(ids)); });
}

bool PageCommands::move(const TocBook &entry, const QStringList &ids, const OutlinePlace &place)
{
    return change(tr("Move %1").arg(named(entry, ids)), entry, [&](Book &book) {
        const QList<BookPage> pages = OutlineEdit::take(book.pages, asSet(ids));
        if (pages.isEmpty())
            return false;
        if (!OutlineEdit::insert(book.pages, pages, place))
            throw QvError(InvalidCall, {}, tr("A page cannot be moved to below itself."));
        return true;
    });
}

bool PageCommands::sort(const TocBook &entry, const QString &parent)
{
    const QString name = parent.isEmpty()
                             ? tr("Sort the pages of %1").arg(entry.name)
                             : tr("Sort the pages below %1").arg(named(entry, {parent}));
    return change(name, entry, [&](Book &book) { return OutlineEdit::sort(book.pages, parent); });
}

bool PageCommands::setContextIds(const TocBook &entry, const QString &id,
                                 const QList<ContextId> &ids)
{
    return change(tr("Change context ids of %1").arg(named(entry, {id})), entry, [&](Book &book) {
        return std::exchange(required(book, id).contextIds, ids) != ids;
    });
}

bool PageCommands::setLinkIds(const TocBook &entry, const QString &id, const QStringList &linkIds)
{
    return change(tr("Change link ids of %1").arg(named(entry, {id})), entry, [&](Book &book) {
        return std::exchange(required(book, id).linkIds, linkIds) != linkIds;
    });
}

QString PageCommands::named(const TocBook &entry, const QStringList &ids)
{
    if (ids.size() != 1)
        return tr("%1 pages").arg(ids.size());
    QList<BookPage> pages = m_session.book(entry).pages;
    const BookPage *const page = OutlineEdit::find(pages, ids.first());
    return page == nullptr ? ids.first() : tr("page %1").arg(titleOf(*page));
}

bool PageCommands::change(const QString &name, const TocBook &entry, const Edit &edit)
{
    return m_session.perform(name,
                             [&](StagedFiles &files) { editBook(m_session, files, entry, edit); });
}
