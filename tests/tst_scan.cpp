#include "support/Errors.h"
#if __has_include(<gumbo.h>)
#include "support/ParsedPage.h"
#endif
#include "support/SampleProject.h"
#include "support/System.h"
#include "tools/build/PageFactsCache.h"
#include "tools/build/PageScan.h"
#include "tools/build/ScannedPages.h"

#include <QDirIterator>
#include <QRandomGenerator>
#include <QStringEncoder>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QString text(std::string_view utf8)
{
    return QString::fromUtf8(utf8.data(), qsizetype(utf8.size()));
}

/// One page scanned by itself, as page.htm of the folder Book_A in the project "Plant".
class OnePage
{
public:
    explicit OnePage(const QByteArray &bytes, const QString &language = u"ENU"_s)
        : facts(PageScan({u"Plant"_s, language}, table).page(bytes, "Book_A/page.htm", &readable))
        , targets(table.take())
    {
    }

    QStringList written(PageReference::Kind kind) const
    {
        QStringList all;
        for (const PageRef &ref : facts.refs) {
            if (ref.kind == kind)
                all.append(text(facts.of(ref.written)));
        }
        return all;
    }
    QStringList names() const
    {
        QStringList all;
        for (const PageAnchor &anchor : facts.anchors)
            all.append(text(facts.of(anchor.name)));
        return all;
    }
    QStringList headings() const
    {
        QStringList all;
        for (const PageHeading &heading : facts.headings)
            all.append(text(facts.of(heading.text)));
        return all;
    }
    /// "3 Unclosed b", those of the page as a whole without a line.
    QStringList faults() const
    {
        static constexpr const char *words[]{
            "no title", "empty",   "no language", "other language", "no charset",
            "charset",  "damaged", "double",      "unclosed",       "stray",
            "comment",  "cut off", "no alt",      "marker",         "nul"};
        QStringList all;
        for (const FoundFault &fault : facts.faults)
            all.append(
                u"%1 %2 %3"_s.arg(fault.line)
                    .arg(QLatin1StringView(words[int(fault.fault)]), text(facts.of(fault.detail)))
                    .trimmed());
        return all;
    }
    /// "B(the text)", one for each run: Title, Heading, Body, Alternative, Keywords.
    QString shown() const
    {
        QString all;
        for (const ReadablePage::Run &run : readable.runs)
            all += QString(QLatin1Char("T123BAK"[int(run.place)])) + u'('
                   + text(std::string_view(readable.text).substr(run.start, run.length)) + u')';
        return all;
    }

    TargetTable table;
    ReadablePage readable;
    PageFacts facts;
    std::vector<std::string> targets;
};

#if __has_include(<gumbo.h>)
constexpr bool hasParser = true;

QStringList sorted(QStringList list)
{
    list.removeDuplicates();
    list.sort();
    return list;
}

QStringList solid(QStringList list)
{
    for (QString &one : list)
        one = ParsedPage::solid(one);
    return list;
}

/// Pictures of <img> only, as the parser is asked for them.
void compareWithParser(const QByteArray &page, const QString &name)
{
    const OnePage ours(page);
    const PageBytes decoded(page, u"ENU"_s);
    const std::string_view utf8 = decoded.text();
    const ParsedPage theirs(QByteArray(utf8.data(), qsizetype(utf8.size())));
    const auto context = qPrintable(name);
    QString shown;
    for (const ReadablePage::Run &run : ours.readable.runs) {
        if (run.place >= ReadablePage::Place::Heading1 && run.place <= ReadablePage::Place::Body)
            shown += text(std::string_view(ours.readable.text).substr(run.start, run.length));
    }
    QVERIFY2(sorted(ours.names()) == sorted(theirs.names), context);
    QVERIFY2(solid(ours.headings()) == theirs.headings, context);
    QVERIFY2(ParsedPage::solid(shown) == theirs.text, context);
    const QStringList links = sorted(ours.written(PageReference::Kind::Link));
    const QStringList resources = sorted(ours.written(PageReference::Kind::Resource));
    for (const QString &link : theirs.links)
        QVERIFY2(links.contains(link), qPrintable(name + u": "_s + link));
    for (const QString &image : theirs.images)
        QVERIFY2(resources.contains(image), qPrintable(name + u": "_s + image));
}
#else
constexpr bool hasParser = false;

