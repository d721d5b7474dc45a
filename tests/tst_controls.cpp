#include "controls/books/DeleteBookDialog.h"
#include "controls/books/KeyWordCommands.h"
#include "controls/books/NewBookDialog.h"
#include "controls/ctlGlobalsTab.h"
#include "controls/ctlQuickNav.h"
#include "controls/import/AddSourceFilesDialog.h"
#include "controls/session/ProjectPages.h"
#include "controls/session/ProjectSession.h"
#include "platform/Xml.h"
#include "startup/PageText.h"
#include "support/BooksDesk.h"
#include "support/System.h"

using namespace Qt::StringLiterals;

namespace {
QByteArray latin(const QByteArray &body)
{
    return "<html><head><meta charset=\"windows-1252\"></head>\r\n<body>" + body
           + "</body></html>\r\n";
}
} // namespace

class tst_controls final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void createsABook();
    void takesUpAFolderWithPages();
    void changesTheHeader();
    void savesAPageInItsOwnEncoding();
    void unlocksALockedPage();
    void asksWhenAnotherAuthorWasFaster();
    void savesOnLeavingAndAsksOnClosing();
    void keepsUnsavedTextWhenTheProgramEnds();
    void followsLinksOfThePreview();
    void deletesABook();
    void deletesTheTwinThatIsMeant();
    void deletesNoFolderThatIsNotTheBooksOwn();
    void addsSourceFiles();
    void editsTheOutline();
    void dragsPages();
    void deletesPagesAndBringsThemBack();
    void givesPagesIdsAndKeyWords();
    void carriesTheAcronymAlong();
    void saysWhatIsWrongWithABook();
    void showsGlobalsAndQuickNavigation();
};

void tst_controls::createsABook()
{
    SampleProject sample;
    sample.addBook(u"Pump"_s, u"PUMP"_s);
    Desk desk(sample);
    click(&desk.tab, "cmdNewBook");
    const QPointer<NewBookDialog> dialog = desk.tab.findChild<NewBookDialog *>();
    QVERIFY(dialog);
    QTRY_VERIFY(control<QLineEdit>(dialog, "txtBookName")->hasFocus());
    QVERIFY(!isEnabled(dialog, "cmdCreateBook"));
    QVERIFY(desk.text("lblPage").isEmpty());

    const QMap<QString, QString> refused{
        {u" pUMP "_s, u"\u26A0 There is a book named \"Pump\" already."_s},
        {u"dynamichelp"_s, u"\u26A0 \"dynamichelp\" is a name that the product uses itself."_s},
        {QString(201, u'x'), u"\u26A0 The name is too long: at most 200 characters."_s}};
    for (auto row = refused.begin(); row != refused.end(); ++row) {
        desk.enter(dialog, "txtBookName", row.key());
        QCOMPARE(control<QLabel>(dialog, "txtBookNameSays")->text(), row.value());
    }
    desk.enter(dialog, "txtBookName", u"Operator's Guide"_s);
    QVERIFY(!control<QLabel>(dialog, "txtBookNameSays")->isVisible());
    desk.enter(dialog, "txtBookAcro", u"a/b"_s);
    QCOMPARE(control<QLabel>(dialog, "txtBookAcroSays")->text(),
             u"\u26A0 The acronym becomes part of a file name and cannot hold /"_s);
    QVERIFY(!isEnabled(dialog, "cmdCreateBook"));
    desk.enter(dialog, "txtBookAcro", u"OG"_s);
    QCOMPARE(control<QLineEdit>(dialog, "txtBookFolder")->text(), u"Book_OG"_s);
    desk.enter(dialog, "txtBookFolder", u"Book_Guide"_s);
    auto *categories = control<QListWidget>(dialog, "lstCategories");
    QCOMPARE(categories->count(), 2);
    categories->item(1)->setCheckState(Qt::Checked);
    click(dialog, "cmdCreateBook");
    QTRY_VERIFY(!dialog);

    TestProgram &world = sample.world;
    const TocBook expected{u"Operator's Guide"_s,   u"OG"_s,          u"Plant 300"_s,
                           u"Book_Guide"_s,         u"Book_OG.xml"_s, QString(),
                           QStringList{u"Repair"_s}};
    QCOMPARE(desk.listed().at(1), expected);
    const Book book = desk.file(expected);
    QCOMPARE((QStringList{book.name, book.path, book.language, book.dateChanged}),
             (QStringList{u"Operator's Guide"_s, u"Docs\\Plant 300\\Book_Guide\\"_s, u"ENU"_s,
                          u"2026-03-14"_s}));
    QVERIFY(book.pages.isEmpty());
    QCOMPARE(desk.session.currentBook(), std::optional(expected));
    QCOMPARE(desk.books()->currentItem()->text(), u"Operator's Guide (OG)"_s);
    QCOMPARE(world.messages.shown, QStringList());
}

void tst_controls::takesUpAFolderWithPages()
{
    SampleProject sample;
    TestProgram &world = sample.world;
    world.put(sample.folder + u"Book_OLD\\a.htm"_s, "<title>First &amp; last</title>");
    world.put(sample.folder + u"Book_OLD\\b.html"_s, "<h1>Heading</h1>");
    world.put(sample.folder + u"Book_OLD\\c.css"_s, "p {}");
    world.put(sample.folder + u"Book_OLD\\Book_OLD.xml"_s,
              "<Book_Master><Book/><Book_Pages NextID='7'/></Book_Master>");
    Desk desk(sample);
    click(&desk.tab, "cmdNewBook");
    auto *dialog = desk.tab.findChild<NewBookDialog *>();
    desk.enter(dialog, "txtBookName", u"Old"_s);
    desk.enter(dialog, "txtBookAcro", u"OLD"_s);
    QCOMPARE(control<QLabel>(dialog, "txtBookFolderSays")->text(),
             u"This folder is there already; the book takes it over."_s);
    click(dialog, "cmdCreateBook");

    QCOMPARE(desk.text("lblBookProblem"),
             u"\u26A0 The book lists no pages, but its folder holds 2."_s);
    click(&desk.tab, "cmdRemedy");
    QCOMPARE(desk.pages()->topLevelItemCount(), 2);
    QCOMPARE(desk.pages()->topLevelItem(0)->text(0), u"First & last"_s);
    const Book book = desk.file(*desk.session.currentBook());
    QCOMPARE(book.pages.at(1).title, u"Heading"_s);
    QCOMPARE(book.pages.at(1).id, u"P0008"_s);
    QVERIFY(!control<QWidget>(&desk.tab, "cmdRemedy")->isVisible());
}

