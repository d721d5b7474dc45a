#include "components/RegistryAccessComponent.h"
#include "controls/build/BuiltProject.h"
#include "indexmanager/frmIndexManager.h"
#include "platform/native/NativePlatform.h"
#include "reports/LinkReport.h"
#include "startup/frmProgBar.h"
#include "support/Audit.h"
#include "support/FormDriver.h"
#include "support/LinkFile.h"
#include "support/SampleProject.h"

using namespace Qt::StringLiterals;

namespace {

/// The sets "Plant 300" and "Harbour" with a book each, and the index manager in front of them.
struct Installation
{
    SampleProject plant;
    TestProgram &world = plant.world;
    ProjectFiles harbour{world, u"Harbour"_s};
    QPointer<frmIndexManager> window;

    Installation()
    {
        QSettings::setDefaultFormat(QSettings::IniFormat);
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, world.folder.path());
        world.files.makeFolder(withoutBackslash(harbour.folder));
        TableOfContents(world.session, world.files)
            .CreateQVTOCFile(harbour.folder + ProjectFile::toc);
        world.list(plant.name);
        world.list(harbour.name);
        plant.addBook(
            u"Pumps"_s, u"PUMP"_s,
            {{u"start.htm"_s, R"(<p id="top"><a id="top10" data-qv-ibd="PUMP10">10</a>)"},
             {u"second.htm"_s, R"(<a href="start.htm#top">up</a> <a href="#x">here</a>)"}});
        harbour.addBook(
            u"Quays"_s, u"QUAY"_s,
            {{u"quay.htm"_s, R"(<a href="qvlink:PUMP10">p</a> <a href="qvlink:NO">n</a>)"}});
    }
    ~Installation() { delete window; }

    void links(const ProjectFiles &set, const QString &targets, const QString &references = {})
    {
        world.put(set.folder + ProjectFile::links,
                  xmlFile(u"<LINKS><IBD>%1</IBD><IBS>%2</IBS></LINKS>"_s.arg(targets, references)));
    }
    void open(int page = 0)
    {
        window = new frmIndexManager(world.program);
        window->show();
        window->activateWindow();
        [[maybe_unused]] const bool isActive = QTest::qWaitForWindowActive(window);
        goTo(page);
    }
    void goTo(int page)
    {
        control<QTabWidget>(window, "tabPages")->setCurrentIndex(page);
        QCoreApplication::processEvents();
    }
    /// A progress window was in front of it.
    void toFront()
    {
        window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window));
    }
    void pressF5()
    {
        toFront();
        QTest::keyClick(window, Qt::Key_F5);
    }
    void choose(const char *box, const QString &start)
    {
        auto *const choices = control<QComboBox>(window, box);
        choices->setCurrentIndex(choices->findText(start, Qt::MatchStartsWith));
    }
    /// What a list shows, its columns separated by "|".
    QStringList rows(const char *list) const
    {
        const QAbstractItemModel *const model = control<QAbstractItemView>(window, list)->model();
        QStringList rows;
        for (int row = 0; row < model->rowCount(); ++row) {
            QStringList texts;
            for (int column = 0; column < model->columnCount(); ++column)
                texts.append(model->index(row, column).data().toString());
            rows.append(texts.join(u'|'));
        }
        return rows;
    }
    /// Whether one of the labels says this.
    bool shows(const QString &text) const
    {
        const auto labels = window->findChildren<QLabel *>();
        return std::any_of(labels.cbegin(), labels.cend(),
                           [&](const QLabel *label) { return label->text() == text; });
    }
    QStringList states() const
    {
        return rows("lstSets").replaceInStrings(QRegularExpression(u"^([^|]*\\|[^|]*)\\|.*$"_s),
                                                u"\\1"_s);
    }
    QList<Qt::CheckState> ticks() const
    {
        const QAbstractItemModel *const model =
            control<QAbstractItemView>(window, "lstMoved")->model();
        QList<Qt::CheckState> ticks;
        for (int row = 0; row < model->rowCount(); ++row)
            ticks.append(model->index(row, 0).data(Qt::CheckStateRole).value<Qt::CheckState>());
        return ticks;
    }
};

} // namespace

class tst_indexmanager final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { audit::startReading(); }
    void showsHowEachIdentifierStands();
    void tellsGoodAndBadAsTheLinkReport();
    void findsWhoLinksHere();
    void scansStaleSetsAgain();
    void repairsWhatMoved();
    void stopsItsWorkAndClosesWhenAsked();
    void isFoundRaisedAndClosedByOthers();
};

