// What an author does with whole projects.
#include "Tour.h"

#include "platform/Paths.h"
#include "platform/Xml.h"
#include "startup/FormWindow.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QFileInfo>
#include <QLineEdit>
#include <QListWidget>
#include <QTabBar>
#include <QTimer>
#include <QTreeView>

using namespace Qt::StringLiterals;

namespace {

void choose(QListWidget *list, const QStringList &names)
{
    list->clearSelection();
    for (const QString &name : names) {
        for (QListWidgetItem *item : list->findItems(name, Qt::MatchExactly))
            item->setSelected(true);
    }
    if (list->selectedItems().size() != names.size())
        tourFails(u"Not all of these projects are in the list: "_s + names.join(u", "_s));
    Q_EMIT list->clicked(list->currentIndex());
}

} // namespace

void Tour::backToLauncher(const QStringList &answers)
{
    answerAll(answers);
    child<QAction>(window(Form::MainUI), "mnuSelProject")->trigger();
    settle(600);
    (void)window(Form::SelPrjType);
}

void Tour::createSecondProject()
{
    backToLauncher({u"OK"_s, u"Yes"_s});
    click(window(Form::SelPrjType), "cmdAddNewProject");
    QWidget *wizard = window(Form::SelPrjTypetoAdd);
    type(child<QLineEdit>(wizard, "txtProjectName"), u"Pump Station"_s);
    type(child<QLineEdit>(wizard, "txtPrjId"), u"PS1"_s);
    click(wizard, "cmdContinue");
    settle(300);
    window(Form::MainUI)->resize(1240, 800);
    createBook(u"Debian-Fragen und Antworten"_s, u"FAQ"_s); // the other project has it too
    addPages(u"faq-de"_s);
    createBook(u"Maintenance"_s, u"MNT"_s);
    addPages(u"maint-guide-zh-cn"_s);
    backToLauncher({u"OK"_s, u"Yes"_s});
}

void Tour::rankBookSets()
{
    click(window(Form::SelPrjType), "cmdRankBookSet");
    QWidget *ranking = window(Form::RankBookSet);
    auto *grid = child<QAbstractItemView>(ranking, "fgdBooksetRank");
    grid->setCurrentIndex(grid->model()->index(1, 1)); // as a click on the cell does
    settle();
    auto *editor = child<QLineEdit>(ranking, "txtRankHolder");
    editor->selectAll();
    type(editor, u"10"_s);
    m_camera.take(ranking, u"ranking"_s, u"Ranks are typed where they stand"_s);
    answer(u"OK"_s, u"ranked"_s, u"The ranks are stored"_s);
    click(ranking, "cmdApply");
    answerAll({u"OK"_s});
    click(ranking, "cmdOK");
    settle(200);
}

/// As the linking tool of a build writes it.
void Tour::putLinkFile(const QString &project, const QStringList &targets,
                       const QStringList &references)
{
    pugi::xml_document document;
    pugi::xml_node links = document.append_child("LINKS");
    pugi::xml_node published = links.append_child("IBD");
    for (qsizetype at = 0; at + 1 < targets.size(); at += 2) {
        pugi::xml_node link = published.append_child("ID");
        appendText(link, "LinkID", targets[at]);
        appendText(link, "LinkIDSourceFile", targets[at + 1]);
    }
    pugi::xml_node used = links.append_child("IBS");
    for (qsizetype at = 0; at + 1 < references.size(); at += 2) {
        pugi::xml_node link = used.append_child("USER");
        appendText(link, "LinkID", references[at]);
        appendText(link, "FilePath", references[at + 1]);
    }
    saveXml(m_world.files, projectFolder(m_world.session.serverPath, project) + ProjectFile::links,
            document);
}

void Tour::mergeProjects()
{
    const auto firstPage = [this](const QString &project, const QString &bookFolder) {
        const QString folder = projectFolder(m_world.session.serverPath, project) + bookFolder;
        for (const FolderEntry &entry : m_world.files.entries(folder)) {
            if (entry.name.endsWith(".html"_L1) || entry.name.endsWith(".htm"_L1))
                return project + u'\\' + bookFolder + u'\\' + entry.name;
        }
        tourFails(u"There is no page in "_s + folder);
    };
    const QString start = firstPage(u"Plant 300"_s, u"Book_FAQ"_s);
    putLinkFile(u"Plant 300"_s,
                {u"PLANT-FAQ"_s, start + u"#top"_s, u"PLANT-OLD"_s,
                 u"Plant 300\\Book_FAQ\\removed.html"_s, u"PLANT-MOVED"_s,
                 QString(start).replace(u"\\Book_FAQ\\"_s, u"\\Book_FAQ\\old\\"_s)},
                {u"PUMP-START"_s, start});
    putLinkFile(u"Pump Station"_s, {u"PUMP-START"_s, firstPage(u"Pump Station"_s, u"Book_MNT"_s)},
                {u"PLANT-FAQ"_s, firstPage(u"Pump Station"_s, u"Book_FAQ"_s), u"NOWHERE"_s,
                 firstPage(u"Pump Station"_s, u"Book_MNT"_s)});

    click(window(Form::SelPrjType), "cmdMergeProjects");
    QWidget *merge = window(Form::MergeProjects);
    choose(child<QListWidget>(merge, "lstAvaProjects"), {u"Plant 300"_s, u"Pump Station"_s});
    m_camera.take(merge, u"merge-choose"_s, u"Which projects to merge"_s);
    click(merge, "cmdAddMerge");
    type(child<QLineEdit>(merge, "txtMergeProjName"), u"Site Handbook"_s);
    type(child<QLineEdit>(merge, "txtMergProjId"), u"SITE"_s);
    m_camera.take(merge, u"merge-ready"_s, u"Two projects become a third"_s);
    answer(u"Close"_s, u"merge-findings"_s, u"What was renamed or left out"_s);
    click(merge, "cmdMergeContinue");
    settle(500);
    QWidget *main = window(Form::MainUI);
    main->resize(1240, 800);
    auto *tree = child<QTreeView>(main, "tvwProject");
    tree->expandToDepth(1);
    m_camera.take(main, u"merged"_s, u"The merged project with the books of both"_s);
}

