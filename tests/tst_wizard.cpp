#include "startup/frmProgBar.h"
#include "support/WizardDesk.h"
#include "support/XmlFile.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto catalogueFile = "S:\\Docs\\QV_Selection.xml"_L1;

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
