// The windows' work as single commands, each one process, to be timed from outside against the
// peers beside it and against plain copying. It prints plain numbers and makes no judgement.
//   bench launcher SERVER                start to launcher ready, the splash wait aside
//   bench open SERVER PROJECT            the same to the main window with the project open
//   bench blocked SERVER PROJECT         opens every book once; longest time without events, in ms
//   bench copy SERVER SOURCE NAME        copies a project folder and makes it the new project's
//   bench copytree SERVER FROM TO        copies a folder below Docs
//   bench rewrite SERVER FOLDER OLD NEW  rewrites the markers in a folder below Docs; prints
//                                        seconds
//   bench import SERVER PROJECT ACRONYM FOLDER   adds source files
//   bench targets|references SERVER [THREADS]    collects the link report; prints the counts
//   bench show SERVER                    CPU seconds to show the targets once they are collected
//   bench parse|names|read TIMES FILE|SERVER     reads a file as it comes, lists the projects, or
//                                        reads the catalogue the checked way, so many times
//   bench tables SERVER TIMES            merges the tables of contents of all projects
//   bench append SERVER NAME             lists one more project
//   bench rank SERVER                    gives every project a rank
//   bench delete SERVER PROJECT          deletes a project with its files
//   bench index FOLDER                   reads all pages below a folder for their links, in turn
//                                        with plainly reading them
//   bench find FOLDER TEXT [pattern]     counts the hits in them, in turn with the same
//   bench typing plain|ours|finding LENGTH KEYS [SIZE]   types into a page of such lines
//   bench scan FOLDER [THREADS]          reads all pages below a folder as a build does; a second
//                                        time only what changed
//   bench links FOLDER [THREADS [write]]   checks all references of all pages below a folder; the
//                                        peers are linklint and check-html-links
//   bench tokens FOLDER                  CPU seconds to cut all pages below a folder into tags
//   bench words FOLDER [THREADS]         lists, reads and scans all pages below a folder and writes
//                                        their search words; a second time only what changed
//   bench query FOLDER QUESTION          searches them
//   bench renaming SERVER                renames a page that 500 of 2,561 new pages link to, in
//                                        turn with plainly rewriting the 500
//   bench check FOLDER [THREADS]         reads all pages below a folder and checks their quality
//   bench pack SERVER PROJECT [THREADS]  makes the packed copy
//   bench viewer SERVER                  start to the help viewer open
//   bench viewing SERVER PROJECT QUESTION  types a question there; how long each letter takes
//   bench indexmanager SERVER            start to all link identifiers of the server listed
//   bench identifiers SERVER WORDS       types words into their filter; how long each letter takes
//   bench packplan SERVER PROJECT        compares the project with its packed copy
// SERVER and FOLDER are native paths.

#include "BuildJobs.h"
#include "CheckJobs.h"
#include "IndexManagerJobs.h"
#include "LinkJobs.h"
#include "PackJobs.h"
#include "PageJobs.h"
#include "ProjectJobs.h"
#include "ScanJobs.h"
#include "ViewerJobs.h"
#include "Windows.h"
#include "WordJobs.h"

#include "controls/session/ProjectSession.h"
#include "platform/TreeWalker.h"
#include "projectfiles/ProjectCopy.h"
#include "startup/ContentFiles.h"
#include "startup/FormWindow.h"
#include "tools/import/SourceImport.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <QTreeView>

using namespace Qt::StringLiterals;

