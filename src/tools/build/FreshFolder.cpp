#include "tools/build/FreshFolder.h"

#include "platform/Paths.h"
#include "platform/QvError.h"
#include "platform/TreeWalker.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace {

QString freshPlace(const QString &folder)
{
    return folder + u".qvnew"_s;
}

// The name says that what lies at `freshPlace` is whole: the old folder is moved there only then.
QString oldPlace(const QString &folder)
{
    return folder + u".qvold"_s;
}

// What is no folder is not ours.
void removeIfThere(FileSystem &files, const QString &folder)
{
    if (files.folderExists(folder))
        deleteTree(files, folder);
}

QString tr(const char *text)
{
    return QCoreApplication::translate("FreshFolder", text);
}

void refuseUnlessFree(FileSystem &files, const QString &place)
{
    const FileKind kind = files.status(place).kind;
    if (kind != FileKind::Missing && kind != FileKind::Folder)
        throw QvError(PathFileAccess, {},
                      tr("A build makes a folder %1, but something else has that name. Rename it "
                         "or move it away, then build again.")
                          .arg(place));
}

/// Pages that an author saves while the folder is swapped would be lost.
void refuseBooksIn(const BuildInput &input, const QString &name)
{
    for (const BuildBook &book : input.books) {
        if (book.folder.startsWith(withBackslash(name), Qt::CaseInsensitive))
            throw QvError(PathFileAccess, {},
                          tr("The book \"%1\" lies in the folder %2, which a build writes anew as "
                             "a whole. Give the book a folder of its own, then build again.")
                              .arg(book.entry.name, name));
    }
}

} // namespace

FreshFolder::FreshFolder(FileSystem &files, const BuildInput &input, const QString &name)
    : m_files(files)
    , m_folder(input.folder + name)
{
    refuseBooksIn(input, name);
    for (const QString &place : {m_folder, freshPlace(m_folder), oldPlace(m_folder)})
        refuseUnlessFree(m_files, place);
    recoverFreshFolder(m_files, m_folder);
    if (m_files.folderExists(m_folder)) {
        for (const FolderEntry &entry : m_files.entries(m_folder)) {
            if (entry.status.readOnly)
                m_readOnly.insert(entry.name.toCaseFolded());
        }
    }
    m_files.makeFolder(freshPlace(m_folder));
}

FreshFolder::~FreshFolder()
{
    if (m_done)
        return;
    // A destructor may not raise; what stays is removed when the next build begins.
    trap([](const QvError &) {}, [this] { removeIfThere(m_files, freshPlace(m_folder)); });
}

void FreshFolder::write(const QString &name, const QByteArray &content)
{
    m_files.replaceFile(freshPath(name), content, {.sync = false});
    m_written.insert(name.toCaseFolded());
    if (m_readOnly.contains(name.toCaseFolded()))
        m_files.setAttributes(freshPath(name), m_files.attributes(freshPath(name)) | ReadOnlyFile);
}

void FreshFolder::keepOthers(const std::function<bool(const QString &name)> &isOurs)
{
    if (!m_files.folderExists(m_folder))
        return;
    for (const FolderEntry &entry : m_files.entries(m_folder)) {
        const QString old = m_folder + u'\\' + entry.name;
        if (m_written.contains(entry.name.toCaseFolded()) || (isOurs && isOurs(entry.name)))
            continue;
        if (entry.status.kind == FileKind::File)
            m_files.copyFile(old, freshPath(entry.name), NameCheck::Exact);
        else if (entry.status.kind == FileKind::Folder)
            copyTree(m_files, old, freshPath(entry.name));
    }
}

QString FreshFolder::freshPath(const QString &name) const
{
    return freshPlace(m_folder) + u'\\' + name;
}

void FreshFolder::flush()
{
    m_files.syncTree(freshPlace(m_folder));
    m_flushed = true;
}

void FreshFolder::putInPlace()
{
    if (!m_flushed)
        flush();
    const bool hadOne = m_files.exists(m_folder);
    if (hadOne)
        m_files.move(m_folder, oldPlace(m_folder));
    const auto putBack = [&](const QvError &error) {
        if (hadOne)
            m_files.move(oldPlace(m_folder), m_folder);
        throw error;
    };
    trap(putBack, [&] { m_files.move(freshPlace(m_folder), m_folder); });
    m_done = true;
    m_files.syncFolder(parentFolder(m_folder));
    // The new one counts; what cannot be removed now is removed when the next build begins.
    if (hadOne)
        trap([](const QvError &) {}, [&] { deleteTree(m_files, oldPlace(m_folder)); });
}

namespace {

/// What was being deleted of one when the program died.
void removeAside(FileSystem &files, const QString &folder)
{
    const QString parent = parentFolder(folder);
    for (const FolderEntry &entry : files.kinds(withoutBackslash(parent))) {
        for (const QString &place : {freshPlace(folder), oldPlace(folder)}) {
            const QString start = lastComponent(place) + u".qvdel"_s;
            if (entry.status.kind == FileKind::Folder && entry.name.startsWith(start))
                deleteTree(files, parent + entry.name);
        }
    }
}

} // namespace

void recoverFreshFolder(FileSystem &files, const QString &folder)
{
    if (files.exists(folder)) {
        removeIfThere(files, oldPlace(folder));
        removeIfThere(files, freshPlace(folder));
    } else if (files.folderExists(oldPlace(folder))) {
        if (files.folderExists(freshPlace(folder)))
            files.move(freshPlace(folder), folder);
        else
            files.move(oldPlace(folder), folder);
        removeIfThere(files, oldPlace(folder));
    } else {
        removeIfThere(files, freshPlace(folder)); // the first of its kind, not finished
    }
    removeAside(files, folder);
}
