// The product's own help: whole, and reached by F1 from every window.

#include "dialogs/MigrationReportDialog.h"
#include "dialogs/frmContinueDeleteProject.h"
#include "dialogs/frmMergeProjects.h"
#include "dialogs/frmRankBookSet.h"
#include "dialogs/frmSelPrjType.h"
#include "dialogs/frmSelPrjTypetoAdd.h"
#include "platform/Paths.h"
#include "reports/frmIBLReport.h"
#include "startup/HelpTopics.h"
#include "startup/PageText.h"
#include "support/FormDriver.h"
#include "support/TestProgram.h"
#include "tools/html/HtmlScan.h"
#include "viewer/HelpPages.h"
#include "workspace/frmBuild.h"

#include <QAbstractButton>
#include <QDialog>
#include <QKeyEvent>

using namespace Qt::StringLiterals;

class tst_help final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasWholeHelp();
    void helpsInEveryWindow();
};

void tst_help::hasWholeHelp()
{
    TestProgram world;
    HelpPages help(world.files, findHelpFolder(world.files, QString::fromUtf8(HELP_FOLDER), {}));
    QStringList toRead{HelpPages::start}, reached;
    while (!toRead.isEmpty()) {
        const QString file = toRead.takeFirst();
        reached.append(file);
        QVERIFY2(world.files.fileExists(help.folder() + file), qPrintable(file));
        const QString text = decodePage(world.bytes(help.folder() + file), u"ENU"_s).text;
        for (const PageReference &reference : scanHtml(text).references) {
            const PageTarget target =
                targetOf(QStringView(text).mid(reference.start, reference.length));
            QCOMPARE(target.place, PageTarget::Place::Relative);
            if (isPageName(target.path) && !reached.contains(target.path)
                && !toRead.contains(target.path))
                toRead.append(target.path);
            QVERIFY2(world.files.fileExists(help.folder() + target.path), qPrintable(target.path));
        }
    }
    reached.sort();
    QStringList there = world.below(withoutBackslash(help.folder()));
    there.removeIf([](const QString &name) { return !isPageName(name); });
    QCOMPARE(reached, there);

    QCOMPARE(help.pages().size(), there.size());
    for (const QString &topic : helpTopics()) {
        const QString file = help.pageFor(topic.toUpper());
        QVERIFY2(file != HelpPages::start || topic == helpTopicOf(nullptr), qPrintable(topic));
        there.removeOne(file);
    }
    // What has no window is reached by links.
    QCOMPARE(there, (QStringList{u"command-line.html"_s, u"copy.html"_s}));
    QCOMPARE(help.pageFor(u"QVT@qv@qvdev_ug@qv@Nothing of that name"_s), HelpPages::start);
}

void tst_help::helpsInEveryWindow()
{
    TestProgram world;
    Program &program = world.program;
    const auto asked = [&](QWidget *at) {
        QKeyEvent press(QEvent::KeyPress, Qt::Key_F1, Qt::NoModifier);
        QCoreApplication::sendEvent(at, &press);
        return world.processes.started.isEmpty()
                   ? QString()
                   : world.processes.started.takeLast().section(u'@', -1);
    };
    const std::unique_ptr<FormWindow> wizard(new frmSelPrjTypetoAdd(program));
    const std::pair<FormWindow *, QString> rows[] = {
        {new frmSelPrjType(program), u"What do you want to do"_s},
        {new frmContinueDeleteProject(program), u"Continue or delete a project"_s},
        {new frmMergeProjects(program), u"Merge projects"_s},
        {new frmRankBookSet(program), u"Rank book sets"_s},
        {new frmIBLReport(program), u"Link report"_s},
        {new frmBuild(program), u"Building a project"_s}};
    for (const auto &[form, title] : rows) {
        QCOMPARE(asked(form), title);
        QCOMPARE(asked(wizard.get()), u"New project"_s); // each its own
        delete form;
    }
    MigrationReportDialog report({}, {}, wizard.get());
    QCOMPARE(asked(report.findChild<QAbstractButton *>()), u"Migrate a legacy book set"_s);
    QDialog unnamed(wizard.get());
    QCOMPARE(asked(&unnamed), u"New project"_s); // about the window that it belongs to
    QVERIFY(world.processes.started.isEmpty());  // once each
}

QV_FORM_TEST_MAIN(tst_help)
#include "tst_help.moc"
