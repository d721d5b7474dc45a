#include "catalogue/StatusIndicators.h"
#include "dialogs/ListTable.h"
#include "dialogs/MigrationReportDialog.h"
#include "dialogs/frmSelPrjTypetoAdd.h"
#include "projectfiles/BookFile.h"
#include "startup/clsRegAccess.h"
#include "startup/frmProgBar.h"
#include "support/Audit.h"
#include "support/FormDriver.h"
#include "support/TestProgram.h"
#include "support/XmlFile.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto catalogueFile = "S:\\Docs\\QV_Selection.xml"_L1;

/// The wizard open in front of a world, with what an author does in it.
struct Wizard
{
    TestProgram &world;
    QPointer<frmSelPrjTypetoAdd> form = new frmSelPrjTypetoAdd(world.program);

    explicit Wizard(TestProgram &program)
        : world(program)
    {
        form->show();
        form->activateWindow();
        [[maybe_unused]] const bool active = QTest::qWaitForWindowActive(form);
    }
    ~Wizard() { delete form; }

    void fill(const QString &name, const QString &id, const QString &language = u"English"_s)
    {
        control<QLineEdit>(form, "txtProjectName")->setText(name);
        control<QLineEdit>(form, "txtPrjId")->setText(id);
        control<QComboBox>(form, "cboLanguage")->setCurrentText(language);
    }
    void fillCopyOfPlant()
    {
        fill(u"Harbour"_s, u"H01"_s);
        click(form, "optSelPrjTypetoAdd_1");
        control<QComboBox>(form, "cboSelPrjtoCopy")->setCurrentText(u"Plant"_s);
    }
    void fillMigration()
    {
        fill(u"Plant"_s, u"P01"_s);
        click(form, "optSelPrjTypetoAdd_2");
        control<QLineEdit>(form, "txtSelDBtoMigrate")->setText(u"C:\\Old\\plant.mdb"_s);
    }
    QString focus() const
    {
        return form->focusWidget() ? form->focusWidget()->objectName() : QString();
    }
};

QStringList names(TestProgram &world)
{
    QStringList names;
    for (const CatalogueEntry &entry : ProjectCatalogue(world.session, world.files).entries())
        names.append(entry.name);
    return names;
}

/// A book of one page.
void addPumps(TestProgram &world, const QString &project)
{
    const TocBook entry{u"Pumps"_s, u"PMP"_s, project, u"Pumps"_s, u"Book_PMP.xml"_s, {}, {}};
    TableOfContents(world.session, world.files).addBook(project, entry);
    Book book;
    book.name = entry.name;
    BookPage page;
    page.file = u"start.htm"_s;
    book.pages = {page};
    BookFile(world.session, world.files).write(project, entry, book);
    world.put(u"S:\\Docs\\"_s + project + u"\\Pumps\\start.htm"_s,
              "<p>**Plant** and **plant**</p>");
}

/// A released project "Plant" with one book of one page, a content folder and a packed copy.
void makeReleasedPlant(TestProgram &world)
{
    Wizard wizard(world);
    wizard.fill(u"Plant"_s, u"P01"_s);
    click(wizard.form, "cmdContinue");
    addPumps(world, u"Plant"_s);
    world.put(u"S:\\Docs\\Plant\\Pumps\\readme.txt"_s, "**Plant**");
    world.put(u"S:\\Docs\\Plant\\QVPlant_Server.Zip"_s, "packed");
    CategoryFile(world.files)
        .write(u"S:\\Docs\\Plant\\QV_BookCategories.xml"_s, {{{}, u"Operation"_s, {}}});

    ProjectCatalogue(world.session, world.files).release(u"Plant"_s, {2026, 1, 2});
    world.navigator.shown.clear();
    world.currentProject.handed.clear();
}

/// What a converter does. Writes a project of one page, lists it under another name than the one
/// typed, and tells of it.
struct Converter
{
    using Line = std::function<void(const QByteArray &)>;

    TestProgram &world;
    QString project = u"Legacy Plant"_s;
    QString destination = u"S:\\Docs\\Legacy Plant"_s; ///< as stored
    QList<ConversionProblem> problems = {};

    [[nodiscard]] QString folder() const { return u"S:\\Docs\\"_s + project; }

