// The books of one project: adding files, and who links to a page.
#include "controls/books/BookCommands.h"
#include "controls/books/BookRules.h"
#include "controls/books/PagePlaces.h"
#include "controls/build/BuiltProject.h"
#include "controls/session/ProjectPages.h"
#include "dialogs/ProjectOpening.h"
#include "platform/QvError.h"
#include "qvdev/Command.h"
#include "qvdev/OpenedProject.h"
#include "reports/IdentifierLinks.h"
#include "resources/Counted.h"
#include "tools/import/SourceImport.h"

#include <QCommandLineParser>
#include <QScopeGuard>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

CatalogueEntry projectToChange(ConsoleWorld &world, const QString &name)
{
    if (!world.project(name).addDate.isEmpty())
        throw QvError(InvalidCall, {},
                      u"The project \"%1\" is released. Reopen it to change it"_s.arg(name));
    return projectToContinue(world.program, name);
}

void makeBook(OpenedProject &project, const QString &acronym, const Call &call)
{
    ProjectSession &session = project.session;
    TocBook book;
    book.name = call.options.value(u"new-book"_s).trimmed();
    book.acronym = acronym;
    book.key = session.projectName();
    book.folder = call.options.isSet(u"folder"_s) ? call.options.value(u"folder"_s)
                                                  : BookRules::folderFor(acronym);
    book.file = BookRules::fileFor(acronym);
    for (const QString &problem : {BookRules::nameProblem(book.name, session.books()),
                                   BookRules::acronymProblem(acronym, session.books()),
                                   BookRules::folderProblem(book.folder, session.books())}) {
        if (!problem.isEmpty())
            throw QvError(InvalidCall, {}, problem);
    }
    BookCommands(session).create(book);
}

/// As the window chooses the command: a folder without pages is one of texts to convert.
ImportPlan planOf(ConsoleWorld &world, const QString &project, const TocBook &book,
                  const QStringList &picked, const QString &scratch)
{
    SourceImport import(world.session, world.files);
    const bool mustConvert = std::any_of(picked.cbegin(), picked.cend(), [](const QString &path) {
        const ImportFormat format = importFormat(path);
        return isConverted(format) || format == ImportFormat::Archive;
    });
    if (!mustConvert) {
        ImportPlan plan = import.plan(project, book, picked, world.progress());
        const auto isPage = [](const ImportItem &item) { return item.isPage(); };
        if (std::any_of(plan.items.cbegin(), plan.items.cend(), isPage))
            return plan;
    }
    return import.planImport(project, book, picked, scratch, world.progress());
}

/// What cannot be taken, or stays where it is; and what the author should know.
struct Told
{
    QStringList refused, notes;
};

Told toldBy(ConsoleWorld &world, const ImportPlan &plan, const ImportResult &result)
{
    const auto line = [&](const QString &what, const QString &why) {
        return world.messages.paths().in(what + u": "_s + why);
    };
    Told told;
    for (const ImportItem &item : plan.items) {
        if (!item.refusal.isEmpty())
            told.refused.append(line(item.remembered, item.refusal));
        else if (item.action == ImportAction::Skip)
            told.refused.append(line(item.remembered, u"Not added, because "_s + item.conflict));
    }
    for (const ImportOmission &omission : plan.omissions) {
        const QString reference = omission.reference.startsWith(u'\\')
                                      ? world.files.nativePath(omission.reference)
                                      : omission.reference;
        if (omission.page.isEmpty()) // the call itself names it
            told.refused.append(line(reference, omission.reason));
        else
            told.notes.append(line(omission.page, reference + u" ("_s + omission.reason + u')'));
    }
    told.notes += result.notes;
    return told;
}

[[noreturn]] void refuse(ConsoleWorld &world, const ImportPlan &plan)
{
    const Told told = toldBy(world, plan, {});
    for (const QString &line : told.refused + told.notes)
        world.messages.print(line);
    throw QvError(InvalidCall, {},
                  u"There is no page in these files that can be added. Nothing was added"_s);
}

ExitStatus showImported(ConsoleWorld &world, const ImportPlan &plan, const ImportResult &result)
{
    const Told told = toldBy(world, plan, result);
    const QString counts = u"Added to the book %1: %2. Files copied: %3, replaced: %4."_s.arg(
        plan.book.name, counted(result.pages.size(), u"1 page"_s, u"%1 pages"_s),
        QString::number(result.copied), QString::number(result.replaced));
    world.output.result((told.refused + told.notes + QStringList{counts}).join(u'\n'),
                        {{"project"_L1, plan.project},
                         {"book"_L1, plan.book.acronym},
                         {"pages"_L1, QJsonArray::fromStringList(result.pages)},
                         {"copied"_L1, result.copied},
                         {"replaced"_L1, result.replaced},
                         {"refused"_L1, QJsonArray::fromStringList(told.refused)},
                         {"notes"_L1, QJsonArray::fromStringList(told.notes)}});
    return told.refused.isEmpty() ? Done : Findings;
}

