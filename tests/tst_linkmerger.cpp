#include "components/LinkIDMerger.h"
#include "support/LinkFile.h"
#include "support/TestProgram.h"
#include "support/XmlFile.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QString linksOf(const QString &project)
{
    return u"S:\\Docs\\"_s + project + u"\\QV_LinkID.xml"_s;
}

/// The content of a link file: entries "a>P\a.htm" of both sections, or elements as they are.
QString sections(const QStringList &targets, const QStringList &references = {})
{
    const auto section = [](const QString &name, const QStringList &entries, const auto &form) {
        QString content;
        for (const QString &entry : entries)
            content += entry.startsWith(u'<')
                           ? entry
                           : form(entry.section(u'>', 0, 0), entry.section(u'>', 1));
        return content.isEmpty() ? u"<%1/>"_s.arg(name) : u"<%1>%2</%1>"_s.arg(name, content);
    };
    return section(u"IBD"_s, targets, linkTarget) + section(u"IBS"_s, references, linkReference);
}

struct World : TestProgram
{
    LinkIDMerger &merger = components.linkIDMerger;
    const QString merged = linksOf(u"All"_s);

    World()
    {
        for (const QString &project : {u"All"_s, u"P"_s, u"Q"_s})
            files.makeFolder(u"S:\\Docs\\"_s + project);
    }
    void write(const QString &path, const QString &content)
    {
        put(path, xmlFile(u"<LINKS>"_s + content + u"</LINKS>"_s));
    }
    QString read(const QString &path)
    {
        const QString text = xmlText(bytes(path)).section(u"<LINKS>"_s, 1);
        return text.section(u"</LINKS>"_s, 0, 0)
            .remove(u'\n')
            .remove(u'\t')
            .replace(u" />"_s, u"/>"_s);
    }
    QStringList merge(const QStringList &projects, const Progress &progress = {})
    {
        QList<LinkSource> sources;
        for (const QString &project : projects)
            sources.append({linksOf(project), project, {{u"BOOK_r"_s, u"Book_R-P"_s}}});
        return merger.mergeAll(merged, u"All"_s, sources, progress);
    }
};

} // namespace

class tst_linkmerger : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rewritesPathsAndDropsDuplicates();
    void tellsOfConflictsAndOfWhatCannotBeRead();
    void mergesOneFileIntoAnother();
    void unmergesAProject();
};

void tst_linkmerger::rewritesPathsAndDropsDuplicates()
{
    World world;
    const QString odd = u"<ID><LinkID>none</LinkID></ID>"
                        "<ID><LinkIDSourceFile>%1\\late</LinkIDSourceFile><LinkID>x</LinkID></ID>"
                        "<ID><LinkID>two</LinkID><LinkIDSourceFile>%1\\1</LinkIDSourceFile>"
                        "<LinkIDSourceFile>%1\\2</LinkIDSourceFile></ID>"_s;
    const QString rich = u"<ID kind=\"k\"><!--why--><LinkID>r</LinkID><LinkIDSourceFile>%1\\r"
                         "</LinkIDSourceFile><Other><Deep>1</Deep></Other></ID>"_s;
    const QStringList elsewhere{u"b>P"_s, u"b>P 2\\Book_R\\p.htm"_s, u"b>Works\\P\\p.htm"_s,
                                u"b>\\P\\p.htm"_s, u"b>..\\P\\p.htm"_s};
    world.write(
        linksOf(u"P"_s),
        sections({u"a>P\\Book_A\\p.htm#x\\y"_s, rich.arg(u"P"_s)})
            + sections(QStringList{u" a\n>p\\Book_A\\p.htm#x\\y "_s, odd.arg(u"P"_s),
                                   odd.arg(u"P"_s), u"c> p/book_r/p.htm "_s, u"d>P\\Book_R.htm"_s}
                       + elsewhere));
    world.write(linksOf(u"Q"_s),
                sections({rich.arg(u"Q"_s)}, {u"a>Q\\a.htm"_s, u"A>Q\\a.htm"_s, u"a>q\\a.htm"_s}));
    QCOMPARE(world.merge({u"P"_s, u"Q"_s, u"Missing"_s}).size(), 1); // b has several targets
    const QString expected =
        sections(QStringList{u"a>All\\Book_A\\p.htm#x\\y"_s, rich.arg(u"All"_s), odd.arg(u"All"_s),
                             u"c>All/Book_R-P/p.htm"_s, u"d>All\\Book_R.htm"_s}
                     + elsewhere,
                 {u"a>All\\a.htm"_s, u"A>All\\a.htm"_s});
    QCOMPARE(world.read(world.merged), expected);
    world.merge({u"P"_s, u"Q"_s});
    QCOMPARE(world.read(world.merged), expected);
}