    ProcessEnd operator()(const Line &line) const
    {
        Session session = world.session;
        session.projectName = project;
        world.files.makeFolder(folder());
        TableOfContents(session, world.files).CreateQVTOCFile(folder() + u"\\QV_Toc.xml"_s);
        fillHeader(session, world.files, world.clock, world.locale, project);
        addPumps(world, project);
        ProjectCatalogue(session, world.files).UpdateQVSelection();
        if (!destination.isEmpty())
            world.registry.setValue(Hive::LocalMachine, RegistryKey::compiler + u"Destination"_s,
                                    u"Path"_s, destination);
        tell(line);
        return {};
    }
    void tell(const Line &line) const
    {
        const auto say = [&](const QByteArray &words) { line(words.chopped(1)); };
        say(ConversionLines::progress(1, 2, u"start.htm"_s));
        say(ConversionLines::count({u"Pages"_s, 12, 12 - int(problems.size())}));
        for (const ConversionProblem &problem : problems)
            say(ConversionLines::problem(problem));
        say(ConversionLines::end(ConversionEnd::Done, {}, folder()));
    }
};

/// What it leaves behind when it breaks.
void makeRemains(TestProgram &world)
{
    world.put(u"S:\\Docs\\Plant.qvnew\\Pumps\\start.htm"_s, "half");
    world.files.makeFolder(u"S:\\Docs\\Plant"_s);
}

} // namespace

class tst_wizard final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsWhatCanBeChosen();
    void refusals();
    void addsAGermanProject();
    void copiesAReleasedProject();
    void stopLeavesNothing();
    void aFailedCopyEndsTheProgram();
    void asksWhenTheFolderIsThere();
    void leavesOtherAuthorsTheirProjects();
    void leavesABrokenCatalogueAlone();
    void migratesAndReports();
    void migrationsThatFailLeaveNothing();
    void aDamagedDatabaseIsTheAuthorsChoice();
    void onlyWhatTheConverterWroteIsOpened();
    void goesBackAndAsksBeforeItCloses();
    void longWorkIsStopped();
};

void tst_wizard::showsWhatCanBeChosen()
{
    TestProgram world;
    makeReleasedPlant(world);
    Wizard wizard(world);
    auto *const form = wizard.form.data();
    QCOMPARE(control<QComboBox>(form, "cboLanguage")->currentText(), "English"_L1);
    QCOMPARE(control<QComboBox>(form, "cboLanguage")->count(), 6);
    auto *const copyList = control<QComboBox>(form, "cboSelPrjtoCopy");
    QCOMPARE(copyList->count(), 1); // neither the favourites nor what is not released
    QCOMPARE(copyList->itemText(0), "Plant"_L1);
    QCOMPARE(copyList->currentIndex(), -1);

    const auto enabled = [&] {
        QString marks;
        for (const char *const name :
             {"txtProjectName", "txtPrjId", "cboSelPrjtoCopy", "lblSelPrjtoCopy",
              "txtSelDBtoMigrate", "cmdBrowseDBtoMigrate"})
            marks += isEnabled(form, name) ? u'1' : u'0';
        return marks;
    };
    QCOMPARE(enabled(), "110000"_L1);
    QCOMPARE(wizard.focus(), "txtProjectName"_L1);
    control<QWidget>(form, "txtPrjId")->setFocus();
    click(form, "optSelPrjTypetoAdd_1");
    QCOMPARE(enabled(), "111100"_L1);
    QCOMPARE(wizard.focus(), "txtProjectName"_L1);
    click(form, "optSelPrjTypetoAdd_2");
    QCOMPARE(enabled(), "110011"_L1);

    world.registry.setValue(Hive::LocalMachine, RegistryKey::compiler + u"Source"_s, u"Path"_s,
                            u"C:\\Old\\sets.mdb"_s);
    world.dialogs.paths = {QString(), u"C:\\Old\\plant.mdb"_s};
    click(form, "cmdBrowseDBtoMigrate"); // cancelled
    click(form, "cmdBrowseDBtoMigrate");
    QCOMPARE(world.dialogs.startedIn, QStringList(2, u"C:\\Old\\sets.mdb"_s));
    QCOMPARE(control<QLineEdit>(form, "txtSelDBtoMigrate")->text(), "C:\\Old\\plant.mdb"_L1);
}

