#include "driver/Commands.h"

#include "controls/books/BookCommands.h"
#include "controls/books/BookRules.h"
#include "controls/globals/CategoryCommands.h"
#include "controls/links/MoveCommands.h"
#include "controls/pages/PageStore.h"
#include "qvdev/OpenedProject.h"
#include "tools/import/SourceImport.h"

using namespace Qt::StringLiterals;

namespace {

/// The project and what else the call names; the first argument is the project's name.
struct Work
{
    Work(ConsoleWorld &world, const Call &call)
        : arguments(call.arguments)
        , project(world, world.project(arguments.at(0)))
    {
    }
    [[nodiscard]] TocBook book() const { return project.book(arguments.at(1)); }

    const QStringList arguments;
    OpenedProject project;
    ProjectSession &session = project.session;
};

ExitStatus addBook(ConsoleWorld &world, const Call &call)
{
    Work work(world, call);
    TocBook book;
    book.name = work.arguments.at(1);
    book.acronym = work.arguments.at(2);
    book.key = work.session.projectName();
    book.folder = BookRules::folderFor(book.acronym);
    book.file = BookRules::fileFor(book.acronym);
    BookCommands(work.session).create(book);
    return Done;
}

ExitStatus renameBook(ConsoleWorld &world, const Call &call)
{
    Work work(world, call);
    TocBook now = work.book();
    now.name = work.arguments.at(2);
    BookCommands(work.session).change(work.book(), now);
    return Done;
}

ExitStatus deleteBook(ConsoleWorld &world, const Call &call)
{
    Work work(world, call);
    BookCommands(work.session).remove(work.book(), true);
    return Done;
}

ExitStatus savePage(ConsoleWorld &world, const Call &call)
{
    Work work(world, call);
    PageStore store(work.session);
    OpenPage page = store.read({work.book(), work.project.page(work.book(), work.arguments.at(2))});
    store.write(page, work.arguments.at(3));
    return Done;
}

ExitStatus renamePage(ConsoleWorld &world, const Call &call)
{
    Work work(world, call);
    const BookPage page = work.project.page(work.book(), work.arguments.at(2));
    MoveCommands commands(work.session);
    const bool isDone =
        commands.carryOut(commands.planFile(work.book(), page.id, work.arguments.at(3)), true);
    return isDone ? Done : Refused;
}

ExitStatus addCategory(ConsoleWorld &world, const Call &call)
{
    Work work(world, call);
    TocBook now = work.book();
    now.categories.append(work.arguments.at(2));
    CategoryCommands(work.session).add(work.arguments.at(2));
    BookCommands(work.session).change(work.book(), now);
    return Done;
}

ExitStatus renameCategory(ConsoleWorld &world, const Call &call)
{
    Work work(world, call);
    CategoryCommands(work.session).change(work.arguments.at(1), work.arguments.at(2), {});
    return Done;
}

/// Imports again what is newer than its pages.
ExitStatus importNewer(ConsoleWorld &world, const Call &call)
{
    Work work(world, call);
    SourceImport import(world.session, world.files);
    const ImportPlan plan = import.planNewer(work.session.projectName(), work.book(),
                                             work.session.binPlace(u"Unpacked"_s));
    const QString fresh = work.session.binPlace(u"Added"_s);
    const bool isDone =
        work.session.performPrepared(u"import"_s, {}, [&](const Progress &progress) {
            return import.stage(plan, fresh, progress).changes;
        });
    return isDone ? Done : Refused;
}

/// Gives the pages of a book a context id each, with the numbers from one on.
ExitStatus numberPages(ConsoleWorld &world, const Call &call)
{
    Work work(world, call);
    Book book = work.session.book(work.book());
    int number = work.arguments.at(2).toInt();
    for (BookPage &page : book.pages)
        page.contextIds = {{u"IDH_"_s + page.id, QString::number(number++)}};
    BookFile(world.session, world.files).write(work.session.projectName(), work.book(), book);
    return Done;
}

} // namespace

QList<Command> authorCommands()
{
    return {
        {u"add-book"_s, u"PROJECT NAME BOOK"_s, 3, 3, u"Make an empty book."_s, {}, {}, addBook},
        {u"rename-book"_s, u"PROJECT BOOK NAME"_s, 3, 3, u"Rename a book."_s, {}, {}, renameBook},
        {u"delete-book"_s, u"PROJECT BOOK"_s, 2, 2, u"Delete a book."_s, {}, {}, deleteBook},
        {u"save-page"_s,
         u"PROJECT BOOK PAGE-FILE TEXT"_s,
         4,
         4,
         u"Write a page."_s,
         {},
         {},
         savePage},
        {u"rename-page"_s,
         u"PROJECT BOOK PAGE-FILE NEW-FILE"_s,
         4,
         4,
         u"Rename a page, and what leads to it."_s,
         {},
         {},
         renamePage},
        {u"add-category"_s,
         u"PROJECT BOOK CATEGORY"_s,
         3,
         3,
         u"Add a category to a book."_s,
         {},
         {},
         addCategory},
        {u"rename-category"_s,
         u"PROJECT CATEGORY NEW-NAME"_s,
         3,
         3,
         u"Rename a category everywhere."_s,
         {},
         {},
         renameCategory},
        {u"import-newer"_s,
         u"PROJECT BOOK"_s,
         2,
         2,
         u"Import what is newer again."_s,
         {},
         {},
         importNewer},
        {u"number-pages"_s,
         u"PROJECT BOOK FROM"_s,
         3,
         3,
         u"Give pages context ids."_s,
         {},
         {},
         numberPages},
    };
}