void tst_indexmanager::showsHowEachIdentifierStands()
{
    Installation there;
    const QString start = u"Plant 300\\Book_PUMP\\start.htm"_s;
    const QString quay = u"Harbour/Book_QUAY/quay.htm"_s;
    there.links(there.plant, linkTarget(u"PUMP10"_s, start + u"#top10"_s)
                                 + linkTarget(u"pump2"_s, u"Plant 300\\gone.htm"_s)
                                 + linkTarget(u"TWICE"_s, start) + linkTarget(u"IDLE"_s, start));
    there.links(there.harbour, linkTarget(u"TWICE"_s, quay),
                linkReference(u"PUMP10"_s, quay) + linkReference(u"NO"_s, quay)
                    + linkReference(u"NO"_s, quay) + linkReference(u"pump2"_s, quay));
    there.open();
    const QString idle = u"IDLE|Never used|Plant 300|Book_PUMP\\start.htm|0"_s;
    const QString no = u"NO|Not published|||2"_s;
    const QString missing = u"pump2|Page missing|Plant 300|gone.htm|1"_s;
    const QString good = u"PUMP10|Good|Plant 300|Book_PUMP\\start.htm#top10|1"_s;
    const QString twice = u"TWICE|Published twice|Plant 300|Book_PUMP\\start.htm|0"_s;
    QCOMPARE(there.rows("lstIdentifiers"), QStringList({idle, no, missing, good, twice}));

    auto *const list = control<QTableView>(there.window, "lstIdentifiers");
    list->horizontalHeader()->setSortIndicator(4, Qt::DescendingOrder);
    QCOMPARE(there.rows("lstIdentifiers"), QStringList({no, missing, good, idle, twice}));
    there.choose("cboState", u"Page missing"_s);
    QCOMPARE(there.rows("lstIdentifiers"), QStringList({missing}));
    there.choose("cboState", u"All"_s);
    list->setFocus();
    QTest::keyClicks(list, u"quay"_s); // goes to the filter
    QCOMPARE(there.rows("lstIdentifiers"), QStringList({no, twice}));
    list->selectRow(1);
    QCOMPARE(there.rows("lstPlaces"), QStringList({u"Published|Plant 300|Book_PUMP\\start.htm"_s,
                                                   u"Published|Harbour|Book_QUAY\\quay.htm"_s}));
    there.toFront();
    list->setFocus();
    QTest::keyClick(list, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QGuiApplication::clipboard()->text(), QString(twice).replace(u'|', u'\t'));
    QTest::keyClick(list, Qt::Key_Return);
    QCOMPARE(there.world.processes.opened, QStringList({u"S:\\Docs\\"_s + start}));
    auto *const filter = control<QLineEdit>(there.window, "txtFilter");
    filter->setFocus();
    QTest::keyClick(filter, Qt::Key_Escape);
    QCOMPARE(there.rows("lstIdentifiers"), QStringList({no, missing, good, idle, twice}));

    // What the author looked at is still there when other link files were read.
    list->selectRow(1);
    there.world.put(there.harbour.folder + ProjectFile::links, "no link file");
    there.pressF5();
    const QStringList left = QStringList({idle, missing, good, twice})
                                 .replaceInStrings(u"|1"_s, u"|0"_s)
                                 .replaceInStrings(u"Good"_s, u"Never used"_s)
                                 .replaceInStrings(u"Published twice"_s, u"Never used"_s);
    QCOMPARE(there.rows("lstIdentifiers"), left);
    QCOMPARE(list->currentIndex().row(), 1);
    QVERIFY(there.shows(u"4 identifiers · 2 sets · 1 set could not be read (see Sets)"_s));
    there.toFront();
    list->selectAll();
    list->setFocus();
    QTest::keyClick(list, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QGuiApplication::clipboard()->text(), left.join(u'\n').replace(u'|', u'\t'));
    QTest::keyClick(list, Qt::Key_F1);
    QCOMPARE(there.world.processes.started,
             QStringList{u"C:\\Client\\Bin\\StartApp.exe|QVT@qv@qvdev_ug@qv@Index manager"_s});

    for (int page = 0; page < 4; ++page) {
        there.goTo(page);
        QCOMPARE(audit::findingsIn(there.window), QStringList());
    }
    QCOMPARE(there.world.messages.shown, QStringList());
}