void tst_wizard::refusals()
{
    struct Row
    {
        int kind;
        QString name, id, message, focus;
    };
    const QList<Row> rows{
        {0, u"  "_s, {}, u"Please enter project name"_s, u"txtProjectName"_s},
        {0, u"Pump"_s, u"  "_s, u"Please enter project id"_s, u"txtPrjId"_s},
        {0, u"a:b"_s, u"P"_s, u"Invalid Character : Found in project name"_s, u"txtProjectName"_s},
        {0, u"Pump"_s, u"P|1"_s, u"Invalid Character | Found in project id"_s, u"txtPrjId"_s},
        {0, u"pLANT"_s, u"P"_s, u"Project already exists"_s, u"txtProjectName"_s},
        {1, u"Pump"_s, u"P"_s, u"Select a project to continue"_s, u"cboSelPrjtoCopy"_s},
        {2, u"Pump"_s, u"P"_s, u"Please Select a database to continue"_s, u"txtSelDBtoMigrate"_s}};
    TestProgram world;
    makeReleasedPlant(world);
    const QByteArray before = world.bytes(catalogueFile);
    const QStringList folders = world.below(u"S:\\Docs"_s);
    for (const Row &row : rows) {
        Wizard wizard(world);
        click(wizard.form, ("optSelPrjTypetoAdd_" + QByteArray::number(row.kind)).constData());
        wizard.fill(row.name, row.id);
        click(wizard.form, "cmdContinue");

        QCOMPARE(world.messages.boxes.size(), 1);
        const Message box = world.messages.boxes.takeFirst();
        QCOMPARE(box.text, row.message);
        QCOMPARE(box.title, row.kind == 1 ? QString() : u"Quovane Developer Pro"_s);
        QVERIFY(box.icon == (row.kind == 1 ? MessageIcon::Critical : MessageIcon::Information));
        QCOMPARE(wizard.focus(), row.focus);
        QVERIFY(wizard.form && wizard.form->isVisible());
        QCOMPARE(control<QLineEdit>(wizard.form, "txtProjectName")->text(), row.name);
        QCOMPARE(world.below(u"S:\\Docs"_s), folders);
        QCOMPARE(world.bytes(catalogueFile), before);
    }
}

void tst_wizard::addsAGermanProject()
{
    TestProgram world;
    Wizard wizard(world);
    wizard.fill(u" Plant 300 "_s, u" P01 "_s, u"German"_s);
    QTest::keyClick(wizard.form, Qt::Key_Return);

    QCOMPARE(world.messages.shown, QStringList());
    QCOMPARE(world.session.projectName, "DEU_Plant 300"_L1);
    QCOMPARE(world.session.projectLanguage, "DEU"_L1);
    QCOMPARE(names(world), QStringList({u"My Favorites"_s, u"DEU_Plant 300"_s}));
    const CatalogueEntry entry = ProjectCatalogue(world.session, world.files).entries().last();
    QCOMPARE(entry.id, "P01"_L1);
    QCOMPARE(entry.language, "DEU"_L1);
    QCOMPARE(entry.location, "Docs\\DEU_Plant 300\\"_L1);

    const TocHeader header =
        TableOfContents(world.session, world.files).read(u"DEU_Plant 300"_s).header;
    QCOMPARE(header.platform, "Plant "_L1);
    QCOMPARE(header.variation, "300"_L1);
    QCOMPARE(header.dateProcess, "3/14/2026"_L1);
    const QString folder = u"S:\\Docs\\DEU_Plant 300\\"_s;
    QVERIFY(world.files.fileExists(folder + u"_Global Information\\Book_Global.xml"_s));
    QVERIFY(world.files.fileExists(folder + u"QV_StatusIndicators.xml"_s));
    QVERIFY(!world.files.exists(folder + u"QV_BookCategories.xml"_s));

    QCOMPARE(world.currentProject.handed, QStringList{u"DEU_Plant 300|DEU"_s});
    QCOMPARE(world.navigator.shown, QList{Form::MainUI});
    QTRY_VERIFY(!wizard.form);
}

void tst_wizard::copiesAReleasedProject()
{
    TestProgram world;
    makeReleasedPlant(world);
    Wizard wizard(world);
    wizard.fillCopyOfPlant();
    click(wizard.form, "cmdContinue");

    QCOMPARE(world.messages.shown, QStringList());
    QCOMPARE(names(world), QStringList({u"My Favorites"_s, u"Plant"_s, u"Harbour"_s}));
    const QString folder = u"S:\\Docs\\Harbour\\"_s;
    QCOMPARE(world.bytes(folder + u"Pumps\\start.htm"_s),
             utf16Bytes(u"<p>**Harbour** and **plant**</p>"_s));
    QCOMPARE(world.bytes(folder + u"Pumps\\readme.txt"_s), QByteArray("**Plant**"));
    QVERIFY(!world.files.exists(folder + u"QVPlant_Server.Zip"_s));
    QVERIFY(world.files.exists(u"S:\\Docs\\Plant\\QVPlant_Server.Zip"_s));

    const Toc toc = TableOfContents(world.session, world.files).read(u"Harbour"_s);
    QCOMPARE(toc.header.platform, "Harbour"_L1);
    QCOMPARE(toc.header.dateMigration, "3/14/2026"_L1);
    QCOMPARE(toc.books.first().key, "Harbour"_L1);
    const Book book = BookFile(world.session, world.files).read(u"Harbour"_s, toc.books.first());
    QCOMPARE(book.key, "Harbour"_L1);
    QCOMPARE(book.path, "Docs\\Harbour\\Pumps\\"_L1);
    QCOMPARE(CategoryFile(world.files).read(folder + u"QV_BookCategories.xml"_s).first().name,
             "Operation"_L1);

    // Copied content is secured; what authors go on editing is not.
    const auto readOnly = [&](const QString &file) {
        return world.files.status(folder + file).readOnly;
    };
    QVERIFY(readOnly(u"Pumps\\start.htm"_s) && readOnly(u"Pumps\\readme.txt"_s));
    QVERIFY(!readOnly(u"Pumps\\Book_PMP.xml"_s) && !readOnly(u"QV_Toc.xml"_s));
    QCOMPARE(world.navigator.shown, QList{Form::MainUI});
    QCOMPARE(world.currentProject.handed, QStringList{u"Harbour|ENU"_s});
    QTRY_VERIFY(!wizard.form);
}

