#include "reports/LinkReport.h"
#include "support/LinkFile.h"
#include "support/System.h"
#include "support/TestProgram.h"
#include "support/XmlFile.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QByteArray page = "<p>text</p>";

QString reference(const QString &identifier, const QString &path = u"Plant\\from.htm"_s)
{
    return linkReference(identifier, path);
}

/// A server with listed projects, their pages and their link files.
struct Server : TestProgram
{
    explicit Server(const QStringList &projects)
    {
        QString entries;
        for (const QString &name : projects)
            entries += u"<QV><QV_Name>%1</QV_Name></QV>\n"_s.arg(name);
        put(u"S:\\Docs\\QV_Selection.xml"_s,
            xmlFile(u"<QV_Selection_List><QVs>\n%1</QVs></QV_Selection_List>\n"_s.arg(entries)));
    }

    void putPage(const QString &below, const QByteArray &content = page)
    {
        QDir().mkpath(QFileInfo(native(u"Docs/"_s + below)).path());
        QFile file(native(u"Docs/"_s + below));
        QVERIFY(file.open(QFile::WriteOnly) && file.write(content) == content.size());
    }
    void putLinkFile(const QString &project, const QString &text)
    {
        putPage(project + u"/QV_LinkID.xml"_s, xmlFile(text));
    }
    void putLinks(const QString &project, const QString &targets, const QString &references = {})
    {
        putLinkFile(project, u"<LINKS>\n\t<IBD>%1</IBD>\n\t<IBS>%2</IBS>\n</LINKS>\n"_s.arg(
                                 targets, references));
    }

    QStringList targets(int threads = 3)
    {
        return list(LinkReport(program, threads).GetIBD_Details());
    }
    QStringList references(int threads = 3)
    {
        return list(LinkReport(program, threads).GetIBS_Details());
    }
    QString state(const QString &identifier)
    {
        return LinkReport(program).CheckLinkIDExist(identifier) ? u"OK"_s : u"BAD"_s;
    }

    /// The texts without what all addresses begin with; checks the shape of the list.
    static QStringList list(const LinkEntries &entries)
    {
        QStringList texts;
        for (qsizetype index = 0; index < entries.count(); ++index)
            texts.append(entries.at(index));
        const qsizetype good = texts.filter(QRegularExpression(u"^OK@@@"_s)).size();
        const qsizetype full = texts.filter(u"@@@S:\\Docs\\"_s).size();
        texts.replaceInStrings(u"@@@S:\\Docs\\"_s, u"@@@"_s);
        const QString behind = entries.at(entries.UBound() - 1) + entries.at(entries.UBound());
        if (good != entries.goodCount() || full != entries.count() || !behind.isEmpty())
            texts.append(u"the list has not the right shape"_s);
        return texts;
    }
};

} // namespace

class tst_linkreport final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsEntries();
    void looksForTargets();
    void theFirstDestinationDecides();
    void aSectionCanBeADestination();
    void unreadableFilesCountAsEmpty();
    void keepsTheOrderTellsHowFarItIsAndStops();
};

void tst_linkreport::readsEntries()
{
    const QString link = u"<LinkID>L1</LinkID>"_s;
    const QString path = u"<LinkIDSourceFile>a</LinkIDSourceFile>"_s;
    const auto id = [](const QString &content) { return u"<ID>"_s + content + u"</ID>"_s; };
    const QList<QPair<QString, QStringList>> sections{
        {{}, {}},
        {linkTarget(u"L1"_s, u"a"_s), {u"L1@@@a"_s}},
        {id(path + link) + id(path + u"<LinkID>L2</LinkID>"_s), {u"@@@a"_s, u"L1@@@a"_s}},
        {id(link + path) + id(path), {u"L1@@@a"_s, u"L1@@@a"_s}},
        {id(link), {}},
        {id(link + path + u"<LinkID>L2</LinkID>"_s + path), {u"L1@@@a"_s, u"L2@@@a"_s}},
        {linkTarget(u"\n\t L\t1 \n"_s, u" a b \n"_s), {u"L 1@@@a b"_s}},
        {linkTarget(u"<![CDATA[<L>]]>&amp;<!-- no -->1<b>2</b>"_s, u"a<?no?>&#x62;"_s),
         {u"<L>&12@@@ab"_s}},
        {id(u"<LINKID>x</LINKID><LinkIDs/>x<Owner>%2</Owner><FilePath>b</FilePath>%1%2"_s.arg(
             link, path)),
         {u"L1@@@a"_s}},
        {u"%1<Id>%1</Id><x><ID>%1</ID></x>"_s.arg(link + path) + reference(u"R1"_s), {}},
        {id(u"<LinkID/><LinkIDSourceFile/>"_s), {u"@@@"_s}},
        {id(link) + u"</IBD><ID/><IBD>"_s + id(path), {u"L1@@@a"_s}},
    };
    for (const auto &[section, entries] : sections) {
        Server server({u"Plant"_s});
        server.putLinks(u"Plant"_s, section);
        QStringList expected = entries;
        QCOMPARE(server.targets(),
                 expected.replaceInStrings(QRegularExpression(u"^"_s), u"BAD@@@"_s));
    }
}