void compareWithParser(const QByteArray &, const QString &)
{
    QSKIP("There is no other parser here.");
}
#endif

/// A page that keeps to the rules of nesting and breaks every other.
class RandomPage
{
public:
    explicit RandomPage(quint32 seed)
        : m_random(seed)
    {
    }
    QByteArray bytes()
    {
        QByteArray page = "<!DOCTYPE html><html><head><title>A &amp; <b>B</title></head><body>";
        for (int i = 0; i < 12; ++i)
            page += block();
        return page + "</body></html>";
    }

private:
    QByteArray oneOf(const QByteArrayList &choices)
    {
        return choices.at(m_random.bounded(int(choices.size())));
    }
    QByteArray blank() { return oneOf({" ", "\n", "\t", " / ", "  "}); }
    QByteArray attribute()
    {
        const QByteArray value =
            oneOf({"x", "a&amp;b", "caf\xC3\xA9", "#&#65;&#x42", "p?a=1&copy=2", "&lt;", "x&ampy",
                   "%20z", "a&amp", "&notit;"});
        const QByteArray name =
            oneOf({"href", "id", "name", "ID", "Href", "data-x", "alt", "src", "class"});
        return oneOf({name + "=\"" + value + " >\"", name + " = '" + value + "<\"'",
                      name + "=" + value, name, "=" + name, name + "=\"\""});
    }
    QByteArray attributes()
    {
        QByteArray all;
        for (int i = m_random.bounded(4); i > 0; --i)
            all += blank() + attribute();
        return all.isEmpty() ? all : all + " ";
    }
    QByteArray words()
    {
        return oneOf({"plain", "a &lt b", "1 < 2", "&eacute;t&eacute", "&notit; &unknown; & &#;",
                      "<!-- hidden > <b> -->", "<!-->seen", "<!--->seen", "<!-- a --!>seen",
                      "</ bogus>seen", "<?php echo ?>seen", "<!oops>seen", "&#128;&#xD800;&#0;",
                      "\xE6\xBC\xA2\xE5\xAD\x97", "<img src=a.png" + attributes() + ">",
                      "<script>if (a<b) '</scr' + '<!-- <script> </script> -->'</script>seen",
                      "<style>b:after { content: '</b>' }</style>", "<3"});
    }
    QByteArray inlined(int depth = 0)
    {
        if (depth == 2)
            return words();
        const QByteArray tag = oneOf({"b", "span", "code", "I"});
        return oneOf({words(), words() + " " + words(),
                      "<" + tag + attributes() + ">" + inlined(depth + 1) + "</" + tag + " >"});
    }
    QByteArray block()
    {
        const QByteArray tag = oneOf({"div", "h2", "H4", "blockquote", "p"});
        return oneOf({"<" + tag + attributes() + ">" + inlined() + "</" + tag + ">",
                      "<p>" + inlined() + "<p>" + inlined(),
                      "<a" + attributes() + ">" + words() + "</a>",
                      "<ul><li>" + inlined() + "<li>" + inlined() + "</ul>",
                      "<table><tr><td>" + inlined() + "<td>" + inlined() + "</table>"});
    }

    QRandomGenerator m_random;
};