void tst_wizard::stopLeavesNothing()
{
    TestProgram world;
    makeReleasedPlant(world);
    const QStringList folders = world.below(u"S:\\Docs"_s);
    Wizard wizard(world);
    wizard.fillCopyOfPlant();
    world.ending.atOnce = true; // Stop is pressed before the first file
    click(wizard.form, "cmdContinue");

    QCOMPARE(world.below(u"S:\\Docs"_s), folders);
    QCOMPARE(names(world), QStringList({u"My Favorites"_s, u"Plant"_s}));
    QVERIFY(wizard.form && wizard.form->isVisible());
    QCOMPARE(control<QLineEdit>(wizard.form, "txtProjectName")->text(), "Harbour"_L1);
    QCOMPARE(control<QComboBox>(wizard.form, "cboSelPrjtoCopy")->currentText(), "Plant"_L1);
    QVERIFY(world.messages.shown.isEmpty() && world.navigator.shown.isEmpty());

    // Later on the way, while pages are rewritten, it is the same; a folder that was there stays.
    world.files.makeFolder(u"S:\\Docs\\Harbour"_s);
    ProjectCreation creation(world.program);
    creation.name(u"Harbour"_s, u"H01"_s, u"ENU"_s);
    const auto stopAtThePage = [](const auto &work) {
        Stopper stop;
        work(stop.when([](int, const QString &what) { return what.endsWith("start.htm"_L1); }));
    };
    QVERIFY_THROWS_EXCEPTION(Unwinding, creation.addCopy(u"Plant"_s, stopAtThePage));
    QCOMPARE(world.below(u"S:\\Docs\\Harbour"_s), QStringList());
}

void tst_wizard::aFailedCopyEndsTheProgram()
{
    TestProgram world;
    makeReleasedPlant(world);
    // Deeper than anything is copied.
    world.put(u"S:\\Docs\\Plant"_s + u"\\d"_s.repeated(70) + u"\\x"_s, "x");
    const QStringList folders = world.below(u"S:\\Docs"_s);
    Wizard wizard(world);
    wizard.fillCopyOfPlant();
    click(wizard.form, "cmdContinue");
    QCOMPARE(world.messages.shown,
             QStringList{u"at location S:\\Docs\\Harbour\nReason: No Hard Disk Space Available Or "
                         "No Permission "_s});
    QVERIFY(world.messages.boxes.first().icon == MessageIcon::Critical);
    QVERIFY(!world.messages.boxes.first().details.isEmpty());
    QCOMPARE(world.ending.ended, 1);
    QCOMPARE(world.below(u"S:\\Docs"_s), folders);
    QCOMPARE(names(world), QStringList({u"My Favorites"_s, u"Plant"_s}));
}

