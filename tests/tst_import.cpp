// Adding source files to a book, on real files: what is planned, what is copied, and that Stop and
// failures leave everything as it was.

#include "platform/Xml.h"
#include "support/ImportWorld.h"
#include "support/System.h"
#include "tools/html/HtmlScan.h"

#include <QFile>
#include <QMap>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

struct World : ImportWorld
{
    ImportPlan plan() { return plan({withoutBackslash(source)}); }
    ImportPlan plan(const QStringList &picked) { return import().plan(u"Plant"_s, guide, picked); }

    /// Every file below a folder with its bytes, and every folder; without backups.
    QMap<QString, QByteArray> snapshot(const QString &top)
    {
        QMap<QString, QByteArray> all;
        walkTree(files, withoutBackslash(top), [&](const TreeEntry &entry) {
            if (!entry.relative.startsWith(ProjectFile::backupFolder))
                all.insert(entry.relative, entry.status.kind == FileKind::File
                                               ? bytes(entry.path)
                                               : QByteArray("folder"));
        });
        return all;
    }
};

ImportItem &itemFor(ImportPlan &plan, const QString &target)
{
    for (ImportItem &item : plan.items) {
        if (item.target == target)
            return item;
    }
    qFatal("no item %s", qPrintable(target));
}

QStringList omissionsOf(const ImportPlan &plan)
{
    QStringList texts;
    for (const ImportOmission &omission : plan.omissions)
        texts.append(omission.reference + u" | "_s + omission.page + u" | "_s + omission.reason);
    return texts;
}

/// "title(file)[children]" of an outline.
QString shown(const QList<BookPage> &pages)
{
    QStringList texts;
    for (const BookPage &page : pages)
        texts.append(page.title + u'(' + page.file + u')'
                     + (page.pages.isEmpty() ? QString() : u'[' + shown(page.pages) + u']'));
    return texts.join(u", ");
}

} // namespace

class tst_import final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void scansPagesAsHtmlSays();
    void addsASetOfPagesAsItIs();
    void refusesWhatCannotBeTaken();
    void decidesEachConflict();
    void tellsTwoFilesOfOneNameApart();
    void followsBase();
    void stopAndFailuresLeaveTheBookAsItWas();
    void isTakenBackAndDoneAgain();
    void remembersWhatWasLeftOut();
};

void tst_import::scansPagesAsHtmlSays()
{
    const auto row = [](const char *name, const char16_t *source, const char16_t *title,
                        const QStringList &references) {
        const QString page = QString::fromUtf16(source);
        const HtmlFacts facts = scanHtml(page);
        QStringList found;
        for (const PageReference &reference : facts.references)
            found.append(page.sliced(reference.start, reference.length));
        QVERIFY2((facts.title.isEmpty() ? facts.firstHeading : facts.title) == QStringView(title),
                 name);
        QVERIFY2(found == references, name);
    };
    row("title", u"<TITLE>\n Pump &amp; valve &#8211; &Uuml;bersicht</title >",
        u"Pump & valve – Übersicht", {});
    row("heading", u"<p>x</p><h2><img src=i.png> <a href='b.htm'>First</a>\n one</h2><h1>Two</h1>",
        u"First one", {u"i.png"_s, u"b.htm"_s});
    row("raw",
        u"<script>'<img src=a>'</script><textarea><img src=b></textarea><style>/* url(c) */ "
        u"p{background:url( 'd.png' )}</style><title><img src=e></title>",
        u"<img src=e>", {u"d.png"_s});
    row("script", u"<script><!-- <script>x</script> <img src=a> --></script><img src=b>", u"",
        {u"b"_s});
    row("comments", u"<!--><img src=a>--><!-- <img src=b> --!><img src=c><? <img src=d><img src=e>",
        u"", {u"a"_s, u"c"_s, u"e"_s});
    row("attributes", u"<IMG alt=a>b SRC=x><img/src=y/><img alt='>' src = \"z z\"><a href=p?q=1#r>",
        u"", {u"y/"_s, u"z z"_s, u"p?q=1#r"_s});
    row("sets",
        u"<img srcset='a.png 1x, b.png 2x'><body background=c.gif><link rel='alternate "
        u"STYLESHEET' href=d.css><p style=\"background:url(e.png)\">",
        u"", {u"a.png"_s, u"b.png"_s, u"c.gif"_s, u"d.css"_s, u"e.png"_s});
    row("broken", u"a < b <3 <img src=a <img src=b></ <img src=c>", u"", {u"a"_s});
    row("cut", u"<p><img src='a", u"", {});
}