void tst_controls::changesTheHeader()
{
    SampleProject sample;
    const TocBook pump = sample.addBook(u"Pump"_s, u"PUMP"_s, {{u"start.htm"_s, "x"}});
    sample.addBook(u"Valve"_s, u"VALVE"_s);
    Desk desk(sample);
    desk.tab.setBookName(u"Pump"_s);
    QSignalSpy renamed(&desk.tab, &ctlBooksTab::OnEditBookNameAcro);

    desk.enter(&desk.tab, "txtName", u"VALVE"_s);
    QCOMPARE(desk.text("txtNameSays"), u"\u26A0 There is a book named \"Valve\" already."_s);
    QTest::keyClick(control<QLineEdit>(&desk.tab, "txtName"), Qt::Key_Return);
    QCOMPARE(control<QLineEdit>(&desk.tab, "txtName")->text(), u"Pump"_s);
    desk.enter(&desk.tab, "txtName", u"Pump station"_s);
    control<QLineEdit>(&desk.tab, "txtAcro")->setFocus(); // leaving the field is enough
    QCOMPARE(renamed.size(), 1);
    QCOMPARE(renamed.first(), (QVariantList{u"Pump station"_s, u"PUMP"_s}));
    control<QListWidget>(&desk.tab, "lstBookCategories")->item(0)->setCheckState(Qt::Checked);

    TestProgram &world = sample.world;
    TocBook expected = pump;
    expected.name = u"Pump station"_s;
    expected.categories = {u"Operation"_s};
    QTRY_COMPARE(desk.listed().first(), expected);
    const Book book = desk.file(expected);
    QCOMPARE(book.name, u"Pump station"_s);
    QCOMPARE(book.pages.size(), 1);
    QCOMPARE(desk.session.currentBook(), std::optional(expected));
    QCOMPARE(desk.books()->item(0)->text(), u"Pump station (PUMP)"_s);

    // A book file that cannot be written leaves the list as it was.
    world.put(sample.folder + u"Book_PUMP\\Book_PUMP.xml"_s, "no XML");
    desk.enter(&desk.tab, "txtName", u"Other"_s);
    QTest::keyClick(control<QLineEdit>(&desk.tab, "txtName"), Qt::Key_Return);
    QCOMPARE(world.messages.shown.size(), 1);
    QVERIFY(world.messages.shown.first().contains(u"Book_PUMP.xml"_s));
    QCOMPARE(desk.listed().first(), expected);
    QCOMPARE(control<QLineEdit>(&desk.tab, "txtName")->text(), u"Pump station"_s);
}

void tst_controls::savesAPageInItsOwnEncoding()
{
    SampleProject sample;
    const QByteArray page = latin("Gr\xfc\xdf\x65 \x80");
    const TocBook pump = sample.addBook(u"Pump"_s, u"PUMP"_s, {{u"start.htm"_s, page}});
    const QString path = sample.folder + u"Book_PUMP\\start.htm"_s;
    Desk desk(sample);
    desk.open(pump);
    QCOMPARE(control<QToolButton>(&desk.tab, "cmdEncoding")->text(), u"windows-1252"_s);
    QCOMPARE(control<QTabWidget>(&desk.tab, "tabDetails")->currentIndex(), 2);
    QVERIFY(!isEnabled(&desk.tab, "cmdSave"));

    desk.insert(u"\u00e4"_s);
    QVERIFY(isEnabled(&desk.tab, "cmdSave"));
    QCOMPARE(desk.text("lblPage"), u"* start"_s);
    desk.pressSave();
    QCOMPARE(sample.world.bytes(path), "\xe4" + page);
    QVERIFY(!isEnabled(&desk.tab, "cmdSave"));

    desk.insert(u"\u6f22"_s);
    sample.world.messages.choices = {1};
    desk.pressSave();
    QVERIFY(sample.world.messages.shown.last().contains(u"\u6f22"_s));
    QCOMPARE(sample.world.bytes(path), "\xe4" + page);
    sample.world.messages.choices = {0};
    desk.pressSave();
    QByteArray expected = "\xe6\xbc\xa2\xc3\xa4" + latin("Gr\xc3\xbc\xc3\x9f\x65 \xe2\x82\xac");
    QCOMPARE(sample.world.bytes(path), expected.replace("windows-1252", "utf-8"));
    QCOMPARE(control<QToolButton>(&desk.tab, "cmdEncoding")->text(), u"UTF-8"_s);

    desk.insert(u"zzz"_s);
    sample.world.messages.choices = {0};
    click(&desk.tab, "cmdRevert");
    QVERIFY(!desk.source()->toPlainText().startsWith(u"zzz"_s));
    QVERIFY(sample.world.messages.unexpected.isEmpty());
}

