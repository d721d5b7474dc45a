#include "driver/Commands.h"

#include "catalogue/StatusIndicators.h"
#include "controls/books/BookCommands.h"
#include "controls/globals/CategoryCommands.h"
#include "controls/links/MoveCommands.h"
#include "controls/pages/PageStore.h"
#include "dialogs/ProjectCreation.h"
#include "platform/Paths.h"
#include "projectfiles/BookFile.h"
#include "reports/LinkIdFile.h"
#include "resources/Texts.h"
#include "tools/import/SourceImport.h"

#include <QFileInfo>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace {

constexpr int read = 0;
constexpr int empty = 2;

void useProject(Console &console, const QStringList &nameIdLanguage)
{
    console.session.projectName = nameIdLanguage.value(0);
    console.session.projectId = nameIdLanguage.value(1);
    console.session.projectLanguage = nameIdLanguage.value(2, u"ENU"_s);
}

/// A project as the editors have it open.
struct OpenProject
{
    ProjectSession session;

    OpenProject(Console &console, const QString &name)
        : session(console.program)
    {
        session.open(name);
    }
};

TocBook bookOf(ProjectSession &session, const QString &acronym)
{
    for (const TocBook &book : session.books()) {
        if (book.acronym == acronym)
            return book;
    }
    throw QvError(FileNotFound, {}, u"There is no book "_s + acronym);
}

BookPage pageOf(ProjectSession &session, const TocBook &book, const QString &file)
{
    for (const BookPage &page : flattened(session.book(book).pages)) {
        if (page.file == file)
            return page;
    }
    throw QvError(FileNotFound, {}, u"There is no page "_s + file);
}

/// The entries of a link file, which counts as empty when it cannot be read.
int readLinks(Console &console, const QString &file)
{
    struct Counter final : LinkVisitor
    {
        int entries = 0;
        void identifier(QStringView) override {}
        void path(QStringView) override {}
        void entryEnds() override { ++entries; }
    } counter;
    return trap([](const QvError &) {},
                [&] {
                    readLinkIdFile(console.files, console.parts.nameRules, file,
                                   {&counter, &counter, nullptr}, {});
                    return counter.entries > 0;
                })
               ? read
               : empty;
}

/// Shows one file of any folder as the catalogue, or as a file of a project or of a book.
int readFile(Console &console, const QStringList &arguments)
{
    const QString &kind = arguments.at(0);
    const QFileInfo file(arguments.at(1));
    const QString folder = file.absolutePath();
    const QString above = QFileInfo(folder).absolutePath();
    const QTemporaryDir server;
    const auto docsIs = [&](const QString &target) {
        QFile::link(target, server.filePath(u"Docs"_s));
        console.session.serverPath = withBackslash(console.files.productPath(server.path()));
    };

    if (kind == "catalogue"_L1) {
        docsIs(folder);
        for (const CatalogueEntry &entry : console.catalogue().entries())
            printLine({entry.id, entry.name, entry.location, entry.rank, entry.language});
        return read;
    }
    if (kind == "book"_L1) {
        docsIs(QFileInfo(above).absolutePath());
        TocBook entry;
        entry.folder = QFileInfo(folder).fileName();
        entry.file = file.fileName();
        const Book book =
            BookFile(console.session, console.files).read(QFileInfo(above).fileName(), entry);
        printLine({book.name, book.acronym, book.key, book.path});
        return read;
    }
    if (kind == "linkid"_L1)
        return readLinks(console, console.files.productPath(arguments.at(1)));
    docsIs(above);
    useProject(console, {QFileInfo(folder).fileName()});
    if (kind == "toc"_L1) {
        const Toc toc =
            TableOfContents(console.session, console.files).read(console.session.projectName);
        for (const TocBook &book : toc.books)
            printLine({book.name, book.acronym, book.folder, book.file});
        return read;
    }
    return StatusIndicators(console.session, console.files, console.currentProject).lights()
               ? read
               : empty;
}

int list(Console &console, const QStringList &)
{
    for (const CatalogueEntry &entry : console.catalogue().entries())
        printLine(
            {entry.id, entry.name, entry.location, entry.addDate, entry.rank, entry.language});
    return 0;
}