void tst_import::addsASetOfPagesAsItIs()
{
    World world;
    world.putSource(u"index.html"_s,
                    "<title>Start</title><link rel=stylesheet href=css/look.css>"
                    "<a href='sub/index.htm#top'>s</a><a href=manual%20one.pdf>m</a>"
                    "<img src='../outside.png'><img src='http://example.invalid/x.png'>"
                    "<a href='http://example.invalid/'>w</a><img src=gone.png>\r\n");
    world.putSource(u"manual one.pdf"_s, QByteArray("%PDF\0\1", 6));
    world.putSource(u"unused.png"_s, "nobody asks for this");
    world.putSource(u"css\\look.css"_s,
                    "@import 'more.css'; body{background:url(../PIX/back.gif)}");
    world.putSource(u"css\\more.css"_s, "p { color: red }");
    world.putSource(u"pix\\back.gif"_s, "GIF89a");
    const QByteArray wide =
        utf16Bytes(u"<title>Kapitel Ö 日本</title><a href='page10.htm'>x</a>"_s);
    world.putSource(u"sub\\index.htm"_s, wide);
    world.putSource(u"sub\\page10.htm"_s, "<h1>Ten</h1>");
    world.putSource(u"sub\\page2.htm"_s, "<meta charset=windows-1252><title>\xDC"
                                         "bersicht \x80</title>");
    world.files.setAttributes(world.source + u"sub\\page2.htm"_s, ReadOnlyFile);
    world.put(u"C:\\outside.png"_s, "secret");

    const ImportPlan plan = world.plan();
    QStringList pages;
    for (const ImportItem &item : plan.items) {
        if (item.isPage())
            pages.append(item.target + u" | "_s + item.title + u" | "_s
                         + QString::fromLatin1(item.encoding.name));
    }
    QCOMPARE(pages, (QStringList{u"index.html | Start | UTF-8"_s,
                                 u"sub\\index.htm | Kapitel Ö 日本 | UTF-16LE"_s,
                                 u"sub\\page2.htm | Übersicht € | windows-1252"_s,
                                 u"sub\\page10.htm | Ten | UTF-8"_s}));
    QCOMPARE(
        omissionsOf(plan),
        (QStringList{
            u"../outside.png | index.html | Outside, not copied: it lies above the folder chosen."_s,
            u"http://example.invalid/x.png | index.html | Outside, not copied: it lies on another machine."_s,
            u"C:\\Source\\gone.png | index.html | It is missing, or behind a link."_s}));
    QCOMPARE(totalsOf(plan).pages, 4);
    QCOMPARE(totalsOf(plan).files, 4);

    const ImportResult result = world.run(plan);
    QCOMPARE(result.copied, 8);
    QCOMPARE(result.notes, QStringList());
    QMap<QString, QByteArray> expected = world.snapshot(world.source);
    expected.remove(u"unused.png"_s);
    QMap<QString, QByteArray> copied = world.snapshot(world.bookFolder);
    copied.remove(u"Book_GD.xml"_s);
    QCOMPARE(copied, expected);
    QVERIFY(!world.files.status(world.bookFolder + u"sub\\page2.htm"_s).readOnly);

    const Book book = world.book();
    QCOMPARE(shown(book.pages), u"Start(index.html), Kapitel Ö 日本(sub\\index.htm)"
                                "[Übersicht €(sub\\page2.htm), Ten(sub\\page10.htm)]"_s);
    QCOMPARE(book.name, u"Guide"_s);
    QCOMPARE(book.sources.size(), 4);
    QCOMPARE(book.sources[0].path, world.source + u"index.html"_s);

    // The same again changes nothing: every file is there already, every page listed.
    const ImportPlan again = world.plan();
    QCOMPARE(world.run(again).copied, 0);
    QCOMPARE(shown(world.book().pages), shown(book.pages));
    QCOMPARE(world.book().sources.size(), 4);
}

