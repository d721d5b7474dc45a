#include "reports/frmIBLReport.h"
#include "support/FormDriver.h"
#include "support/LinkFile.h"
#include "support/TestProgram.h"
#include "support/XmlFile.h"

using namespace Qt::StringLiterals;

namespace {

/// The projects "Plant 300" and "Harbour" with link files, pages good and bad.
void makeLinks(TestProgram &world)
{
    for (const QString &name : {u"Plant 300"_s, u"Harbour"_s})
        world.list(name);
    world.put(u"S:\\Docs\\Plant 300\\a b.htm"_s, "<p>Pump</p>");
    world.put(u"S:\\Docs\\Plant 300\\empty.htm"_s, "");
    world.put(u"S:\\Docs\\Plant 300\\QV_LinkID.xml"_s,
              xmlFile(u"<LINKS><IBD>"_s + linkTarget(u"PUMP10"_s, u"Plant 300/a b.htm#top"_s)
                      + linkTarget(u"pump2"_s, u"Plant 300\\gone.htm"_s)
                      + linkTarget(u"A, \"&lt;B&gt;\""_s, u"Plant 300\\empty.htm"_s)
                      + u"</IBD><IBS>"_s + linkReference(u"PUMP10"_s, u"Plant 300\\a b.htm"_s)
                      + u"</IBS></LINKS>"_s));
    world.put(u"S:\\Docs\\Harbour\\QV_LinkID.xml"_s,
              xmlFile(u"<LINKS><IBD>"_s + linkTarget(u"OUT"_s, u"..\\secret.htm"_s)
                      + u"</IBD><IBS>"_s + linkReference(u"pump2"_s, u"Harbour\\x.htm"_s)
                      + u"</IBS></LINKS>"_s));
}

/// The dialog open in front of a world, and what an author sees and does.
struct Report
{
    TestProgram &world;
    QPointer<frmIBLReport> form = new frmIBLReport(world.program);

    explicit Report(TestProgram &program)
        : world(program)
    {
        form->show();
        form->activateWindow();
        [[maybe_unused]] const bool active = QTest::qWaitForWindowActive(form);
    }
    ~Report() { delete form; }

    QTableView *list() const { return control<QTableView>(form, "LViewReport"); }
    QTabBar *tabs() const { return control<QTabBar>(form, "SSTab"); }
    QString cell(int row, int column, int role = Qt::DisplayRole) const
    {
        return list()->model()->index(row, column).data(role).toString();
    }
    QStringList rows() const
    {
        QStringList rows;
        for (int row = 0; row < list()->model()->rowCount(); ++row)
            rows.append(cell(row, 0) + u'|' + cell(row, 1) + u'|' + cell(row, 2));
        return rows;
    }
    QStringList identifiers() const
    {
        return rows().replaceInStrings(QRegularExpression(u"^.*\\|(.*)\\|.*$"_s), u"\\1"_s);
    }
    QString label(const char *name) const { return control<QLabel>(form, name)->text(); }
    /// What stands over the empty list.
    QString placeholder() const
    {
        const auto *const shown = list()->viewport()->findChild<QLabel *>();
        return shown->isVisible() ? shown->text() : QString();
    }
    void clickTab(int tab)
    {
        QTest::mouseClick(tabs(), Qt::LeftButton, {}, tabs()->tabRect(tab).center());
        QCoreApplication::processEvents();
    }
    void clickTitle(int column)
    {
        QHeaderView *const header = list()->horizontalHeader();
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                          {header->sectionViewportPosition(column) + 20, 8});
    }
    QPoint click(int row)
    {
        const QPoint place = list()->visualRect(list()->model()->index(row, 2)).center();
        QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, place);
        return place;
    }
    void doubleClick(int row)
    {
        QTest::mouseDClick(list()->viewport(), Qt::LeftButton, {}, click(row));
    }
    void filter(const QString &words) { control<QLineEdit>(form, "txtFilter")->setText(words); }
    QByteArray saveAs(const QString &file)
    {
        world.dialogs.paths = {file};
        ::click(form, "cmdSaveAs");
        return world.bytes(file);
    }
};

} // namespace