void tst_linkreport::looksForTargets()
{
    Server server({u"Plant"_s});
    for (const auto &name : {u"a.htm"_s, u"a#b.htm"_s, u"größe.htm"_s, u"two.htm"_s, u"Two.htm"_s})
        server.putPage(u"Plant/Book/"_s + name);
    if constexpr (here::takesEveryName) {
        server.putPage(u"Plant/Book/con.htm"_s);    // a device elsewhere
        server.putPage(u"Plant/Odd/not a\\name"_s); // no listing of this folder can be had
    }
    server.putPage(u"Plant/Book/empty.htm"_s, {});
    server.putPage(u"Plant/Book/cr.htm"_s, "\rtext");
    server.putPage(u"Plant/Book/lf.htm"_s, "\ntext");
    server.putPage(u"Plant/Book/blank.htm"_s, " \n");
    server.putPage(u"Plant/x#1/a.htm"_s);
    server.putPage(u"top.htm"_s);
    server.putPage(u"Plant/Odd/a.htm"_s);
    server.putPage(u"Plant/Odd/Sub/a.htm"_s);
    server.putPage(u"../Other/a.htm"_s);
    here::link(server.native(u"Other"_s), server.native(u"Docs/Plant/link"_s));
    here::link(server.native(u"Other/a.htm"_s), server.native(u"Docs/Plant/link.htm"_s));

    QStringList good = u"Plant\\Book\\a.htm|Plant/Book\\\\a.htm#top|PLANT\\bOOK\\A.HTM#1|"
                       ".\\Plant\\Book\\a.htm|Plant\\Book\\blank.htm|plant\\book\\GRÖßE.htm|"
                       "Plant\\Book\\two.htm|top.htm|Plant\\Book\\a#b.htm#x|Plant\\Book\\a.htm#b|"
                       "Plant\\Odd\\a.htm|plant\\odd\\A.htm#x|plant\\odd\\sub\\A.htm"_s.split(u'|');
    const QStringList onlyLookedUp{u"Plant\\Book\\a#b.htm"_s, u"Plant\\x#1\\a.htm"_s};
    QStringList bad = u"|#top|Plant\\Book\\con.htm|Plant\\Book\\none.htm|Plant\\Book|Plant\\Book\\|"
                      "Plant\\Book\\a.htm\\|Plant\\Book\\a.htm\\a.htm|Plant\\Book\\empty.htm|"
                      "Plant\\Book\\cr.htm|Plant\\Book\\lf.htm#x|"
                      "Plant\\Book\\a.htm#b#c|Plant\\Odd\\none.htm"_s.split(u'|');
    (here::takesEveryName ? bad : good) << u"Plant\\Book\\TWO.htm"_s; // one of two, or the one
    bad << u"None\\"_s.repeated(60'000) + u"a.htm"_s;
    // These lead to pages that are there, but for the rules that forbid it.
    bad << u"..\\Other\\a.htm|Plant\\..\\..\\Other\\a.htm|Plant/../Plant/Book/a.htm|"
           "S:\\Other\\a.htm|S:\\Docs\\top.htm|\\Plant\\Book\\a.htm|Plant\\link\\a.htm|"
           "Plant\\LINK\\a.htm|Plant\\link.htm|file:///Plant/Book/a.htm"_s.split(u'|')
        << server.native(u"Other/a.htm"_s) << u"\\\\srv"_s + server.native(u"Other/a.htm"_s);

    QString targets;
    QString references;
    QStringList listed;
    QStringList lookedUp;
    for (const QString &path : bad + good + onlyLookedUp) {
        const QString number = QString::number(listed.size());
        targets += linkTarget(number, path);
        references += reference(number);
        const QString status = good.contains(path) ? u"OK"_s : u"BAD"_s;
        const QString found = bad.contains(path) ? u"BAD"_s : u"OK"_s;
        listed.append(u"%1@@@%2@@@%3"_s.arg(status, number, path));
        lookedUp.append(u"%1@@@%2@@@Plant\\from.htm"_s.arg(found, number));
    }
    server.putLinks(u"Plant"_s, targets, references);
    QCOMPARE(server.targets(), listed);
    QCOMPARE(server.references(), lookedUp);
    for (qsizetype number = 0; number < lookedUp.size(); ++number)
        QCOMPARE(server.state(QString::number(number)), lookedUp.at(number).section(u'@', 0, 0));
}

void tst_linkreport::theFirstDestinationDecides()
{
    Server server({u"One"_s, u"Two"_s, u"Three"_s});
    server.putPage(u"Two/a.htm"_s);
    const QString gone = u"Two\\gone.htm"_s;
    const QString there = u"Two\\a.htm#1"_s;
    server.putLinks(u"Three"_s, linkTarget(u"late"_s, there) + linkTarget(u"gone first"_s, there));
    server.putLinks(u"Two"_s,
                    linkTarget(u" there\tfirst"_s, there) + linkTarget(u"there first"_s, gone)
                        + u"<ID><LinkIDSourceFile>%1</LinkIDSourceFile><LinkID>path first</LinkID>"
                          "<LinkID>second name</LinkID></ID>"_s.arg(there));
    server.putLinks(u"One"_s,
                    linkTarget(u"gone first"_s, gone) + u"<ID><LinkID>late</LinkID></ID>"_s
                        + u"<ID><LinkIDSourceFile>%1</LinkIDSourceFile></ID>"_s.arg(gone)
                        + u"<ID><LinkID>two paths</LinkID><LinkIDSourceFile>%1</LinkIDSourceFile>"
                          "<LinkIDSourceFile>%2</LinkIDSourceFile></ID>"_s.arg(gone, there),
                    reference(u"there first"_s) + reference(u"gone first"_s) + reference(u"late"_s)
                        + reference(u"path first"_s) + reference(u"second\tname "_s)
                        + reference(u"two paths"_s) + reference(u"nobody's"_s)
                        + reference(u"LATE"_s) + reference({}));
    QStringList found;
    for (const QString &entry : server.references()) {
        const QStringList fields = entry.split(u"@@@"_s);
        QCOMPARE(server.state(fields.at(1)), fields.at(0));
        found.append(fields.at(0) + u' ' + fields.at(1));
    }
    QCOMPARE(found, (QStringList{u"OK there first"_s, u"BAD gone first"_s, u"OK late"_s,
                                 u"OK path first"_s, u"OK second name"_s, u"BAD two paths"_s,
                                 u"BAD nobody's"_s, u"BAD LATE"_s, u"BAD "_s}));
}

// A section of published targets that holds an entry whose whole text is the identifier counts as
// one big entry, before the single ones of its file.
void tst_linkreport::aSectionCanBeADestination()
{
    Server server({u"One"_s, u"Two"_s});
    server.putPage(u"One/a.htm"_s);
    const QString there = u"<LinkIDSourceFile>One\\a.htm</LinkIDSourceFile>"_s;
    const QString gone = u"<LinkIDSourceFile>gone</LinkIDSourceFile>"_s;
    server.putLinks(u"One"_s, linkTarget(u"early"_s, u"gone"_s));
    server.putLinks(u"Two"_s,
                    linkTarget(u"A"_s, u"gone"_s) + u"<ID>no path</ID></IBD><IBD>"_s
                        + u"<ID> B</ID><ID>A</ID><ID><LinkID>C</LinkID></ID><ID>early</ID>"_s
                        + there + gone,
                    reference(u"A"_s) + reference(u"B"_s) + reference(u"C"_s)
                        + reference(u"early"_s) + reference(u"no path"_s));
    QCOMPARE(server.references().replaceInStrings(u"@@@Plant\\from.htm"_s, QString()),
             (QStringList{u"OK@@@A"_s, u"BAD@@@B"_s, u"OK@@@C"_s, u"BAD@@@early"_s,
                          u"BAD@@@no path"_s}));
    QCOMPARE(server.state(u"A"_s), u"OK"_s);
    QCOMPARE(server.state(u"early"_s), u"BAD"_s);
}

void tst_linkreport::unreadableFilesCountAsEmpty()
{
    Server server(
        u"First|Cut|Root|Space|Doctype|No file|No folder|Linked|Linked file|..|C:||Last"_s.split(
            u'|'));
    server.putPage(u"First/a.htm"_s);
    const QString whole = u"<LINKS%2><IBD>%1</IBD><IBS>%3</IBS></LINKS%2>\n"_s;
    const auto text = [&](const QString &name, const QString &root = {}) {
        return whole.arg(linkTarget(name, u"First\\a.htm"_s), root, reference(name));
    };
    server.putLinkFile(u"First"_s, text(u"First"_s));
    server.putLinkFile(u"Last"_s, text(u"Last"_s));
    server.putLinkFile(u"Cut"_s, text(u"Cut"_s).chopped(2));
    server.putLinkFile(u"Root"_s, text(u"Root"_s, u"X"_s));
    server.putLinkFile(u"Space"_s,
                       text(u"Space"_s).replace(u"<LINKS>"_s, u"<LINKS xmlns=\"x\">"_s));
    server.putLinkFile(u"Doctype"_s, u"<!DOCTYPE LINKS>"_s + text(u"Doctype"_s));
    server.putPage(u"QV_LinkID.xml"_s, xmlFile(text(u"Above"_s)));
    server.putPage(u"No file/b.htm"_s);
    here::link(server.native(u"Docs/First"_s), server.native(u"Docs/Linked"_s));
    QVERIFY(QDir().mkpath(server.native(u"Docs/Linked file"_s)));
    here::link(server.native(u"Docs/First/QV_LinkID.xml"_s),
               server.native(u"Docs/Linked file/QV_LinkID.xml"_s));

    QCOMPARE(server.targets(),
             (QStringList{u"OK@@@First@@@First\\a.htm"_s, u"OK@@@Last@@@First\\a.htm"_s}));
    QCOMPARE(server.references(),
             (QStringList{u"OK@@@First@@@Plant\\from.htm"_s, u"OK@@@Last@@@Plant\\from.htm"_s}));
    QCOMPARE(server.state(u"Cut"_s), u"BAD"_s);
    QCOMPARE(server.state(u"Last"_s), u"OK"_s);
}

void tst_linkreport::keepsTheOrderTellsHowFarItIsAndStops()
{
    QStringList projects;
    for (int number = 60; number > 0; --number)
        projects.append(QString::number(number));
    Server server(projects);
    QStringList expected;
    for (qsizetype at = 0; at < projects.size(); ++at) {
        QString references; // the first files take longest
        for (qsizetype row = at * 5; row < 300; ++row) {
            references += reference(projects.at((row + at) % 60), QString::number(row));
            expected.append(u"%1@@@%2@@@%3"_s.arg((row + at) % 2 ? u"BAD"_s : u"OK"_s,
                                                  projects.at((row + at) % 60),
                                                  QString::number(row)));
        }
        if (at % 2 == 0)
            server.putPage(projects.at(at) + u"/a.htm"_s);
        server.putLinks(projects.at(at),
                        linkTarget(projects.at(at), projects.at(at) + u"\\a.htm"_s), references);
    }
    QCOMPARE(server.references(1), expected);
    QCOMPARE(server.references(4), expected);

    QStringList told;
    int last = 0;
    Progress progress;
    progress.report = [&](int done, int total, const QString &what) {
        QVERIFY(done > last - 1 && done <= total);
        last = done;
        if (done <= total / 2 && told.size() < 60)
            told.append(what);
    };
    (void)LinkReport(server.program).GetIBD_Details(progress);
    QCOMPARE(told, projects);

    int steps = 0;
    Stopper stop;
    const Progress atOnce = stop.when([&](int, auto &) { return ++steps > 0; });
    QVERIFY_THROWS_EXCEPTION(Unwinding, LinkReport(server.program).GetIBD_Details(atOnce));
    QCOMPARE(steps, 1);
    QVERIFY_THROWS_EXCEPTION(Unwinding, LinkReport(server.program).GetIBS_Details(atOnce));
    QCOMPARE(steps, 1);
}

QTEST_GUILESS_MAIN(tst_linkreport)
#include "tst_linkreport.moc"