/// Everything a scan found, for comparison.
QStringList described(const ScannedPages &pages)
{
    QStringList all;
    for (const ScannedPage &page : pages.pages()) {
        const PageFacts &facts = page.facts;
        const auto say = [&](const char *what, quint32 line, TextSpan span, quint64 more = 0) {
            all.append(u"%1 %2(%3) %4 %5"_s.arg(text(pages.pathOf(page)), QLatin1String(what))
                           .arg(line)
                           .arg(text(facts.of(span)))
                           .arg(more));
        };
        say("title", facts.hasBase, facts.title, page.sum);
        say("language", page.isStyleSheet, facts.language);
        for (const PageRef &ref : facts.refs) {
            say("ref", ref.line, ref.written, quint64(ref.kind) * 10 + quint64(ref.place));
            say("to", 0, ref.anchor);
            if (ref.place == RefPlace::Project)
                all.append(text(pages.targets().at(ref.target)));
        }
        for (const PageAnchor &anchor : facts.anchors)
            say("anchor", anchor.line, anchor.name, anchor.isId);
        for (const PageHeading &heading : facts.headings)
            say("heading", heading.line, heading.text, heading.level);
        for (const PublishedLink &link : facts.linkIds) {
            say("published", link.line, link.name);
            say("at", 0, link.anchor);
        }
        for (const FoundFault &fault : facts.faults)
            say("fault", fault.line, fault.detail, quint64(fault.fault));
    }
    return all;
}

/// Knows the words of every page it was told, until it forgets.
class WordKeeper final : public PageTextTaker
{
public:
    QMap<quint64, QString> texts;
    void take(int, quint32, const ReadablePage &page) override
    {
        const std::lock_guard guard(m_guard);
        texts.insert(quint64(texts.size()), text(page.text));
    }
    [[nodiscard]] bool knows(std::string_view, quint64) const override { return !forgets; }
    bool forgets = false;

private:
    std::mutex m_guard;
};

/// A project of two books whose pages were all last changed long ago.
class ScanWorld : public SampleProject
{
public:
    BuildInput input;
    const QString a = folder + u"Book_A\\"_s;

    ScanWorld()
    {
        addBook(u"Alpha"_s, u"A"_s,
                {{u"start.htm"_s, "<title>Start</title>\n<a href='../book_b/Other.htm#x'>t</a>"},
                 {u"two.htm"_s, "<html lang=de><h1 id=x>Two</h1><a data-qv-ibd='ID 1' name=n>"},
                 {u"three.htm"_s, "<p><a href='qvlink:ID%201'>t</a><a href='missing.htm'></a>"}});
        addBook(u"Beta"_s, u"B"_s,
                {{u"other.htm"_s, "<b id=x id=y>Other<img src=../Book_A/p.png>"}});
        world.put(a + u"style.css"_s, "@import 'more.css'; b { background: url(p.png) }");
        world.put(folder + u"loose.htm"_s, "<p>In no book");
        for (const QString &file : {u"start.htm"_s, u"two.htm"_s, u"three.htm"_s, u"style.css"_s})
            age(a + file);
        age(folder + u"Book_B\\other.htm"_s);
        input = readBuildInput(world.session, world.files, name, u"ENU"_s);
    }
    /// As if it had been changed so long ago.
    void age(const QString &path, int days = 1000)
    {
        QFile file(world.files.nativePath(path));
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(QDateTime(QDate(2026, 1, 1), QTime()).addDays(-days),
                                 QFileDevice::FileModificationTime));
    }
    ScannedPages scan(PageTextTaker *words = nullptr, const Progress &progress = {})
    {
        ScannedPages pages = ScannedPages::read(world.files, input, {.words = words}, progress);
        pages.save(world.files, input);
        return pages;
    }
    QStringList fresh()
    {
        QStringList paths;
        const ScannedPages pages = scan();
        for (const ScannedPage &page : pages.pages()) {
            if (page.isFresh)
                paths.append(text(pages.pathOf(page)));
        }
        return paths;
    }
};

} // namespace

class tst_scan final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsWhatAParserFinds();
    void realPagesToo();
    void showsWhatReadersSee();
    void saysWhereReferencesLead_data();
    void saysWhereReferencesLead();
    void takesBaseForAllReferences();
    void findsWhatIsWrong_data();
    void findsWhatIsWrong();
    void readsEveryEncodingAlike();
    void getsThroughHostilePages();
    void readsOnlyWhatChanged();
    void trustsNoTimeThatIsTooFresh();
    void neverBelievesADamagedCache();
    void stopsAndKeepsTheCache();
};

