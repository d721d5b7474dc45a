#include "Tour.h"

#include "catalogue/ProjectCatalogue.h"
#include "components/RegistryAccess.h"
#include "platform/TreeWalker.h"
#include "startup/FormWindow.h"
#include "startup/StartUp.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QTabBar>
#include <QTabWidget>
#include <QTimer>
#include <QToolButton>
#include <QTreeView>

using namespace Qt::StringLiterals;

void ToldProcesses::start(const QString &program, const QStringList &arguments)
{
    std::printf("    (would start %s %s)\n", qUtf8Printable(program),
                qUtf8Printable(arguments.join(u' ')));
}

void ToldProcesses::openText(const QString &path)
{
    std::printf("    (would open %s)\n", qUtf8Printable(path));
}

void ToldProcesses::openPage(const QString &path)
{
    openText(path);
}

Tour::Tour(TourWorld &world, Camera &camera, const QDir &documentation, const QDir &ownPages)
    : m_world(world)
    , m_camera(camera)
    , m_documentation(documentation)
    , m_ownPages(ownPages)
{
}

void Tour::play()
{
    start();
    createProject();
    createBook(u"Aptitude Guide"_s, u"APT"_s);
    addPages(u"aptitude-en"_s);
    editAndSave();
    createBook(u"Debian-Fragen und Antworten"_s, u"FAQ"_s);
    addPages(u"faq-de"_s);
    createBook(u"aptitude ユーザーマニュアル"_s, u"JPN"_s);
    addPages(u"aptitude-ja"_s);
    createBook(u"维护者指南"_s, u"CHS"_s);
    addPages(u"maint-guide-zh-cn"_s);
    lookAround();
    lookAtPage();
    renamePage();
    findInPages();
    planQuickNav();
    lookAtGlobals();
    buildAndPack();
    readInViewer(m_world.session.projectName, u"Aptitude Guide"_s, u"package"_s);
    deleteBook();
    leaveForLauncher();
    copyProject();
    createSecondProject();
    rankBookSets();
    mergeProjects();
    reportLinks();
    manageIdentifiers();
    reopenSet();
    migrateBookSet();
    deleteProject();
    workFromScripts();
    leave();
}

QWidget *Tour::window(Form form)
{
    QWidget *found = m_world.navigator.window(form);
    if (!found || !found->isVisible())
        tourFails(u"A window did not open"_s);
    return found;
}

void Tour::click(QWidget *window, const char *button)
{
    auto *found = child<QAbstractButton>(window, button);
    if (!found->isEnabled())
        tourFails(QString::fromLatin1(button) + u" is not enabled"_s);
    found->click();
    settle();
}

void Tour::answer(const QString &button, const QString &picture, const QString &caption)
{
    whenModal([=, this](QWidget *box) {
        m_camera.take(box, picture, caption);
        for (QAbstractButton *one : box->findChildren<QAbstractButton *>()) {
            if (one->text().remove(u'&') == button)
                return one->click();
        }
        tourFails(u"There is no button "_s + button);
    });
}

void Tour::answerAll(const QStringList &buttons)
{
    if (buttons.isEmpty())
        return;
    whenModal([=, this](QWidget *box) {
        QTimer::singleShot(300, qApp, [=, this] { answerAll(buttons.sliced(1)); });
        for (QAbstractButton *one : box->findChildren<QAbstractButton *>()) {
            if (one->text().remove(u'&') == buttons.first())
                return one->click();
        }
        tourFails(u"There is no button "_s + buttons.first());
    });
}

void Tour::start()
{
    m_world.fileDialogs.next = u"C:\\"_s;
    answer(u"Create a Sample Installation..."_s, u"first-start"_s,
           u"The first start asks where the server is"_s);
    QTimer::singleShot(1500, qApp, [this] {
        for (QWidget *top : QApplication::topLevelWidgets()) {
            if (top->objectName() == "frmOrvantisVRXSplashScreen"_L1 && top->isVisible())
                m_camera.take(top, u"splash"_s, u"The splash screen"_s);
        }
    });
    if (!Main(m_world.program, {}))
        tourFails(u"The program did not start"_s);
    settle();
    m_camera.take(window(Form::SelPrjType), u"launcher"_s, u"The launcher"_s);
}

void Tour::createProject()
{
    click(window(Form::SelPrjType), "cmdAddNewProject");
    QWidget *wizard = window(Form::SelPrjTypetoAdd);
    answer(u"OK"_s, u"refusal"_s, u"A project without a name is refused"_s);
    click(wizard, "cmdContinue");
    type(child<QLineEdit>(wizard, "txtProjectName"), u"Plant 300"_s);
    type(child<QLineEdit>(wizard, "txtPrjId"), u"P300"_s);
    m_camera.take(wizard, u"wizard-new"_s, u"A new project"_s);
    click(wizard, "cmdContinue");
    settle(300);
    window(Form::MainUI)->resize(1240, 800);
    m_camera.take(window(Form::MainUI), u"main-empty"_s, u"The main window with the new project"_s);
}

void Tour::createBook(const QString &name, const QString &acronym)
{
    QWidget *main = window(Form::MainUI);
    child<QTabBar>(main, "SSTab1")->setCurrentIndex(1);
    settle();
    whenModal([=, this](QWidget *dialog) {
        type(child<QLineEdit>(dialog, "txtBookName"), name);
        type(child<QLineEdit>(dialog, "txtBookAcro"), acronym);
        m_camera.take(dialog, u"new-book"_s, u"A new book: "_s + name);
        child<QAbstractButton>(dialog, "cmdCreateBook")->click();
    });
    click(main, "cmdNewBook");
    settle(200);
}