int append(Console &console, const QStringList &arguments)
{
    useProject(console, arguments);
    console.catalogue().bCheckQVSelectionforProdName();
    console.catalogue().UpdateQVSelection();
    return 0;
}

int rank(Console &console, const QStringList &items)
{
    console.catalogue().UpdateRankInSelectionFile(*console.parts.ranking, items);
    return 0;
}

/// The name for a new project; taken ones are refused as the wizard does.
void takeName(ProjectCreation &creation, const QStringList &nameIdLanguage)
{
    creation.name(nameIdLanguage.at(0), nameIdLanguage.at(1), nameIdLanguage.at(2));
    if (!creation.nameIsFree())
        throw QvError(InvalidCall, {}, text(Text::ProjectAlreadyExists));
}

int create(Console &console, const QStringList &arguments)
{
    ProjectCreation creation(console.program);
    takeName(creation, arguments);
    return creation.addNew(arguments.at(0)) ? 0 : 1;
}

int copy(Console &console, const QStringList &arguments)
{
    ProjectCreation creation(console.program);
    takeName(creation, arguments.sliced(1));
    creation.addCopy(arguments.at(0), [](const auto &work) { work({}); });
    return 0;
}

int open(Console &console, const QStringList &arguments)
{
    useProject(console, arguments);
    StatusIndicators(console.session, console.files, console.currentProject).AddProjectName();
    return 0;
}

int lights(Console &console, const QStringList &arguments)
{
    useProject(console, arguments);
    StatusIndicators(console.session, console.files, console.currentProject)
        .UpdateStatusXml(arguments.at(1).toInt());
    return 0;
}

int books(Console &console, const QStringList &arguments)
{
    const Toc toc = TableOfContents(console.session, console.files).read(arguments.at(0));
    for (const TocBook &book : toc.books)
        printLine({book.name, book.acronym, book.key, book.folder, book.file, book.type});
    return 0;
}

int addBook(Console &console, const QStringList &arguments)
{
    OpenProject project(console, arguments.at(0));
    const QString &acronym = arguments.at(2);
    const QString file = u"Book_%1.xml"_s.arg(acronym);
    BookCommands(project.session)
        .create({arguments.at(1), acronym, arguments.at(0), arguments.at(3), file, {}, {}});
    return 0;
}

int renameBook(Console &console, const QStringList &arguments)
{
    OpenProject project(console, arguments.at(0));
    const TocBook old = bookOf(project.session, arguments.at(1));
    TocBook now = old;
    now.name = arguments.at(2);
    BookCommands(project.session).change(old, now);
    return 0;
}

int renamePage(Console &console, const QStringList &arguments)
{
    OpenProject project(console, arguments.at(0));
    const TocBook book = bookOf(project.session, arguments.at(1));
    const BookPage page = pageOf(project.session, book, arguments.at(2));
    MoveCommands commands(project.session);
    return commands.carryOut(commands.planFile(book, page.id, arguments.at(3)), true) ? 0 : 1;
}

int addCategory(Console &console, const QStringList &arguments)
{
    OpenProject project(console, arguments.at(0));
    TocBook now = bookOf(project.session, arguments.at(1));
    const TocBook old = now;
    now.categories.append(arguments.at(2));
    CategoryCommands(project.session).add(arguments.at(2));
    BookCommands(project.session).change(old, now);
    return 0;
}

int renameCategory(Console &console, const QStringList &arguments)
{
    OpenProject project(console, arguments.at(0));
    CategoryCommands(project.session).change(arguments.at(1), arguments.at(2), {});
    return 0;
}

int deleteBook(Console &console, const QStringList &arguments)
{
    OpenProject project(console, arguments.at(0));
    BookCommands(project.session).remove(bookOf(project.session, arguments.at(1)), true);
    return 0;
}

