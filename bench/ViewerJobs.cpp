#include "ViewerJobs.h"

#include "Spent.h"
#include "Windows.h"

#include "viewer/ViewerWindow.h"

#include <QComboBox>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QTabWidget>
#include <QTreeWidget>

using namespace Qt::StringLiterals;

namespace {

/// The viewer's window over a server, without the product's help.
struct Viewer
{
    Windows windows;
    ViewerWorld parts{windows.console.session, windows.console.files,
                      windows.console.parts.nameRules, HelpPages(windows.console.files, {})};
    ViewerWindow window{parts};

    explicit Viewer(const QString &server)
        : windows(server)
    {
        window.show();
        settle();
    }
};

int viewer(const QStringList &arguments)
{
    const Viewer shown(arguments.at(0));
    return 0;
}

/// Types a question letter by letter, half a second after the set was chosen, which the window has
/// for reading ahead; what it shows is painted after each.
int viewing(const QStringList &arguments)
{
    const Viewer shown(arguments.at(0));
    auto *const sets = shown.window.findChild<QComboBox *>(u"cboSet"_s);
    auto *const field = shown.window.findChild<QLineEdit *>(u"txtSearch"_s);
    auto *const hits = shown.window.findChild<QTreeWidget *>(u"lstHits"_s);
    shown.window.findChild<QTabWidget *>(u"tabParts"_s)->setCurrentIndex(1);
    sets->setCurrentText(arguments.at(1));
    const Spent ahead = spentBy([] {
        QElapsedTimer pause;
        for (pause.start(); pause.elapsed() < 500;)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    });
    number("reading ahead, CPU", ahead.cpu, "ms, and waiting");
    const QString question = arguments.at(2);
    Spent longest;
    for (qsizetype letters = 1; letters <= question.size(); ++letters) {
        const Spent taken = spentBy([&] {
            field->setText(question.first(letters));
            settle();
        });
        longest = {qMax(longest.cpu, taken.cpu), qMax(longest.wall, taken.wall)};
        std::printf("%8.2f ms CPU, %8.2f ms, %d shown: %s\n", taken.cpu, taken.wall,
                    hits->topLevelItemCount(), qPrintable(field->text()));
    }
    number("longest key stroke, CPU", longest.cpu, "ms");
    number("longest key stroke, wall", longest.wall, "ms");
    return 0;
}

} // namespace

QList<Job> viewerJobs()
{
    return {{"viewer"_L1, 1, true, viewer}, {"viewing"_L1, 3, true, viewing}};
}