QString Tour::pagesOf(const QString &book) const
{
    const QString fetched = m_documentation.filePath(book);
    return QDir(fetched).exists() ? fetched : m_ownPages.path();
}

/// Puts the pages of a book where an author may have them.
QString Tour::takeOver(const QString &book)
{
    const QString manuals = u"C:\\Manuals"_s;
    if (!m_world.files.folderExists(manuals))
        m_world.files.makeFolder(manuals);
    const QString target = manuals + u'\\' + book;
    if (!m_world.files.folderExists(target))
        copyTree(m_world.files, m_world.files.productPath(pagesOf(book)), target);
    return target;
}

void Tour::addPages(const QString &folder)
{
    QWidget *main = window(Form::MainUI);
    m_world.fileDialogs.next = takeOver(folder);
    whenModal([this](QWidget *dialog) {
        if (dialog->objectName() != "AddSourceFilesDialog"_L1)
            tourFails(u"The list of source files did not open"_s);
        m_camera.take(dialog, u"source-files"_s,
                      u"What would be added, before anything is copied"_s);
        child<QAbstractButton>(dialog, "cmdAdd")->click();
    });
    child<QAction>(main, "mnuAddFolder")->trigger();
    settle(2500);
    m_camera.take(main, u"pages-added"_s, u"The book with its pages"_s);
}

void Tour::editAndSave()
{
    QWidget *main = window(Form::MainUI);
    auto *books = child<QWidget>(main, "ctlBooksTab1");
    auto *pages = child<QTreeView>(books, "tvwPages");
    pages->setCurrentIndex(pages->model()->index(0, 0));
    settle(200);
    auto *source = child<QPlainTextEdit>(books, "txtSource");
    m_camera.take(main, u"page-source"_s, u"A page with its source"_s);
    QTextCursor cursor(source->document());
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(u"<!-- checked -->\n"_s);
    settle();
    m_camera.take(main, u"page-edited"_s, u"The page was edited"_s);
    click(books, "cmdSave");
    child<QTabWidget>(books, "tabDetails")->setCurrentIndex(3);
    settle(300);
    m_camera.take(main, u"page-preview"_s, u"The page as readers see it"_s);
}

void Tour::lookAround()
{
    QWidget *main = window(Form::MainUI);
    auto *tree = child<QTreeView>(main, "tvwProject");
    tree->expandToDepth(1);
    settle(200);
    m_camera.take(main, u"tree"_s, u"The project tree with books in four languages"_s);
    auto *tabs = child<QTabBar>(main, "SSTab1");
    tabs->setCurrentIndex(0);
    m_camera.take(main, u"globals"_s, u"The project, its global pages and categories"_s);
    tabs->setCurrentIndex(2);
    m_camera.take(main, u"quick-navigation"_s, u"The quick navigation"_s);
    tabs->setCurrentIndex(1);
}

void Tour::deleteBook()
{
    QWidget *main = window(Form::MainUI);
    whenModal([this](QWidget *dialog) {
        m_camera.take(dialog, u"delete-book"_s, u"Deleting a book shows what goes with it"_s);
        child<QAbstractButton>(dialog, "optAlsoFiles")->click();
        child<QAbstractButton>(dialog, "cmdDelete")->click();
    });
    click(main, "cmdDeleteBook");
    settle(300);
    m_camera.take(main, u"book-deleted"_s, u"The book is gone"_s);
}

void Tour::leaveForLauncher()
{
    QWidget *main = window(Form::MainUI);
    answer(u"OK"_s, u"not-built"_s, u"Changes that no build has taken in yet"_s);
    QTimer::singleShot(400, qApp, [this] {
        answer(u"Yes"_s, u"close-project"_s, u"The question before the project is left"_s);
    });
    child<QAction>(main, "mnuSelProject")->trigger();
    settle(200);
    m_camera.take(window(Form::SelPrjType), u"launcher-again"_s, u"Back in the launcher"_s);
}

void Tour::copyProject()
{
    // A set is released at the end of a build, which is not on this tour.
    ProjectCatalogue(m_world.session, m_world.files)
        .release(u"Plant 300"_s, m_world.clock.now().date());
    click(window(Form::SelPrjType), "cmdAddNewProject");
    QWidget *wizard = window(Form::SelPrjTypetoAdd);
    click(wizard, "optSelPrjTypetoAdd_1");
    type(child<QLineEdit>(wizard, "txtProjectName"), u"Werk Süd"_s);
    type(child<QLineEdit>(wizard, "txtPrjId"), u"WS1"_s);
    child<QComboBox>(wizard, "cboLanguage")->setCurrentText(u"German"_s);
    child<QComboBox>(wizard, "cboSelPrjtoCopy")->setCurrentIndex(0);
    m_camera.take(wizard, u"wizard-copy"_s, u"A copy of a released project"_s);
    const QPointer<QObject> waiting = whenModal(
        [this](QWidget *progress) {
            m_camera.take(progress, u"copying"_s, u"Copying shows progress and can be stopped"_s);
        },
        true);
    click(wizard, "cmdContinue");
    delete waiting; // a quick copy shows no progress
    settle(500);
    QWidget *main = window(Form::MainUI);
    main->resize(1240, 800);
    child<QTabBar>(main, "SSTab1")->setCurrentIndex(1);
    auto *books = child<QWidget>(main, "ctlBooksTab1");
    child<QListWidget>(books, "lstBooks")->setCurrentRow(1);
    settle(300);
    auto *pages = child<QTreeView>(books, "tvwPages");
    pages->setCurrentIndex(pages->model()->index(0, 0));
    settle(300);
    m_camera.take(main, u"copied-project"_s, u"The copied project"_s);
}
