#include "controls/build/FindingKindsDialog.h"
#include "controls/build/FindingsView.h"
#include "controls/session/ProjectPages.h"
#include "controls/tree/TreeBadges.h"
#include "platform/Xml.h"
#include "support/Audit.h"
#include "support/DisturbedFiles.h"
#include "support/FormDriver.h"
#include "support/SampleProject.h"
#include "tools/build/BuildTools.h"
#include "tools/build/PageAnchors.h"
#include "tools/checks/FindingKinds.h"
#include "tools/checks/QualityChecks.h"
#include "tools/links/LinkCheck.h"

using namespace Qt::StringLiterals;

namespace {

QByteArray page(const QByteArray &body)
{
    return "<!DOCTYPE html>\n<html lang=\"en\"><head><title>A page</title></head>\n<body>\n" + body
           + "\n</body></html>\n";
}

/// A project with two faults: a dead link and an id given twice.
class CheckedProject : public SampleProject
{
public:
    const QString start = u"Book_OPG\\start.htm"_s;

    CheckedProject()
    {
        addBook(u"Operator's Guide"_s, u"OPG"_s,
                {{u"start.htm"_s, page("<p id=\"a\">One <a href=\"gone.htm\">two</a></p>\n"
                                       "<p id=\"a\">three</p>")},
                 {u"stop.htm"_s, page("<p><a href=\"start.htm#a\">start</a></p>")}});
    }
    void put(const QString &path, const QByteArray &content) { world.put(folder + path, content); }

    ToolReport check(CheckLevel level = CheckLevel::Everything)
    {
        return checkWith(world.files, level);
    }
    ToolReport checkWith(FileSystem &files, CheckLevel level = CheckLevel::Everything)
    {
        const BuildInput input = readBuildInput(world.session, files, name, u"ENU"_s);
        const ScannedPages pages = ScannedPages::read(files, input, {.threads = 1});
        const PageAnchors anchors(pages);
        const LinkCheck links(input, pages, anchors);
        QualityChecks checks(files, input, pages, links, level);
        checks.look({});
        return checks.finish();
    }
    /// "CODE file(line) subject" of what is new.
    QStringList found(CheckLevel level = CheckLevel::Everything)
    {
        QStringList lines;
        for (const Finding &finding : check(level).findings)
            lines.append((finding.code + u' ' + finding.file + u'(' + QString::number(finding.line)
                          + u") "_s + finding.subject)
                             .trimmed());
        return lines;
    }
    QString log() { return QString::fromUtf8(world.bytes(folder + u"Plant 300_QA_Log.txt"_s)); }
    QString counts() { return readQaReport(world.files, folder)->counts(); }
    QString baseline() { return xmlText(world.bytes(folder + u"QV_QABaseline.xml"_s)); }
    void accept(const QList<AcceptedFinding> &findings)
    {
        BaselineFile(world.files, folder).write({{}, findings});
    }
};

} // namespace

class tst_quality final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsWhatIsWrongInPages();
    void findsWhatIsWrongInBooks();
    void findsWhatIsWrongInTheData();
    void tellsNewFromKnownAndFixed();
    void keepsWhatTheAuthorDecided();
    void hostilePagesAreFindings();
    void aFailureLeavesTheLastReport();
    void showsTheFindings();
    void decidesAboutTheFindings();
    void marksThePagesInTheTree();
};