void tst_scan::findsWhatAParserFinds()
{
    for (quint32 seed = 1; seed <= 600; ++seed) {
        const QByteArray page = RandomPage(seed).bytes();
        compareWithParser(page, u"seed %1: %2"_s.arg(seed).arg(QString::fromUtf8(page)));
        if (QTest::currentTestFailed() || !hasParser)
            return;
    }
}

/// QV_REAL_PAGES names a folder with any pages.
void tst_scan::realPagesToo()
{
    const QString folder = qEnvironmentVariable("QV_REAL_PAGES");
    if (folder.isEmpty())
        QSKIP("QV_REAL_PAGES names no folder of pages");
    int pages = 0;
    QDirIterator all(folder, {u"*.htm"_s, u"*.html"_s}, QDir::Files, QDirIterator::Subdirectories);
    while (all.hasNext()) {
        QFile file(all.next());
        QVERIFY(file.open(QIODevice::ReadOnly));
        compareWithParser(file.readAll(), file.fileName());
        ++pages;
        if (QTest::currentTestFailed())
            return;
    }
    QVERIFY(pages > 0);
}

void tst_scan::showsWhatReadersSee()
{
    const OnePage page("<html><head><title> The\n Title </title><style>p{}</style>"
                       "<meta name=Keywords content='pump, R&amp;D'></head><body><h1>Big</h1>"
                       "<p>In <b>R</b>100\n\tunits<br>next<script>no()</script> line</p>"
                       "<table><tr><td>one<td>two</table><img src=a.png alt='A pump'>after"
                       "<template>never</template><h5>Small</h5><svg><title>Drawn</title></svg>");
    QCOMPARE(page.shown(), u"T(The Title)K(\npump, R&D)1(\nBig)B(\nIn R100 units\nnext line\none\n"
                           "two)A(\nA pump)B( after\nSmall)A(\nDrawn)"_s);
    QCOMPARE(text(page.facts.of(page.facts.title)), u"The Title"_s);
    QCOMPARE(page.headings(), QStringList({u"Big"_s, u"Small"_s}));
}

void tst_scan::saysWhereReferencesLead_data()
{
    QTest::addColumn<QString>("written");
    QTest::addColumn<QString>("leads");
    const auto row = [](const char *written, const char *leads) {
        QTest::newRow(written) << QString::fromUtf8(written) << QString::fromUtf8(leads);
    };
    row("other.htm#a b", "Project Book_A/other.htm#a b");
    row(" ./x/../other.htm?q#%C3%A4 ", "Project Book_A/other.htm#\u00e4");
    row("..\\Book_B\\b.htm", "Project Book_B/b.htm");
    row("a%20b&amp;c.htm", "Project Book_A/a b&c.htm");
    row("sub/", "Project Book_A/sub#");
    row("../../**plant**/Book_B/b.htm", "Project Book_B/b.htm");
    row("../../Plant/b.htm#x", "Project b.htm#x");
    row("../../Other/b.htm#x", "Outside #x");
    row("../../../b.htm", "Outside");
    row("/b.htm#x", "Absolute #x");
    row("#here", "ThisPage Book_A/page.htm#here");
    row("?q", "ThisPage Book_A/page.htm");
    row("HTTP://x/y#z", "Elsewhere");
    row("//x/y", "Elsewhere");
    row("mailto:a@b", "Elsewhere");
    row("QVLink:ID%201", "LinkID #ID 1");
    row("b.htm#a:b", "Project Book_A/b.htm#a:b");
}

void tst_scan::saysWhereReferencesLead()
{
    QFETCH(QString, written);
    QFETCH(QString, leads);
    static constexpr const char *places[]{"ThisPage", "Project",   "Outside",
                                          "Absolute", "Elsewhere", "LinkID"};
    const OnePage page("<a href=\"" + written.toUtf8() + "\">");
    QCOMPARE(page.facts.refs.size(), 1U);
    const PageRef &ref = page.facts.refs[0];
    QString found = QLatin1String(places[int(ref.place)]);
    if (ref.place == RefPlace::Project || ref.place == RefPlace::ThisPage)
        found += u' ' + text(page.targets[ref.target]);
    else if (ref.anchor.length > 0)
        found += u' ';
    if (ref.anchor.length > 0)
        found += u'#' + text(page.facts.of(ref.anchor));
    QCOMPARE(found, leads.endsWith(u'#') ? leads.chopped(1) : leads);
}

