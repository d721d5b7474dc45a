#include "dialogs/merge/MergedBooks.h"

#include "dialogs/merge/RenamedLinks.h"
#include "platform/Paths.h"
#include "platform/TreeWalker.h"
#include "platform/Xml.h"
#include "projectfiles/ProjectCopy.h"
#include "startup/ContentFiles.h"
#include "startup/FileHelpers.h"
#include "startup/Session.h"

using namespace Qt::StringLiterals;
using Kind = MergeFinding::Kind;

namespace {

QString parentOf(const QString &relative)
{
    return withoutBackslash(parentFolder(relative));
}

} // namespace

MergedBooks::MergedBooks(Program &program, const MergeSource &source, QList<MergedBook> books,
                         BookPlaces &places, QList<MergeFinding> &findings)
    : m_program(program)
    , m_source(source)
    , m_books(std::move(books))
    , m_findings(findings)
{
    m_books.removeIf([](const MergedBook &book) { return !book.element; });
    findFolders();
    placeRoots(places);
    for (const MergedBook &book : std::as_const(m_books))
        settleFolder(book);
}

void MergedBooks::bring(const QString &folder, const Progress &progress)
{
    m_folder = folder;
    const int count = static_cast<int>(m_roots.size()) + 1;
    for (int i = 0; i + 1 < count; ++i)
        copy(m_roots[i], progress.piece(i, count, m_roots[i].from));
    rewriteLinks(progress.piece(count - 1, count, m_source.name));
    for (const MergedBook &book : std::as_const(m_books))
        settleFile(book);
}

/// Which folders of the books are there.
void MergedBooks::findFolders()
{
    FolderIndex index(m_program.files, m_source.folder);
    for (const MergedBook &book : std::as_const(m_books)) {
        const auto relative = relativeBookFolder(book.folder);
        const auto there = relative ? index.find(*relative) : std::nullopt;
        if (!relative)
            note(Kind::NotCopied, u"Its folder does not lie in the project: "_s + book.folder,
                 book);
        else if (!there)
            note(Kind::NotCopied, u"Its folder is not there: "_s + book.folder, book);
        else if (there->status.kind != FileKind::Folder)
            note(Kind::NotCopied, u"Its folder is no folder: "_s + book.folder, book);
        else
            m_folders.insert(relative->toCaseFolded(), there->relative);
    }
}

/// The outermost of the folders; each is copied once, with all in it.
void MergedBooks::placeRoots(BookPlaces &places)
{
    places.startProject();
    for (const MergedBook &book : std::as_const(m_books)) {
        const QString folder = folderOf(book);
        if (folder.isEmpty() || m_rootPlaces.contains(folder.toCaseFolded())
            || rootOf(folder) != folder)
            continue;
        const QString place = places.placeFor(folder);
        m_roots.append({folder, place});
        m_rootPlaces.insert(folder.toCaseFolded(), place);
    }
    m_renamed = places.renamed();
}

void MergedBooks::settleFolder(const MergedBook &book)
{
    const QString folder = folderOf(book);
    if (folder.isEmpty())
        return;
    const QString root = rootOf(folder);
    const QString place = m_rootPlaces.value(root.toCaseFolded()) + folder.sliced(root.size());
    if (place.compare(folder, Qt::CaseInsensitive) == 0)
        return;
    setText(book.element.child("Book_Folder"), place);
    note(Kind::FolderRenamed, u"Its folder is now %1, because %2 was taken"_s.arg(place, folder),
         book);
}

/// The folder of a book in its own project; "" when it is not there.
QString MergedBooks::folderOf(const MergedBook &book) const
{
    const auto relative = relativeBookFolder(book.folder);
    return relative ? m_folders.value(relative->toCaseFolded()) : QString();
}

/// The outermost book folder that a book folder lies in; itself when it lies in no other.
QString MergedBooks::rootOf(const QString &folder) const
{
    QString root = folder;
    for (QString at = parentOf(folder); !at.isEmpty(); at = parentOf(at))
        root = m_folders.value(at.toCaseFolded(), root);
    return root;
}

void MergedBooks::copy(const Root &root, const Progress &progress)
{
    FileSystem &files = m_program.files;
    const QString target = m_folder + root.place;
    if (root.place.contains(u'\\'))
        FileHelpers(m_program.session, files).mbCreateFilePath(m_folder + parentOf(root.place));
    files.makeFolder(target, NameCheck::Exact); // the places know all names
    for (const QString &link : copyTree(files, m_source.folder + root.from, target,
                                        progress.piece(0, 2, root.from), isWorkFile))
        note(Kind::NotCopied,
             u"Links to other places are not copied: "_s + root.from + u'\\' + link);

    Session session = m_program.session;
    session.projectLanguage = m_source.language; // in which its pages are to be read
    const Progress pages = progress.piece(1, 2, root.from);
    for (const QString &page :
         ContentFiles(session, files).QVUpdateFiles(withBackslash(target), m_source.name, 0, pages))
        note(Kind::Unreadable, u"Kept beside an empty page: "_s + page);
}

void MergedBooks::rewriteLinks(const Progress &progress)
{
    if (m_renamed.isEmpty())
        return;
    RenamedLinks links(m_program.files, m_program.session.projectName, m_renamed,
                       m_source.language);
    const int count = static_cast<int>(m_roots.size());
    for (int i = 0; i < count; ++i)
        links.rewrite(m_folder + m_roots[i].place + u'\\', m_roots[i].from,
                      progress.piece(i, count, m_roots[i].place));
    for (const QString &remark : links.remarks())
        note(Kind::LinksUnchanged, remark);
}

/// Makes the book's own file the merged project's.
void MergedBooks::settleFile(const MergedBook &book)
{
    if (folderOf(book).isEmpty())
        return;
    const QString folder = textOf(book.element.child("Book_Folder"));
    const auto path = insideOf(m_folder + folder, book.file);
    if (!path) {
        note(Kind::NotCopied, u"Its file does not lie in its folder: "_s + book.file, book);
    } else if (!m_program.files.fileExists(*path)) {
        note(Kind::NotCopied, u"Its file is not there: "_s + folder + u'\\' + book.file, book);
    } else {
        ProjectCopy copy(m_program.session, m_program.files, m_program.clock, m_program.locale,
                         m_folder);
        for (const QString &remark : copy.UpdateProductInfoInBook(
                 folder, book.file, book.isRenamed() ? book.acronym : QString()))
            note(Kind::Unreadable, remark, book);
    }
}

void MergedBooks::note(Kind kind, const QString &detail, const MergedBook &book)
{
    m_findings.append({kind, m_source.name, book.name, book.acronym, detail});
}