void tst_wizard::asksWhenTheFolderIsThere()
{
    TestProgram world;
    makeReleasedPlant(world);
    world.files.removeFile(catalogueFile);
    const QString toc = u"S:\\Docs\\Plant\\QV_Toc.xml"_s;
    const QByteArray before = world.bytes(toc);
    Wizard wizard(world);
    wizard.fill(u"Plant"_s, u"P02"_s);

    world.messages.choices = {2};
    click(wizard.form, "cmdContinue");
    QVERIFY(world.messages.shown.takeLast().contains("S:\\Docs\\Plant is already there"_L1));
    QCOMPARE(names(world), QStringList());
    QVERIFY(wizard.form->isVisible() && world.bytes(toc) == before);

    world.messages.choices = {0};
    click(wizard.form, "cmdContinue");
    QCOMPARE(names(world), QStringList({u"My Favorites"_s, u"Plant"_s}));
    QCOMPARE(world.bytes(toc), before);
    QCOMPARE(world.navigator.shown, QList{Form::MainUI});

    for (const QString &aside :
         {u"Plant (moved aside 2026-03-14)"_s, u"Plant (moved aside 2026-03-14 2)"_s}) {
        world.files.removeFile(catalogueFile);
        Wizard again(world);
        again.fill(u"Plant"_s, u"P03"_s);
        world.messages.choices = {1};
        click(again.form, "cmdContinue");
        QVERIFY(world.files.fileExists(u"S:\\Docs\\"_s + aside + u"\\QV_Toc.xml"_s));
        QVERIFY(!world.files.exists(u"S:\\Docs\\Plant\\Pumps"_s));
        QCOMPARE(names(world), QStringList({u"My Favorites"_s, u"Plant"_s}));
    }

    world.files.removeFile(catalogueFile); // what is no project is not listed
    world.files.removeFile(toc);
    Wizard last(world);
    last.fill(u"Plant"_s, u"P04"_s);
    world.messages.choices = {0};
    click(last.form, "cmdContinue");
    QVERIFY(world.messages.shown.last().contains("QV_Toc.xml"_L1));
    QVERIFY(world.messages.shown.last().endsWith(
        ": QV_Developer::frmSelPrjTypetoAdd-cmdContinue_Click"_L1));
    QCOMPARE(names(world), QStringList());
}

void tst_wizard::leavesOtherAuthorsTheirProjects()
{
    TestProgram world;
    makeReleasedPlant(world);
    Wizard wizard(world);
    wizard.fillCopyOfPlant();
    auto theirs = world.files.lock(u"S:\\Docs\\Harbour.qvnew.lock"_s, u"S:\\Docs"_s, {});
    click(wizard.form, "cmdContinue"); // while another author makes it
    QVERIFY(world.messages.shown.last().contains(
        "is just making, renaming or deleting the project Harbour"_L1));
    QVERIFY(!world.files.exists(u"S:\\Docs\\Harbour"_s));
    theirs.reset();

    const QString page = u"S:\\Docs\\Harbour\\start.htm"_s;
    world.put(page, "theirs");
    world.messages.choices = {1};
    world.messages.echo = [&](const QStringList &) { // they list it while the question is open
        world.list(u"Harbour"_s);
    };
    click(wizard.form, "cmdContinue");
    QVERIFY(world.messages.shown.last().startsWith("Project already exists: Harbour"_L1));
    QVERIFY(world.files.fileExists(page) && wizard.form->isVisible());
}

void tst_wizard::leavesABrokenCatalogueAlone()
{
    TestProgram world;
    const QByteArray broken = utf16Bytes(u"<QV_Selection_List><QVs></QV_Selection_List>"_s);
    world.put(catalogueFile, broken);
    Wizard wizard(world);
    QCOMPARE(world.messages.shown.size(), 1);
    QVERIFY(world.messages.shown.first().contains(catalogueFile));
    QVERIFY(world.messages.shown.first().endsWith(
        ": QV_Developer::frmSelPrjTypetoAdd-GetProdQVSelection_Complete"_L1));
    QCOMPARE(control<QComboBox>(wizard.form, "cboLanguage")->count(), 6);

    wizard.fill(u"Plant"_s, u"P01"_s);
    click(wizard.form, "cmdContinue");
    QVERIFY(world.messages.shown.last().contains(catalogueFile));
    QVERIFY(world.messages.shown.last().endsWith(
        ": QV_Developer::frmSelPrjTypetoAdd-cmdContinue_Click"_L1));
    QCOMPARE(world.bytes(catalogueFile), broken);
    QVERIFY(!world.files.exists(u"S:\\Docs\\Plant"_s));
    QVERIFY(wizard.form->isVisible());
}