void tst_linkmerger::tellsOfConflictsAndOfWhatCannotBeRead()
{
    World world;
    world.write(world.merged, sections({u"a>All\\1.htm"_s}));
    world.write(linksOf(u"P"_s), sections({u"a>P\\2.htm"_s, u"b>P\\b.htm"_s}));
    world.put(linksOf(u"Q"_s), "<LINKS>");
    Stopper stop;
    const Progress stopping = stop.when([](int done, auto &) { return done == 1; });
    QVERIFY_THROWS_EXCEPTION(Unwinding, world.merge({u"P"_s, u"Q"_s}, stopping));
    QCOMPARE(world.read(world.merged), sections({u"a>All\\1.htm"_s}));
    QCOMPARE(world.merge({u"Q"_s, u"P"_s}),
             (QStringList{u"The links of the project Q were left out. S:\\Docs\\Q\\QV_LinkID.xml "
                          "cannot be read: line 1: the text ends too early"_s,
                          u"The link identifier a has more than one target, and all were kept: "
                          "All\\1.htm (from All), All\\2.htm (from P)"_s}));
    QCOMPARE(world.read(world.merged),
             sections({u"a>All\\1.htm"_s, u"a>All\\2.htm"_s, u"b>All\\b.htm"_s}));
    world.put(world.merged, "<OTHER/>");
    QVERIFY(errorOf([&] { world.merge({u"P"_s}); }).startsWith(u"75: "_s + world.merged));
    QCOMPARE(world.bytes(world.merged), "<OTHER/>");
}

void tst_linkmerger::mergesOneFileIntoAnother()
{
    World world;
    for (const QString &nowhere : {u"S:\\Docs\\\\QV_LinkID.xml"_s, u"S:\\QV_LinkID.xml"_s, u""_s})
        world.merger.MergeLinkIDFiles(world.merged, nowhere);
    QVERIFY(!world.files.exists(world.merged));
    world.merger.MergeLinkIDFiles(world.merged, linksOf(u"P"_s));
    QCOMPARE(world.read(world.merged), sections({}));

    QFile format(QFINDTESTDATA(u"../docs/formats/link-file.md"_s));
    QVERIFY(format.open(QFile::ReadOnly));
    QString page = QString::fromUtf8(format.readAll()).replace(u"Plant\\"_s, u"P\\"_s);
    page = page.section(u"```xml\n"_s, 1).section(u"```"_s, 0, 0);
    world.put(linksOf(u"P"_s), utf16Bytes(page));
    world.merger.MergeLinkIDFiles(world.merged, u"s:\\docs\\P\\QV_LinkID.xml"_s);
    QCOMPARE(world.read(world.merged), sections({u"PUMP_START>All\\Book_OPG\\start.htm#step1"_s},
                                                {u"VALVE_CLOSE>All\\Book_OPG\\stop.htm"_s}));
}

void tst_linkmerger::unmergesAProject()
{
    World world;
    ProjectCatalogue catalogue(world.session, world.files);
    for (const QString &name : {u"P"_s, u"Works"_s, u".."_s})
        world.list(name);
    const QString links = u"S:\\Docs\\QV_LinkID.xml"_s;
    const QStringList kept{u"w>Works\\P\\a.htm"_s, u"x>..\\a.htm"_s};
    const QString odd = u"<ID><LinkIDSourceFile>P\\b</LinkIDSourceFile></ID>"_s;
    world.write(links, sections(kept + QStringList{odd, u"p> p/a.htm"_s}, {u"w>P\\a.htm"_s}));
    for (const QString &name : {u"P"_s, u".."_s, u"My Favorites"_s, u"Unknown"_s})
        world.merger.UnMergeQVSelection(name);
    QCOMPARE(world.read(links), sections(kept));
    QCOMPARE(catalogue.GetProdQVSelection_Data(),
             (QStringList{{}, u"My Favorites#500"_s, u"Works#500"_s}));
    world.put(links, "<LINKS>");
    world.merger.UnMergeQVSelection(u"Works"_s);
    QCOMPARE(world.bytes(links), "<LINKS>");
    QCOMPARE(catalogue.GetProdQVSelection_All(), QStringList(2));
}

QTEST_GUILESS_MAIN(tst_linkmerger)
#include "tst_linkmerger.moc"