void tst_controls::unlocksALockedPage()
{
    SampleProject sample;
    const TocBook pump = sample.addBook(u"Pump"_s, u"PUMP"_s, {{u"start.htm"_s, "<p>x</p>"}});
    const QString path = sample.folder + u"Book_PUMP\\start.htm"_s;
    sample.world.files.setAttributes(path, ReadOnlyFile);
    Desk desk(sample);
    desk.open(pump);
    QCOMPARE(desk.text("lblPageLock"), u"This page is locked."_s);
    QTest::keyClick(desk.source(), Qt::Key_X);
    QCOMPARE(desk.source()->toPlainText(), u"<p>x</p>"_s);

    sample.world.messages.choices = {1, 0};
    click(&desk.tab, "cmdUnlockPage");
    QVERIFY(sample.world.files.status(path).readOnly);
    click(&desk.tab, "cmdUnlockPage");
    QVERIFY(!sample.world.files.status(path).readOnly);
    QVERIFY(!desk.source()->isReadOnly());
    desk.insert(u"y"_s);
    desk.pressSave();
    QCOMPARE(sample.world.bytes(path), "y<p>x</p>");
}

void tst_controls::asksWhenAnotherAuthorWasFaster()
{
    SampleProject sample;
    const TocBook pump = sample.addBook(u"Pump"_s, u"PUMP"_s, {{u"start.htm"_s, "one"}});
    const QString path = sample.folder + u"Book_PUMP\\start.htm"_s;
    Desk desk(sample);
    desk.open(pump);
    ScriptedMessages &messages = sample.world.messages;

    // Without changes of one's own the other text simply comes in.
    sample.world.put(path, "two");
    QEvent activated(QEvent::WindowActivate);
    QApplication::sendEvent(&desk.tab, &activated);
    QTRY_COMPARE(desk.source()->toPlainText(), u"two"_s);
    QCOMPARE(messages.shown, QStringList());

    desk.insert(u"my "_s);
    sample.world.put(path, "three");
    messages.choices = {2};
    desk.pressSave();
    QCOMPARE(sample.world.bytes(path), "three");
    QVERIFY(isEnabled(&desk.tab, "cmdSave"));
    messages.choices = {1};
    desk.pressSave();
    QCOMPARE(sample.world.bytes(path), "my two");

    desk.insert(u"again "_s);
    sample.world.put(path, "four");
    messages.choices = {0};
    desk.pressSave();
    QCOMPARE(desk.source()->toPlainText(), u"four"_s);
    QCOMPARE(sample.world.bytes(path), "four");
    QCOMPARE(messages.shown.size(), 3);

    // Every message box makes the window active again when it closes: what was said is said.
    desk.insert(u"mine "_s);
    sample.world.files.removeFile(path);
    sample.world.put(sample.folder + ProjectFile::toc, "broken");
    for (int activation = 0; activation < 3; ++activation) {
        QApplication::sendEvent(&desk.tab, &activated);
        QCoreApplication::processEvents();
    }
    QTRY_COMPARE(messages.shown.size(), 4);
    QVERIFY(control<QWidget>(&desk.tab, "conflictBar")->isVisible());
    click(&desk.tab, "cmdKeepMine");
    sample.world.files.removeFile(sample.folder + ProjectFile::toc);
    TableOfContents(sample.world.session, sample.world.files)
        .CreateQVTOCFile(sample.folder + ProjectFile::toc);
    TableOfContents(sample.world.session, sample.world.files).addBook(sample.name, pump);
    desk.pressSave();
    QCOMPARE(sample.world.bytes(path), "mine four");

    // A second window of the project sees what the first one does, and the other way round.
    Desk second(sample);
    QCOMPARE(second.books()->count(), 1);
    sample.addBook(u"Valve"_s, u"VALVE"_s);
    QApplication::sendEvent(&desk.tab, &activated);
    QTRY_COMPARE(desk.books()->count(), 2);
    QCOMPARE(messages.unexpected, QStringList());
}

void tst_controls::savesOnLeavingAndAsksOnClosing()
{
    SampleProject sample;
    const TocBook pump =
        sample.addBook(u"Pump"_s, u"PUMP"_s, {{u"a.htm"_s, "a"}, {u"b.htm"_s, "b"}});
    const QString path = sample.folder + u"Book_PUMP\\a.htm"_s;
    Desk desk(sample);
    desk.open(pump);
    desk.insert(u"1"_s);
    desk.pages()->setCurrentItem(desk.pages()->topLevelItem(1));
    QCOMPARE(desk.session.currentPage(), u"P0002"_s);
    QCOMPARE(sample.world.bytes(path), "1a");

    // A page that cannot be written stays, and says why.
    desk.open(pump);
    desk.insert(u"2"_s);
    sample.world.files.setAttributes(path, ReadOnlyFile);
    desk.pages()->setCurrentItem(desk.pages()->topLevelItem(1));
    QCOMPARE(sample.world.messages.shown.size(), 1);
    QVERIFY(sample.world.messages.shown.first().contains(u"a.htm"_s));
    QTRY_COMPARE(desk.pages()->currentItem()->text(0), u"a"_s);
    QCOMPARE(desk.source()->toPlainText(), u"21a"_s);
    sample.world.files.setAttributes(path, 0);

    ScriptedMessages &messages = sample.world.messages;
    messages.choices = {2};
    QVERIFY(!desk.tab.mayLeave());
    QCOMPARE(messages.shown.last(), u"The page \"a\" has changes that are not saved."_s);
    messages.choices = {1};
    QVERIFY(desk.tab.mayLeave());
    QCOMPARE(sample.world.bytes(path), "1a");
    QVERIFY2(desk.source()->toPlainText() == u"21a"_s, "until the window closes");
    desk.insert(u"3"_s);
    messages.choices = {0};
    QVERIFY(desk.tab.mayLeave());
    QCOMPARE(sample.world.bytes(path), "321a");
    const auto asked = messages.shown.size();
    QVERIFY(desk.tab.mayLeave());
    QCOMPARE(messages.shown.size(), asked);
}