void tst_indexmanager::tellsGoodAndBadAsTheLinkReport()
{
    Installation there;
    const QString start = u"Plant 300\\Book_PUMP\\start.htm"_s;
    const QString quay = u"Harbour\\Book_QUAY\\quay.htm"_s;
    there.world.put(there.plant.folder + u"a#b.htm"_s, "<p>b</p>");
    const auto asked = [&](const QString &id) { return linkReference(id, quay); };
    const QString odd =
        u"<ID><LinkIDSourceFile>%1</LinkIDSourceFile><LinkID>ODD</LinkID></ID>"_s.arg(start);
    there.links(there.plant, odd + linkTarget(u"FIRST"_s, u"Plant 300\\gone.htm"_s)
                                 + linkTarget(u"SAME"_s, start)
                                 + linkTarget(u"HASH"_s, u"Plant 300\\a#b.htm"_s));
    there.links(there.harbour,
                linkTarget(u"FIRST"_s, quay)
                    + linkTarget(u"SAME"_s, QString(start).toUpper().replace(u'\\', u'/')),
                asked(u"FIRST"_s) + asked(u"SAME"_s) + asked(u"HASH"_s) + asked(u"ODD"_s)
                    + asked(u"NO"_s));
    there.open();
    QCOMPARE(there.rows("lstIdentifiers").replaceInStrings(QRegularExpression(u"\\|[^|]*$"_s), {}),
             QStringList({u"(no identifier)|Never used|Plant 300|Book_PUMP\\start.htm"_s,
                          u"FIRST|Page missing|Plant 300|gone.htm"_s,
                          u"HASH|Good|Plant 300|a#b.htm"_s, u"NO|Not published||"_s,
                          u"ODD|Good||"_s, u"SAME|Good|Plant 300|Book_PUMP\\start.htm"_s}));

    LinkReport report(there.world.program);
    const LinkEntries links = report.GetIBS_Details({});
    QStringList dead;
    for (qsizetype link = 0; link < links.count(); ++link) {
        if (!links.isGood(link))
            dead.append(links.identifier(link));
    }
    QCOMPARE(dead, QStringList({u"FIRST"_s, u"NO"_s}));
    auto *const list = control<QTableView>(there.window, "lstIdentifiers");
    list->selectRow(1);
    QCOMPARE(there.rows("lstPlaces").last(), u"Asked for, dead|Harbour|Book_QUAY\\quay.htm"_s);
}

void tst_indexmanager::findsWhoLinksHere()
{
    Installation there;
    const QString inSet = u"Good|Plant 300|Book_PUMP\\second.htm|Book_PUMP\\start.htm#top|"_s;
    const QString byIdentifier =
        u"Good|Harbour|Book_QUAY\\quay.htm|Book_PUMP\\start.htm#top10|PUMP10"_s;
    there.links(there.plant, linkTarget(u"PUMP10"_s, u"Plant 300\\Book_PUMP\\start.htm#top10"_s));
    there.links(there.harbour, {}, linkReference(u"PUMP10"_s, u"Harbour\\Book_QUAY\\quay.htm"_s));
    there.open(1);
    there.choose("cboSet", u"Plant"_s);
    click(there.window, "cmdFindLinks");
    QCOMPARE(there.rows("lstLinks"), QStringList({byIdentifier}));
    there.choose("cboBook", u"Pumps"_s);
    click(there.window, "cmdFindLinks");
    QCOMPARE(there.rows("lstLinks"), QStringList({byIdentifier}));
    there.choose("cboPage", u"start"_s);
    QCOMPARE(there.rows("lstLinks"), QStringList());
    click(there.window, "cmdFindLinks");
    QCOMPARE(there.rows("lstLinks"), QStringList({inSet, byIdentifier}));

    // The list of the linking tool says the same of pages that did not change since.
    there.goTo(2);
    control<QTreeView>(there.window, "lstSets")->selectAll();
    click(there.window, "cmdScan");
    there.goTo(1);
    QCOMPARE(control<QComboBox>(there.window, "cboSet")->currentText(), u"Plant 300"_s);
    there.world.put(there.plant.folder + u"DocToDoc\\DocLinks.xml"_s,
                    there.world.bytes(there.plant.folder + u"DocToDoc\\DocLinks.xml"_s)
                        .replace("s\0e\0c\0o\0n\0d"_ba, "l\0i\0s\0t\0e\0d"_ba));
    there.choose("cboBook", u"Pumps"_s);
    there.choose("cboPage", u"start"_s);
    click(there.window, "cmdFindLinks");
    QCOMPARE(there.rows("lstLinks"),
             QStringList({QString(inSet).replace(u"second"_s, u"listed"_s), byIdentifier}));
}

