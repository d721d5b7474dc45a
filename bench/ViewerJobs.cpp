#include "ViewerJobs.h"

#include "Windows.h"

#include "viewer/ViewerWindow.h"

#include <QComboBox>
#include <QLineEdit>
#include <QTabWidget>
#include <QTreeWidget>

#include <ctime>

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

/// Types a question letter by letter; what the window shows is painted after each. In CPU.
int viewing(const QStringList &arguments)
{
    const Viewer shown(arguments.at(0));
    auto *const sets = shown.window.findChild<QComboBox *>(u"cboSet"_s);
    auto *const field = shown.window.findChild<QLineEdit *>(u"txtSearch"_s);
    auto *const hits = shown.window.findChild<QTreeWidget *>(u"lstHits"_s);
    shown.window.findChild<QTabWidget *>(u"tabParts"_s)->setCurrentIndex(1);
    sets->setCurrentText(arguments.at(1));
    const QString question = arguments.at(2);
    double longest = 0;
    for (qsizetype letters = 1; letters <= question.size(); ++letters) {
        const std::clock_t before = std::clock();
        field->setText(question.first(letters));
        settle();
        const double taken = 1000.0 * static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC;
        longest = qMax(longest, taken);
        std::printf("%8.2f ms, %d shown: %s\n", taken, hits->topLevelItemCount(),
                    qPrintable(field->text()));
    }
    number("longest key stroke, CPU", longest, "ms");
    return 0;
}

} // namespace

QList<Job> viewerJobs()
{
    return {{"viewer"_L1, 1, true, viewer}, {"viewing"_L1, 3, true, viewing}};
}