void tst_controls::keepsUnsavedTextWhenTheProgramEnds()
{
    SampleProject sample;
    const TocBook pump = sample.addBook(u"Pump"_s, u"PUMP"_s, {{u"a.htm"_s, "a"}});
    {
        Desk desk(sample);
        desk.open(pump);
        desk.insert(u"\u00fc unsaved "_s);
        QVERIFY_THROWS_EXCEPTION(Unwinding, sample.world.ending.endNow());
        QCOMPARE(sample.world.bytes(sample.folder + u"Book_PUMP\\a.htm"_s), "a");
    }
    Desk desk(sample);
    desk.open(pump);
    QVERIFY(control<QWidget>(&desk.tab, "recoveryBar")->isVisible());
    QCOMPARE(desk.source()->toPlainText(), u"a"_s);
    desk.insert(u"typed "_s);
    desk.pressSave();
    QVERIFY2(control<QWidget>(&desk.tab, "recoveryBar")->isVisible(), "neither used nor refused");
    click(&desk.tab, "cmdUseRecovered");
    QCOMPARE(desk.source()->toPlainText(), u"\u00fc unsaved a"_s);
    desk.pressSave();
    QCOMPARE(sample.world.bytes(sample.folder + u"Book_PUMP\\a.htm"_s), "\xc3\xbc unsaved a");
    desk.session.select(std::nullopt);
    desk.open(pump);
    QVERIFY(!control<QWidget>(&desk.tab, "recoveryBar")->isVisible());

    // Another project must not swallow what was typed here.
    desk.insert(u"typed "_s);
    desk.tab.setProjectName({});
    desk.tab.setProjectName(sample.name);
    desk.open(pump);
    QVERIFY(control<QWidget>(&desk.tab, "recoveryBar")->isVisible());
    click(&desk.tab, "cmdDiscardRecovered");
    QVERIFY(
        !sample.world.files.fileExists(sample.folder + u"_Backup\\Recovered\\Book_PUMP\\a.htm"_s));
}

void tst_controls::followsLinksOfThePreview()
{
    SampleProject sample;
    const TocBook pump = sample.addBook(
        u"Pump"_s, u"PUMP"_s, {{u"a.htm"_s, "<p>Text &uuml;</p>"}, {u"b.htm"_s, "<p>Second</p>"}});
    Desk desk(sample);
    desk.open(pump);
    auto *tabs = control<QTabWidget>(&desk.tab, "tabDetails");
    tabs->setCurrentIndex(3);
    auto *preview = control<QTextBrowser>(&desk.tab, "preview");
    QCOMPARE(preview->toPlainText(), u"Text \u00fc"_s);
    Q_EMIT preview->anchorClicked(QUrl(u"../book_pump/B.htm"_s));
    QCOMPARE(desk.session.currentPage(), u"P0002"_s);
    QCOMPARE(tabs->currentIndex(), 3);
    QCOMPARE(preview->toPlainText(), u"Second"_s);
    Q_EMIT preview->anchorClicked(QUrl(u"c.htm"_s));
    QVERIFY(
        sample.world.messages.shown.last().startsWith(u"No book of this project lists the page"_s));
}

void tst_controls::deletesABook()
{
    SampleProject sample;
    const TocBook pump = sample.addBook(u"Pump"_s, u"PUMP"_s, {{u"a.htm"_s, "a"}});
    const TocBook valve = sample.addBook(u"Valve"_s, u"VALVE"_s, {{u"a.htm"_s, "a"}});
    TestProgram &world = sample.world;
    Desk desk(sample);
    QSignalSpy deleted(&desk.tab, &ctlBooksTab::OnDeleteBook);
    const auto askToDelete = [&](const TocBook &book) {
        desk.session.select(book);
        click(&desk.tab, "cmdDeleteBook");
        return desk.tab.findChild<DeleteBookDialog *>();
    };

    QPointer dialog = askToDelete(pump);
    QCOMPARE(control<QListWidget>(dialog, "lstPages")->item(0)->text(), u"a (a.htm)"_s);
    dialog->reject();
    QTRY_VERIFY(!dialog);
    QCOMPARE(desk.listed().size(), 2);
    QCOMPARE(deleted.size(), 0);

    dialog = askToDelete(pump);
    click(dialog, "cmdDelete"); // the entry only, as proposed
    QTRY_VERIFY(!dialog);
    QCOMPARE(desk.listed(), QList{valve});
    QVERIFY(world.files.fileExists(sample.folder + u"Book_PUMP\\a.htm"_s));
    QCOMPARE(deleted, (QList<QVariantList>{{true}}));
    QVERIFY(!desk.session.currentBook());

    world.files.setAttributes(sample.folder + u"Book_VALVE\\a.htm"_s, ReadOnlyFile);
    dialog = askToDelete(valve);
    control<QRadioButton>(dialog, "optAlsoFiles")->click();
    click(dialog, "cmdDelete");
    QTRY_VERIFY(!dialog);
    QVERIFY(desk.listed().isEmpty());
    QVERIFY(!world.files.exists(sample.folder + u"Book_VALVE"_s));
    QCOMPARE(deleted.size(), 2);
    QCOMPARE(desk.books()->count(), 0);
    QCOMPARE(world.messages.shown, QStringList());
}

