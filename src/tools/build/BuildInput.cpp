#include "tools/build/BuildInput.h"

#include "platform/Paths.h"
#include "platform/QvError.h"
#include "platform/TreeWalker.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto globalAcronym = "GLOBAL"_L1;

QString pageKey(const QString &book, const QString &page)
{
    return book.toCaseFolded() + u'\n' + page;
}

void notePage(BuildInput &input, const PageOwner &owner, const QString &path)
{
    input.files.insert(pageKey(owner.book, owner.id), path);
    input.owners[path.toCaseFolded()].append(owner);
}

/// A path of two values that come out of files, relative to the project folder; nothing when it
/// would leave it.
std::optional<QString> pathInProject(const QString &folder, const QString &value)
{
    const auto whole = insideOf(folder, value);
    return whole && folder.isEmpty() ? whole->sliced(1) : whole; // without its backslash
}

Finding unreadable(const QString &file, const QString &problem)
{
    return {u"DATA01"_s, Severity::Error, file, 0, problem};
}

void readBook(BuildInput &input, Session &session, FileSystem &files, const TocBook &entry)
{
    BuildBook read{.entry = entry, .book = {}, .folder = {}};
    if (const auto folder = pathInProject({}, entry.folder))
        read.folder = withBackslash(*folder);
    const auto isProblem = [&](const QvError &error) {
        read.problem = error.description();
        input.problems.append(unreadable(read.folder + entry.file, read.problem));
    };
    trap(isProblem, [&] { read.book = BookFile(session, files).read(input.project, entry); });
    for (const BookPage &page : flattened(read.book.pages)) {
        if (const auto path = pathInProject(read.folder, page.file))
            notePage(input, {entry.acronym, page.id, page.title}, *path);
    }
    input.books.append(read);
}

void readGlobals(BuildInput &input, Session &session, FileSystem &files)
{
    const QString folder = withBackslash(ProjectFile::globalFolder);
    const auto isProblem = [&](const QvError &error) {
        input.problems.append(unreadable(folder + ProjectFile::globalBook, error.description()));
    };
    trap(isProblem, [&] { input.globalPages = readGlobalPages(session, files, input.project); });
    for (const GlobalPage &page : input.globalPages) {
        if (const auto path = pathInProject(folder, page.file))
            notePage(input, {globalAcronym, page.id, page.title}, *path);
    }
}

} // namespace

QString BuildInput::pageFile(const QString &book, const QString &page) const
{
    return files.value(pageKey(book, page));
}

QList<PageOwner> BuildInput::ownersOf(const QString &path) const
{
    return owners.value(path.toCaseFolded());
}

QList<Finding> BuildInput::bookProblems() const
{
    QList<Finding> found;
    for (const BuildBook &book : books) {
        if (!book.problem.isEmpty())
            found.append(unreadable(book.folder + book.entry.file, book.problem));
    }
    return found;
}

QStringList BuildInput::pageFolders() const
{
    QStringList folders{ProjectFile::globalFolder};
    for (const BuildBook &book : books) {
        if (!book.folder.isEmpty())
            folders.append(withoutBackslash(book.folder));
    }
    folders.removeDuplicates();
    return folders;
}

BuildInput readBuildInput(Session &session, FileSystem &files, const QString &project,
                          const QString &language, const Progress &progress)
{
    BuildInput input;
    input.project = project;
    input.folder = existingProjectFolder(files, session.serverPath, project);
    input.language = language;
    const Toc toc = TableOfContents(session, files).read(project);
    input.header = toc.header;
    for (const TocBook &entry : toc.books) {
        progress.step(int(input.books.size()), int(toc.books.size()), entry.name);
        readBook(input, session, files, entry);
    }
    readGlobals(input, session, files);
    const auto isProblem = [&](const QString &file) {
        return [&input, file](const QvError &error) {
            input.problems.append(unreadable(file, error.description()));
        };
    };
    trap(isProblem(ProjectFile::quickNav),
         [&] { input.quickNav = readQuickNav(session, files, project); });
    trap(isProblem(ProjectFile::keyWords),
         [&] { input.keyWords = readKeyWords(session, files, project); });
    return input;
}
