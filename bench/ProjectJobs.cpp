#include "ProjectJobs.h"

#include "Spent.h"
#include "Windows.h"

#include "dialogs/ProjectDeletion.h"
#include "platform/TreeWalker.h"
#include "platform/Xml.h"
#include "projectfiles/TocMerge.h"
#include "reports/LinkReport.h"
#include "reports/LinkReportModel.h"

#include <QApplication>
#include <QTreeView>

using namespace Qt::StringLiterals;

namespace {

void count(const LinkEntries &links)
{
    number("good", static_cast<double>(links.goodCount()), "");
    number("bad", static_cast<double>(links.count() - links.goodCount()), "");
}

LinkReport report(Windows &windows, const QStringList &arguments)
{
    const int threads = arguments.value(1).toInt();
    return threads > 0 ? LinkReport(windows.program, threads) : LinkReport(windows.program);
}

int targets(const QStringList &arguments)
{
    Windows windows(arguments.at(0));
    count(report(windows, arguments).GetIBD_Details());
    return 0;
}

int references(const QStringList &arguments)
{
    Windows windows(arguments.at(0));
    count(report(windows, arguments).GetIBS_Details());
    return 0;
}

int show(const QStringList &arguments)
{
    Windows windows(arguments.at(0));
    LinkEntries links = report(windows, arguments).GetIBD_Details();
    const double before = cpuSeconds();
    LinkReportModel model(windows.console.files);
    QTreeView list;
    list.setUniformRowHeights(true);
    list.setRootIsDecorated(false);
    list.setModel(&model);
    LinkOrder order = allLinks(links);
    model.setLinks(std::move(links), std::move(order));
    list.resize(900, 500);
    list.show();
    settle();
    list.scrollToBottom();
    settle();
    number("rows", model.rowCount(), "");
    number("CPU", cpuSeconds() - before, "s");
    return 0;
}

/// What any reader needs: the bytes, and a tree of them.
int parse(const QStringList &arguments)
{
    Windows windows(u"/"_s);
    const QString file = windows.console.files.productPath(arguments.at(1));
    for (int time = arguments.at(0).toInt(); time > 0; --time) {
        const QByteArray bytes = windows.console.files.readFile(file);
        pugi::xml_document document;
        if (!document.load_buffer(bytes.constData(), static_cast<size_t>(bytes.size())))
            return 1;
    }
    return 0;
}

int read(const QStringList &arguments)
{
    Windows windows(arguments.at(1));
    const QString file = cataloguePath(windows.console.session.serverPath);
    for (int time = arguments.at(0).toInt(); time > 0; --time)
        (void)loadXml(windows.console.files, file, "QV_Selection_List");
    return 0;
}

int names(const QStringList &arguments)
{
    Windows windows(arguments.at(1));
    ProjectCatalogue catalogue(windows.console.session, windows.console.files);
    for (int time = arguments.at(0).toInt(); time > 0; --time)
        (void)catalogue.GetProdQVSelection_All();
    return 0;
}

int tables(const QStringList &arguments)
{
    Windows windows(arguments.at(0));
    FileSystem &files = windows.console.files;
    const QStringList projects = windows.program.components.serverProducts.GetAvailableProducts();
    const auto load = [&](const QString &project) {
        return loadXml(
            files, projectFolder(windows.console.session.serverPath, project) + ProjectFile::toc,
            "QV_Master");
    };
    for (int time = arguments.at(1).toInt(); time > 0; --time) {
        TocMerge merge(load(projects.first()), u"Merged"_s);
        for (const QString &project : projects.sliced(1))
            merge.ReadBookNodesfromQVTOC(load(project));
        saveXml(files, below(windows, u"Merged.xml"_s), merge.document(), {.sync = false});
        number("books", merge.bookCount(), "");
    }
    return 0;
}

int append(const QStringList &arguments)
{
    Windows windows(arguments.at(0));
    windows.console.session.projectName = arguments.at(1);
    windows.console.session.projectLanguage = u"ENU"_s;
    ProjectCatalogue(windows.console.session, windows.console.files).UpdateQVSelection();
    return 0;
}

int rank(const QStringList &arguments)
{
    Windows windows(arguments.at(0));
    ProjectCatalogue catalogue(windows.console.session, windows.console.files);
    QStringList items;
    for (const QString &name : windows.program.components.serverProducts.GetAvailableProducts())
        items.append(name + u'#' + QString::number(1 + items.size()));
    catalogue.UpdateRankInSelectionFile(*windows.console.parts.ranking, items);
    return 0;
}

int deleteProject(const QStringList &arguments)
{
    Windows windows(arguments.at(0));
    ProjectDeletion(windows.program).remove(arguments.at(1), true);
    return 0;
}

} // namespace

QList<Job> projectJobs()
{
    return {{"targets"_L1, 1, false, targets}, {"references"_L1, 1, false, references},
            {"show"_L1, 1, true, show},        {"parse"_L1, 2, false, parse},
            {"read"_L1, 2, false, read},       {"names"_L1, 2, false, names},
            {"tables"_L1, 2, false, tables},   {"append"_L1, 2, false, append},
            {"rank"_L1, 1, false, rank},       {"delete"_L1, 2, false, deleteProject}};
}