void tst_controls::deletesTheTwinThatIsMeant()
{
    SampleProject sample;
    sample.addBook(u"Pump"_s, u"PUMP"_s, {{u"a.htm"_s, "a"}});
    sample.addBook(u"Twin"_s, u"TWIN"_s, {{u"b.htm"_s, "b"}});
    QString list = decodePage(sample.world.bytes(sample.folder + ProjectFile::toc), {}).text;
    list.replace(u">Twin<"_s, u">Pump<"_s).replace(u">TWIN<"_s, u">PUMP<"_s);
    sample.world.put(sample.folder + ProjectFile::toc, utf16Bytes(list));
    Desk desk(sample);
    desk.books()->setCurrentRow(1);
    QCOMPARE(desk.pages()->topLevelItem(0)->text(1), u"b.htm"_s);
    click(&desk.tab, "cmdDeleteBook");
    auto *dialog = desk.tab.findChild<DeleteBookDialog *>();
    QCOMPARE(control<QListWidget>(dialog, "lstPages")->item(0)->text(), u"b (b.htm)"_s);
    control<QRadioButton>(dialog, "optAlsoFiles")->click();
    click(dialog, "cmdDelete");
    QCOMPARE(desk.listed().size(), 1);
    QCOMPARE(desk.listed().first().folder, u"Book_PUMP"_s);
    QVERIFY(sample.world.files.fileExists(sample.folder + u"Book_PUMP\\a.htm"_s));
    QVERIFY(!sample.world.files.exists(sample.folder + u"Book_TWIN"_s));
}

void tst_controls::deletesNoFolderThatIsNotTheBooksOwn()
{
    SampleProject sample;
    TocBook inner = sample.addBook(u"Pump"_s, u"PUMP"_s);
    TableOfContents toc(sample.world.session, sample.world.files);
    sample.world.files.makeFolder(sample.folder + u"Real"_s);
    const bool isLinked =
        here::link(sample.world.native(u"Docs"_s), sample.world.native(u"Docs/Plant 300/Link"_s));
    QList<TocBook> refused{inner};
    for (const QString &folder : {u"Book_PUMP\\Sub"_s, u"."_s, u""_s, u"S:\\Docs"_s,
                                  u"..\\Plant 300\\Book_PUMP"_s, u"Link\\Plant 300"_s}) {
        if (folder.startsWith(u"Link"_s) && !isLinked)
            continue;
        const QString name = u"in "_s + folder;
        refused.append({name, name, sample.name, folder, u"Book.xml"_s, {}, {}});
        toc.addBook(sample.name, refused.last());
    }
    Desk desk(sample);
    for (const TocBook &book : refused) {
        Q_EMIT desk.session.requested(
            {.action = ProjectRequest::Action::Delete,
             .node = {.kind = ProjectRequest::Node::Kind::Book, .book = book}});
        QPointer dialog = desk.tab.findChild<DeleteBookDialog *>();
        QVERIFY2(!isEnabled(dialog, "optAlsoFiles"), qPrintable(book.name));
        dialog->reject();
        QTRY_VERIFY(!dialog);
    }
    QVERIFY(sample.world.files.fileExists(sample.folder + u"Book_PUMP\\Book_PUMP.xml"_s));
}

void tst_controls::addsSourceFiles()
{
    SampleProject sample;
    const TocBook pump = sample.addBook(u"Pump"_s, u"PUMP"_s);
    TestProgram &world = sample.world;
    world.put(u"S:\\Source\\start.htm"_s, "<title>Start</title><img src=\"dot.png\">");
    world.put(u"S:\\Source\\dot.png"_s, "PNG");
    Desk desk(sample);
    desk.session.select(pump);
    QSignalSpy added(&desk.tab, &ctlBooksTab::OnAddSourceFiles);
    world.dialogs.paths = {u"S:\\Source"_s};
    control<QAction>(&desk.tab, "mnuAddFolder")->trigger();
    QPointer list = desk.tab.findChild<AddSourceFilesDialog *>();
    QVERIFY(list);
    QCOMPARE(added.size(), 0);
    list->accept();
    QTRY_VERIFY(!list);

    QCOMPARE(added, (QList<QVariantList>{{true}}));
    QCOMPARE(world.bytes(sample.folder + u"Book_PUMP\\dot.png"_s), "PNG");
    QCOMPARE(desk.pages()->topLevelItemCount(), 1);
    QCOMPARE(desk.pages()->topLevelItem(0)->text(0), u"Start"_s);
    QCOMPARE(desk.pages()->topLevelItem(0)->text(3), QString());
    desk.pages()->setCurrentItem(desk.pages()->topLevelItem(0));
    QVERIFY(desk.source()->toPlainText().startsWith(u"<title>Start"_s));
}