void tst_quality::findsWhatIsWrongInPages()
{
    CheckedProject project;
    QCOMPARE(project.found(), (QStringList{u"LINK01 Book_OPG\\start.htm(4) Book_OPG\\gone.htm"_s,
                                           u"PAGE08 Book_OPG\\start.htm(5) a"_s}));
    project.put(project.start,
                "<html lang=\"de\"><head><title></title>\n"
                "<link rel=stylesheet href=\"HTTP://cdn.example/x.css\"></head><body>\n"
                "<b>bold<img src=\"pump.png\">\n"
                "<img src=\"data:image/png;base64,AAAA\" alt=\"\"></i>\n"
                "<a href=\"../**Other**/x.htm\">x</a>\xFF\n"
                "<!-- never closed\n");
    project.put(u"Book_OPG\\pump.png"_s, "x");
    project.put(u"Book_OPG\\unused.css"_s, "p{}");
    QCOMPARE(project.found().join(u'\n'), uR"(PAGE01 Book_OPG\start.htm(0)
PAGE04 Book_OPG\start.htm(0) de
PAGE05 Book_OPG\start.htm(0)
ASSET03 Book_OPG\start.htm(2) HTTP://cdn.example/x.css
PAGE09 Book_OPG\start.htm(3) b
ASSET01 Book_OPG\start.htm(3) pump.png
PAGE10 Book_OPG\start.htm(4) i
LINK01 Book_OPG\start.htm(5) **Other**\x.htm
PAGE13 Book_OPG\start.htm(5) **Other**
PAGE11 Book_OPG\start.htm(6)
LINK05 Book_OPG\stop.htm(4) Book_OPG\start.htm#a
ASSET02 Book_OPG\unused.css(0))"_s);
}

void tst_quality::findsWhatIsWrongInBooks()
{
    CheckedProject project;
    project.accept({{u"LINK01"_s, project.start, u"Book_OPG\\gone.htm"_s},
                    {u"PAGE08"_s, project.start, u"a"_s}});
    project.addGlobals(); // one of its two pages is not there
    const TocBook second =
        project.addBook(u"Second"_s, u"SEC"_s,
                        {{u"Here.htm"_s, page("here")}, {u"lost.htm"_s, "x"}, {u"out.htm"_s, "x"}});
    project.put(u"Book_SEC\\extra.htm"_s, page("<a href=\"Here.htm\">here</a>"));
    for (const auto *file : {"lost.htm", "out.htm"})
        project.world.files.removeFile(project.folder + u"Book_SEC\\"_s + QLatin1String(file));
    Book book = BookFile(project.world.session, project.world.files).read(project.name, second);
    book.pages[0].file = u"here.htm"_s;
    book.pages[2].file = u"..\\out.htm"_s;
    book.pages.append({{}, u"again"_s, u"here.htm"_s, {}, {}});
    BookFile(project.world.session, project.world.files).write(project.name, second, book);
    TocBook third = second;
    third.name = u"Third"_s;
    third.folder = u"Book_THI"_s;
    third.acronym = u"XYZ"_s;
    TableOfContents(project.world.session, project.world.files).addBook(project.name, third);
    project.put(u"Book_OPG\\Book_OPG.xml"_s, "no book");
    QByteArray toc = project.world.bytes(project.folder + ProjectFile::toc);
    toc.replace(utf16Bytes(u"XYZ<"_s).sliced(2), utf16Bytes(u"sec<"_s).sliced(2));
    project.put(ProjectFile::toc, toc);

    QCOMPARE(project.found(CheckLevel::Links).join(u'\n'),
             uR"(BOOK06 _Global Information\Book_Global.xml(0) _Global Information\legal.htm
DATA01 Book_OPG\Book_OPG.xml(0)
BOOK08 Book_SEC\Book_SEC.xml(0) Book_SEC\here.htm
BOOK06 Book_SEC\Book_SEC.xml(0) Book_SEC\lost.htm
BOOK07 Book_SEC\Book_SEC.xml(0) ..\out.htm
BOOK08 Book_SEC\Book_SEC.xml(0) Book_SEC\here.htm
BOOK04 Book_SEC\extra.htm(0)
BOOK05 Book_SEC\Here.htm(0)
BOOK03 QV_Toc.xml(0) sec
BOOK02 QV_Toc.xml(0) Book_THI)"_s);
}