void tst_scan::takesBaseForAllReferences()
{
    const OnePage inside("<link rel=stylesheet href=s.css><base href='../Book_B/'><base href=no/>"
                         "<a href=b.htm><a href='#x'><a href='http://x'>");
    QStringList found;
    for (const PageRef &ref : inside.facts.refs) {
        found.append(ref.place == RefPlace::Project ? text(inside.targets[ref.target])
                                                    : u"elsewhere"_s);
    }
    QCOMPARE(found,
             QStringList({u"Book_B/s.css"_s, u"Book_B/b.htm"_s, u"Book_B"_s, u"elsewhere"_s}));
    QVERIFY(inside.facts.hasBase);
    const OnePage outside("<base href='http://server/x/'><a href=b.htm><a href='#x'>");
    for (const PageRef &ref : outside.facts.refs)
        QCOMPARE(ref.place, RefPlace::Elsewhere);
}

void tst_scan::findsWhatIsWrong_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QStringList>("faults");
    const auto row = [](const char *body, const QStringList &faults) {
        QTest::newRow(body) << QByteArray(body) << faults;
    };
    row("<ul><li>a<li>b<p>c<p>d</ul><dl><dt>x<dd>y</dl><select><option>a<option>b</select>"
        "<table><caption>t<colgroup><col><tr><td>a<th>b<tr><td>c<tbody><tr><td>d</table>"
        "<ruby>a<rp>(<rt>b</ruby><p>end<hr><svg><g><path/></g></svg><custom-one></custom-one>",
        {});
    row("<p>one\n<div><b>two\n</div>", {u"2 unclosed b"_s});
    row("x</i>\n</p>", {u"1 stray i"_s, u"2 stray p"_s});
    row("<b><i>x</b></i>", {u"1 unclosed i"_s});
    row("<div>x\n<table><tr><td></div></table></div>", {u"2 stray div"_s});
    row("<a id=x>x</a>\n<a name=x id='x'></a>", {u"2 double x"_s});
    row("x\n<!-- y", {u"2 comment"_s});
    row("x\n<b class='", {u"2 cut off"_s});
    row("x<script>y", {u"1 unclosed script"_s});
    row("<img src=a.png>\n<img src=b alt>", {u"1 no alt a.png"_s});
    row("<a href='../../**Other**/x.htm'>x</a><a href='../../**Plant**/x.htm'>x</a>",
        {u"1 marker **Other**"_s});
    row("  <!-- nothing --> <p>&nbsp;</p> ", {u"0 empty"_s});
    row("x\xC3\xA9", {u"0 no charset"_s});
    row("<meta charset=iso-8859-1>x\xC3\xA9", {u"0 charset iso-8859-1"_s});
    row("<meta charset=utf8>x\xC3\xA9", {});
    row("<meta charset=utf-8>\n\xC3\xA9 \xFF", {u"2 damaged"_s});
}

void tst_scan::findsWhatIsWrong()
{
    QFETCH(QByteArray, body);
    QFETCH(QStringList, faults);
    const QByteArray head = "<html lang=en-GB><title>t</title>";
    QCOMPARE(OnePage(head + body).faults(), faults);
    const QByteArray nul("a\n\0b", 4);
    QCOMPARE(OnePage("<html lang=de>" + nul).faults(),
             QStringList({u"0 no title"_s, u"0 other language de"_s, u"2 nul"_s}));
    QCOMPARE(OnePage("<html><title>t</title>x").faults(), QStringList({u"0 no language"_s}));
}

