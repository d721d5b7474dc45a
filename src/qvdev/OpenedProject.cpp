#include "qvdev/OpenedProject.h"

#include "platform/QvError.h"
#include "projectfiles/BookOutline.h"

using namespace Qt::StringLiterals;

OpenedProject::OpenedProject(ConsoleWorld &world, const CatalogueEntry &project)
    : session(world.program)
{
    world.session.projectName = project.name;
    world.session.projectId = project.id;
    world.session.projectLanguage = project.language;
    session.setRunner([&world](const QString &, const auto &work) { work(world.progress()); });
    session.open(project.name);
}

TocBook OpenedProject::book(const QString &acronym) const
{
    QStringList acronyms;
    for (const TocBook &book : session.books()) {
        if (book.acronym.compare(acronym, Qt::CaseInsensitive) == 0)
            return book;
        acronyms.append(book.acronym);
    }
    throw QvError(FileNotFound, {},
                  u"There is no book \"%1\" in the project. "_s.arg(acronym)
                      + (acronyms.isEmpty() ? u"It has no books"_s
                                            : u"Its books are "_s + acronyms.join(u", "_s)));
}

BookPage OpenedProject::page(const TocBook &book, const QString &file)
{
    const QString wanted = QString(file).replace(u'/', u'\\');
    for (const BookPage &page : flattened(session.book(book).pages)) {
        if (page.file.compare(wanted, Qt::CaseInsensitive) == 0)
            return page;
    }
    throw QvError(FileNotFound, {},
                  u"There is no page \"%1\" in the book \"%2\""_s.arg(file, book.name));
}

void OpenedProject::takeBack()
{
    session.setRunner({});
    trap([](const QvError &) {}, // what made it necessary is told
         [this] { session.undo(); });
}
