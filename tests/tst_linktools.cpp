#include "platform/Xml.h"
#include "reports/LinkReport.h"
#include "support/DisturbedFiles.h"
#include "support/LinkFile.h"
#include "support/SampleProject.h"
#include "support/System.h"
#include "tools/build/BuildPlan.h"
#include "tools/build/FreshFolder.h"
#include "tools/build/PageAnchors.h"
#include "tools/context/ContextSettings.h"
#include "tools/links/DocToDoc.h"
#include "tools/links/LinkCheck.h"
#include "tools/navigation/QuickNavIndex.h"

#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QStringList lines(const QString &text)
{
    return text.split(u'\n');
}

/// A project, and the tools run over it as a build does it.
class LinkWorld : public SampleProject
{
public:
    void put(const QString &path, const QByteArray &content) { world.put(folder + path, content); }
    QString native(const QString &path) { return world.native(u"Docs/Plant 300/"_s + path); }
    QByteArray bytes(const QString &path) { return world.bytes(folder + path); }
    QStringList log(const QString &path)
    {
        return lines(QString::fromUtf8(bytes(path)).remove(u'\r'));
    }
    /// Gives a page of a book identifiers or context ids.
    void changePage(const TocBook &entry, qsizetype place,
                    const std::function<void(BookPage &)> &change)
    {
        const BookFile file(world.session, world.files);
        Book book = BookFile(world.session, world.files).read(name, entry);
        change(book.pages[place]);
        BookFile(world.session, world.files).write(name, entry, book);
    }

    BuildInput input() { return readBuildInput(world.session, world.files, name, u"ENU"_s); }
    ToolReport link(const Progress &progress = {})
    {
        const BuildInput read = input();
        const ScannedPages pages = ScannedPages::read(files, read, {});
        const PageAnchors anchors(pages);
        const LinkCheck check(read, pages, anchors);
        return linkDocuments(files, read, pages, check, progress);
    }
    ToolReport writeContext()
    {
        const BuildInput read = input();
        return writeContextSettings(files, read, ScannedPages::read(files, read, {}), {});
    }
    ToolReport writeQuickNav()
    {
        const BuildInput read = input();
        const ScannedPages pages = ScannedPages::read(files, read, {});
        return writeQuickNavIndex(files, read, pages, PageAnchors(pages), {});
    }

    DisturbedFiles files{world.files};
    LinkWorld() { files.syncs = false; }
};

void compareXml(const QByteArray &bytes, const QString &expected)
{
    QCOMPARE(xmlText(bytes), xmlText(xmlFile(expected)));
    QCOMPARE(bytes, xmlFile(expected));
}

/// An entry as the migration of a legacy database leaves it.
QString migrated(QString entry)
{
    return entry.insert(entry.lastIndexOf(u"</"_s), u"<Origin>Migrated</Origin>"_s);
}

void setTime(const QString &native, qint64 seconds)
{
    QFile file(native);
    QVERIFY(file.open(QFile::ReadWrite));
    QVERIFY(file.setFileTime(QDateTime::fromSecsSinceEpoch(seconds), QFile::FileModificationTime));
}

} // namespace

class tst_linktools final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void judgesEveryKindOfLink();
    void knowsWhichFilesAreUsed();
    void publishesIdentifiersForOtherProjects();
    void keepsWhatOthersPutIntoTheLinkFile();
    void leavesTheOldFilesWhenItFails();
    void writesTheContextMap();
    void writesTheQuickNavigation();
    void saysWhatIsStale();
    void readsTheAuthorsFiles();
    void finishesOrTakesBackAFolder();
};