void tst_indexmanager::scansStaleSetsAgain()
{
    Installation there;
    there.links(there.harbour, {});
    there.open(2);
    QVERIFY(there.shows(u"1 set should be scanned again."_s));
    QCOMPARE(there.states(), QStringList({u"No link file|Plant 300"_s, u"Up to date|Harbour"_s}));
    click(there.window, "cmdSelectStale");
    click(there.window, "cmdScan");
    QCOMPARE(there.states(), QStringList({u"Up to date|Plant 300"_s, u"Up to date|Harbour"_s}));
    QCOMPARE(there.rows("lstSets").first().section(u'|', 3),
             u"1|0|Last scan: 1 link between pages; 1 bad link; 1 published identifier, 0 "
             "references to identifiers."_s);
    const QString links = xmlText(there.world.bytes(there.plant.folder + ProjectFile::links));
    QVERIFY(links.contains(u"<LinkIDSourceFile>Plant 300\\Book_PUMP\\start.htm#top10<"_s));
    const BuiltProject plant(there.world.program, there.plant.name, {});
    QCOMPARE(plant.lights(there.world.program)->at(0), Light::warnings);

    QFile page(there.world.native(u"Docs/Plant 300/Book_PUMP/start.htm"_s));
    QVERIFY(page.open(QFile::ReadWrite));
    QVERIFY(page.setFileTime(QDateTime::currentDateTime().addSecs(60),
                             QFileDevice::FileModificationTime));
    there.pressF5();
    QCOMPARE(there.states().first(), u"Older than its pages|Plant 300"_s);
    QVERIFY(there.rows("lstSets").first().endsWith(u"Changed: Book_PUMP\\start.htm."_s));

    // A page that moves keeps its time.
    QVERIFY(page.setFileTime(QDateTime::currentDateTime().addSecs(-60),
                             QFileDevice::FileModificationTime));
    there.pressF5();
    QCOMPARE(there.states().first(), u"Up to date|Plant 300"_s);
    QTRY_VERIFY(
        QFileInfo(there.world.native(u"Docs/Plant 300/QV_LinkID.xml"_s)).lastModified().addMSecs(50)
        < QDateTime::currentDateTime());
    QVERIFY(page.rename(there.world.native(u"Docs/Plant 300/Book_PUMP/moved.htm"_s)));
    there.pressF5();
    QVERIFY(there.rows("lstSets").first().startsWith(u"Older than its pages|Plant 300"_s));
    QVERIFY(there.rows("lstSets").first().endsWith(u"Changed: Book_PUMP\\."_s));
    there.world.put(there.harbour.folder + ProjectFile::links, "no link file");
    there.pressF5();
    QCOMPARE(there.states().last(), u"Cannot be read|Harbour"_s);
    control<QTreeView>(there.window, "lstSets")->selectAll();
    click(there.window, "cmdScan"); // a file that cannot be read is never written over
    QCOMPARE(there.world.bytes(there.harbour.folder + ProjectFile::links), "no link file");
    QVERIFY(there.rows("lstSets").last().contains(u"Last scan: It failed: "_s));
}