void tst_import::refusesWhatCannotBeTaken()
{
    World world;
    const QString native = world.folder.path() + u"/c/Source/"_s;
    world.putSource(u"good.htm"_s, "<title>Good</title><a href=other.htm>o</a>");
    world.putSource(u"long"_s + QString(230, u'x') + u".htm"_s, "x");
    world.putSource(u"Book_GD.xml"_s, "not a book");
    world.putSource(u"links.htm"_s,
                    "<a href='Book_GD.xml'>b</a><base href='http://example.invalid'>");
    world.putSource(u"linked.htm"_s, "<img src=pix/a.png><a href='Book_GD.xml'>b</a>");
    QStringList odd{u"c#d.htm"_s};
    if constexpr (here::takesEveryName)
        odd << u"con.htm"_s << u"a:b.htm"_s;
    for (const QString &name : odd) {
        QFile file(native + name);
        QVERIFY(file.open(QFile::WriteOnly));
    }
    here::link(QDir::rootPath(), native + u"pix"_s);
    const bool isLinked = here::link(native + u"good.htm"_s, native + u"twin.htm"_s);

    ImportPlan plan = world.plan();
    const auto refusal = [&](const QString &target) { return itemFor(plan, target).refusal; };
    for (const QString &name : odd.sliced(1))
        QCOMPARE(refusal(name), u"The name \"%1\" cannot be used on every system."_s.arg(name));
    QCOMPARE(refusal(u"c#d.htm"_s), u"A page's name cannot hold \"#\"."_s);
    QCOMPARE(refusal(u"long"_s + QString(230, u'x') + u".htm"_s),
             u"Its path in the book would be longer than 259 characters."_s);
    QCOMPARE(refusal(u"Book_GD.xml"_s),
             u"An XML file of this name is in the book; those are not replaced."_s);
    const QStringList omissions = omissionsOf(plan);
    for (const QString &name : {u"twin.htm"_s, u"pix"_s})
        QCOMPARE(omissions.contains(
                     u"C:\\Source\\%1 |  | It is a link; links are not followed."_s.arg(name)),
                 isLinked);
    QVERIFY(omissions.contains(
        u"C:\\Source\\pix\\a.png | linked.htm | It is missing, or behind a link."_s));
    QVERIFY(omissions.contains(
        u"C:\\Source\\links.htm | links.htm | Its <base> moves its links away; the files it uses are not looked for."_s));

    const QByteArray before = world.bytes(world.bookFolder + u"Book_GD.xml"_s);
    QCOMPARE(world.run(plan).pages, (QStringList{u"good.htm"_s, u"linked.htm"_s, u"links.htm"_s}));
    QVERIFY(world.bytes(world.bookFolder + u"Book_GD.xml"_s) != before);
    QCOMPARE(world.book().name, u"Guide"_s);

    const ImportPlan own =
        world.plan({withoutBackslash(world.project), world.source + u"nowhere"_s,
                    world.source + u"Book_GD.xml"_s, world.source + u"good.htm"_s});
    QCOMPARE(own.items.size(), 1);
    QCOMPARE(omissionsOf(own),
             (QStringList{
                 u"S:\\Docs\\Plant |  | It is the book's own folder, or holds it or lies in it."_s,
                 u"C:\\Source\\nowhere |  | It is not there."_s,
                 u"C:\\Source\\Book_GD.xml |  | It is no HTML page (.htm, .html, .xhtml)."_s,
                 u"C:\\Source\\other.htm | good.htm | It is missing, or behind a link."_s}));
    ImportPlan nothing = own;
    nothing.items[0].included = false;
    QVERIFY_THROWS_EXCEPTION(QvError, world.run(nothing));
}