void tst_linktools::judgesEveryKindOfLink()
{
    LinkWorld project;
    project.addBook(u"Guide"_s, u"OPG"_s,
                    {{u"start.htm"_s, R"(<a href="stop.htm">1</a> <a href="stop.htm#Here">1</a>
<a href="stop.htm#here">2</a> <a href="stop.htm#x:~:text=pump">2</a>
<a href="gone.htm#x">3</a> <link rel=next href=gone.htm>
<a href="STOP.htm#nowhere">4</a>
<a href="../Book_VLV/">5</a> <a href="../book_vlv">5</a> <a href="../Book_VLV/sub">5</a>
<a href="../../Other/p.htm">6</a> <a href="../../**Plant 300**/Book_OPG/stop.htm?a=b#Here">6</a>
<a href="/server/p.htm">7</a> <a href="https://example.invalid/gone">7</a> <a href="mailto:x">7</a>
<a href="qvlink:PUMP">8</a> <a href="qvlink:FAR%20AWAY">8</a>
<a href="#top">9</a> <a href="#nowhere">9</a> <a href="start.htm">9</a> <a name="a"></a><a href="#a">9</a>
<img src="gone.png"> <a href="two.htm">10</a> <a href="Plan.pdf#page=3">10</a>)"},
                     {u"stop.htm"_s, R"(<p id="Here">Here</p><a data-qv-ibd="PUMP"></a>)"},
                     {u"Two.htm"_s, "<p>one spelling</p>"},
                     {u"based.htm"_s, R"(<base href="../Book_VLV/sub/"><a href="../index.html">1</a>
<a href="deep.htm#x">2</a> <a href="#x">2</a>)"}});
    project.addBook(u"Valves"_s, u"VLV"_s, {{u"index.html"_s, "<h1 id=a>Valves</h1>"}});
    project.put(u"Book_VLV\\sub\\deep.htm"_s, "<p id=x>");
    project.put(u"Book_OPG\\plan.pdf"_s, "%PDF");

    QString twins =
        u"LINK04 Several files are called Book_OPG\\two.htm in other letter case. Spell "
        "one of them."_s;
    QString state = u"SeveralSpellings"_s;
    if constexpr (here::takesEveryName) {
        const QString twin = project.native(u"Book_OPG/tWo.htm"_s);
        QVERIFY(QFile::copy(project.native(u"Book_OPG/Two.htm"_s), twin));
    } else {
        twins = u"LINK03 The link is spelled Book_OPG\\two.htm, the file Book_OPG\\Two.htm. Where "
                "letter case counts it is not found."_s;
        state = u"OtherLetterCase"_s;
    }

    const ToolReport report = project.link();
    QCOMPARE(report.outcome, ToolReport::Outcome::Warnings);
    QCOMPARE(project.log(u"DocToDoc_Log.txt"_s), lines(uR"(Document to document links
15 links between pages; 13 bad links; 1 published identifier, 2 references to identifiers.

Book_OPG\based.htm(2): LINK02 Book_VLV\sub is a folder without an index page (index.html or index.htm).
Book_OPG\start.htm(2): LINK05 Book_OPG\stop.htm has no place #here.
Book_OPG\start.htm(2): LINK05 Book_OPG\stop.htm has no place #x:~:text=pump.
Book_OPG\start.htm(3): LINK01 There is no file Book_OPG\gone.htm.
Book_OPG\start.htm(3): LINK01 There is no file Book_OPG\gone.htm.
Book_OPG\start.htm(4): LINK03 The link is spelled Book_OPG\STOP.htm, the file Book_OPG\stop.htm. Where letter case counts it is not found.
Book_OPG\start.htm(5): LINK03 The link is spelled book_vlv, the file Book_VLV\index.html. Where letter case counts it is not found.
Book_OPG\start.htm(5): LINK02 Book_VLV\sub is a folder without an index page (index.html or index.htm).
Book_OPG\start.htm(6): LINK06 ../../Other/p.htm leads out of the project.
Book_OPG\start.htm(7): LINK07 /server/p.htm begins at the root of a disk or server. Write it relative to the page.
Book_OPG\start.htm(8): LINK08 No page of this project publishes the identifier FAR AWAY. The link report shows whether another project does.
Book_OPG\start.htm(9): LINK05 Book_OPG\start.htm has no place #nowhere.
Book_OPG\start.htm(10): %1
Book_OPG\start.htm(10): LINK03 The link is spelled Book_OPG\Plan.pdf, the file Book_OPG\plan.pdf. Where letter case counts it is not found.
)"_s.arg(twins)));
    QCOMPARE(report.findings.size(), 14);
    QCOMPARE(report.findings[3].subject, u"Book_OPG\\gone.htm#x"_s);

    compareXml(project.bytes(u"DocToDoc\\DocLinks.xml"_s), uR"(<QV_DocLinks>
	<Page>
		<Page_File>Book_OPG\based.htm</Page_File>
		<Page_Link>Book_VLV\index.html</Page_Link>
		<Page_Link>Book_VLV\sub\deep.htm#x</Page_Link>
		<Page_Link State="IsFolder">Book_VLV\sub#x</Page_Link>
	</Page>
	<Page>
		<Page_File>Book_OPG\start.htm</Page_File>
		<Page_Link>Book_OPG\stop.htm</Page_Link>
		<Page_Link>Book_OPG\stop.htm#Here</Page_Link>
		<Page_Link State="PlaceMissing">Book_OPG\stop.htm#here</Page_Link>
		<Page_Link State="PlaceMissing">Book_OPG\stop.htm#x:~:text=pump</Page_Link>
		<Page_Link State="FileMissing">Book_OPG\gone.htm#x</Page_Link>
		<Page_Link State="FileMissing">Book_OPG\gone.htm</Page_Link>
		<Page_Link State="OtherLetterCase">Book_OPG\STOP.htm#nowhere</Page_Link>
		<Page_Link>Book_VLV</Page_Link>
		<Page_Link State="OtherLetterCase">book_vlv</Page_Link>
		<Page_Link State="IsFolder">Book_VLV\sub</Page_Link>
		<Page_Link State="%1">Book_OPG\two.htm</Page_Link>
		<Page_Link State="OtherLetterCase">Book_OPG\Plan.pdf#page=3</Page_Link>
	</Page>
</QV_DocLinks>
)"_s.arg(state));
    loadXml(project.files, project.folder + u"DocToDoc\\DocLinks.xml"_s, "QV_DocLinks");
}

void tst_linktools::knowsWhichFilesAreUsed()
{
    LinkWorld project;
    project.addBook(u"Guide"_s, u"OPG"_s,
                    {{u"a.htm"_s, "<link rel=stylesheet href=a.css><img src=gone.png><a href=#x>"},
                     {u"b.htm"_s, "<a href=A.htm>"},
                     {u"unused.htm"_s, "<a href=#top>"}});
    project.put(u"Book_OPG\\a.css"_s, "body { background: url(sub/back.png) }");
    project.put(u"Book_OPG\\sub\\back.png"_s, "1");
    project.put(u"Book_OPG\\sub\\front.png"_s, "2");

    const BuildInput input = project.input();
    const ScannedPages pages = ScannedPages::read(project.files, input, {});
    const LinkCheck check(input, pages, PageAnchors(pages));
    QStringList used;
    for (quint32 file = 0; file < pages.listing().files().size(); ++file) {
        if (check.isUsed(file))
            used.append(QString::fromStdString(pages.listing().files()[file].path));
    }
    QCOMPARE(used,
             QStringList({u"Book_OPG/a.css"_s, u"Book_OPG/a.htm"_s, u"Book_OPG/sub/back.png"_s}));
    QCOMPARE(check.count(), 6);
    QCOMPARE(check.bad().size(), 3U); // the picture, the place, the letter case
}

void tst_linktools::publishesIdentifiersForOtherProjects()
{
    LinkWorld project;
    const TocBook guide =
        project.addBook(u"Guide"_s, u"OPG"_s,
                        {{u"start.htm"_s, R"(<a id="s1" data-qv-ibd=" PUMP_START ">x</a>
<a href="qvlink:VALVE">1</a> <a href="QVLINK:PUMP_START">2</a> <a href="qvlink:VALVE">3</a>)"},
                         {u"stop.htm"_s, "<a href='qvlink:VALVE'><a data-qv-ibd=PUMP_START><a "
                                         "id='a\1' data-qv-ibd='&#xFFFE;O\2DD'>"}});
    project.changePage(guide, 1, [](BookPage &page) { page.linkIds = {u"PUMP_START"_s, u" "_s}; });
    project.changePage(guide, 0, [](BookPage &page) {
        page.linkIds = {u"LOST"_s};
        page.file = u"lost.htm"_s;
    });

    const ToolReport report = project.link();
    const QByteArray file = project.bytes(ProjectFile::links);
    compareXml(file, uR"(<LINKS>
	<IBD>
		<ID>
			<LinkID>O DD</LinkID>
			<LinkIDSourceFile>Plant 300\Book_OPG\stop.htm#a</LinkIDSourceFile>
		</ID>
		<ID>
			<LinkID>PUMP_START</LinkID>
			<LinkIDSourceFile>Plant 300\Book_OPG\start.htm#s1</LinkIDSourceFile>
		</ID>
		<ID>
			<LinkID>PUMP_START</LinkID>
			<LinkIDSourceFile>Plant 300\Book_OPG\stop.htm</LinkIDSourceFile>
		</ID>
	</IBD>
	<IBS>
		<USER>
			<LinkID>PUMP_START</LinkID>
			<FilePath>Plant 300\Book_OPG\start.htm</FilePath>
		</USER>
		<USER>
			<LinkID>VALVE</LinkID>
			<FilePath>Plant 300\Book_OPG\start.htm</FilePath>
		</USER>
		<USER>
			<LinkID>VALVE</LinkID>
			<FilePath>Plant 300\Book_OPG\stop.htm</FilePath>
		</USER>
	</IBS>
</LINKS>
)"_s);
    QStringList found;
    for (const Finding &finding : report.findings)
        found.append(logLine(finding));
    const QString twice =
        u"The identifier PUMP_START is published by Book_OPG\\start.htm#s1 already, which is where links lead."_s;
    const QString unknown = u"LINK08 No page of this project publishes the identifier VALVE. The "
                            "link report shows whether another project does."_s;
    QCOMPARE(found, QStringList({u"Book_OPG\\stop.htm(1): LINK09 "_s + twice,
                                 u"Book_OPG\\lost.htm: LINK10 The identifier LOST is published for "
                                 "this page, which is not there."_s,
                                 u"Book_OPG\\stop.htm: LINK09 "_s + twice,
                                 u"Book_OPG\\start.htm(2): "_s + unknown,
                                 u"Book_OPG\\start.htm(2): "_s + unknown,
                                 u"Book_OPG\\stop.htm(1): "_s + unknown}));

    project.link();
    QCOMPARE(project.bytes(ProjectFile::links), file);
    project.world.list(project.name);
    LinkReport reports(project.world.program);
    QCOMPARE(reports.GetIBD_Details().goodCount(), 3);
    QCOMPARE(reports.GetIBS_Details().count(), 3);
    QVERIFY(reports.CheckLinkIDExist(u"PUMP_START"_s) && !reports.CheckLinkIDExist(u"VALVE"_s));
}

// What merging brought in, or another tool.
void tst_linktools::keepsWhatOthersPutIntoTheLinkFile()
{
    LinkWorld project;
    const TocBook guide =
        project.addBook(u"Guide"_s, u"OPG"_s, {{u"start.htm"_s, R"(<a data-qv-ibd="PUMP">)"}});
    project.addBook(u"Broken"_s, u"BRK"_s);
    project.put(u"Book_BRK\\Book_BRK.xml"_s, "<Book_Master>");
    const QString path = u"Plant 300\\Book_OPG\\start.htm"_s;
    project.put(
        ProjectFile::links,
        xmlFile(u"<LINKS><!-- made elsewhere --><IBD>"_s
                + u"<ID><LinkIDSourceFile>%1</LinkIDSourceFile><LinkID>PUMP</LinkID>"_s.arg(path)
                + u"<Kind a='1'>main</Kind></ID>"_s + linkTarget(u"OLD"_s, path)
                + linkTarget(u"KEPT"_s, u"plant 300\\book_brk\\gone.htm#x"_s)
                + migrated(linkTarget(u"OIL"_s, u"Plant 300\\book_OPG\\start.htm#a"_s))
                + migrated(linkTarget(u"OIL"_s, u"Plant 300\\Book_OPG\\gone.htm#a"_s))
                + u"</IBD><IBS>"_s // of the project that this one is a copy of
                + migrated(linkReference(u"FAR"_s, u"Plant\\Book_OPG\\start.htm"_s))
                + linkReference(u"OLD"_s, u"Plant 300\\Book_OPGX\\p.htm"_s)
                + u"</IBS><Owner>us</Owner></LINKS>"_s));

    const ToolReport report = project.link();
    compareXml(project.bytes(ProjectFile::links), uR"(<LINKS>
	<IBD>
		<ID>
			<LinkID>KEPT</LinkID>
			<LinkIDSourceFile>plant 300\book_brk\gone.htm#x</LinkIDSourceFile>
		</ID>
		<ID>
			<LinkID>OIL</LinkID>
			<LinkIDSourceFile>Plant 300\book_OPG\start.htm#a</LinkIDSourceFile>
			<Origin>Migrated</Origin>
		</ID>
		<ID>
			<LinkID>PUMP</LinkID>
			<LinkIDSourceFile>Plant 300\Book_OPG\start.htm</LinkIDSourceFile>
			<Kind a="1">main</Kind>
		</ID>
	</IBD>
	<IBS>
		<USER>
			<LinkID>FAR</LinkID>
			<FilePath>Plant 300\Book_OPG\start.htm</FilePath>
			<Origin>Migrated</Origin>
		</USER>
	</IBS>
	<Owner>us</Owner>
</LINKS>
)"_s);
    QCOMPARE(report.findings.size(), 2); // the broken book is the first
    QCOMPARE(logLine(report.findings[1]),
             u"QV_LinkID.xml: LINK11 Entries that nothing in the project "
             "says any more, and that were left out: 3."_s);

    const QByteArray docLinks = project.bytes(u"DocToDoc\\DocLinks.xml"_s);
    project.put(u"Book_OPG\\start.htm"_s, "<a href=gone.htm>");
    project.put(ProjectFile::links, "<LINKS><IBD>");
    QVERIFY(errorOf([&] { project.link(); }).contains(ProjectFile::links));
    QCOMPARE(project.bytes(ProjectFile::links), QByteArray("<LINKS><IBD>"));
    QCOMPARE(project.bytes(u"DocToDoc\\DocLinks.xml"_s), docLinks);
}

// At whatever step of its writing it fails or is stopped.
void tst_linktools::leavesTheOldFilesWhenItFails()
{
    LinkWorld project;
    const TocBook guide =
        project.addBook(u"Guide"_s, u"OPG"_s, {{u"start.htm"_s, R"(<a href="gone.htm">)"}});
    project.link();
    project.writeContext();
    const QStringList results{u"DocToDoc\\DocLinks.xml"_s, u"DynamicHelp\\Book_DynamicHelp.xml"_s};
    const QByteArrayList old{project.bytes(results[0]), project.bytes(results[1])};
    project.changePage(guide, 0, [](BookPage &page) { page.contextIds = {{u"IDH_A"_s, u"1"_s}}; });
    project.put(u"Book_OPG\\start.htm"_s, R"(<a href="elsewhere.htm">)");

    const QList<std::function<void()>> tools{[&] { project.link(); },
                                             [&] { project.writeContext(); }};
    for (qsizetype tool = 0; tool < tools.size(); ++tool) {
        QSet<QByteArray> left;
        int step = 0;
        const auto isDisturbed = [&] {
            int rest = step++;
            project.files.disturb = [&] {
                if (rest-- == 0)
                    throw QvError(PermissionDenied, {}, u"disk full"_s);
            };
            trap([](const QvError &) {}, tools[tool]);
            project.files.disturb = [] {};
            return rest < 0;
        };
        while (isDisturbed()) {
            recoverFreshFolder(project.files, project.folder + results[tool].section(u'\\', 0, 0));
            left.insert(project.bytes(results[tool]));
            QCOMPARE(project.world.below(project.folder).filter(u".qv"_s), QStringList());
        }
        QVERIFY(step > 5);
        QVERIFY(project.bytes(results[tool]) != old[tool]);
        QVERIFY(left.contains(old[tool]));
        left.remove(old[tool]);
        left.remove(project.bytes(results[tool]));
        QVERIFY(left.isEmpty());
    }

    project.put(u"Book_OPG\\start.htm"_s, R"(<a href="third.htm">)");
    const QByteArray before = project.bytes(results[0]);
    Stopper stopper;
    QVERIFY_THROWS_EXCEPTION(Unwinding,
                             project.link(stopper.when([](int, const QString &) { return true; })));
    QCOMPARE(project.bytes(results[0]), before);
}

void tst_linktools::writesTheContextMap()
{
    LinkWorld project;
    const TocBook guide =
        project.addBook(u"Guide"_s, u"OPG"_s, {{u"start.htm"_s, "<p>"}, {u"stop.htm"_s, "<p>"}});
    project.changePage(guide, 0, [](BookPage &page) {
        page.contextIds = {
            {u"IDH_START"_s, u"100"_s}, {u"2bad"_s, u"3"_s}, {u"IDH_NONE"_s, {}}, {{}, u"7"_s}};
    });
    project.changePage(guide, 1, [](BookPage &page) {
        page.file = u"sub/../STOP.htm"_s; // not taken
        page.contextIds = {{u"IDH_LOST"_s, u"9"_s}};
        page.pages = {{u"P0003"_s,
                       u"Stop"_s,
                       u"STOP.htm"_s,
                       {},
                       {},
                       {{u"IDH_START"_s, u"5"_s},
                        {u"IDH_X"_s, u"100"_s},
                        {u"IDH_LAST"_s, u"4294967295"_s},
                        {u"IDH_MORE"_s, u"4294967296"_s}}}};
    });
    project.put(u"DynamicHelp\\ContextMap.h"_s, "old");
    project.put(u"DynamicHelp\\notes.txt"_s, "the author's");
    QFile(project.native(u"DynamicHelp/ContextMap.h"_s)).setPermissions(QFile::ReadOwner);

    const ToolReport report = project.writeContext();
    QCOMPARE(report.outcome, ToolReport::Outcome::Warnings);
    QCOMPARE(project.log(u"DynamicHelp\\ContextSettings_Log.txt"_s), lines(uR"(Context settings
9 context ids, 2 of them usable.

Book_OPG\start.htm: CTX01 The context id 2bad is no name that programs can use. Use letters, digits and _ only, beginning with a letter.
Book_OPG\start.htm: CTX02 The context id IDH_NONE has no number from 1 to 4294967295.
Book_OPG\start.htm: CTX01 The context number 7 has no name.
Book_OPG\sub/../STOP.htm: CTX05 The context id IDH_LOST leads to a page that is not there.
Book_OPG\stop.htm: CTX03 The context id IDH_START stands at Book_OPG\start.htm already.
Book_OPG\stop.htm: CTX04 The number 100 of IDH_X belongs to IDH_START already.
Book_OPG\stop.htm: CTX02 The context id IDH_MORE has no number from 1 to 4294967295.
Book_OPG\stop.htm: CTX06 Between 100 and 4294967295 no context number is used.
)"_s));
    compareXml(project.bytes(u"DynamicHelp\\Book_DynamicHelp.xml"_s), uR"(<Book_Master>
	<Book>
		<Book_Name>Dynamic Help</Book_Name>
		<Book_Acro>DYNAMICHELP</Book_Acro>
		<Book_Key>Plant 300</Book_Key>
		<Book_Path>Docs\Plant 300\DynamicHelp\</Book_Path>
		<Book_Language>ENU</Book_Language>
	</Book>
	<Context_Map>
		<Context ID="IDH_START" Number="100">
			<Context_Book>OPG</Context_Book>
			<Context_Page>P0001</Context_Page>
			<Context_Target>Book_OPG\start.htm</Context_Target>
		</Context>
		<Context ID="IDH_LAST" Number="4294967295">
			<Context_Book>OPG</Context_Book>
			<Context_Page>P0003</Context_Page>
			<Context_Target>Book_OPG\stop.htm</Context_Target>
		</Context>
	</Context_Map>
</Book_Master>
)"_s);
    QCOMPARE(project.bytes(u"DynamicHelp\\ContextMap.h"_s),
             QByteArray("/* Context ids of Plant 300 */\r\n#ifndef QV_CONTEXT_MAP_H\r\n"
                        "#define QV_CONTEXT_MAP_H\r\n\r\n#define IDH_START 100\r\n"
                        "#define IDH_LAST 4294967295\r\n\r\n#endif\r\n"));
    QCOMPARE(project.bytes(u"DynamicHelp\\ContextMap.csv"_s),
             QByteArray("\xEF\xBB\xBFID,Number,Book,Page,Target\r\n"
                        "IDH_START,100,\"OPG\",P0001,\"Book_OPG\\start.htm\"\r\n"
                        "IDH_LAST,4294967295,\"OPG\",P0003,\"Book_OPG\\stop.htm\"\r\n"));
    // What lay there stays, and what was read-only is again.
    QCOMPARE(project.bytes(u"DynamicHelp\\notes.txt"_s), QByteArray("the author's"));
    QVERIFY(project.files.status(project.folder + u"DynamicHelp\\ContextMap.h"_s).readOnly);
}

void tst_linktools::writesTheQuickNavigation()
{
    LinkWorld project;
    project.addBook(
        u"Guide"_s, u"OPG"_s,
        {{u"start.htm"_s, "<p id=one>"}, {u"stop.htm"_s, "<p>"}, {u"rest.htm"_s, "<p>"}});
    project.addGlobals();
    project.put(ProjectFile::quickNav, xmlFile(uR"(<QV_QuickNav>
<View ID="V1"><View_Name>Operator</View_Name><Group ID="G1"><Group_Name>Pumps</Group_Name>
<Topic ID="T1"><Topic_Name>Starting</Topic_Name><Category ID="C1"><Category_Name>Steps</Category_Name>
<Link Book="opg" Page="P0001"><Link_Title>Start it</Link_Title><Link_Anchor>one</Link_Anchor></Link>
<Link Book="OPG" Page="P0002"><Link_Anchor>two</Link_Anchor></Link>
<Link Book="OPG" Page="P0009"><Link_Title>Nothing</Link_Title></Link>
<Link Book="GLOBAL" Page="welcome" /><Link Book="GLOBAL" Page="legal" />
</Category></Topic></Group></View>
<View ID="V2"><View_Name>Service</View_Name></View></QV_QuickNav>)"_s));

    QCOMPARE(project.writeQuickNav().outcome, ToolReport::Outcome::Warnings);
    QCOMPARE(project.log(u"QuickNav\\QuickNav_Log.txt"_s), lines(uR"(Quick navigation
3 entries; 3 dead links, 1 place without links, 1 page that no entry leads to.

QuickNav\Book_QuickNav.xml: NAV02 Operator > Pumps > Starting > Steps: the link "stop" leads to the place #two, which Book_OPG\stop.htm does not have.
QuickNav\Book_QuickNav.xml: NAV01 Operator > Pumps > Starting > Steps: the link "Nothing" leads to page P0009 of book OPG, which is in no book's outline.
QuickNav\Book_QuickNav.xml: NAV01 Operator > Pumps > Starting > Steps: the link "legal" leads to _Global Information\legal.htm, which is not there.
QuickNav\Book_QuickNav.xml: NAV03 Service is empty.
Book_OPG\Book_OPG.xml: NAV04 No entry leads to 1 of the 3 pages of Guide.
)"_s));
    const QByteArray index = project.bytes(u"QuickNav\\QuickNav.xml"_s);
    compareXml(index, uR"(<QV_QuickNav_Index>
	<Entry View="Operator" Group="Pumps" Topic="Starting" Category="Steps">
		<Entry_Title>Start it</Entry_Title>
		<Entry_Target>Book_OPG\start.htm#one</Entry_Target>
	</Entry>
	<Entry View="Operator" Group="Pumps" Topic="Starting" Category="Steps">
		<Entry_Title>stop</Entry_Title>
		<Entry_Target>Book_OPG\stop.htm</Entry_Target>
	</Entry>
	<Entry View="Operator" Group="Pumps" Topic="Starting" Category="Steps">
		<Entry_Title>welcome</Entry_Title>
		<Entry_Target>_Global Information\welcome.htm</Entry_Target>
	</Entry>
</QV_QuickNav_Index>
)"_s);

    project.put(ProjectFile::quickNav, "<QV_QuickNav>");
    QVERIFY(errorOf([&] { project.writeQuickNav(); }).contains(ProjectFile::quickNav));
    QCOMPARE(project.bytes(u"QuickNav\\QuickNav.xml"_s), index);
}

void tst_linktools::saysWhatIsStale()
{
    LinkWorld project;
    project.addBook(u"Guide"_s, u"OPG"_s,
                    {{u"a.htm"_s, "1"}, {u"b.htm"_s, "2"}, {u"c.htm"_s, "3"}, {u"d.htm"_s, "4"}});
    project.link();
    project.writeContext();
    constexpr qint64 then = 1'700'000'000;
    const QStringList made{u"QV_Toc.xml"_s,     u"Book_OPG/Book_OPG.xml"_s, u"Book_OPG/a.htm"_s,
                           u"Book_OPG/b.htm"_s, u"Book_OPG/c.htm"_s,        u"Book_OPG/d.htm"_s};
    for (const QString &file :
         made + QStringList{u"DocToDoc/DocLinks.xml"_s, u"DynamicHelp/Book_DynamicHelp.xml"_s})
        setTime(project.native(file), then);
    const auto plan = [&](qint64 links, qint64 context) {
        return planBuild(project.input(), ProjectListing::read(project.files, project.folder),
                         {links, context, std::nullopt, std::nullopt});
    };

    const BuildPlan fresh = plan(Light::good, Light::warnings);
    QCOMPARE(fresh.of(BuildTool::DocToDoc).reasons, QStringList());
    QCOMPARE(fresh.of(BuildTool::DocToDoc).lastRun, QDateTime::fromSecsSinceEpoch(then));
    QVERIFY(!fresh.of(BuildTool::ContextSettings).isStale());
    QCOMPARE(fresh.of(BuildTool::QuickNav).reasons, QStringList(u"It has not run yet."_s));
    QCOMPARE(plan(Light::mustRun, Light::failed).of(BuildTool::DocToDoc).reasons,
             QStringList(u"The project was edited after the last run."_s));

    for (const QString &file : made)
        setTime(project.native(file), then + 1);
    const BuildPlan stale = plan(Light::good, Light::failed);
    QCOMPARE(stale.of(BuildTool::DocToDoc).reasons,
             QStringList({u"The list of books changed."_s, u"Books changed: Guide."_s,
                          u"Pages changed: a.htm, b.htm, c.htm and 1 more."_s}));
    QCOMPARE(stale.of(BuildTool::ContextSettings).reasons,
             QStringList({u"The last run failed."_s, u"The list of books changed."_s,
                          u"Books changed: Guide."_s}));
}

void tst_linktools::readsTheAuthorsFiles()
{
    LinkWorld project;
    const TocBook guide = project.addBook(u"Guide"_s, u"OPG"_s, {{u"start.htm"_s, "<p>"}});
    project.changePage(guide, 0, [](BookPage &page) {
        page.pages = {{u"P0002"_s, u"Below"_s, u"../../secret.htm"_s, {}, {}}};
    });
    TableOfContents(project.world.session, project.world.files)
        .addBook(project.name,
                 {u"Out"_s, u"OUT"_s, project.name, u"..\\Other"_s, u"b.xml"_s, {}, {}});
    project.addGlobals();
    project.put(ProjectFile::keyWords, "broken");

    const BuildInput input = project.input();
    QCOMPARE(input.folder, project.folder);
    QCOMPARE(input.pageFile(u"opg"_s, u"P0001"_s), u"Book_OPG\\start.htm"_s);
    QCOMPARE(input.pageFile(u"OPG"_s, u"P0002"_s), QString()); // leaves the project
    QCOMPARE(input.pageFile(u"GLOBAL"_s, u"legal"_s), u"_Global Information\\legal.htm"_s);
    const QList<PageOwner> owners = input.ownersOf(u"BOOK_OPG\\Start.htm"_s);
    QCOMPARE(owners.size(), 1);
    QCOMPARE(owners[0].book + owners[0].id + owners[0].title, u"OPGP0001start"_s);
    QCOMPARE(input.pageFolders(), QStringList({u"_Global Information"_s, u"Book_OPG"_s}));
    QStringList files;
    for (const Finding &problem : input.problems)
        files.append(problem.code + u' ' + problem.file);
    QCOMPARE(files, QStringList({u"DATA01 b.xml"_s, u"DATA01 QV_SearchKeyWords.xml"_s}));
    QCOMPARE(input.bookProblems(), input.problems.first(1));
}

// Whatever a dying program leaves of the old and the new folder, one of them is there afterwards.
void tst_linktools::finishesOrTakesBackAFolder()
{
    const QList<std::pair<QString, QByteArray>> cases{
        {u"D D.qvnew"_s, "D"}, {u"D.qvold D.qvnew"_s, "D.qvnew"},
        {u"D D.qvold"_s, "D"}, {u"D.qvold"_s, "D.qvold"},
        {u"D.qvnew"_s, ""},    {u"D D.qvold.qvdel1 D.qvnew.qvdel2"_s, "D"}};
    for (const auto &[left, expected] : cases) {
        TestProgram world;
        for (const QString &name : left.split(u' '))
            world.put(u"S:\\Docs\\P\\"_s + name + u"\\f.txt"_s, name.toUtf8());
        recoverFreshFolder(world.files, u"S:\\Docs\\P\\D"_s);
        const QString there = world.below(u"S:\\Docs\\P"_s).join(u' ');
        QVERIFY2(there == (expected.isEmpty() ? u""_s : u"D"_s),
                 qPrintable(left + u": "_s + there));
        if (!expected.isEmpty())
            QCOMPARE(world.bytes(u"S:\\Docs\\P\\D\\f.txt"_s), expected);
    }
}

QTEST_GUILESS_MAIN(tst_linktools)
#include "tst_linktools.moc"