void tst_wizard::migratesAndReports()
{
    TestProgram world;
    Wizard wizard(world);
    wizard.fillMigration();
    const ConversionProblem orphan{u"Pages"_s, u"PageID 12"_s,
                                   u"<b>The book 9 is not there.</b>"_s};
    world.processes.runs = Converter{.world = world, .problems = {orphan}};
    click(wizard.form, "cmdContinue");

    QCOMPARE(clsRegAccess(world.registry).mstrGetDesPath(u"Source"_s), "C:\\Old\\plant.mdb"_L1);
    QCOMPARE(world.processes.started,
             QStringList{u"C:\\Client\\Bin\\qv_dbtoxml.exe|--database=C:\\Old\\plant.mdb|--mode=1|"
                         "--target=S:\\Docs\\Plant|--name=Plant|--id=P01|--language=ENU"_s});
    QPointer report = wizard.form->findChild<MigrationReportDialog *>();
    QVERIFY2(report, qPrintable(world.messages.shown.join(u'\n')));
    QVERIFY(report->isModal() && world.navigator.shown.isEmpty());
    QCOMPARE(control<QLabel>(report, "lblSummary")->text(),
             u"The legacy book set C:\\Old\\plant.mdb was migrated to the project Legacy Plant."_s);
    QCOMPARE(control<ListTable>(report, "lstCounts")->copied(), u"Pages\t12\t11\n"_s);
    QCOMPARE(report->focusWidget()->objectName(), "lstProblems"_L1);
    QCOMPARE(control<QPlainTextEdit>(report, "txtProblem")->toPlainText(), orphan.text);
    QVERIFY(!report->findChild<QLabel *>(u"lblWhole"_s));
    QCOMPARE(audit::findingsIn(report), QStringList());
    click(report, "cmdCopy");
    QVERIFY(QGuiApplication::clipboard()->text().endsWith(
        u"Legacy Plant.\n\nPages\t12\t11\n\nPages\tPageID 12\t"_s + orphan.text + u'\n'));
    click(report, "cmdOpenLog");
    QCOMPARE(world.processes.opened, QStringList{u"S:\\Docs\\Legacy Plant\\Migration_Log.txt"_s});

    world.messages.answers = {Answer::Yes};
    QTest::keyClick(report, Qt::Key_Escape);
    QTRY_COMPARE(world.messages.shown, QStringList{u"Do you want to generate search words now?"_s});
    QCOMPARE(world.messages.boxes.first().icon, MessageIcon::Information);
    const QString folder = u"S:\\Docs\\Legacy Plant\\"_s;
    QVERIFY(world.files.fileExists(folder + u"Search_Words\\Search_Pages.xml"_s));
    QVERIFY(!world.files.exists(folder + u"DocToDoc"_s));
    QVERIFY(world.files.fileExists(folder + u"QV_BookCategories.xml"_s));
    const auto lights = StatusIndicators(world.session, world.files, world.currentProject).lights();
    QVERIFY(lights && lights->searchIndex == 3046706 && lights->quickNav == 16777215);
    QCOMPARE(names(world), QStringList({u"My Favorites"_s, u"Legacy Plant"_s}));
    QCOMPARE(world.currentProject.handed, QStringList{u"Legacy Plant|ENU"_s});
    QCOMPARE(world.navigator.shown, QList{Form::MainUI});
    QTRY_VERIFY(!wizard.form);

    // Nothing to tell; Stop while the search words are made does not undo the migration.
    Wizard second(world);
    second.fillMigration();
    world.processes.runs = Converter{world, u"Second"_s, u"S:\\Docs\\Second"_s};
    click(second.form, "cmdContinue");
    report = second.form->findChild<MigrationReportDialog *>();
    QVERIFY(report);
    QCOMPARE(control<QLabel>(report, "lblWhole")->text(), "Everything was taken over."_L1);
    QCOMPARE(report->focusWidget()->objectName(), "cmdClose"_L1);
    world.messages.answers = {Answer::Yes};
    QList<bool> enabled;
    world.messages.echo = [&](const QStringList &) {
        enabled.append(isEnabled(second.form, "cmdContinue"));
        world.ending.atOnce = true;
    };
    click(report, "cmdClose");
    QTRY_COMPARE(enabled, QList({true, false}));
    QCOMPARE(world.messages.shown.last(),
             u"Making the search words was stopped. The project itself "
             "is complete: its next build makes them."_s);
    QVERIFY(!world.files.exists(u"S:\\Docs\\Second\\Search_Words"_s));
    QCOMPARE(world.currentProject.handed.last(), "Second|ENU"_L1);
}