/// Adds what was planned, as the author's command does.
int add(Console &console, const QStringList &arguments,
        const std::function<ImportPlan(SourceImport &, const TocBook &, const QString &)> &plan)
{
    OpenProject project(console, arguments.at(0));
    SourceImport import(console.session, console.files);
    const ImportPlan decided = plan(import, bookOf(project.session, arguments.at(1)),
                                    project.session.binPlace(u"Unpacked"_s));
    for (const ImportOmission &omission : decided.omissions)
        printLine({u"omitted"_s, omission.reference, omission.page, omission.reason});
    for (const ImportItem &item : decided.items) {
        if (!item.refusal.isEmpty())
            printLine({u"refused"_s, item.remembered, item.refusal});
    }
    ImportResult result;
    const QString fresh = project.session.binPlace(u"Added"_s);
    project.session.performPrepared(u"import"_s, {}, [&](const Progress &progress) {
        result = import.stage(decided, fresh, progress);
        return result.changes;
    });
    printLine({u"pages"_s, QString::number(result.pages.size()), u"files"_s,
               QString::number(result.copied)});
    return 0;
}

QStringList productPaths(Console &console, const QStringList &native)
{
    QStringList paths;
    for (const QString &path : native)
        paths.append(console.files.productPath(path));
    return paths;
}

int import(Console &console, const QStringList &arguments)
{
    return add(console, arguments, [&](SourceImport &import, const TocBook &book, const QString &) {
        return import.plan(arguments.at(0), book, productPaths(console, arguments.sliced(2)));
    });
}

int importFiles(Console &console, const QStringList &arguments)
{
    return add(console, arguments,
               [&](SourceImport &import, const TocBook &book, const QString &scratch) {
                   return import.planImport(arguments.at(0), book,
                                            productPaths(console, arguments.sliced(2)), scratch);
               });
}

int importNewer(Console &console, const QStringList &arguments)
{
    return add(console, arguments,
               [&](SourceImport &import, const TocBook &book, const QString &scratch) {
                   return import.planNewer(arguments.at(0), book, scratch);
               });
}

int savePage(Console &console, const QStringList &arguments)
{
    OpenProject project(console, arguments.at(0));
    const TocBook book = bookOf(project.session, arguments.at(1));
    PageStore store(project.session);
    OpenPage page = store.read({book, pageOf(project.session, book, arguments.at(2))});
    store.write(page, arguments.at(3));
    return 0;
}

/// Every listed project opens, with all its books and pages.
int verify(Console &console, const QStringList &)
{
    for (const QString &name : console.catalogue().GetProdQVSelection_All()) {
        if (name.isEmpty())
            continue;
        OpenProject project(console, name);
        for (const TocBook &book : project.session.books()) {
            for (const BookPage &page : flattened(project.session.book(book).pages))
                (void)PageStore(project.session).read({book, page});
        }
    }
    return 0;
}

} // namespace

QList<Command> commands()
{
    QList<Command> all{
        {u"read"_s, 2, u"catalogue|status|toc|book|linkid FILE"_s, readFile},
        {u"list"_s, 0, {}, list},
        {u"append"_s, 3, u"NAME ID LANGUAGE"_s, append},
        {u"rank"_s, 1, u"NAME#RANK..."_s, rank},
        {u"create"_s, 3, u"NAME ID LANGUAGE"_s, create},
        {u"copy"_s, 4, u"SOURCE NAME ID LANGUAGE"_s, copy},
        {u"open"_s, 1, u"NAME"_s, open},
        {u"lights"_s, 2, u"NAME COLOUR"_s, lights},
        {u"books"_s, 1, u"NAME"_s, books},
        {u"add-book"_s, 4, u"NAME BOOK ACRONYM FOLDER"_s, addBook},
        {u"rename-book"_s, 3, u"NAME ACRONYM NEW-BOOK-NAME"_s, renameBook},
        {u"rename-page"_s, 4, u"NAME ACRONYM FILE NEW-FILE"_s, renamePage},
        {u"add-category"_s, 3, u"NAME ACRONYM CATEGORY"_s, addCategory},
        {u"rename-category"_s, 3, u"NAME CATEGORY NEW-NAME"_s, renameCategory},
        {u"delete-book"_s, 2, u"NAME ACRONYM"_s, deleteBook},
        {u"import"_s, 3, u"NAME ACRONYM FOLDER..."_s, import},
        {u"import-files"_s, 3, u"NAME ACRONYM FILE..."_s, importFiles},
        {u"import-newer"_s, 2, u"NAME ACRONYM"_s, importNewer},
        {u"save-page"_s, 4, u"NAME ACRONYM FILE TEXT"_s, savePage},
        {u"verify"_s, 0, {}, verify},
    };
    return all += projectCommands() + buildCommands() + reportCommands();
}