// Every command is undone in the end: the book file is then what it was, byte for byte.
void tst_controls::editsTheOutline()
{
    SampleProject sample;
    const TocBook pump = sample.addBook(
        u"Pump"_s, u"PUMP"_s, {{u"b10.htm"_s, "b10"}, {u"b9.htm"_s, "b9"}, {u"a.htm"_s, "a"}});
    const QString file = sample.folder + u"Book_PUMP\\Book_PUMP.xml"_s;
    const QByteArray before = sample.world.bytes(file);
    Desk desk(sample);
    QSignalSpy changed(&desk.tab, &ctlBooksTab::pagesChanged);
    desk.open(pump);
    const auto press = [&](Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        desk.pages()->setFocus();
        QTest::keyClick(desk.pages(), key, modifiers);
    };
    press(Qt::Key_Down, Qt::AltModifier);
    QCOMPARE(desk.outline(), u"b9 b10 a"_s);
    press(Qt::Key_Right, Qt::AltModifier);
    QCOMPARE(desk.outline(), u"b9(b10) a"_s);
    press(Qt::Key_Left, Qt::AltModifier);
    QCOMPARE(desk.outline(), u"b9 b10 a"_s);
    control<QAction>(&desk.tab, "mnuSortBook")->trigger();
    QCOMPARE(desk.outline(), u"a b9 b10"_s);
    QCOMPARE(desk.session.currentPage(), u"P0001"_s);
    QCOMPARE(desk.pages()->currentItem()->text(0), u"b10"_s);

    press(Qt::Key_F2);
    auto *title = control<QLineEdit>(&desk.tab, "txtPageTitle");
    title->selectAll();
    QTest::keyClick(title, Qt::Key_Delete);
    QCOMPARE(desk.text("lblBookProblem"), u"\u26A0 Enter a title."_s);
    QTest::keyClicks(title, u"Ten"_s);
    QTest::keyClick(title, Qt::Key_Return);
    QTRY_COMPARE(desk.outline(), u"a b9 Ten"_s);

    press(Qt::Key_Insert);
    auto *dialog = desk.tab.findChild<QDialog *>(u"NewPageDialog"_s);
    desk.enter(dialog, "txtNewPageTitle", u"B9"_s);
    QCOMPARE(control<QLineEdit>(dialog, "txtNewPageFile")->text(), u"b9-2.htm"_s);
    desk.enter(dialog, "txtNewPageFile", u"B10.HTM"_s);
    QCOMPARE(control<QLabel>(dialog, "txtNewPageFileSays")->text(),
             u"\u26A0 There is a file \"B10.HTM\" in the book already."_s);
    desk.enter(dialog, "txtNewPageTitle", u"\u00dcber <uns>"_s);
    desk.enter(dialog, "txtNewPageFile", u"uns.htm"_s);
    control<QComboBox>(dialog, "cboPagePlace")->setCurrentIndex(2);
    click(dialog, "cmdCreatePage");
    QCOMPARE(desk.outline(), u"a b9 Ten(\u00dcber <uns>)"_s);
    QCOMPARE(desk.session.currentPage(), u"P0004"_s);
    const QByteArray page = sample.world.bytes(sample.folder + u"Book_PUMP\\uns.htm"_s);
    QVERIFY(page.contains("<html lang=\"en\">"));
    QVERIFY(page.contains("<title>\xc3\x9c"
                          "ber &lt;uns&gt;</title>"));
    QVERIFY(page.contains("<meta charset=\"utf-8\">"));

    QCOMPARE(changed.size(), 6);
    QCOMPARE(desk.session.history().undoName(), u"Add page \u00dcber <uns>"_s);
    while (desk.session.history().canUndo())
        desk.session.undo();
    QCOMPARE(sample.world.bytes(file), before);
    QCOMPARE(desk.outline(), u"b10 b9 a"_s);
    QVERIFY(!sample.world.files.exists(sample.folder + u"Book_PUMP\\uns.htm"_s));
    QCOMPARE(desk.session.currentPage(), QString());
    QCOMPARE(sample.world.messages.shown, QStringList());
}

void tst_controls::dragsPages()
{
    SampleProject sample;
    const TocBook pump = sample.addBook(u"Pump"_s, u"PUMP"_s,
                                        {{u"a.htm"_s, "a"}, {u"b.htm"_s, "b"}, {u"c.htm"_s, "c"}});
    Desk desk(sample);
    desk.open(pump);
    const auto drag = [&](const QList<int> &rows, QPoint to) {
        desk.pages()->clearSelection();
        for (const int row : rows)
            desk.pages()->topLevelItem(row)->setSelected(true);
        QModelIndexList indexes = desk.pages()->selectionModel()->selectedRows();
        const std::unique_ptr<QMimeData> mime(desk.pages()->model()->mimeData(indexes));
        QDragEnterEvent enter(to, Qt::MoveAction, mime.get(), Qt::LeftButton, {});
        QApplication::sendEvent(desk.pages()->viewport(), &enter);
        QDropEvent drop(to, Qt::MoveAction, mime.get(), Qt::LeftButton, {});
        QApplication::sendEvent(desk.pages()->viewport(), &drop);
        QCoreApplication::processEvents();
    };
    const auto rowOf = [&](int row) {
        return desk.pages()->visualItemRect(desk.pages()->topLevelItem(row));
    };
    drag({0, 1}, {5, desk.pages()->viewport()->height() - 2});
    QCOMPARE(desk.outline(), u"c a b"_s);
    drag({2}, rowOf(0).center());
    QCOMPARE(desk.outline(), u"c(b) a"_s);
    drag({1}, {rowOf(0).left() + 5, rowOf(0).top() + 1});
    QCOMPARE(desk.outline(), u"a c(b)"_s);
    drag({1}, desk.pages()->visualItemRect(desk.pages()->topLevelItem(1)->child(0)).center());
    QCOMPARE(desk.outline(), u"a c(b)"_s);
    QCOMPARE(sample.world.messages.shown,
             QStringList{u"A page cannot be moved to below itself."_s});
}

void tst_controls::deletesPagesAndBringsThemBack()
{
    SampleProject sample;
    const TocBook pump = sample.addBook(u"Pump"_s, u"PUMP"_s,
                                        {{u"a.htm"_s, "a"}, {u"b.htm"_s, "b"}, {u"c.htm"_s, "c"}});
    sample.addBook(u"Valve"_s, u"VALVE"_s, {{u"v.htm"_s, "<a href='../Book_PUMP/b.htm'>b</a>"}});
    sample.addQuickNav(u"PUMP"_s);
    const QString folder = sample.folder + u"Book_PUMP\\"_s;
    Desk desk(sample);
    desk.open(pump);
    const QByteArray before = sample.world.bytes(folder + u"Book_PUMP.xml"_s);
    desk.pages()->topLevelItem(1)->setSelected(true);
    desk.pages()->setFocus();
    QTest::keyClick(desk.pages(), Qt::Key_Delete);
    QPointer dialog = desk.tab.findChild<QDialog *>(u"DeletePagesDialog"_s);
    QVERIFY(dialog);
    QCOMPARE(textsIn(control<QListWidget>(dialog, "lstPages")->model()),
             (QStringList{u"a (a.htm)"_s, u"b (b.htm)"_s}));
    QCOMPARE(textsIn(control<QListWidget>(dialog, "lstUses")->model()),
             (QStringList{u"Quick navigation: The view > The group > The topic > The category"_s,
                          u"Book_VALVE\\v.htm, line 1"_s}));
    click(dialog, "cmdDeletePages");
    QTRY_VERIFY(!dialog);
    QCOMPARE(desk.outline(), u"c"_s);
    QCOMPARE(desk.session.currentPage(), u"P0003"_s);
    QVERIFY(!sample.world.files.exists(folder + u"a.htm"_s));
    QCOMPARE(desk.session.history().undoName(), u"Delete 2 pages"_s);

    desk.session.undo();
    QCOMPARE(desk.outline(), u"a b c"_s);
    QCOMPARE(sample.world.bytes(folder + u"b.htm"_s), "b");
    QCOMPARE(sample.world.bytes(folder + u"Book_PUMP.xml"_s), before);
    QCOMPARE(desk.pages()->topLevelItem(0)->text(3), QString());
    desk.session.redo();
    QCOMPARE(desk.outline(), u"c"_s);
    QCOMPARE(sample.world.messages.shown, QStringList());
}