ExitStatus add(ConsoleWorld &world, OpenedProject &project, const QString &acronym,
               const QStringList &picked)
{
    ProjectSession &session = project.session;
    const auto explain = [](const QvError &error) {
        throw QvError(error.number(), {},
                      error.description() + u". Give --new-book NAME to make it"_s);
    };
    const TocBook book = trap(explain, [&] { return project.book(acronym); });
    const ImportPlan plan =
        planOf(world, session.projectName(), book, picked, session.binPlace(u"Unpacked"_s));
    if (totalsOf(plan).pages == 0)
        refuse(world, plan);
    const QString fresh = session.binPlace(u"Added"_s);
    ImportResult result;
    const auto stage = [&](const Progress &progress) {
        result = SourceImport(world.session, world.files).stage(plan, fresh, progress);
        // Before anything is in its place: what dies later must not leave a set that looks built.
        if (!result.changes.isEmpty())
            BuiltProject(world.program, session.projectName(), world.session.projectLanguage)
                .setAllLights(world.program, Light::mustRun);
        return result.changes;
    };
    session.performPrepared(u"Add files to "_s + book.name, u"Adding files..."_s, stage);
    return showImported(world, plan, result);
}

ExitStatus import(ConsoleWorld &world, const Call &call)
{
    const CatalogueEntry entry = projectToChange(world, call.arguments.at(0));
    const QString &acronym = call.arguments.at(1);
    QStringList picked;
    for (const QString &native : call.arguments.sliced(2)) {
        picked.append(world.productPath(native));
        if (!world.files.exists(picked.last()))
            throw QvError(FileNotFound, {}, u"There is no file or folder "_s + native);
    }
    if (world.messages.saysYes())
        world.messages.allow(u"Unlock them and go on"_s);
    world.messages.setAdvice(u"Give --yes to unlock them. Nothing was added."_s);
    OpenedProject project(world, entry);
    if (!call.options.isSet(u"new-book"_s))
        return add(world, project, acronym, picked);
    makeBook(project, acronym, call);
    ExitStatus status = Refused;
    const auto takeBack = qScopeGuard([&] {
        if (status == Refused)
            project.takeBack();
    });
    status = add(world, project, acronym, picked);
    return status;
}

/// The categories of the quick navigation with a link to the page.
void findCategories(const QList<QuickNavNode> &nodes, const QString &above, const TocBook &book,
                    const QString &page, QJsonArray &rows)
{
    for (const QuickNavNode &node : nodes) {
        const QString path = above.isEmpty() ? node.name : above + u" > "_s + node.name;
        for (const QuickNavLink &link : node.links) {
            if (link.book == book.acronym && link.page == page)
                rows.append(QJsonObject{{"from"_L1, u"Quick navigation: "_s + path},
                                        {"line"_L1, QJsonValue()},
                                        {"link"_L1, link.anchor},
                                        {"text"_L1, link.title}});
        }
        findCategories(node.children, path, book, page, rows);
    }
}

/// The pages of all projects that ask for it by an identifier.
void findIdentifiers(ConsoleWorld &world, const LinkedPlace &place, QJsonArray &rows)
{
    const IdentifierIndex index = readIdentifiers(world.program, world.progress());
    for (const SetLinks &links : index.sets()) {
        if (!links.problem.isEmpty())
            world.messages.print(links.problem);
    }
    for (const LinkingPage &link : identifierLinksTo(index, place))
        rows.append(QJsonObject{{"from"_L1, link.set + u'\\' + link.page},
                                {"line"_L1, QJsonValue()},
                                {"link"_L1, u"qvlink:"_s + link.identifier},
                                {"text"_L1, link.problem}});
}

ExitStatus whoLinks(ConsoleWorld &world, const Call &call)
{
    OpenedProject project(world, world.project(call.arguments.at(0)));
    ProjectSession &session = project.session;
    const TocBook book = project.book(call.arguments.at(1));
    const BookPage page = project.page(book, call.arguments.at(2));
    const PageIndex &index = session.pages().current();
    QJsonArray rows;
    for (const PageUse &use : index.usesOf(pathOfPage(session, book, page))) {
        const IndexedPage *const from = index.page(use.page);
        const IndexedLink &link = from->links.at(use.link);
        rows.append(QJsonObject{{"from"_L1, from->path},
                                {"line"_L1, link.line},
                                {"link"_L1, link.written},
                                {"text"_L1, link.text}});
    }
    findIdentifiers(world, {session.projectName(), {}, pathOfPage(session, book, page)}, rows);
    findCategories(session.quickNav().views, {}, book, page.id, rows);
    world.output.table({{"from"_L1, "FROM"_L1},
                        {"line"_L1, "LINE"_L1},
                        {"link"_L1, "LINK"_L1},
                        {"text"_L1, "TEXT"_L1}},
                       rows);
    return Done;
}

} // namespace

QList<Command> bookCommands()
{
    return {
        {u"import"_s,
         u"PROJECT BOOK FILE... [--new-book NAME] [--folder FOLDER]"_s,
         3,
         -1,
         u"Add pages, texts, tables, folders or archives to a book, by its acronym."_s,
         {{u"new-book"_s, u"Make the book first, under this name."_s, u"NAME"_s},
          {u"folder"_s, u"The folder of the new book, not Book_<acronym>."_s, u"FOLDER"_s}},
         {},
         import},
        {u"who-links"_s,
         u"PROJECT BOOK PAGE-FILE"_s,
         3,
         3,
         u"Show what leads to a page, by its identifiers also from other projects."_s,
         {},
         {},
         whoLinks},
    };
}
