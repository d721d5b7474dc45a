// Adding import files to a book, on real files: text, Markdown, tables and archives become pages,
// and pages whose sources changed are renewed.

#include "platform/Xml.h"
#include "support/ImportWorld.h"
#include "tools/PageNames.h"
#include "tools/import/PageConversion.h"

#include <QFile>
#include <QTest>

#include <zip.h>

using namespace Qt::StringLiterals;

namespace {

struct World : ImportWorld
{
    World()
        : ImportWorld(u"DEU"_s)
    {
    }

    ImportPlan plan() { return plan({withoutBackslash(source)}); }
    ImportPlan plan(const QStringList &picked)
    {
        return import().planImport(u"Plant"_s, guide, picked, fresh(u"Unpacked"_s));
    }
    ImportPlan newer() { return import().planNewer(u"Plant"_s, guide, fresh(u"Unpacked"_s)); }
    QString page(const QString &name) { return QString::fromUtf8(bytes(bookFolder + name)); }
    QStringList pages()
    {
        QStringList shown;
        for (const BookPage &page : flattened(book().pages))
            shown.append(page.title + u" | "_s + page.file);
        return shown;
    }
};

QStringList omissionsOf(const ImportPlan &plan)
{
    QStringList texts;
    for (const ImportOmission &omission : plan.omissions)
        texts.append(lastComponent(omission.reference) + u": "_s + omission.reason);
    return texts;
}

/// "name | action | conflict up to the first semicolon"
QStringList decisionsOf(const ImportPlan &plan)
{
    QStringList texts;
    for (const ImportItem &item : plan.items)
        texts.append(item.target + u" | "_s
                     + (item.action == ImportAction::Replace ? u"Replace"_s : u"Skip"_s) + u" | "_s
                     + item.conflict.section(u';', 0, 0));
    return texts;
}

/// An archive written entry by entry.
class ZipWriter
{
public:
    explicit ZipWriter(const QString &path)
        : m_zip(zip_open(path.toUtf8().constData(), ZIP_CREATE | ZIP_TRUNCATE, nullptr))
    {
    }
    ~ZipWriter() { zip_close(m_zip); }
    zip_uint64_t add(const char *name, const QByteArray &content, zip_int32_t method = ZIP_CM_STORE)
    {
        m_kept.append(content);
        zip_source_t *bytes = zip_source_buffer(m_zip, m_kept.last().constData(),
                                                static_cast<zip_uint64_t>(content.size()), 0);
        const auto index =
            static_cast<zip_uint64_t>(zip_file_add(m_zip, name, bytes, ZIP_FL_ENC_GUESS));
        zip_set_file_compression(m_zip, index, method, 6);
        return index;
    }
    zip_t *zip() { return m_zip; }

private:
    zip_t *m_zip;
    QList<QByteArray> m_kept;
};

} // namespace

class tst_textimport final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void makesPagesOfTexts();
    void makesPagesOfTables();
    void namesPages();
    void addsMarkdownWithItsPicturesAndLinks();
    void unpacksOnlyWhatIsSafe();
    void renewsWhatHasChanged();
};

void tst_textimport::makesPagesOfTexts()
{
    const ConvertedPage text = pageFromText(
        u"\r\n  Pumpe & Ventil \r\n=====\r\nEine Zeile\r\nnoch <eine>\r\n\r\n a  b\r\n\tc\r\n");
    QCOMPARE(text.title, u"Pumpe & Ventil"_s);
    QCOMPARE(text.body, u"<h1>Pumpe &amp; Ventil</h1>\n<p>Eine Zeile\nnoch &lt;eine&gt;</p>\n"
                        "<pre> a  b\n\tc</pre>\n"_s);
    QCOMPARE(convertedPage(ImportFormat::Text, u" \n", u"leer.txt"_s).body, u"<h1>leer</h1>\n"_s);

    const ConvertedPage markdown =
        pageFromMarkdown(u"---\r\ntitle: \"Front\"\r\n---\r\n# Über *uns*, "
                         u"kurz!\r\n\r\n|a|b|\n|---|---|\n|1|2|\n\n## A\n"
                         "## A\n<h2 class='x'>own</h2>\n");
    QCOMPARE(markdown.title, u"Front"_s);
    QVERIFY2(markdown.body.contains(u"<h1 id=\"über-uns-kurz\">Über <em>uns</em>, kurz!</h1>"_s),
             qPrintable(markdown.body));
    QVERIFY(markdown.body.contains("<td>2</td>"_L1));
    QVERIFY(markdown.body.contains("<h2 id=\"a\">A</h2>\n<h2 id=\"a-1\">A</h2>"_L1));
    QVERIFY(markdown.body.contains("<h2 class='x'>own</h2>"_L1));
    QVERIFY(
        wholePage(markdown, u"CHT"_s)
            .startsWith("<!DOCTYPE html>\n<html lang=\"zh-TW\">\n<head>\n<meta charset=\"utf-8\">"
                        "\n<title>Front</title>"_L1));
}