void tst_controls::givesPagesIdsAndKeyWords()
{
    SampleProject sample;
    const TocBook pump = sample.addBook(u"Pump"_s, u"PUMP"_s, {{u"a.htm"_s, "<h1>Oil</h1>"}});
    const TocBook valve = sample.addBook(u"Valve"_s, u"VALVE"_s, {{u"v.htm"_s, "v"}});
    Desk desk(sample);
    auto *tabs = control<QTabWidget>(&desk.tab, "tabDetails");
    desk.open(pump);
    tabs->setCurrentIndex(1);
    click(&desk.tab, "cmdAddContextId");
    desk.open(valve);
    click(&desk.tab, "cmdAddContextId");
    QCOMPARE(desk.file(valve).pages.first().contextIds, (QList<ContextId>{{u"IDH_V"_s, u"2"_s}}));
    auto *ids = control<QTreeWidget>(&desk.tab, "tvwContextIds");
    ids->editItem(ids->topLevelItem(0), 1);
    auto *cell = control<QLineEdit>(&desk.tab, "txtContextId");
    cell->selectAll();
    QTest::keyClicks(cell, u"01"_s);
    QCOMPARE(desk.text("lblContextSays"), u"\u26A0 The number 1 is taken in this project."_s);
    QTest::keyClicks(cell, u"0"_s);
    QTest::keyClick(cell, Qt::Key_Return);
    QTRY_COMPARE(desk.file(valve).pages.first().contextIds.first().number, u"10"_s);
    desk.enter(&desk.tab, "txtLinkId", u"valve-1"_s);
    QTest::keyClick(control<QLineEdit>(&desk.tab, "txtLinkId"), Qt::Key_Return);
    QCOMPARE(desk.file(valve).pages.first().linkIds, QStringList{u"valve-1"_s});

    tabs->setCurrentIndex(5);
    const auto enter = [&](const char *field, const QString &text) {
        desk.enter(&desk.tab, field, text);
        QTest::keyClick(control<QLineEdit>(&desk.tab, field), Qt::Key_Return);
    };
    const auto keyWords = [&] {
        QStringList lines;
        for (const KeyWord &keyWord :
             readKeyWords(sample.world.session, sample.world.files, sample.name)) {
            QString line = keyWord.origin + u' ' + keyWord.text;
            for (const KeyWord::Page &page : keyWord.pages)
                line += u' ' + page.book + page.page;
            lines.append(line + u' ' + keyWord.synonyms.join(u'+'));
        }
        return lines;
    };
    enter("txtKeyWord", u"Oil change"_s);
    enter("txtKeyWord", u"oil CHANGE"_s);
    QCOMPARE(desk.text("txtKeyWordSays"), u"\u26A0 \"oil CHANGE\" is in the list already."_s);
    enter("txtSynonym", u"Lubrication"_s);
    desk.open(pump);
    desk.session.pages().current();
    tabs->setCurrentIndex(5);
    QCOMPARE(textsIn(control<QListWidget>(&desk.tab, "lstSuggestions")->model()),
             QStringList{u"Oil"_s});
    enter("txtKeyWord", u"oil change"_s);
    QCOMPARE(desk.file(pump).pages.first().keyWords, QStringList{u"Oil change"_s});
    QCOMPARE(keyWords(), QStringList{u"Author Oil change VALVEP0001 PUMPP0001 Lubrication"_s});
    click(&desk.tab, "cmdRemoveKeyWord");
    QCOMPARE(keyWords(), QStringList{u"Author Oil change VALVEP0001 Lubrication"_s});
    desk.open(valve);
    click(&desk.tab, "cmdRemoveKeyWord");
    QCOMPARE(keyWords(), QStringList());
    desk.session.undo();
    QCOMPARE(keyWords(), QStringList{u"Author Oil change VALVEP0001 Lubrication"_s});
    QCOMPARE(textsIn(control<QListWidget>(&desk.tab, "lstKeyWord")->model()),
             QStringList{u"Oil change"_s});
    QCOMPARE(sample.world.messages.shown, QStringList());
}