void tst_wizard::migrationsThatFailLeaveNothing()
{
    using Kind = ProcessEnd::Kind;
    struct Row
    {
        ProcessEnd end;
        std::optional<ConversionEnd> told;
        QString message;
    };
    const QString sentence = u"C:\\Old\\plant.mdb: why, and what now."_s;
    const QString broke =
        u"C:\\Old\\plant.mdb cannot be migrated: the converter broke off while it "
        "read the file, which is probably damaged (out of memory). "_s;
    const QList<Row> rows{
        {{Kind::Exited, 2}, ConversionEnd::Refused, sentence},
        {{Kind::Exited, 3}, ConversionEnd::Damaged, sentence},
        {{Kind::Exited, 4}, ConversionEnd::Failed, sentence},
        {{Kind::Crashed, 0, u"out of memory"_s}, {}, broke},
        {{Kind::Crashed, 0, u"out of memory"_s}, ConversionEnd::Damaged, broke},
        {{Kind::Silent},
         {},
         u"C:\\Old\\plant.mdb cannot be migrated: the converter did not answer"_s},
        {{Kind::Exited, 127, u"no libmdb"_s},
         {},
         u"C:\\Old\\plant.mdb cannot be migrated: the converter "
         "ended with status 127 and said nothing else (no libmdb). Nothing"_s},
        {{Kind::Stopped}, {}, {}}};
    TestProgram world;
    Wizard wizard(world);
    wizard.fillMigration();
    world.processes.missing = true;
    click(wizard.form, "cmdContinue");
    QVERIFY(
        world.messages.shown.takeFirst().contains("converter (qv_dbtoxml) is not installed"_L1));
    world.processes.missing = false;
    const QStringList before{u"QV_Selection.xml"_s, u"QV_Selection.xml.lock"_s};
    for (const Row &row : rows) {
        world.messages.boxes.clear();
        world.processes.runs = [&](const Converter::Line &line) {
            makeRemains(world);
            if (row.told)
                line(ConversionLines::end(*row.told, sentence, {}).chopped(1));
            return row.end;
        };
        world.ending.atOnce = row.end.kind == Kind::Stopped;
        click(wizard.form, "cmdContinue");
        QCOMPARE(world.processes.stop.stop_requested(), std::exchange(world.ending.atOnce, false));
        QCOMPARE(world.messages.boxes.size(), row.message.isEmpty() ? 0 : 1);
        for (const Message &box : std::as_const(world.messages.boxes)) {
            QVERIFY2(box.text.startsWith(row.message), qPrintable(box.text));
            QVERIFY(box.icon == MessageIcon::Critical && box.title == "Quovane Developer Pro"_L1);
            QCOMPARE(wizard.focus(), "txtSelDBtoMigrate"_L1);
        }
        QVERIFY(wizard.form->isVisible() && isEnabled(wizard.form, "cmdContinue"));
        QCOMPARE(world.below(u"S:\\Docs"_s), before);
        QCOMPARE(names(world), QStringList());
    }

    // A converter that is ended before it lists the project has made all of it.
    world.processes.runs = [&](const Converter::Line &) {
        world.put(u"S:\\Docs\\Plant\\QV_Toc.xml"_s, "whole");
        return ProcessEnd{Kind::Crashed};
    };
    click(wizard.form, "cmdContinue");
    QCOMPARE(
        world.messages.boxes.last().text,
        u"The converter ended before it could list the project, but the folder S:\\Docs\\Plant "
        "is complete. Migrate once more under this name, and let the folder be listed."_s);
    world.files.removeFile(u"S:\\Docs\\Plant\\QV_Toc.xml"_s);
    world.files.removeFolder(u"S:\\Docs\\Plant"_s);

    // What another author makes under this name at this moment stays.
    world.processes.runs = [&](const Converter::Line &) {
        makeRemains(world);
        return ProcessEnd{Kind::Crashed};
    };
    const auto theirs = world.files.lock(u"S:\\Docs\\Plant.qvnew.lock"_s, u"S:\\Docs"_s, {});
    click(wizard.form, "cmdContinue");
    QVERIFY(world.files.fileExists(u"S:\\Docs\\Plant.qvnew\\Pumps\\start.htm"_s));
}

void tst_wizard::aDamagedDatabaseIsTheAuthorsChoice()
{
    TestProgram world;
    Wizard wizard(world);
    wizard.fillMigration();
    const Converter good{world};
    world.processes.runs = [&](const Converter::Line &line) -> ProcessEnd {
        if (world.processes.started.last().endsWith("|--accept-partly"_L1))
            return good(line);
        for (int row = 1; row <= 17; ++row)
            line(ConversionLines::problem({u"Pages"_s, u"PageID %1"_s.arg(row), u"cut"_s}));
        line(ConversionLines::end(ConversionEnd::PartlyReadable, u"Some rows cannot be read."_s,
                                  {}));
        return {};
    };
    world.messages.choices = {1};
    click(wizard.form, "cmdContinue");
    QVERIFY(world.messages.shown.first().startsWith(
        u"Some rows cannot be read.\n\nPages, PageID 1: cut\nPages, PageID 2: cut\n"_s));
    QVERIFY(world.messages.shown.first().endsWith(u"Pages, PageID 15: cut\nand 2 more"_s));
    QCOMPARE(wizard.focus(), "txtSelDBtoMigrate"_L1);
    QCOMPARE(world.processes.started.size(), 1);
    QCOMPARE(names(world), QStringList());

    world.messages.choices = {0};
    click(wizard.form, "cmdContinue");
    QVERIFY(wizard.form->findChild<MigrationReportDialog *>());

    // Stop comes when all is done: it is done.
    Wizard late(world);
    late.fillMigration();
    world.processes.runs = [&](const Converter::Line &line) {
        good.tell(line);
        return ProcessEnd{ProcessEnd::Kind::Stopped};
    };
    click(late.form, "cmdContinue");
    QVERIFY(late.form->findChild<MigrationReportDialog *>());
}