void tst_scan::readsEveryEncodingAlike()
{
    const QString page = u"<html lang=ja><meta charset=%1><title>\u6F22\u5B57</title>\n"
                         "<p id=\u00E4\u8868>\u3042"_s;
    const auto check = [&](const QByteArray &bytes, const QString &language) {
        const OnePage found(bytes, language);
        QCOMPARE(text(found.facts.of(found.facts.title)), u"\u6F22\u5B57"_s);
        QCOMPARE(found.facts.anchors.at(0).line, 2U);
        QCOMPARE(found.faults(), QStringList());
    };
    for (const char *charset : {"utf-8", "utf-16le", "utf-16be"}) {
        QStringEncoder encoder(charset, QStringConverter::Flag::WriteBom);
        const QByteArray bytes = encoder(page.arg(u"whatever"_s));
        check(bytes, u"JPN"_s);
    }
    check(page.arg(u"utf-8"_s).toUtf8(), u"JPN"_s);
    const QString withoutUmlaut = QString(page).remove(u'\u00E4');
    for (const char *charset : {"Shift_JIS", "EUC-JP", "ISO-2022-JP"}) {
        if (!here::hasCharset(charset))
            continue;
        const QString written = withoutUmlaut.arg(QLatin1String(charset)) + u'\n';
        const CharacterSet::Encoded encoded = CharacterSet(charset).encode(written);
        QVERIFY2(!encoded.hasError, charset);
        check(encoded.bytes, u"JPN"_s);
    }
}

void tst_scan::getsThroughHostilePages()
{
    constexpr int many = 500'000;
    const auto repeated = [](const QByteArray &piece) { return piece.repeated(many); };
    const QByteArray head = "<html lang=en><title>t</title>x\n";
    const QList<QPair<QByteArray, QString>> pages{
        {repeated("<!--"), u"comment"_s},
        {repeated("<script>"), u"unclosed script"_s},
        {repeated("<script><!--"), u"unclosed script"_s},
        {"<b " + repeated("\"'"), u"cut off"_s},
        {"<b " + repeated("href=x id=y z "), u"cut off"_s},
        {"<a " + repeated("z href=x id=y ") + ">", u"unclosed a"_s},
        {repeated("<b>"), u"unclosed b"_s},
        {repeated("<x>") + repeated("</y>"), u"unclosed x"_s},
        {repeated("<td><li>"), QString()},
        {repeated("</b>"), u"stray b"_s},
        {"<textarea>" + repeated("</textare "), u"unclosed textarea"_s},
        {repeated("&"), QString()},
        {repeated("&#1111111111111"), QString()},
        {"<p style='" + repeated("url(") + "'>", QString()},
        {"<img alt srcset='" + repeated(",") + "'>", QString()},
        {repeated("<a id=x href='#x'></a>"), u"double x"_s},
        {repeated("<"), QString()},
    };
    for (const auto &[body, fault] : pages) {
        const QStringList faults = OnePage(head + body).faults();
        QVERIFY2(fault.isEmpty() ? faults.isEmpty() : faults.first().contains(fault),
                 qPrintable(QString::fromLatin1(body.first(20)) + faults.value(0)));
    }
}

void tst_scan::readsOnlyWhatChanged()
{
    ScanWorld world;
    WordKeeper words;
    const ScannedPages first = world.scan(&words);
    QCOMPARE(first.freshCount(), 5);
    QCOMPARE(words.texts.size(), 4);
    QCOMPARE(QStringList({text(first.targets().at(0)), text(first.targets().at(1))}),
             QStringList({u"book_b/Other.htm"_s, u"Book_A/more.css"_s}));
    QCOMPARE(first.listing().find("book_b/Other.htm").match, ProjectListing::Match::OtherCase);
    QCOMPARE(first.listing().find("Book_A/missing.htm").match, ProjectListing::Match::Missing);
    QCOMPARE(first.listing().find("book_a").match, ProjectListing::Match::Folder);

    const ScannedPages second = world.scan(&words);
    QCOMPARE(second.freshCount(), 0);
    QCOMPARE(described(second), described(first));
    words.forgets = true; // the words of pages, which only reading them gives again
    QCOMPARE(world.scan(&words).freshCount(), 4);

    const QString page = world.a + u"start.htm"_s;
    const QByteArray bytes = world.world.bytes(page);
    world.world.put(page, bytes); // touched
    QCOMPARE(world.fresh(), QStringList());
    world.world.put(page, bytes + "<p id=more>");
    QCOMPARE(world.fresh(), QStringList({u"Book_A/start.htm"_s}));
    world.world.put(page, bytes + "<p id=more>!");
    world.age(page); // a copy that keeps its old time is another file by its size
    QCOMPARE(world.fresh(), QStringList({u"Book_A/start.htm"_s}));

    world.world.files.removeFile(page);
    world.world.put(world.a + u"new.htm"_s, "<p>New");
    QCOMPARE(world.fresh(), QStringList({u"Book_A/new.htm"_s}));
    const QStringList now = described(world.scan());
    QCOMPARE(now, described(ScannedPages::read(world.world.files, world.input,
                                               {.everything = true, .threads = 1})));
    world.input.language = u"DEU"_s; // another language finds other faults
    QCOMPARE(world.scan().freshCount(), 5);
}