void tst_textimport::makesPagesOfTables()
{
    const auto row = [](QStringView csv, bool tabs, const QString &rows) {
        QString body = pageFromTable(csv, tabs).body;
        body.remove(u"<table>\n<thead>\n"_s)
            .remove(u"</thead>\n<tbody>\n"_s)
            .remove(u"</tbody>\n</table>\n"_s)
            .remove(u" scope=\"col\""_s)
            .remove(u'\n');
        QCOMPARE(body, rows);
    };
    row(u"a,b\r\n1,\"x, \"\"y\"\"\r\nz\"\r\n\r\n", false,
        u"<tr><th>a</th><th>b</th></tr><tr><td>1</td><td>x, &quot;y&quot;<br>z</td></tr>"_s);
    row(u"a;b;c\n1,5;2;\n2,5;3;4\nshort", false,
        u"<tr><th>a</th><th>b</th><th>c</th></tr><tr><td>1,5</td><td>2</td><td></td></tr>"
        "<tr><td>2,5</td><td>3</td><td>4</td></tr><tr><td>short</td><td></td><td></td></tr>"_s);
    row(u"a;b\n1,5;2", false, u"<tr><th>a</th><th>b</th></tr><tr><td>1,5</td><td>2</td></tr>"_s);
    row(u"sep=|\na|b\n<|", false,
        u"<tr><th>a</th><th>b</th></tr><tr><td>&lt;</td><td></td></tr>"_s);
    row(u"a,b\tc", true, u"<tr><th>a,b</th><th>c</th></tr>"_s);
    row(u"\"open, to the end", false, u"<tr><th>open, to the end</th></tr>"_s);
    QCOMPARE(pageFromTable(u"", false).body, QString());
}

void tst_textimport::namesPages()
{
    const QList<QPair<QString, QString>> names{
        {u"Übersicht: Pumpen & Größen"_s, u"Uebersicht-Pumpen-Groessen.htm"_s},
        {u"  Café n°1 (neu) "_s, u"Cafe-n-1-neu.htm"_s},
        {u"日本語 ガイド"_s, u"日本語-ガイド.htm"_s},
        {u"con"_s, u"pagecon.htm"_s},
        {u"../..#%?"_s, u"page.htm"_s},
        {u"v1.2"_s, u"v1.2.htm"_s}};
    for (const auto &[title, name] : names)
        QCOMPARE(pageFileName(title), name);
    const QList<QPair<QString, QString>> plain{{u"\u00dcber <uns>"_s, u"ueber-uns"_s},
                                               {u"v1.2_b"_s, u"v1-2-b"_s},
                                               {u"\uff21\uff22\u00e9"_s, u"abe"_s},
                                               {u"\u65e5\u672c"_s, u"page"_s},
                                               {u"CON"_s, u"pagecon"_s}};
    for (const auto &[title, name] : plain)
        QCOMPARE(plainName(title), name);
    const QString longest = pageFileName(QString(300, QChar(u'語')));
    QVERIFY(longest.toUtf8().size() < 90 && longest.endsWith(u"語.htm"_s));
}