void tst_indexmanager::repairsWhatMoved()
{
    Installation there;
    const QString file = there.plant.folder + ProjectFile::links;
    const auto content = [](const QString &first, const QString &second) {
        return xmlFile(
            u"<LINKS>\n\t<IBD>\n\t\t<ID>\n\t\t\t<LinkID>PUMP10</LinkID>\n"
            "\t\t\t<LinkIDSourceFile>Plant 300\\%1</LinkIDSourceFile>\n\t\t\t<Kept>x</Kept>\n"
            "\t\t</ID>\n\t\t<ID>\n\t\t\t<LinkID>NAMED</LinkID>\n"
            "\t\t\t<LinkIDSourceFile>Plant 300\\%2</LinkIDSourceFile>\n\t\t</ID>\n"
            "\t\t<ID>\n\t\t\t<LinkID>LOST</LinkID>\n"
            "\t\t\t<LinkIDSourceFile>Plant 300\\lost.htm</LinkIDSourceFile>\n\t\t</ID>\n"
            "\t</IBD>\n</LINKS>\n"_s.arg(first, second));
    };
    const QByteArray before = content(u"old.htm"_s, u"Moved\\second.htm#there"_s);
    there.world.put(file, before);
    there.open(3);
    QVERIFY(!isEnabled(there.window, "cmdApply"));
    click(there.window, "cmdFindMoved");
    QCOMPARE(there.rows("lstMoved"),
             QStringList({u"PUMP10|Plant 300|Plant 300\\old.htm|Plant "
                          "300\\Book_PUMP\\start.htm#top10|The only place that publishes the "
                          "identifier"_s,
                          u"NAMED|Plant 300|Plant 300\\Moved\\second.htm#there|Plant "
                          "300\\Book_PUMP\\second.htm#there|The only page of that name"_s}));
    QCOMPARE(there.ticks(), QList({Qt::Checked, Qt::Unchecked}));
    click(there.window, "cmdTickNone");
    QVERIFY(!isEnabled(there.window, "cmdApply"));
    click(there.window, "cmdTickAll");
    QCOMPARE(there.world.bytes(file), before);

    // Another author was quicker: nothing is changed, and what is there now is shown.
    const QByteArray others = content(u"other.htm"_s, u"Moved\\second.htm#there"_s);
    there.world.put(file, others);
    click(there.window, "cmdApply");
    QCOMPARE(there.world.messages.shown.size(), 1);
    QVERIFY(there.world.messages.shown.first().startsWith(
        u"S:\\Docs\\Plant 300\\QV_LinkID.xml no longer says that PUMP10 is published in "_s));
    QCOMPARE(there.world.bytes(file), others);

    // So was one who put the page back.
    const QString back = there.plant.folder + u"other.htm"_s;
    click(there.window, "cmdFindMoved");
    click(there.window, "cmdTickAll");
    there.world.put(back, "<p>back</p>");
    click(there.window, "cmdApply");
    QVERIFY(there.world.messages.shown.last().startsWith(
        u"The page that publishes PUMP10 moved again"_s));
    QCOMPARE(there.world.bytes(file), others);
    there.world.files.removeFile(back);
    there.pressF5();

    click(there.window, "cmdFindMoved");
    click(there.window, "cmdTickAll");
    click(there.window, "cmdApply");
    QVERIFY(there.shows(u"2 new places were written."_s));
    QCOMPARE(there.world.bytes(file),
             content(u"Book_PUMP\\start.htm#top10"_s, u"Book_PUMP\\second.htm#there"_s));
    QCOMPARE(there.world.bytes(there.plant.folder + u"_Backup\\QV_LinkID.xml.1"_s), others);
    QCOMPARE(there.rows("lstMoved"), QStringList());
    there.goTo(0);
    QCOMPARE(there.rows("lstIdentifiers").last(),
             u"PUMP10|Never used|Plant 300|Book_PUMP\\start.htm#top10|0"_s);
}

void tst_indexmanager::stopsItsWorkAndClosesWhenAsked()
{
    Installation there;
    there.open();
    there.window->showMinimized();
    there.window->bringToFront();
    QVERIFY(there.window->isMaximized());

    QTimer::singleShot(200, there.window, &frmIndexManager::closeAsAsked);
    bool isStopped = false;
    try {
        runWithProgress(there.world.program, there.window, u"Long work"_s,
                        [](const Progress &progress) {
                            while (!progress.stop.stop_requested())
                                QThread::msleep(5);
                            progress.step(0, 1);
                        });
    } catch (const Unwinding &) {
        isStopped = bool(there.window); // and it goes only now
    }
    QVERIFY(isStopped);
    QTRY_VERIFY(!there.window);
}

void tst_indexmanager::isFoundRaisedAndClosedByOthers()
{
    const QString className = u"WindowsForms10.Window.8.app3"_s;
    Installation there;
    const QString folder = there.world.folder.path();
    for (const char *const place : {"XDG_RUNTIME_DIR", "QUOVANE_SETTINGS", "QUOVANE_DRIVES"})
        qputenv(place, folder.toUtf8());
    NativeRegistry registry;
    RegistryAccessComponent(registry).SetQVServer(there.world.server);
    const SingleInstance own("tst_indexmanager");
    NativeWindows windows(own);
    {
        const SingleInstance running("QV_IBLIndexMgr");
        const WindowAnnouncer itsWindow(className, u"Nairurda"_s);
        const QSignalSpy raised(&itsWindow, &WindowAnnouncer::raiseRequested);
        QProcess second;
        second.start(QStringLiteral(INDEX_MANAGER_PROGRAM), QStringList());
        QTRY_COMPARE(raised.size(), 1);
        QTRY_COMPARE(second.state(), QProcess::NotRunning);
        QCOMPARE(second.exitCode(), 0);
    }

    QProcess first;
    first.start(QStringLiteral(INDEX_MANAGER_PROGRAM), QStringList());
    QTRY_VERIFY(windows.exists(className, u"Nairurda"_s));
    windows.close(className, u"Nairurda"_s);
    QTRY_COMPARE(first.state(), QProcess::NotRunning);
    QCOMPARE(first.exitStatus(), QProcess::NormalExit);
    QCOMPARE(first.exitCode(), 0);
    QVERIFY(!windows.exists(className, u"Nairurda"_s));
}

QV_FORM_TEST_MAIN(tst_indexmanager)
#include "tst_indexmanager.moc"