void tst_scan::trustsNoTimeThatIsTooFresh()
{
    ScanWorld world;
    const QString page = world.a + u"start.htm"_s;
    const QByteArray old = world.world.bytes(page);
    const QByteArray other = QByteArray(old).replace("Start", "Other");
    world.scan();
    world.world.put(page, other);
    world.age(page); // nobody could know
    QCOMPARE(world.fresh(), QStringList());

    const QDateTime now = QDateTime::currentDateTime();
    const auto put = [&](const QByteArray &bytes) {
        world.world.put(page, bytes);
        QFile file(world.world.files.nativePath(page));
        QVERIFY(file.open(QIODevice::ReadWrite)
                && file.setFileTime(now, QFileDevice::FileModificationTime));
    };
    put(old);
    world.scan();
    put(other); // the same size and time, so shortly after
    QCOMPARE(world.fresh(), QStringList({u"Book_A/start.htm"_s}));
}

void tst_scan::neverBelievesADamagedCache()
{
    ScanWorld world;
    const QStringList right = described(world.scan());
    const QString cache = world.folder + u"QV_PageFacts.bin"_s;
    const QByteArray good = world.world.bytes(cache);
    const auto isRead = [](const QByteArray &bytes) {
        return readKnownPages({bytes.constData(), size_t(bytes.size())}).has_value();
    };
    QVERIFY(isRead(good));
    for (qsizetype at = 0; at < good.size(); ++at) {
        QByteArray bad = good;
        bad[at] = char(bad[at] ^ (1 << (at % 8)));
        QVERIFY2(!isRead(bad), QByteArray::number(at));
        QVERIFY2(!isRead(good.first(at)), QByteArray::number(at));
    }
    for (const QByteArray &bad :
         {QByteArray(), good + "x", QByteArray("QV_PageFacts"), good.first(99)}) {
        world.world.put(cache, bad);
        const ScannedPages pages = world.scan();
        QCOMPARE(pages.freshCount(), 5);
        QCOMPARE(described(pages), right);
        QCOMPARE(world.scan().freshCount(), 0);
    }
}

void tst_scan::stopsAndKeepsTheCache()
{
    ScanWorld world;
    world.scan();
    const QString cache = world.folder + u"QV_PageFacts.bin"_s;
    const QByteArray before = world.world.bytes(cache);
    for (const char *page : {"start.htm", "two.htm", "three.htm"})
        world.world.put(world.a + QLatin1String(page), "<p>changed");
    Stopper stopper;
    try {
        world.scan(nullptr,
                   stopper.when([](int, const QString &what) { return what.endsWith(u".htm"); }));
        QFAIL("It went on");
    } catch (const Unwinding &unwinding) {
        QCOMPARE(unwinding.reason, Unwinding::Reason::Stopped);
    }
    QCOMPARE(world.world.bytes(cache), before);
    QCOMPARE(world.fresh().size(), 3);
}

QTEST_GUILESS_MAIN(tst_scan)
#include "tst_scan.moc"