class tst_iblreport final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }
    void listsBothKinds();
    void saysWhyTheListIsEmpty();
    void generatesTheReportOnce();
    void linksOfAServerWithoutDrive();
    void sortsAndFilters();
    void savesWhatIsShown();
    void opensAndCopies();
};

void tst_iblreport::listsBothKinds()
{
    TestProgram world;
    makeLinks(world);
    Report report(world);
    QCOMPARE(report.form->windowTitle(), "Inter Book Linking Report"_L1);
    QVERIFY(report.form->isModal());
    QCOMPARE(report.tabs()->tabText(0), "IB&D Report"_L1);
    QCOMPARE(report.tabs()->tabText(1), "IB&S Report"_L1);
    QCOMPARE(report.label("lblDateTime"), "Report Generated on : "_L1);
    QVERIFY(report.label("lblDateTimeValue").startsWith("3/14/2026 09:30"_L1));
    QCOMPARE(control<QPushButton>(report.form, "cmdGenerateReport")->text(),
             "&Generate Report..."_L1);
    QCOMPARE(control<QPushButton>(report.form, "cmdClose")->text(), "&Close"_L1);
    QCOMPARE(report.form->focusWidget(), report.list());
    QStringList titles;
    for (int column = 0; column < 3; ++column)
        titles += report.list()->model()->headerData(column, Qt::Horizontal).toString();
    QCOMPARE(titles, QStringList({u"Status"_s, u"LinkID"_s, u"Address"_s}));

    const QStringList targets{u"OK|PUMP10|S:\\Docs\\Plant 300/a b.htm#top"_s,
                              u"BAD|pump2|S:\\Docs\\Plant 300\\gone.htm"_s,
                              u"BAD|A, \"<B>\"|S:\\Docs\\Plant 300\\empty.htm"_s,
                              u"BAD|OUT|S:\\Docs\\..\\secret.htm"_s};
    QCOMPARE(report.rows(), targets);
    QCOMPARE(report.label("lblCounts"), "1 OK, 3 BAD"_L1);
    QCOMPARE(report.cell(2, 2, Qt::ToolTipRole), world.native(u"Docs/Plant 300/empty.htm"_s));
    QCOMPARE(report.cell(3, 2, Qt::ToolTipRole), "S:\\Docs\\..\\secret.htm"_L1);
    QVERIFY(Qt::mightBeRichText(report.cell(2, 1, Qt::ToolTipRole))); // shown as it stands

    report.clickTab(1);
    QCOMPARE(report.rows(), QStringList({u"OK|PUMP10|S:\\Docs\\Plant 300\\a b.htm"_s,
                                         u"BAD|pump2|S:\\Docs\\Harbour\\x.htm"_s}));
    world.put(u"S:\\Docs\\Plant 300\\gone.htm"_s, "back");
    report.clickTab(1); // the tab that is shown
    QCOMPARE(report.label("lblCounts"), "1 OK, 1 BAD"_L1);
    QTest::keyClick(report.form, Qt::Key_F5);
    QCOMPARE(report.label("lblCounts"), "2 OK, 0 BAD"_L1);
    for (const int tab : {0, 1, 0}) // there and back before the first is listed
        report.tabs()->setCurrentIndex(tab);
    QTRY_COMPARE(report.rows().value(1), "OK|pump2|S:\\Docs\\Plant 300\\gone.htm"_L1);

    QVERIFY(world.messages.shown.isEmpty());
    QTest::keyClick(report.list(), Qt::Key_Escape);
    QTRY_VERIFY(!report.form);
}