void tst_controls::carriesTheAcronymAlong()
{
    SampleProject sample;
    const TocBook pump = sample.addBook(u"Pump"_s, u"PUMP"_s, {{u"a.htm"_s, "a"}});
    sample.addBook(u"Valve"_s, u"VALVE"_s);
    sample.addQuickNav(u"PUMP"_s);
    Desk desk(sample);
    desk.open(pump);
    KeyWordCommands(desk.session).add(pump, u"P0001"_s, u"Oil"_s);
    control<QTabWidget>(&desk.tab, "tabDetails")->setCurrentIndex(0);
    desk.enter(&desk.tab, "txtAcro", u"PMP"_s);
    QTest::keyClick(control<QLineEdit>(&desk.tab, "txtAcro"), Qt::Key_Return);

    Session &values = sample.world.session;
    const auto bookOfKeyWord = [&] {
        return readKeyWords(values, sample.world.files, sample.name).first().pages.first().book;
    };
    const auto bookOfLink = [&] {
        const QuickNav quickNav = readQuickNav(values, sample.world.files, sample.name);
        return quickNav.views[0].children[0].children[0].children[0].links[0].book;
    };
    QCOMPARE(desk.session.currentBook()->acronym, u"PMP"_s);
    QCOMPARE(desk.session.currentPage(), u"P0001"_s);
    QCOMPARE(bookOfKeyWord(), u"PMP"_s);
    QCOMPARE(bookOfLink(), u"PMP"_s);
    desk.books()->setFocus();
    QTest::keyClick(desk.books(), Qt::Key_Down, Qt::AltModifier);
    QCOMPARE(desk.listed().last().acronym, u"PMP"_s);
    QCOMPARE(desk.books()->currentRow(), 1);
    desk.session.undo();
    desk.session.undo();
    QCOMPARE(desk.listed().first(), pump);
    QCOMPARE(bookOfKeyWord(), u"PUMP"_s);
    QCOMPARE(bookOfLink(), u"PUMP"_s);
    QCOMPARE(desk.session.currentBook(), std::optional(pump));
    QCOMPARE(sample.world.messages.shown, QStringList());
}

void tst_controls::saysWhatIsWrongWithABook()
{
    SampleProject sample;
    TestProgram &world = sample.world;
    const TocBook pump =
        sample.addBook(u"Pump"_s, u"PUMP"_s, {{u"a.htm"_s, "a"}, {u"b.htm"_s, "b"}});
    TableOfContents toc(world.session, world.files);
    const TocBook gone{u"Gone"_s,          u"GONE"_s, sample.name, u"Book_GONE"_s,
                       u"Book_GONE.xml"_s, {},        {}};
    const TocBook outside{u"Outside"_s, u"OUT"_s, sample.name, u"..\\Other"_s, u"B.xml"_s, {}, {}};
    toc.addBook(sample.name, gone);
    toc.addBook(sample.name, outside);
    world.files.removeFile(sample.folder + u"Book_PUMP\\b.htm"_s);
    Desk desk(sample);

    desk.session.select(pump);
    QCOMPARE(desk.pages()->topLevelItem(0)->text(3), QString());
    QCOMPARE(desk.pages()->topLevelItem(1)->text(3), u"file missing"_s);
    desk.pages()->setCurrentItem(desk.pages()->topLevelItem(1));
    QVERIFY(desk.text("lblPageProblem").contains(u"b.htm"_s));

    desk.session.select(outside);
    QVERIFY(desk.text("lblBookProblem").contains(u"..\\Other"_s));
    QVERIFY(!control<QWidget>(&desk.tab, "cmdRemedy")->isVisible());
    QVERIFY(!isEnabled(&desk.tab, "cmdAddSourceFiles"));

    desk.session.select(gone);
    QVERIFY(desk.text("lblBookProblem").contains(u"Book_GONE"_s));
    click(&desk.tab, "cmdRemedy");
    QCOMPARE(desk.text("lblBookProblem"), QString());
    QCOMPARE(desk.file(gone).name, u"Gone"_s);
    QVERIFY(isEnabled(&desk.tab, "cmdAddSourceFiles"));
}

void tst_controls::showsGlobalsAndQuickNavigation()
{
    SampleProject sample;
    sample.addBook(u"Pump"_s, u"PUMP"_s, {{u"a.htm"_s, "a"}});
    sample.addGlobals();
    sample.addQuickNav(u"PUMP"_s);
    ProjectSession session(sample.world.program);
    ctlGlobalsTab globals(session);
    ctlQuickNav quickNav(session);
    globals.setProjectName(sample.name);

    QCOMPARE(control<QLabel>(&globals, "lblBooks")->text(), u"1"_s);
    auto *tabs = control<QTabWidget>(&globals, "tabGlobals");
    for (const int page : {1, 2, 0}) // each is made when it is first shown
        tabs->setCurrentIndex(page);
    auto *pages = control<QTreeWidget>(&globals, "tvwGlobalPages");
    QCOMPARE(pages->topLevelItem(1)->text(3), u"file missing"_s);
    globals.setGlobalPageName(u"welcome"_s);
    QCOMPARE(tabs->currentIndex(), 1);
    QCOMPARE(control<QTextBrowser>(&globals, "globalPreview")->toPlainText(), u"Welcome"_s);
    auto *categories = control<QTreeWidget>(&globals, "tvwDefaultCategories");
    QCOMPARE(categories->topLevelItem(1)->text(0), u"Repair"_s);

    QString names[]{sample.name, u"The view"_s, u"The group"_s, u"The topic"_s, u"The category"_s};
    int level = 4;
    quickNav.LoadQuickNavInfo(names[0], names[1], names[2], names[3], names[4], level);
    auto *links = control<QTreeWidget>(&quickNav, "tvwLinks");
    QCOMPARE(links->topLevelItemCount(), 2);
    QCOMPARE(links->topLevelItem(0)->text(0), u"To P0001"_s);
    QCOMPARE(links->topLevelItem(1)->text(4), u"\u26A0 no such page"_s);
    quickNav.ResetQuickNavView();
    QCOMPARE(links->topLevelItemCount(), 0);

    // One broken file takes nothing else with it.
    sample.world.put(sample.folder + u"_Global Information\\Book_Global.xml"_s, "no XML");
    session.reread();
    QVERIFY(control<QLabel>(&globals, "lblPagesProblem")->text().contains(u"Book_Global.xml"_s));
    QCOMPARE(categories->topLevelItemCount(), 2);
}

QV_FORM_TEST_MAIN(tst_controls)
#include "tst_controls.moc"