void tst_quality::findsWhatIsWrongInTheData()
{
    CheckedProject project;
    const auto touch = [&](const QString &path, int seconds) {
        QFile file(project.world.files.nativePath(project.folder + path));
        QVERIFY(file.open(QFile::ReadWrite));
        QVERIFY(file.setFileTime(QDateTime::fromSecsSinceEpoch(2'000'000'000 + seconds),
                                 QFile::FileModificationTime));
    };
    const auto aboutData = [&] { return project.found().filter(u"DATA0"_s); };
    project.put(ProjectFile::status,
                xmlFile(u"<QV_StatusIndicator><DoctoDoc>3046706</DoctoDoc>"
                        "<ContextSettings>16777215</ContextSettings><QuickNav>16361509</QuickNav>"
                        "<SearchIndex>3046706</SearchIndex></QV_StatusIndicator>"_s));
    project.put(resultOf(BuildTool::QuickNav), "x");
    project.put(resultOf(BuildTool::SearchIndex), "x");
    project.put(u"QVPlant 300_Server.Zip"_s, "x");
    touch(project.start, 5);
    touch(resultOf(BuildTool::QuickNav), 4);
    touch(resultOf(BuildTool::SearchIndex), 6);
    touch(u"QVPlant 300_Server.Zip"_s, 4);
    QCOMPARE(aboutData(), (QStringList{u"DATA02 QV_StatusIndicators.xml(0) DoctoDoc"_s,
                                       u"DATA02 QV_StatusIndicators.xml(0) QuickNav"_s,
                                       u"DATA03 QVPlant 300_Server.Zip(0)"_s}));
    touch(resultOf(BuildTool::QuickNav), 5);
    touch(u"QVPlant 300_Server.Zip"_s, 5);
    project.put(resultOf(BuildTool::DocToDoc), "x");
    touch(resultOf(BuildTool::DocToDoc), 5);
    QCOMPARE(aboutData(), QStringList());
    project.put(ProjectFile::status, "no lights");
    QCOMPARE(aboutData(), QStringList{u"DATA01 QV_StatusIndicators.xml(0)"_s});
}

void tst_quality::tellsNewFromKnownAndFixed()
{
    CheckedProject project;
    project.world.put(u"S:\\Docs\\Plant 300_QA_Log.txt"_s, "of another tool");
    const ToolReport first = project.check();
    QCOMPARE(first.outcome, ToolReport::Outcome::Warnings);
    QCOMPARE(project.log(),
             u"Quality checks\r\n"
             "2 new, 0 known, 0 fixed since the last run; new errors: 1, warnings: 1, notes: 0. "
             "Looked at: 2 pages and style sheets, 2 links.\r\n\r\n"
             "Book_OPG\\start.htm(4): LINK01 There is no file Book_OPG\\gone.htm.\r\n"
             "Book_OPG\\start.htm(5): PAGE08 The id \"a\" stands further up already.\r\n"_s);
    QCOMPARE(xmlText(project.world.bytes(project.folder + u"QV_QAReport.xml"_s)),
             xmlText(xmlFile(uR"(<QV_QAReport>
	<Report>
		<Report_Project>Plant 300</Report_Project>
		<Report_Level>Everything</Report_Level>
		<Report_New>2</Report_New>
		<Report_Known>0</Report_Known>
		<Report_Fixed>0</Report_Fixed>
	</Report>
	<Findings>
		<Finding Code="LINK01" Severity="Error" State="New" Line="4">
			<Finding_File>Book_OPG\start.htm</Finding_File>
			<Finding_Subject>Book_OPG\gone.htm</Finding_Subject>
			<Finding_Text>There is no file Book_OPG\gone.htm.</Finding_Text>
		</Finding>
		<Finding Code="PAGE08" Severity="Warning" State="New" Line="5">
			<Finding_File>Book_OPG\start.htm</Finding_File>
			<Finding_Subject>a</Finding_Subject>
			<Finding_Text>The id "a" stands further up already.</Finding_Text>
		</Finding>
	</Findings>
</QV_QAReport>
)"_s))
                 .replace(u" \"a\" "_s, u" &quot;a&quot; "_s));

    // Accepted, it is known wherever in the page it stands now, and comes last.
    project.accept({{u"LINK01"_s, u"book_opg\\START.htm"_s, u"Book_OPG\\gone.htm"_s}});
    QCOMPARE(project.counts(), u"1 new, 1 known, 0 fixed since the last run"_s);
    QByteArray moved = project.world.bytes(project.folder + project.start);
    project.put(project.start, moved.replace("<p id=\"a\">One", "\n\n<p>One"));
    const ToolReport second = project.check();
    QCOMPARE(second.outcome, ToolReport::Outcome::Good);
    QCOMPARE(second.findings, QList<Finding>());
    QVERIFY(project.log().contains(u"(6): LINK01 There is no file Book_OPG\\gone.htm. (known)"_s));
    QCOMPARE(project.counts(), u"0 new, 1 known, 1 fixed since the last run"_s);

    // What is not looked for is not fixed.
    project.put(project.start, page("<p id=\"a\"></p></i>").replace("A page", ""));
    QCOMPARE(project.check().outcome, ToolReport::Outcome::Warnings);
    project.check(CheckLevel::Links);
    QCOMPARE(project.counts(), u"0 new, 0 known, 0 fixed since the last run"_s);
    QCOMPARE(project.world.bytes(u"S:\\Docs\\Plant 300_QA_Log.txt"_s), "of another tool");
}

void tst_quality::keepsWhatTheAuthorDecided()
{
    CheckedProject project;
    const QByteArray byHand = xmlFile(uR"(<QV_QABaseline>
	<Reviewer>Ann</Reviewer>
	<Accepted>
		<Finding Code="PAGE08">
			<Finding_File>Book_OPG\start.htm</Finding_File>
			<Finding_Subject>a</Finding_Subject>
			<Why>meant so</Why>
		</Finding>
	</Accepted>
</QV_QABaseline>
)"_s);
    project.put(u"QV_QABaseline.xml"_s, byHand);
    QCOMPARE(project.found(), QStringList{u"LINK01 Book_OPG\\start.htm(4) Book_OPG\\gone.htm"_s});
    BaselineFile file(project.world.files, project.folder);
    Baseline baseline = file.read();
    baseline.switchedOff = {u"PAGE03"_s, u"LINK01"_s, u"NEW99"_s, u"LINK01"_s};
    for (int time = 0; time < 2; ++time)
        baseline.accepted.append({u"ASSET02"_s, u"Book_OPG\\a & b.png"_s, {}});
    file.write(baseline);
    QCOMPARE(project.baseline(), xmlText(xmlFile(uR"(<QV_QABaseline>
	<Reviewer>Ann</Reviewer>
	<Accepted>
		<Finding Code="ASSET02">
			<Finding_File>Book_OPG\a &amp; b.png</Finding_File>
			<Finding_Subject />
		</Finding>
		<Finding Code="PAGE08">
			<Finding_File>Book_OPG\start.htm</Finding_File>
			<Finding_Subject>a</Finding_Subject>
			<Why>meant so</Why>
		</Finding>
	</Accepted>
	<Switched_Off>
		<Kind Code="LINK01" />
		<Kind Code="NEW99" />
		<Kind Code="PAGE03" />
	</Switched_Off>
</QV_QABaseline>
)"_s)));
    QCOMPARE(project.world.bytes(project.folder + u"_Backup\\QV_QABaseline.xml.1"_s), byHand);
    QCOMPARE(project.found(), QStringList());

    // One that cannot be read decides nothing, and nothing is written over it.
    const QString log = project.log();
    project.put(u"QV_QABaseline.xml"_s, "<QV_QABaseline");
    QVERIFY(errorOf([&] { project.check(); }).startsWith(u"75: "_s));
    QVERIFY(errorOf([&] { file.write(baseline); }).startsWith(u"75: "_s));
    QCOMPARE(project.world.bytes(project.folder + u"QV_QABaseline.xml"_s), "<QV_QABaseline");
    QCOMPARE(project.log(), log);
}

void tst_quality::hostilePagesAreFindings()
{
    CheckedProject project;
    const QByteArray endless = QByteArray("\xF0\x9F\x98\x80\x01").repeated(100'000);
    project.put(project.start, page("<i id=\"" + endless + "\"></i><i id=\"" + endless + "\"></i>"
                                    + QByteArray("</b>\n").repeated(5000) + QByteArray(1, '\0')));
    project.put(u"Book_OPG\\stop.htm"_s, page(QByteArray("<div>").repeated(100'000) + "<!--"));
    const ToolReport report = project.check();
    const auto count = [&](const QString &code) {
        return std::count_if(report.findings.begin(), report.findings.end(),
                             [&](const Finding &finding) { return finding.code == code; });
    };
    QCOMPARE(count(u"PAGE10"_s), 101);
    QVERIFY(project.log().contains(u"PAGE10 4900 more of this kind in this file."_s));
    for (const auto &code : {u"PAGE08"_s, u"PAGE11"_s, u"PAGE14"_s})
        QCOMPARE(count(code), 1);
    QVERIFY(project.log().size() < 20'000);
    // It can be accepted as it stands, and is read again.
    const auto written = readWrittenQaReport(project.world.files, project.folder);
    QList<AcceptedFinding> all;
    for (const QaFinding &one : written->findings)
        all.append({one.finding.code, one.finding.file, one.finding.subject});
    project.accept(all);
    QCOMPARE(project.check().outcome, ToolReport::Outcome::Good);
    QCOMPARE(project.found(), QStringList());
}

void tst_quality::aFailureLeavesTheLastReport()
{
    CheckedProject project;
    project.check();
    const QByteArray report = project.world.bytes(project.folder + u"QV_QAReport.xml"_s);
    project.put(project.start, page("<p id=\"a\">better"));
    DisturbedFiles full(project.world.files);
    int writes = 0;
    full.disturb = [&] {
        if (++writes == 2) // the log was written
            throw QvError(70, {}, u"The disk is full."_s);
    };
    QCOMPARE(errorOf([&] { project.checkWith(full); }), u"70: The disk is full."_s);
    QCOMPARE(project.world.bytes(project.folder + u"QV_QAReport.xml"_s), report);

    // A report that somebody damaged is made anew; windows say so until then.
    project.put(u"QV_QAReport.xml"_s, report.first(300));
    QVERIFY(errorOf([&] { (void)project.counts(); }).startsWith(u"75: "_s));
    project.check();
    QCOMPARE(project.counts(), u"0 new, 0 known, 0 fixed since the last run"_s);
}

namespace {

/// The list of findings over a checked project, as an author sees it.
class FindingsDesk : public CheckedProject
{
public:
    FindingsView view{world.program};
    QTreeView *list = control<QTreeView>(&view, "lstFindings");
    QSignalSpy opened{&view, &FindingsView::opened};

    FindingsDesk()
    {
        // A note, in a file that stands before those with worse findings.
        put(u"Book_OPG\\a note.png"_s, "x");
        check();
        view.setProject(name);
        view.show();
        refresh();
    }
    void refresh()
    {
        control<QLabel>(&view, "lblFindings")->clear();
        view.refresh();
        (void)QTest::qWaitFor([&] { return !label().isEmpty(); });
    }
    QString label() { return control<QLabel>(&view, "lblFindings")->text(); }
    QStringList shown()
    {
        QStringList rows;
        for (int row = 0; row < list->model()->rowCount(); ++row)
            rows.append(list->model()->index(row, FindingsModel::StateColumn).data().toString()
                        + u' '
                        + list->model()->index(row, FindingsModel::KindColumn).data().toString());
        return rows;
    }
    void choose(int row)
    {
        list->setFocus();
        list->setCurrentIndex(list->model()->index(row, 0));
    }
};

} // namespace

void tst_quality::showsTheFindings()
{
    FindingsDesk desk;
    QCOMPARE(desk.label(), u"3 new, 0 known, 0 fixed since the last run."_s);
    QCOMPARE(desk.shown(), (QStringList{u"New Linked file missing"_s, u"New Id given twice"_s,
                                        u"New Unused file"_s}));
    QCOMPARE(audit::findingsIn(&desk.view), QStringList());
    desk.choose(1);
    QCOMPARE(control<QPlainTextEdit>(&desk.view, "txtFinding")->toPlainText(),
             u"Book_OPG\\start.htm(5): PAGE08 The id \"a\" stands further up already.\n"
             "Id given twice. Links to it reach the first place only. Give each place an id of its "
             "own."_s);
    QTest::keyClick(desk.list, Qt::Key_Return);
    QCOMPARE(desk.opened, (QList<QVariantList>{{desk.start, 5}}));

    control<QComboBox>(&desk.view, "cboSeverity")->setCurrentIndex(1);
    QCOMPARE(desk.label(), u"3 new, 0 known, 0 fixed since the last run; 2 of 3 shown."_s);
    QTest::keyClicks(control<QLineEdit>(&desk.view, "txtFindingsFilter"), u"GONE"_s);
    QCOMPARE(desk.shown(), QStringList{u"New Linked file missing"_s});
    control<QLineEdit>(&desk.view, "txtFindingsFilter")->setText(u"page08"_s); // other than before
    QCOMPARE(desk.shown(), QStringList{u"New Id given twice"_s});
    control<QLineEdit>(&desk.view, "txtFindingsFilter")->clear();
    control<QComboBox>(&desk.view, "cboSeverity")->setCurrentIndex(0);
    desk.list->sortByColumn(FindingsModel::KindColumn, Qt::AscendingOrder);
    QCOMPARE(desk.shown().first(), u"New Unused file"_s);

    desk.world.files.removeFile(qaReportPath(desk.folder));
    desk.refresh();
    QCOMPARE(desk.label(), u"The quality checks have not run yet."_s);
    QCOMPARE(desk.shown(), QStringList());
}

void tst_quality::decidesAboutTheFindings()
{
    FindingsDesk desk;
    desk.choose(0);
    QVERIFY(!isEnabled(&desk.view, "cmdTakeOutFinding"));
    QTest::keyClick(desk.list, Qt::Key_Insert);
    QCOMPARE(desk.label(), u"2 new, 1 known, 0 fixed since the last run."_s);
    QCOMPARE(desk.shown().last(), u"Known Linked file missing"_s);
    QVERIFY(desk.baseline().contains(u"<Finding_Subject>Book_OPG\\gone.htm</Finding_Subject>"_s));

    desk.choose(2);
    QVERIFY(!isEnabled(&desk.view, "cmdAcceptFinding"));
    QTest::keyClick(desk.list, Qt::Key_Delete);
    QVERIFY(!desk.baseline().contains(u"gone.htm"_s));
    desk.list->selectAll();
    click(&desk.view, "cmdAcceptFinding");
    QCOMPARE(desk.label(), u"0 new, 3 known, 0 fixed since the last run."_s);

    desk.choose(1);
    QCOMPARE(desk.shown().at(1), u"Known Id given twice"_s);
    click(&desk.view, "cmdSwitchOffKind");
    QCOMPARE(desk.shown().size(), 2);
    desk.check();
    QVERIFY(!desk.log().contains(u"PAGE08"_s));

    // Switched on again, it is looked for in the next run, and is known still.
    click(&desk.view, "cmdFindingKinds");
    auto *const dialog = openWindow<FindingKindsDialog>();
    QCOMPARE(audit::findingsIn(dialog), QStringList());
    auto *const kinds = control<QTreeWidget>(dialog, "lstKinds");
    QCOMPARE(size_t(kinds->topLevelItemCount()), findingKinds().size());
    QTreeWidgetItem *const twice = kinds->findItems(u"PAGE08"_s, Qt::MatchExactly).value(0);
    QCOMPARE(twice->checkState(0), Qt::Unchecked);
    twice->setCheckState(0, Qt::Checked);
    dialog->accept();
    desk.check();
    desk.refresh();
    QCOMPARE(desk.label(), u"0 new, 3 known, 0 fixed since the last run."_s);

    // A baseline that somebody damaged is told and left alone.
    desk.put(u"QV_QABaseline.xml"_s, "<QV");
    desk.choose(0);
    click(&desk.view, "cmdTakeOutFinding");
    QCOMPARE(desk.world.messages.shown.size(), 1);
    QCOMPARE(desk.world.bytes(desk.folder + u"QV_QABaseline.xml"_s), "<QV");
}

void tst_quality::marksThePagesInTheTree()
{
    CheckedProject project;
    project.check();
    ProjectSession session(project.world.program);
    TreeBadges badges(session);
    session.open(project.name);
    const auto words = [&] { return wordsOf(badges.ofPage(project.start)); };
    QTRY_COMPARE(words(), u"1 broken link, 1 finding of the quality checks"_s);
    QCOMPARE(wordsOf(badges.ofPage(u"Book_OPG\\stop.htm"_s)), QString());

    // The author's decision is noticed, as a build is.
    project.accept({{u"PAGE08"_s, project.start, u"a"_s}});
    QTRY_COMPARE_WITH_TIMEOUT(words(), u"1 broken link"_s, 20'000);
}

QV_FORM_TEST_MAIN(tst_quality)
#include "tst_quality.moc"