void tst_iblreport::saysWhyTheListIsEmpty()
{
    TestProgram world;
    Report nothing(world);
    QCOMPARE(nothing.placeholder(), "No project on the server publishes link targets."_L1);
    nothing.clickTab(1);
    QCOMPARE(nothing.placeholder(), "No project on the server refers to link targets."_L1);
    QVERIFY(world.messages.shown.isEmpty());

    makeLinks(world);
    Report report(world);
    world.ending.atOnce = true; // Stop is pressed
    report.clickTab(1);
    QVERIFY(report.rows().isEmpty());
    QVERIFY(report.placeholder().startsWith("The listing was stopped."_L1));
    QVERIFY(!control<QPushButton>(report.form, "cmdGenerateReport")->isEnabled());
    world.ending.atOnce = false;
    report.clickTab(1);
    QCOMPARE(report.rows().size(), 2);
    QCOMPARE(report.placeholder(), QString());
    QVERIFY(control<QPushButton>(report.form, "cmdGenerateReport")->isEnabled());
    report.filter(u"nowhere"_s);
    QCOMPARE(report.placeholder(), "No link passes the filter."_L1);
    QVERIFY(world.messages.shown.isEmpty());

    world.put(u"S:\\Docs\\QV_Selection.xml"_s, utf16Bytes(u"<QV_Selection_List>"_s));
    click(report.form, "cmdListAgain");
    QCOMPARE(world.messages.shown.size(), 1);
    const QString message = world.messages.shown.takeFirst();
    QVERIFY(message.startsWith("Error 75 QV_DeveloperUI-frmIBLReport::GetIBS_Details : "_L1));
    QVERIFY(message.contains("QV_Selection.xml"_L1));
    QVERIFY(report.placeholder().startsWith("The links could not be listed."_L1));
}

void tst_iblreport::generatesTheReportOnce()
{
    TestProgram world;
    makeLinks(world);
    Report report(world);
    report.filter(u"gone"_s); // the report lists all
    report.clickTitle(1);
    world.ending.atOnce = true;
    click(report.form, "cmdGenerateReport"); // stopped: nothing stays that would refuse the next
    QVERIFY(!world.files.exists(u"C:\\IBD_Report"_s));
    QVERIFY(report.label("lblMessage").contains("Nothing was saved"_L1));
    world.ending.atOnce = false;
    world.messages.shown.clear();

    click(report.form, "cmdGenerateReport");
    const QString file = u"C:\\IBD_Report\\IBD_Report_3_14_2026.txt"_s;
    QCOMPARE(world.messages.shown,
             QStringList({u"Report will be saved at - "_s + file,
                          u"Report generation is complete. File saved as -  "_s + file}));
    const QByteArray bytes = utf16Bytes(u"Status\tLinkID\tAddress\r\n"
                                        "OK\tPUMP10\tfile:///S:/Docs/Plant%20300/a%20b.htm#top\r\n"
                                        "BAD\tpump2\tfile:///S:/Docs/Plant%20300/gone.htm\r\n"
                                        "BAD\tA, \"<B>\"\tfile:///S:/Docs/Plant%20300/empty.htm\r\n"
                                        "BAD\tOUT\tfile:///S:/Docs/../secret.htm\r\n"_s);
    QCOMPARE(world.bytes(file), bytes);

    world.clock.time = world.clock.time.addDays(1);
    click(report.form, "cmdGenerateReport");
    QCOMPARE(world.messages.shown.size(), 3);
    QCOMPARE(world.messages.shown.last(),
             "Error 5 QV_DeveloperUI-frmIBLReport::cmdGenerateReport_Click : "
             "Invalid procedure call or argument"_L1);
    QCOMPARE(world.files.entries(u"C:\\IBD_Report"_s).size(), 1);
    QCOMPARE(world.bytes(file), bytes);

    report.clickTab(1);
    click(report.form, "cmdGenerateReport");
    QVERIFY(world.files.fileExists(u"C:\\IBS_Report\\IBD_Report_3_15_2026.txt"_s));
}