void tst_wizard::onlyWhatTheConverterWroteIsOpened()
{
    const QString head =
        u"The converter wrote the project to S:\\Docs\\Legacy Plant, but the setting "
        "\"Path\" of "_s;
    const QStringList destinations{{}, u"S:\\Docs\\Older"_s};
    for (const QString &destination : destinations) {
        TestProgram world;
        Wizard wizard(world);
        wizard.fillMigration();
        world.processes.runs = Converter{world, u"Legacy Plant"_s, destination};
        click(wizard.form, "cmdContinue");
        const QString message = world.messages.shown.takeLast();
        QVERIFY2(message.startsWith(head), qPrintable(message));
        QVERIFY(
            message.contains(u"names "_s + (destination.isEmpty() ? u"no folder"_s : destination)));
        QVERIFY(message.endsWith(": QV_Developer::frmSelPrjTypetoAdd-cmdContinue_Click"_L1));
        QVERIFY(world.navigator.shown.isEmpty() && wizard.form->isVisible());
    }
    TestProgram world;
    const QString deep = u"S:\\Docs\\Legacy Plant\\Deep"_s;
    Wizard wizard(world);
    wizard.fillMigration();
    world.processes.runs = [&](const Converter::Line &line) {
        world.registry.setValue(Hive::LocalMachine, RegistryKey::compiler + u"Destination"_s,
                                u"Path"_s, deep);
        line(ConversionLines::end(ConversionEnd::Done, {}, deep).chopped(1));
        return ProcessEnd();
    };
    click(wizard.form, "cmdContinue");
    QVERIFY(world.messages.shown.last().startsWith(
        u"The converter wrote the project to %1, which is no folder directly below S:\\Docs\\."_s
            .arg(deep)));
    QVERIFY(world.currentProject.handed.isEmpty() && world.navigator.shown.isEmpty());
}

void tst_wizard::goesBackAndAsksBeforeItCloses()
{
    TestProgram world;
    Wizard wizard(world);
    world.messages.answers = {Answer::No};
    QTest::keyClick(wizard.form, Qt::Key_Escape);
    QVERIFY(wizard.form->isVisible());
    QCOMPARE(world.messages.boxes.first().text, "Do you want to close Quovane Developer?"_L1);
    QCOMPARE(world.messages.boxes.first().title, "QV Developer"_L1);

    click(wizard.form, "cmdBack");
    QCOMPARE(world.navigator.loadforms, 1);
    QVERIFY(world.session.gbBackToLauncher);
    QCOMPARE(world.messages.shown.size(), 1);
    QTRY_VERIFY(!wizard.form);

    Wizard closed(world);
    world.messages.answers = {Answer::Yes};
    click(closed.form, "cmdCancelSelPrjTypetoAdd");
    QTRY_VERIFY(!closed.form);
}

void tst_wizard::longWorkIsStopped()
{
    TestProgram world;
    const QList<std::function<void(QWidget *)>> ways{
        [](QWidget *dialog) { dialog->close(); },
        [](QWidget *dialog) { QTest::keyClick(dialog, Qt::Key_Escape); },
        [](QWidget *dialog) { click(dialog, "cmdStop"); },
        [&](QWidget *) { world.ending.last.last()(); }, // the program ends
    };
    const auto run = [&](const std::function<void(const Progress &)> &work) {
        runWithProgress(world.program, nullptr, u"Working..."_s, work);
    };
    const auto endless = [](const Progress &progress) {
        for (;;)
            progress.step(1, 3, u"page.htm"_s);
    };
    for (const auto &stop : ways) {
        QTimer author; // the window stays alive and shows what is being done
        connect(&author, &QTimer::timeout, this, [&] {
            QWidget *const dialog = openWindow<frmProgBar>();
            if (!dialog || control<QLabel>(dialog, "lblFile")->text() != "page.htm"_L1)
                return;
            author.stop();
            QCOMPARE(control<QLabel>(dialog, "lblCaption")->text(), "Working..."_L1);
            stop(dialog);
        });
        author.start(1);
        QVERIFY_THROWS_EXCEPTION(Unwinding, run(endless));
        QVERIFY(!author.isActive() && !openWindow<frmProgBar>());
    }
    QVERIFY_THROWS_EXCEPTION(
        QvError, run([](const Progress &) { throw QvError(PermissionDenied, {}, u"locked"_s); }));
    bool done = false;
    run([&](const Progress &) { done = true; });
    QVERIFY(done && !world.ending.last.last());
}

QV_FORM_TEST_MAIN(tst_wizard)
#include "tst_wizard.moc"