void tst_import::decidesEachConflict()
{
    World world;
    const auto put = [&](const QString &name, const QByteArray &content) {
        world.put(world.bookFolder + name, content);
    };
    put(u"start.htm"_s, "old start");
    put(u"Look.css"_s, "old look");
    put(u"logo.png"_s, "old logo");
    put(u"locked.htm"_s, "old locked");
    put(u"a.b.htm"_s, "old dotted");
    world.files.setAttributes(world.bookFolder + u"locked.htm"_s, ReadOnlyFile);
    world.putSource(u"start.htm"_s, "new start");
    world.putSource(u"look.css"_s, "p{background:url(logo.png)}");
    world.putSource(u"logo.png"_s, "new logo");
    world.putSource(u"locked.htm"_s, "new locked");
    world.putSource(u"a.b.htm"_s, "new dotted");
    const QByteArray page =
        "<link rel=stylesheet href='look.css?v=1'>\r\n<meta charset=windows-1252>"
        "<a href=A.B.htm#x>\xE4</a><a href=\"a&#46;b.htm\">x</a>";
    world.putSource(u"page.htm"_s, page);

    ImportPlan plan = world.plan();
    const auto decide = [&](const QString &target, ImportAction proposed, ImportAction action) {
        ImportItem &item = itemFor(plan, target);
        QCOMPARE(item.action, proposed);
        QVERIFY(item.actions.contains(action));
        item.action = action;
    };
    using enum ImportAction;
    decide(u"start.htm"_s, Skip, Replace);
    decide(u"Look.css"_s, Skip, Rename);
    decide(u"logo.png"_s, Skip, Skip);
    decide(u"a.b.htm"_s, Skip, Rename);
    QCOMPARE(itemFor(plan, u"locked.htm"_s).conflict, u"the book has a locked file of this name"_s);
    QVERIFY(!itemFor(plan, u"locked.htm"_s).actions.contains(Replace));

    const ImportResult result = world.run(plan);
    QCOMPARE(result.replaced, 1);
    QCOMPARE(result.notes,
             QStringList{u"Links to renamed files were changed in 1 of the added files."_s});
    QCOMPARE(world.bytes(world.bookFolder + u"start.htm"_s), "new start");
    QCOMPARE(world.bytes(world.project + u"_Backup\\Book_GD\\start.htm.1"_s), "old start");
    QCOMPARE(world.bytes(world.bookFolder + u"Look.css"_s), "old look");
    QCOMPARE(world.bytes(world.bookFolder + u"Look-2.css"_s), "p{background:url(logo.png)}");
    QCOMPARE(world.bytes(world.bookFolder + u"logo.png"_s), "old logo");
    QCOMPARE(world.bytes(world.bookFolder + u"locked.htm"_s), "old locked");
    QCOMPARE(world.bytes(world.bookFolder + u"a.b-2.htm"_s), "new dotted");
    QByteArray followed = page;
    followed.replace("look.css?", "look-2.css?")
        .replace("A.B.htm", "A.B-2.htm")
        .replace("a&#46;b.htm", "a.b-2.htm");
    QCOMPARE(world.bytes(world.bookFolder + u"page.htm"_s), followed);
    QCOMPARE(result.pages, (QStringList{u"a.b-2.htm"_s, u"page.htm"_s, u"start.htm"_s}));
}

void tst_import::tellsTwoFilesOfOneNameApart()
{
    World world;
    world.putSource(u"one\\page.htm"_s, "one<img src=p.png>");
    world.putSource(u"one\\p.png"_s, "same");
    world.putSource(u"two\\page.htm"_s, "two<img src=p.png>");
    world.putSource(u"two\\p.png"_s, "same");
    ImportPlan plan = world.plan({world.source + u"one"_s, world.source + u"two"_s});
    world.run(plan);
    QCOMPARE(world.bytes(world.bookFolder + u"page.htm"_s), "one<img src=p.png>");
    QCOMPARE(world.bytes(world.bookFolder + u"page-2.htm"_s), "two<img src=p.png>");
    QCOMPARE(world.bytes(world.bookFolder + u"p.png"_s), "same");
    QVERIFY(!world.files.exists(world.bookFolder + u"p-2.png"_s));
}

void tst_import::followsBase()
{
    World world;
    world.putSource(u"text\\deep\\page.htm"_s,
                    "<base href='../../'><img src='media/a.png'><link rel=stylesheet href=b.css>");
    world.putSource(u"media\\a.png"_s, "old picture");
    world.putSource(u"b.css"_s, "p{}");
    world.put(world.bookFolder + u"media\\a.png"_s, "another picture");
    ImportPlan plan = world.plan();
    itemFor(plan, u"media\\a.png"_s).action = ImportAction::Rename;
    QCOMPARE(world.run(plan).copied, 3);
    QCOMPARE(world.bytes(world.bookFolder + u"media\\a-2.png"_s), "old picture");
    QCOMPARE(world.bytes(world.bookFolder + u"text\\deep\\page.htm"_s),
             "<base href='../../'><img src='media/a-2.png'><link rel=stylesheet href=b.css>");
}