void tst_iblreport::linksOfAServerWithoutDrive()
{
    TestProgram world;
    makeLinks(world);
#ifdef Q_OS_WIN
    const QString server = u"/s/"_s;
#else
    const QString server = world.native({});
#endif
    world.parts.registryAccess.SetQVServer(QString(server).replace(u'/', u'\\'));
    Report report(world);
    click(report.form, "cmdGenerateReport");
    const QString text = xmlText(world.bytes(u"C:\\IBD_Report\\IBD_Report_3_14_2026.txt"_s));
    const QString link = u"file://"_s + server + u"Docs/Plant%20300/a%20b.htm#top"_s;
    QVERIFY(text.contains(u"\nOK\tPUMP10\t"_s + link + u'\n'));
}

void tst_iblreport::sortsAndFilters()
{
    TestProgram world;
    makeLinks(world);
    QString many;
    for (int number = 0; number < 50'000; ++number)
        many += linkTarget(u"N%1"_s.arg(number), u"H\\%1.htm"_s.arg(number));
    Report report(world);
    const QStringList listed = report.identifiers();
    report.clickTitle(1);
    const QStringList sorted{u"A, \"<B>\""_s, u"OUT"_s, u"pump2"_s, u"PUMP10"_s};
    QCOMPARE(report.identifiers(), sorted);
    report.clickTitle(1);
    QCOMPARE(report.identifiers(), QStringList(sorted.crbegin(), sorted.crend()));
    report.clickTitle(1); // and back
    QCOMPARE(report.identifiers(), listed);
    report.clickTitle(0);
    QCOMPARE(report.identifiers(), listed.sliced(1) + listed.first(1)); // BAD first, else as listed

    QTest::keyClick(report.list(), 'P'); // what is typed goes to the filter
    QTest::keyClicks(report.form->focusWidget(), u"LANT P"_s);
    QCOMPARE(control<QLineEdit>(report.form, "txtFilter")->text(), "PLANT P"_L1);
    QCOMPARE(report.identifiers(), QStringList({u"pump2"_s, u"A, \"<B>\""_s, u"PUMP10"_s}));
    QCOMPARE(report.label("lblCounts"), "1 OK, 3 BAD, shown 3"_L1);
    control<QComboBox>(report.form, "cboShow")->setCurrentText(u"OK"_s);
    QCOMPARE(report.identifiers(), QStringList{u"PUMP10"_s});

    world.put(u"S:\\Docs\\Harbour\\QV_LinkID.xml"_s,
              xmlFile(u"<LINKS><IBD>"_s + many + u"</IBD></LINKS>"_s));
    control<QComboBox>(report.form, "cboShow")->setCurrentText(u"BAD"_s);
    click(report.form, "cmdListAgain"); // order and filter stay
    report.filter(u"n4999"_s);
    QVERIFY(report.saveAs(u"S:\\found.csv"_s).endsWith("BAD,N49999,S:\\Docs\\H\\49999.htm\r\n"));
    QCOMPARE(report.label("lblCounts"), "1 OK, 50002 BAD, shown 11"_L1);
    world.ending.atOnce = true;
    report.clickTitle(2); // stopped: neither order nor title changes
    QCOMPARE(report.list()->horizontalHeader()->sortIndicatorSection(), 0);
    QCOMPARE(report.identifiers().first(), "N4999"_L1);
}

void tst_iblreport::savesWhatIsShown()
{
    TestProgram world;
    makeLinks(world);
    Report report(world);
    report.clickTitle(1);
    report.filter(u"plant"_s);
    QCOMPARE(report.saveAs(u"S:\\list.CSV"_s),
             "\xEF\xBB\xBFStatus,LinkID,Address\r\n"
             "BAD,\"A, \"\"<B>\"\"\",S:\\Docs\\Plant 300\\empty.htm\r\n"
             "BAD,pump2,S:\\Docs\\Plant 300\\gone.htm\r\n"
             "OK,PUMP10,S:\\Docs\\Plant 300/a b.htm#top\r\n");
    QCOMPARE(report.label("lblMessage"), u"Saved as "_s + world.native(u"list.CSV"_s));
    QCOMPARE(world.dialogs.startedIn.last(), "IBD_Report_2026-03-14.txt"_L1);
    QVERIFY(xmlText(report.saveAs(u"S:\\list.txt"_s))
                .endsWith("\nOK\tPUMP10\tfile:///S:/Docs/Plant%20300/a%20b.htm#top\n"_L1));
    QCOMPARE(world.dialogs.startedIn.last(), "S:\\IBD_Report_2026-03-14.txt"_L1);

    report.filter({});
    const QString page = QString::fromUtf8(report.saveAs(u"S:\\list.html"_s));
    QVERIFY(page.contains("<title>Inter Book Linking Report - IBD Report</title>"_L1));
    QVERIFY(page.contains("<p>Report Generated on : 3/14/2026 09:30:00<br>1 OK, 3 BAD</p>"_L1));
    QVERIFY(page.contains("<td>A, &quot;&lt;B&gt;&quot;</td><td><a href=\"file://"_L1));
    const QUrl link = QUrl::fromLocalFile(world.native(u"Docs/Plant 300/a b.htm"_s));
    QVERIFY(page.contains(u"<a href=\"%1#top\">S:\\Docs\\Plant 300/a b.htm#top</a>"_s.arg(
        link.toString(QUrl::FullyEncoded))));
    QVERIFY(page.contains("<td>OUT</td><td>S:\\Docs\\..\\secret.htm</td>"_L1)); // no link out
    QVERIFY(world.messages.shown.isEmpty());

    world.dialogs.paths = {u"S:\\missing\\list.csv"_s};
    click(report.form, "cmdSaveAs");
    QCOMPARE(world.messages.shown,
             QStringList{u"The list cannot be saved as S:\\missing\\list.csv"_s});
    QVERIFY(world.messages.boxes.first().details.contains("S:\\missing"_L1));
}

void tst_iblreport::opensAndCopies()
{
    TestProgram world;
    makeLinks(world);
    Report report(world);
    report.doubleClick(0);
    QTest::keyClick(report.list(), Qt::Key_Home);
    QTest::keyClick(report.list(), Qt::Key_Return);
    QCOMPARE(world.processes.opened, QStringList(2, u"S:\\Docs\\Plant 300\\a b.htm"_s));
    const auto opened = [&](int row) {
        world.messages.shown.clear();
        report.doubleClick(row);
        return world.processes.opened.size() == 3;
    };
    QVERIFY(!opened(1));
    QCOMPARE(world.messages.shown,
             QStringList{u"Error 53 QV_DeveloperUI-frmIBLReport::LViewReport_DblClick : "
                         "File not found: S:\\Docs\\Plant 300\\gone.htm"_s});
    world.put(u"S:\\secret.htm"_s, "secret");
    QVERIFY(!opened(3));
    QVERIFY(world.messages.shown.first().contains("S:\\Docs\\..\\secret.htm lies outside"_L1));

    QTest::keyClick(report.list(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(report.list(), Qt::Key_C, Qt::ControlModifier);
    const QStringList lines = QGuiApplication::clipboard()->text().split(u'\n');
    QCOMPARE(lines.size(), 4);
    QCOMPARE(lines.first(), "OK\tPUMP10\tS:\\Docs\\Plant 300/a b.htm#top"_L1);
    report.click(2);
    report.form->findChild<QAction *>(u"mnuCopyPath"_s)->trigger();
    QCOMPARE(QGuiApplication::clipboard()->text(), world.native(u"Docs/Plant 300/empty.htm"_s));

    report.clickTab(1);
    QVERIFY(opened(0));
    report.filter(u"nowhere"_s);
    for (const QString &command : {u"mnuOpen"_s, u"mnuCopy"_s, u"mnuCopyPath"_s})
        QVERIFY(!report.form->findChild<QAction *>(command)->isEnabled());
}

QV_FORM_TEST_MAIN(tst_iblreport)
#include "tst_iblreport.moc"