namespace {

int launcher(const QStringList &arguments)
{
    Windows windows(arguments.at(0));
    windows.console.session.gbBackToLauncher = true;
    windows.navigator.show(Form::SelPrjType);
    settle();
    return 0;
}

int open(const QStringList &arguments)
{
    Windows windows(arguments.at(0));
    windows.console.session.projectName = arguments.at(1);
    windows.navigator.handOver(arguments.at(1), u"ENU"_s);
    windows.navigator.show(Form::MainUI);
    settle();
    return 0;
}

/// Measures the longest stretch in which the event loop did not come round.
class Heartbeat
{
public:
    Heartbeat()
    {
        m_since.start();
        QObject::connect(&m_timer, &QTimer::timeout, [this] { beat(); });
        m_timer.start(1);
    }
    void beat() { m_longest = qMax(m_longest, m_since.restart()); }
    [[nodiscard]] qint64 longest() const { return m_longest; }

private:
    QTimer m_timer;
    QElapsedTimer m_since;
    qint64 m_longest = 0;
};

int blocked(const QStringList &arguments)
{
    Windows windows(arguments.at(0));
    windows.console.session.projectName = arguments.at(1);
    QElapsedTimer opening;
    opening.start();
    windows.navigator.handOver(arguments.at(1), u"ENU"_s);
    windows.navigator.show(Form::MainUI);
    settle();
    number("opening", static_cast<double>(opening.elapsed()), "ms");

    auto *tree = windows.navigator.window(Form::MainUI)->findChild<QTreeView *>(u"tvwProject"_s);
    Heartbeat heart;
    int opened = 0;
    const QAbstractItemModel *model = tree->model();
    for (QModelIndex at = model->index(0, 0); at.isValid(); at = tree->indexBelow(at)) {
        tree->setCurrentIndex(at);
        tree->expand(at);
        QCoreApplication::processEvents();
        heart.beat();
        ++opened;
    }
    number("nodes opened", opened, "");
    number("longest without events", static_cast<double>(heart.longest()), "ms");
    return 0;
}

int copy(const QStringList &arguments)
{
    Windows windows(arguments.at(0));
    windows.console.session.projectName = arguments.at(2);
    ProjectCopy(windows.console.session, windows.console.files, windows.console.clock,
                windows.console.locale)
        .CopyProjectFolder(arguments.at(1));
    return 0;
}

int copyTree(const QStringList &arguments)
{
    Windows windows(arguments.at(0));
    windows.console.files.makeFolder(below(windows, arguments.at(2)));
    ::copyTree(windows.console.files, below(windows, arguments.at(1)),
               below(windows, arguments.at(2)));
    return 0;
}

int rewrite(const QStringList &arguments)
{
    Windows windows(arguments.at(0));
    windows.console.session.projectName = arguments.at(3);
    QElapsedTimer time;
    time.start();
    ContentFiles(windows.console.session, windows.console.files)
        .QVUpdateFiles(below(windows, arguments.at(1)), arguments.at(2), 0);
    number("rewrite", static_cast<double>(time.elapsed()) / 1000, "s");
    return 0;
}

int import(const QStringList &arguments)
{
    Windows windows(arguments.at(0));
    Console &console = windows.console;
    ProjectSession session(console.program);
    session.open(arguments.at(1));
    for (const TocBook &book : session.books()) {
        if (book.acronym != arguments.at(2))
            continue;
        SourceImport sources(console.session, console.files);
        const ImportPlan plan =
            sources.plan(arguments.at(1), book, {console.files.productPath(arguments.at(3))});
        const QString fresh = session.binPlace(u"Added"_s);
        ImportResult result;
        session.performPrepared(u"import"_s, {}, [&](const Progress &progress) {
            result = sources.stage(plan, fresh, progress);
            return result.changes;
        });
        number("files", result.copied, "");
        return 0;
    }
    return 1;
}

} // namespace

int main(int argc, char *argv[])
{
    constexpr Job own[] = {{"launcher"_L1, 1, true, launcher},  {"open"_L1, 2, true, open},
                           {"blocked"_L1, 2, true, blocked},    {"copy"_L1, 3, false, copy},
                           {"copytree"_L1, 3, false, copyTree}, {"rewrite"_L1, 4, false, rewrite},
                           {"import"_L1, 4, false, import}};
    QList<Job> jobs(std::begin(own), std::end(own));
    jobs += projectJobs();
    jobs += pageJobs();
    jobs += linkJobs();
    jobs += packJobs();
    jobs += scanJobs();
    jobs += wordJobs();
    jobs += checkJobs();
    jobs += buildJobs();
    jobs += viewerJobs();
    jobs += indexManagerJobs();
    for (const Job &job : jobs) {
        if (argc < 2 || QLatin1StringView(argv[1]) != job.name || argc < 2 + job.arguments)
            continue;
        const std::unique_ptr<QCoreApplication> app(job.windows ? new QApplication(argc, argv)
                                                                : new QCoreApplication(argc, argv));
        try {
            return job.run(QCoreApplication::arguments().sliced(2));
        } catch (const std::exception &error) {
            std::fprintf(stderr, "%s\n", error.what());
            return 1;
        }
    }
    std::fputs("usage: bench JOB ...; the jobs stand at the top of main.cpp\n", stderr);
    return 64;
}