void tst_textimport::addsMarkdownWithItsPicturesAndLinks()
{
    World world;
    world.put(world.source + u"Über uns.md"_s, "# Wir\n[x](teil/mehr.md#an) [y](gone.md) "
                                               "![p](bild%20a.png) [self](#wir) [t](notiz.txt)");
    world.put(world.source + u"teil\\mehr.md"_s, "[zurück](../%C3%9Cber%20uns.md)");
    world.put(world.source + u"bild a.png"_s, "PNG");
    world.put(world.source + u"notiz.txt"_s, "Notiz \xE4\n\nText");
    world.put(world.source + u"preise.csv"_s, utf16Bytes(u"Teil;Preis\nPumpe;1,50 €"_s));
    world.put(world.source + u"alt.htm"_s, "<title>Alt</title>\xFC<a href=notiz.txt>");
    world.put(world.source + u"brief.docx"_s, "?");

    const ImportPlan plan = world.plan();
    QCOMPARE(omissionsOf(plan), QStringList{u"gone.md: It is missing, or behind a link."_s});
    world.run(plan);
    QCOMPARE(world.pages(),
             (QStringList{u"Alt | alt.htm"_s, u"Notiz ä | notiz.htm"_s, u"preise | preise.htm"_s,
                          u"mehr | teil\\mehr.htm"_s, u"Wir | Ueber-uns.htm"_s}));
    QVERIFY2(world.page(u"Ueber-uns.htm"_s)
                 .contains("<a href=\"teil/mehr.htm#an\">x</a> <a href=\"gone.md\">y</a> <img "
                           "src=\"bild%20a.png\" alt=\"p\"> <a href=\"#wir\">self</a> "
                           "<a href=\"notiz.htm\">t</a>"_L1),
             qPrintable(world.page(u"Ueber-uns.htm"_s)));
    QVERIFY(world.page(u"teil\\mehr.htm"_s).contains(u"<a href=\"../Ueber-uns.htm\">zurück</a>"_s));
    QVERIFY(world.page(u"notiz.htm"_s).startsWith("<!DOCTYPE html>\n<html lang=\"de\">"_L1));
    QVERIFY(world.page(u"preise.htm"_s).contains(u"<td>1,50 €</td>"_s));
    QCOMPARE(world.bytes(world.bookFolder + u"alt.htm"_s),
             world.bytes(world.source + u"alt.htm"_s));
    QCOMPARE(world.bytes(world.bookFolder + u"notiz.txt"_s),
             world.bytes(world.source + u"notiz.txt"_s));
    QCOMPARE(world.bytes(world.bookFolder + u"bild a.png"_s), "PNG");
    QCOMPARE(omissionsOf(world.plan({world.source + u"brief.docx"_s})).size(), 1);

    // The same again changes nothing.
    QCOMPARE(world.run(world.plan()).copied, 0);
    QCOMPARE(world.book().sources.size(), 5);
}

void tst_textimport::unpacksOnlyWhatIsSafe()
{
    World world;
    const QString archive = world.source + u"docs.zip"_s;
    const QString native = world.files.nativePath(archive);
    {
        ZipWriter zip(native);
        zip.add("sub/index.htm", "<title>Über</title><img src='../bild \xC3\xA4.png'>");
        zip.add("bild \xC3\xA4.png", "PNG");
        zip.add("SUB/INDEX.HTM", "twin");
        zip.add("bild \xC3\xA4.png/below.htm", "in a file");
        zip.add("../evil.htm", "out");
        zip.add("/root.htm", "out");
        zip.add("C:\\drive.htm", "out");
        zip.add("con.htm", "device");
        zip.add("bomb.htm", QByteArray(8'000'000, 'x'), ZIP_CM_DEFLATE);
        zip.add("broken.htm", "BROKEN");
        const auto secret = zip.add("secret.htm", "secret");
        zip_file_set_encryption(zip.zip(), secret, ZIP_EM_TRAD_PKWARE, "word");
        const auto link = zip.add("link.htm", "/etc/passwd");
        zip_file_set_external_attributes(zip.zip(), link, 0, ZIP_OPSYS_UNIX, 0120777U << 16);
    }
    QByteArray bytes = world.bytes(archive);
    bytes.replace(bytes.indexOf("BROKEN"), 1, "b");
    world.files.replaceFile(archive, bytes);

    const ImportPlan plan = world.plan({archive});
    QCOMPARE(
        omissionsOf(plan),
        (QStringList{
            u"INDEX.HTM: Another file of the archive has this name, in these or other capitals."_s,
            u"below.htm: Another file of the archive has this name, in these or other capitals."_s,
            u"evil.htm: Its name leads out of the archive, or is no name on every system."_s,
            u"root.htm: Its name leads out of the archive, or is no name on every system."_s,
            u"drive.htm: Its name leads out of the archive, or is no name on every system."_s,
            u"con.htm: Its name leads out of the archive, or is no name on every system."_s,
            u"bomb.htm: It unpacks to more than 200 times its size."_s,
            u"broken.htm: It is damaged: CRC error"_s, u"secret.htm: It is encrypted."_s,
            u"link.htm: It is a link; links are not followed."_s}));
    QCOMPARE(plan.items.size(), 2);
    QCOMPARE(plan.items[0].remembered, archive + u"\\sub\\index.htm"_s);
    world.run(plan);
    QCOMPARE(world.bytes(world.bookFolder + u"bild ä.png"_s), "PNG");
    QCOMPARE(world.pages(), QStringList{u"Über | sub\\index.htm"_s});
    QVERIFY(!world.files.exists(u"S:\\Docs\\Plant\\_Backup\\evil.htm"_s));

    world.files.replaceFile(archive, "no archive");
    QCOMPARE(omissionsOf(world.plan({archive})),
             QStringList{u"docs.zip: %1 cannot be opened: Not a zip archive"_s.arg(archive)});
}