void tst_import::stopAndFailuresLeaveTheBookAsItWas()
{
    World world;
    for (int i = 1; i <= 5; ++i)
        world.putSource(u"sub\\page%1.htm"_s.arg(i), "page");
    world.put(world.bookFolder + u"keep.htm"_s, "kept");
    world.putSource(u"keep.htm"_s, "new");
    ImportPlan plan = world.plan();
    itemFor(plan, u"keep.htm"_s).action = ImportAction::Replace;
    const auto before = world.snapshot(world.project);

    Stopper stop;
    const Progress atThird = stop.when([](int done, auto &) { return done == 3; });
    QVERIFY_THROWS_EXCEPTION(Unwinding, world.run(plan, atThird));
    QCOMPARE(world.snapshot(world.project), before);
    Stopper later;
    QVERIFY_THROWS_EXCEPTION(
        Unwinding, world.run(plan, {}, later.when([](int done, auto &) { return done == 4; })));
    QCOMPARE(world.snapshot(world.project), before);

    world.files.removeFile(world.source + u"sub\\page5.htm"_s);
    QVERIFY_THROWS_EXCEPTION(QvError, world.run(plan));
    QCOMPARE(world.snapshot(world.project), before);
    world.putSource(u"sub\\page5.htm"_s, "page");

    // The book file refuses last, when all pages lie in the book already.
    const auto book = world.snapshot(world.bookFolder);
    world.files.setAttributes(world.bookFolder + u"Book_GD.xml"_s, ReadOnlyFile);
    QVERIFY_THROWS_EXCEPTION(QvError, world.run(plan));
    QCOMPARE(world.snapshot(world.bookFolder), book);

    world.files.setAttributes(world.bookFolder + u"Book_GD.xml"_s, 0);
    QCOMPARE(world.run(plan).copied, 6);
    QCOMPARE(world.bytes(world.bookFolder + u"keep.htm"_s), "new");
}

void tst_import::isTakenBackAndDoneAgain()
{
    World world;
    world.put(world.bookFolder + u"start.htm"_s, "old");
    world.putSource(u"start.htm"_s, "new<img src=pix/a.png>");
    world.putSource(u"pix\\a.png"_s, "picture");
    ImportPlan plan = world.plan();
    itemFor(plan, u"start.htm"_s).action = ImportAction::Replace;
    const auto before = world.snapshot(world.project);
    world.run(plan);
    const auto after = world.snapshot(world.project);
    QCOMPARE(world.bytes(world.bookFolder + u"start.htm"_s), "new<img src=pix/a.png>");

    for (int round = 0; round < 2; ++round) {
        world.reverse();
        QCOMPARE(world.snapshot(world.project), before);
        QVERIFY(world.book().pages.isEmpty());
        world.reverse();
        QCOMPARE(world.snapshot(world.project), after);
        QCOMPARE(world.book().pages.size(), 1);
    }
}

void tst_import::remembersWhatWasLeftOut()
{
    World world;
    world.putSource(u"a.htm"_s, "a<img src=p.png>");
    world.putSource(u"b.htm"_s, "b");
    world.putSource(u"p.png"_s, "p");
    ImportPlan plan = world.plan();
    itemFor(plan, u"b.htm"_s).included = false;
    itemFor(plan, u"p.png"_s).included = false;
    world.run(plan);
    QVERIFY(!world.files.exists(world.bookFolder + u"b.htm"_s));

    ImportPlan again = world.plan();
    QVERIFY(itemFor(again, u"a.htm"_s).included);
    QVERIFY(!itemFor(again, u"b.htm"_s).included);
    QVERIFY(!itemFor(again, u"p.png"_s).included);
    itemFor(again, u"b.htm"_s).included = true;
    world.run(again);
    ImportPlan third = world.plan();
    QVERIFY(itemFor(third, u"b.htm"_s).included);
    QVERIFY(!itemFor(third, u"p.png"_s).included);
}

QTEST_GUILESS_MAIN(tst_import)
#include "tst_import.moc"