void Tour::reportLinks()
{
    QWidget *main = window(Form::MainUI);
    child<QAction>(main, "mnu_Book_Linking_Report")->trigger();
    settle(300);
    QWidget *report = window(Form::IBLReport);
    report->resize(1000, 420);
    m_camera.take(report, u"links-published"_s,
                  u"The link targets of all projects, good and bad"_s);
    child<QTabBar>(report, "SSTab")->setCurrentIndex(1);
    settle(300);
    m_camera.take(report, u"links-used"_s, u"The references to them"_s);
    answerAll({u"OK"_s, u"OK"_s});
    click(report, "cmdGenerateReport");
    click(report, "cmdClose");
    settle(200);
    backToLauncher({u"OK"_s, u"Yes"_s}); // the merged project waits for its build
}

void Tour::reopenSet()
{
    click(window(Form::SelPrjType), "cmdContinueProject");
    QWidget *dialog = window(Form::ContinueProject);
    m_camera.take(dialog, u"continue"_s, u"A project is taken up again"_s);
    answer(u"Cancel"_s, u"reopen"_s, u"A released set can be opened for changes again"_s);
    click(dialog, "cmdReopen");
    click(dialog, "cmdBack");
    settle(200);
}

void Tour::migrateBookSet()
{
    const QFileInfo database(m_ownPages.filePath(u"../../../tests/data/legacy/legacy_plant.mdb"_s));
    if (!QFileInfo::exists(QApplication::applicationDirPath() + u"/qv_dbtoxml"_s)) {
        std::puts("    (no migration: the converter qv_dbtoxml was not built)");
        return;
    }
    click(window(Form::SelPrjType), "cmdAddNewProject");
    QWidget *wizard = window(Form::SelPrjTypetoAdd);
    click(wizard, "optSelPrjTypetoAdd_2");
    type(child<QLineEdit>(wizard, "txtProjectName"), u"Bottling Line"_s);
    type(child<QLineEdit>(wizard, "txtPrjId"), u"BL1"_s);
    m_world.files.makeFolder(u"C:\\Legacy"_s);
    m_world.fileDialogs.next = u"C:\\Legacy\\"_s + database.fileName();
    m_world.files.copyFile(m_world.files.productPath(database.canonicalFilePath()),
                           m_world.fileDialogs.next);
    click(wizard, "cmdBrowseDBtoMigrate");
    m_camera.take(wizard, u"wizard-migrate"_s, u"A legacy book set is migrated"_s);
    whenModal([this](QWidget *report) {
        m_camera.take(report, u"migration-report"_s,
                      u"What became of each table of the database"_s);
        answer(u"Yes"_s, u"search-words"_s, u"The question whether to make the search words"_s);
        child<QAbstractButton>(report, "cmdClose")->click();
    });
    click(wizard, "cmdContinue");
    settle(500);
    QWidget *main = window(Form::MainUI);
    main->resize(1240, 800);
    child<QTabBar>(main, "SSTab1")->setCurrentIndex(1);
    child<QListWidget>(child<QWidget>(main, "ctlBooksTab1"), "lstBooks")->setCurrentRow(0);
    settle(300);
    m_camera.take(main, u"migrated"_s, u"The migrated project"_s);
    lookThrough(main);
    backToLauncher({u"OK"_s, u"Yes"_s});
}

void Tour::deleteProject()
{
    click(window(Form::SelPrjType), "cmdDeleteProject");
    QWidget *dialog = window(Form::DeleteProject);
    auto *list = child<QComboBox>(dialog, "cboProjectDelete");
    list->setCurrentText(u"DEU_Werk Süd"_s);
    m_camera.take(dialog, u"delete"_s, u"The copy is no longer needed"_s);
    answer(u"OK"_s, u"delete-sure"_s, u"Two questions before anything is deleted"_s);
    QTimer::singleShot(400, qApp, [this] { answerAll({u"Yes"_s}); });
    click(dialog, "cmdContinueDelPrj");
    settle(600);
    if (m_world.files.exists(docsFolder(m_world.session.serverPath) + u"DEU_Werk Süd"_s))
        tourFails(u"The copy was not deleted"_s);
    m_camera.take(dialog, u"deleted"_s, u"It is gone, and its files with it"_s);
}

void Tour::leave()
{
    QWidget *dialog = window(Form::DeleteProject);
    answer(u"Yes"_s, u"close-program"_s, u"The question before the program ends"_s);
    click(dialog, "cmdCancelContinueDelPrj");
    settle(200);
}