void tst_textimport::renewsWhatHasChanged()
{
    World world;
    const QStringList names{u"a.md"_s, u"b.txt"_s, u"c.htm"_s, u"d.htm"_s, u"e.htm"_s};
    for (const QString &name : names)
        world.put(world.source + u"sub\\"_s + name, "old " + name.toUtf8());
    const QString archive = world.source + u"z.zip"_s;
    const auto pack = [&](const QByteArray &page) {
        ZipWriter zip(world.files.nativePath(archive));
        zip.add("in/z.htm", page);
        zip.add("in/same.htm", "same");
    };
    pack("old z");
    world.run(world.plan());
    world.run(world.plan({archive}));
    QVERIFY(world.newer().items.isEmpty() && world.newer().omissions.isEmpty());

    for (const QString &name : {u"a.md"_s, u"b.txt"_s, u"c.htm"_s})
        world.put(world.source + u"sub\\"_s + name, "new " + name.toUtf8());
    world.put(world.bookFolder + u"sub\\b.htm"_s, "my own words");
    world.files.removeFile(world.source + u"sub\\d.htm"_s);
    world.files.removeFile(world.bookFolder + u"sub\\e.htm"_s);
    pack("new z");
    QFile zip(world.files.nativePath(archive));
    QVERIFY(zip.open(QFile::ReadWrite)
            && zip.setFileTime(QDateTime(QDate(2031, 1, 1), QTime()), QFile::FileModificationTime));
    zip.close();

    const ImportPlan plan = world.newer();
    QStringList decisions = decisionsOf(plan);
    for (QString &decision : decisions)
        decision = decision.section(u"; here"_s, 0, 0);
    QCOMPARE(decisions,
             (QStringList{u"sub\\a.htm | Replace | the book has an earlier version"_s,
                          u"sub\\b.htm | Skip | the page was edited here since it was added"_s,
                          u"sub\\c.htm | Replace | the book has an earlier version"_s,
                          u"in\\z.htm | Replace | the book has an earlier version"_s}));
    QCOMPARE(omissionsOf(plan),
             (QStringList{u"d.htm: It is no longer there; the page stays as it is."_s,
                          u"e.htm: The page that was made of it is no longer in the book."_s}));
    const qsizetype listed = world.pages().size();
    world.run(plan);
    QVERIFY(world.page(u"sub\\a.htm"_s).contains("<p>new a.md</p>"_L1));
    QCOMPARE(world.page(u"sub\\b.htm"_s), u"my own words"_s);
    QCOMPARE(world.page(u"sub\\c.htm"_s), u"new c.htm"_s);
    QCOMPARE(world.page(u"in\\z.htm"_s), u"new z"_s);
    QCOMPARE(world.pages().size(), listed);

    // What was kept is offered again, what was taken is not.
    QCOMPARE(world.newer().items.size(), 1);
    world.reverse();
    QCOMPARE(world.page(u"sub\\c.htm"_s), u"old c.htm"_s);
    QCOMPARE(world.newer().items.size(), 4);
}

QTEST_GUILESS_MAIN(tst_textimport)
#include "tst_textimport.moc"
