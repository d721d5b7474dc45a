// Making a project of a legacy book set, on real files: what became of each row is read back as the
// product reads it. The database itself is in memory.

#include "platform/Paths.h"
#include "projectfiles/CategoryFile.h"
#include "support/TestProgram.h"
#include "support/XmlFile.h"
#include "tools/PageSkeleton.h"
#include "tools/build/BuildInput.h"
#include "tools/html/HtmlScan.h"
#include "tools/migration/ProjectWriter.h"

#include <QDirIterator>
#include <QSet>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// A book set, row by row. Keys count from 1 in each table, and so does the order.
class LegacyWorld final : public LegacyContents
{
public:
    LegacyBookSet set;

    LegacyWorld()
    {
        set.project = {u"Plant"_s, u"P1"_s,  u"Filling Line"_s,
                       u"40"_s,    u"ENU"_s, QDate(2003, 9, 15).startOfDay()};
        world.files.makeFolder(u"S:\\Docs\\Plant.qvnew"_s);
    }
    void book(const QString &acronym, const QString &folder)
    {
        const int row = static_cast<int>(set.books.size()) + 1;
        set.books.append({row, row, u"The "_s + acronym, acronym, folder, acronym + u".xml"_s,
                          u"Manual"_s, row});
    }
    LegacyPage &page(std::optional<int> book, const QString &file,
                     const std::optional<QString> &html, std::optional<int> parent = {},
                     const QString &title = u"A title"_s)
    {
        const int row = static_cast<int>(set.pages.size()) + 1;
        set.pages.append({row, row, book, parent, title, file, row});
        m_pages.append(html);
        return set.pages.last();
    }
    void globalPage(const QString &file, const QString &category, const QString &html)
    {
        const int row = static_cast<int>(set.globalPages.size()) + 1;
        set.globalPages.append({row, row, u"About "_s + file, file, category, row});
        m_globalPages.append(html);
    }
    void image(std::optional<int> book, const QString &file, const std::optional<QByteArray> &data)
    {
        set.images.append({static_cast<int>(set.images.size()) + 1, file, book});
        m_images.append(data);
    }
    void node(std::optional<int> parent, int level, const QString &title,
              const QString &target = {})
    {
        const int row = static_cast<int>(set.navigation.size()) + 1;
        set.navigation.append({row, row, parent, level, title, target, row});
    }
    void word(const QString &word, std::optional<int> book, const QString &file)
    {
        set.words.append({static_cast<int>(set.words.size()) + 1, word, book, file});
    }
    void link(const QString &identifier, const QString &kind, int book, const QString &file,
              const QString &anchor = {})
    {
        set.links.append(
            {static_cast<int>(set.links.size()) + 1, identifier, kind, book, file, anchor});
    }

    void write(const Progress &progress = {})
    {
        report = writeProject(
            world.files, world.clock, world.locale,
            {u"S:\\Docs\\Plant.qvnew\\"_s, world.server, u"Plant"_s, u"P01"_s, u"ENU"_s}, set,
            *this, progress);
    }
    /// Writes the project, puts it in place and reads it.
    void migrate()
    {
        write();
        world.files.move(u"S:\\Docs\\Plant.qvnew"_s, u"S:\\Docs\\Plant"_s);
        input = readBuildInput(world.session, world.files, u"Plant"_s, u"ENU"_s);
    }
    QByteArray bytes(const QString &file) { return world.bytes(u"S:\\Docs\\Plant\\"_s + file); }
    QString text(const QString &file) { return QString::fromUtf8(bytes(file)); }
    /// "Table, row: text"
    QStringList problems()
    {
        QStringList lines = text(u"Migration_Log.txt"_s).split(u"\r\n"_s);
        lines.removeLast();
        return lines.sliced(lines.indexOf(QString()) + 1);
    }
    /// "level id title file" of a book.
    QStringList outline(qsizetype book)
    {
        QStringList lines;
        list(input.books.at(book).book.pages, 1, lines);
        return lines;
    }
    /// All files below the server folder.
    QStringList files()
    {
        QStringList found;
        QDirIterator walk(world.folder.path(), QDir::Files | QDir::Hidden | QDir::System,
                          QDirIterator::Subdirectories);
        while (walk.hasNext())
            found.append(walk.next().sliced(world.folder.path().size() + 1));
        found.sort();
        return found;
    }

    TestProgram world;
    ConversionReport report;
    BuildInput input;

private:
    void pages(const TakeText &take) override { hand(m_pages, take); }
    void globalPages(const TakeText &take) override { hand(m_globalPages, take); }
    void images(const TakeBytes &take) override { hand(m_images, take); }
    QList<ConversionProblem> problems() const override { return {}; }

    template <typename Values, typename Take>
    void hand(const Values &values, const Take &take)
    {
        for (qsizetype at = 0; at < values.size(); ++at)
            take(at, values.at(at));
    }
    static void list(const QList<BookPage> &pages, int level, QStringList &lines)
    {
        for (const BookPage &page : pages) {
            lines.append(u"%1 %2 %3 %4"_s.arg(level).arg(page.id, page.title, page.file));
            list(page.pages, level + 1, lines);
        }
    }

    QList<std::optional<QString>> m_pages, m_globalPages;
    QList<std::optional<QByteArray>> m_images;
};

} // namespace

class tst_migration final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void becomesAProject();
    void staysInsideWithHostileNames();
    void losesNothingThatIsOdd();
    void stopsWithoutATableOfContents();
};

void tst_migration::becomesAProject()
{
    LegacyWorld plant;
    plant.book(u"OPG"_s, u"Guide"_s);
    plant.book(u"MNT"_s, u"Maintenance"_s);
    plant.book(u"ELP"_s, u"Electrical"_s);
    plant.set.books[2].order = 0; // comes first
    plant.set.bookCategories = {{1, 1, u"Operation"_s}, {2, 2, u"safety"_s}, {3, 1, u"Safety"_s}};
    const QString start =
        u"<html><head><!-- <meta charset=koi8-r> --><META HTTP-EQUIV=Content-Type "
        "content='text/html; charset=windows-1252'>"
        "</head>\r\n<a href=\"../Maintenance/daily.htm#rinse\">Sp\u00FClen</a>"
        "<img src=images/Logo.png></html>"_s;
    plant.page(1, u"index.htm"_s, start, {}, u"Guide & more"_s);
    plant.page(1, u"deep/\u4FDD\u5B88.htm"_s, u"<p>\u4FDD\u5B88 \U0001F600</p>"_s, 1,
               u"\u4FDD\u5B88"_s);
    plant.page(1, u"last.htm"_s, u"<p>plain</p>"_s, 1).order = {};
    plant.page(2, u"daily.htm"_s, u"<meta charset=UTF-8><p id=rinse>\u00E4"_s, {}, u"Daily"_s);
    plant.page(3, u"index.htm"_s, u"<p>fuses"_s);
    plant.globalPage(u"words.htm"_s, u"glossary"_s, u"<p>words"_s);
    QByteArray picture("\x89PNG\r\n\x1A\n\0\xFF", 10);
    plant.image(1, u"images\\logo.png"_s, picture);
    plant.image({}, u"styles/manual.css"_s, "a { background: url(../Guide/images/logo.png) }");
    plant.node({}, 1, u"Run"_s);
    plant.node(1, 2, u"Start"_s);
    plant.node(2, 3, u"Before"_s);
    plant.node(3, 4, u"Rinsing"_s, u"Maintenance/daily.htm#rinse"_s);
    plant.node({}, 1, u"General"_s, u"_Global Information/words.htm"_s);
    plant.word(u"rinse"_s, 2, u"daily.htm"_s);
    plant.word(u"rinse"_s, 1, u"index.htm"_s);
    plant.word(u"word"_s, {}, u"words.htm"_s);
    plant.link(u"OIL"_s, u"IBD"_s, 2, u"daily.htm"_s, u"rinse"_s);
    plant.link(u"DAY"_s, u"IBD"_s, 2, u"daily.htm"_s);
    plant.link(u"FAR"_s, u"IBS"_s, 1, u"deep\\\u4FDD\u5B88.htm"_s);
    plant.migrate();

    // The author's texts: as they were, but for the charset.
    QCOMPARE(plant.text(u"Guide\\index.htm"_s),
             QString(start).replace(u"windows-1252"_s, u"utf-8"_s));
    QCOMPARE(plant.bytes(u"Guide\\deep\\\u4FDD\u5B88.htm"_s),
             u"\uFEFF<p>\u4FDD\u5B88 \U0001F600</p>"_s.toUtf8());
    QCOMPARE(plant.bytes(u"Guide\\last.htm"_s), QByteArray("<p>plain</p>"));
    QCOMPARE(plant.text(u"Maintenance\\daily.htm"_s), u"<meta charset=UTF-8><p id=rinse>\u00E4"_s);
    QCOMPARE(plant.bytes(u"Guide\\images\\logo.png"_s), picture);
    QCOMPARE(plant.bytes(u"styles\\manual.css"_s),
             QByteArray("a { background: url(../Guide/images/logo.png) }"));

    const BuildInput &input = plant.input;
    QVERIFY(input.problems.isEmpty());
    QCOMPARE(input.header.platform + u'|' + input.header.variation + u'|' + input.header.id + u'|'
                 + input.header.dateProcess + u'|' + input.header.dateMigration,
             u"Filling Line|40|P01|9/15/2003|3/14/2026"_s);
    QCOMPARE(input.header.categories, QStringList({u"Operation"_s, u"Safety"_s, u"glossary"_s}));
    QCOMPARE(CategoryFile(plant.world.files).read(u"S:\\Docs\\Plant\\QV_BookCategories.xml"_s)[1],
             Category({u"C0002"_s, u"Safety"_s, {}}));
    QCOMPARE(input.books.size(), 3);
    QCOMPARE(input.books[1].entry, TocBook({u"The OPG"_s,
                                            u"OPG"_s,
                                            u"Plant"_s,
                                            u"Guide"_s,
                                            u"OPG.xml"_s,
                                            u"Manual"_s,
                                            {u"Operation"_s, u"Safety"_s}}));
    QCOMPARE(input.books[2].entry.categories, QStringList{u"Safety"_s});
    QCOMPARE(input.books[1].book.path, u"Docs\\Plant\\Guide\\"_s);
    QCOMPARE(plant.outline(1), QStringList({u"1 P0001 Guide & more index.htm"_s,
                                            u"2 P0002 \u4FDD\u5B88 deep\\\u4FDD\u5B88.htm"_s,
                                            u"2 P0003 A title last.htm"_s}));
    QCOMPARE(input.books[2].book.pages[0].linkIds, QStringList{u"DAY"_s});
    QCOMPARE(input.globalPages.size(), 1);
    QCOMPARE(input.globalPages[0].id + input.globalPages[0].type + input.globalPages[0].file,
             u"G0001Glossarywords.htm"_s);
    const QuickNavNode &category = input.quickNav.views[0].children[0].children[0].children[0];
    QCOMPARE(category.name, u"Rinsing"_s);
    QCOMPARE(category.links[0],
             QuickNavLink({u"MNT"_s, u"P0001"_s, u"Rinsing"_s, u"rinse"_s, u"L0001"_s}));
    const QuickNavNode &general = input.quickNav.views[1].children[0].children[0].children[0];
    QCOMPARE(general.name + general.links[0].book + general.links[0].page, u"GeneralGLOBALG0001"_s);
    QCOMPARE(input.keyWords.size(), 2);
    QCOMPARE(input.keyWords[0].pages,
             QList<KeyWord::Page>({{u"MNT"_s, u"P0001"_s}, {u"OPG"_s, u"P0001"_s}}));
    QCOMPARE(input.keyWords[1].pages, QList<KeyWord::Page>({{u"GLOBAL"_s, u"G0001"_s}}));
    QCOMPARE(xmlText(plant.bytes(ProjectFile::links)), uR"(<?xml version="1.0" encoding="utf-16"?>
<LINKS>
	<IBD>
		<ID>
			<LinkID>DAY</LinkID>
			<LinkIDSourceFile>Plant\Maintenance\daily.htm</LinkIDSourceFile>
			<Origin>Migrated</Origin>
		</ID>
		<ID>
			<LinkID>OIL</LinkID>
			<LinkIDSourceFile>Plant\Maintenance\daily.htm#rinse</LinkIDSourceFile>
			<Origin>Migrated</Origin>
		</ID>
	</IBD>
	<IBS>
		<USER>
			<LinkID>FAR</LinkID>
			<FilePath>Plant\Guide\deep\)"_s + u"\u4FDD\u5B88.htm"_s
                                                           + uR"(</FilePath>
			<Origin>Migrated</Origin>
		</USER>
	</IBS>
</LINKS>
)"_s);
    QCOMPARE(plant.text(u"Migration_Log.txt"_s), uR"(Migrated project: Plant (P01)
The database had 26 rows, of which 26 became part of the project; 1 problem was met.
Project: 1 read, 1 written
Books: 3 read, 3 written
BookCategories: 3 read, 3 written
Pages: 5 read, 5 written
GlobalPages: 1 read, 1 written
QuickNav: 5 read, 5 written
SearchWords: 3 read, 3 written
Images: 2 read, 2 written
Links: 3 read, 3 written

QuickNav, NodeID 5: It leads to "_Global Information/words.htm", but only categories hold links; the link is in a category of that name below it.
)"_s.replace(u'\n', u"\r\n"_s));
    QVERIFY(plant.bytes(ProjectFile::status).contains(utf16Bytes(u"16777215"_s).sliced(2)));
    QVERIFY(!plant.world.files.exists(u"S:\\Docs\\Plant\\_Backup"_s));
}

// Every file has its own text; a page that links to all of them proves where each one went.
void tst_migration::staysInsideWithHostileNames()
{
    const QStringList names{u"..\\..\\x.htm"_s,
                            u"C:\\x.htm"_s,
                            u"\\\\srv\\x.htm"_s,
                            u"/x.htm"_s,
                            u"CON.htm"_s,
                            u"a?.htm"_s,
                            u"A.HTM"_s,
                            u"a.htm"_s,
                            u"Ab.htm"_s,
                            u"aB.htm"_s,
                            u"dots...htm."_s,
                            u"b\u0007\u202E\n.htm"_s,
                            QString(300, u'n') + u".htm"_s,
                            QString(300, u'\u4FDD') + u".htm"_s,
                            u"x.htm/y.htm"_s,
                            u"x.htm"_s,
                            u"y"_s,
                            u"y/z.htm"_s,
                            u"OPG.xml"_s,
                            u"s/../ok name&.htm"_s,
                            u"p.htm.qvtmp12"_s,
                            u"q#1%20.htm"_s,
                            u"1/2/3/4/5/6/7/8/9/10/11.htm"_s,
                            u"S/one.htm"_s,
                            u"s/two.htm"_s,
                            u"half\xD800.htm"_s};
    const QStringList shared{u"QV_Toc.xml"_s,
                             u"qv_toc.XML"_s,
                             u"_Backup"_s,
                             u"QuickNav/Book_QuickNav.xml"_s,
                             u"Migration_Log.txt"_s,
                             u"QVPlant_Server.Zip"_s,
                             u"_Global Information/Book_Global.xml"_s,
                             u"..\\..\\..\\etc\\x"_s,
                             u"Guide"_s,
                             u""_s,
                             u".."_s,
                             u"QV_Toc.xml.lock"_s,
                             u"nul"_s};
    LegacyWorld plant;
    plant.world.put(u"S:\\Docs\\x.htm"_s, "mine");
    plant.world.put(u"S:\\x.htm"_s, "mine");
    const QStringList before = plant.files();
    plant.book(u"OPG"_s, u"Guide"_s);
    for (const QString &folder : {u".."_s, u"_Global Information"_s, u"guide/"_s, u"QuickNav\\x"_s,
                                  u"C:\\Windows"_s, u"con"_s})
        plant.book(u"B"_s, folder);
    const auto toAll = [&](const QString &up) {
        QString links;
        for (const QString &name : names) {
            QString written = QString(name)
                                  .replace(u'%', u"%25"_s)
                                  .replace(u'?', u"%3F"_s)
                                  .replace(u'#', u"%23"_s)
                                  .replace(u'\n', u"%0A"_s)
                                  .toHtmlEscaped();
            const bool isRooted = written.startsWith(u'\\') || written.startsWith(u'/')
                                  || written.mid(1, 1) == u":"_s;
            links += u"<a href=\"%1#here\">"_s.arg(isRooted ? written : up + written);
        }
        return links;
    };
    plant.page(1, u"index.htm"_s, toAll({}));
    plant.page(3, u"index.htm"_s, u"<base href=\"../Guide/sub/\">"_s + toAll(u"../"_s));
    for (const QString &name : names)
        plant.page(1, name,
                   u"page "_s + QString::number(names.indexOf(name))
                       + u" <a href=\"index.htm\">"_s);
    for (int book = 2; book <= 7; ++book)
        plant.page(book, u"start.htm"_s, u"page of book "_s + QString::number(book));
    for (const QString &name : shared)
        plant.image({}, name, "GIF8 image " + QByteArray::number(shared.indexOf(name)));
    plant.image(1, u"s\\look.css"_s,
                "b { background: url(../x.htm/y.htm) } c { src: url(one.htm) }");
    plant.migrate();

    QStringList added = plant.files();
    for (const QString &file : before)
        QVERIFY2(added.removeOne(file), qPrintable(file));
    QCOMPARE(plant.world.bytes(u"S:\\Docs\\x.htm"_s) + plant.world.bytes(u"S:\\x.htm"_s),
             QByteArray("minemine"));
    QSet<QString> folded;
    int contents = 0;
    for (const QString &file : std::as_const(added)) {
        QVERIFY2(file.startsWith(u"s/Docs/Plant/"_s), qPrintable(file));
        QVERIFY2(!folded.contains(file.toCaseFolded()), qPrintable(file));
        folded.insert(file.toCaseFolded());
        const QStringList pieces = file.split(u'/').sliced(3);
        QVERIFY2(pieces.size() <= 9, qPrintable(file));
        for (const QString &piece : pieces)
            QVERIFY2(isSafeName(piece) && piece.size() <= 106 && !piece.contains(u'#')
                         && !piece.contains(u'%'),
                     qPrintable(piece));
        const QByteArray bytes = plant.bytes(pieces.join(u'\\'));
        contents += bytes.startsWith("page ") || bytes.startsWith("\xEF\xBB\xBFpage ")
                            || bytes.startsWith("GIF8")
                        ? 1
                        : 0;
    }
    QCOMPARE(contents, names.size() + 6 + shared.size());
    QCOMPARE(plant.input.books.size(), 7); // the table of contents is the project's own
    QVERIFY(plant.input.problems.isEmpty());
    QCOMPARE(plant.bytes(u"Guide\\S\\look.css"_s),
             QByteArray("b { background: url(../x_4.htm/y.htm) } c { src: url(one.htm) }"));
    QCOMPARE(plant.bytes(u"_QV_Toc.xml"_s), QByteArray("GIF8 image 0"));
    QCOMPARE(plant.bytes(u"_QV_Toc_2.XML"_s), QByteArray("GIF8 image 1"));
    QCOMPARE(plant.bytes(u"_Global Information\\Book_Global_2.xml"_s), QByteArray("GIF8 image 6"));
    QCOMPARE(plant.bytes(u"image_10.gif"_s), QByteArray("GIF8 image 9"));

    for (const qsizetype book : {0, 2}) {
        const BuildBook &from = plant.input.books.at(book);
        const QString html = plant.text(from.folder + from.book.pages[0].file);
        const QString folder = book == 0 ? from.folder : u"Guide\\sub\\"_s;
        const HtmlFacts facts = scanHtml(html);
        QCOMPARE(facts.references.size(), names.size());
        for (qsizetype at = 0; at < names.size(); ++at) {
            const PageReference &reference = facts.references.at(at);
            const PageTarget target = targetOf(html.mid(reference.start, reference.length));
            const QString hint =
                names.at(at) + u" -> "_s + html.mid(reference.start, reference.length);
            QVERIFY2(target.place == PageTarget::Place::Relative && target.anchor == "here"_L1,
                     qPrintable(hint));
            const QString path = joined(folder, target.path).value_or(u"?"_s);
            QVERIFY2(plant.world.files.fileExists(u"S:\\Docs\\Plant\\"_s + path), qPrintable(hint));
            QVERIFY2(plant.bytes(path).contains(u"page %1 "_s.arg(at).toUtf8()), qPrintable(hint));
        }
    }
    QVERIFY(plant.text(u"Guide\\y.htm"_s).endsWith(u"<a href=\"index.htm\">"_s));
}

void tst_migration::losesNothingThatIsOdd()
{
    LegacyWorld plant;
    plant.set.projectRows = 2;
    plant.set.project.created = {};
    plant.set.project.language = u"DEU"_s;
    plant.set.project.platform.clear();
    plant.set.problems = {{u"Words"_s, {}, u"met while reading"_s}};
    plant.book(u"OPG"_s, u"Guide"_s);
    plant.book(u"opg"_s, u"GUIDE"_s);
    plant.set.books.append({3, 3, {}, {}, {}, {}, {}, {}});
    plant.book(u"Global"_s, u"Fourth"_s);
    plant.set.books.append({5, 4, u"Twice"_s, u"A/B"_s, u"Fifth"_s, u"x"_s, {}, {}});
    plant.set.bookCategories = {{1, 9, u"Lost"_s}, {2, 1, {}}, {3, 1, u"Oil, air"_s}};

    plant.page(1, u"a.htm"_s, u"<title>From&#1;the  page</title>one"_s, {}, {});
    plant.page(1, u"b.htm"_s, u"two"_s, 99);
    plant.page(1, u"c.htm"_s, u"three"_s, 9);
    plant.page(1, u"d.htm"_s, u"four"_s, 5);
    plant.page(1, u"e.htm"_s, u"five \u00E4"_s, 4);
    plant.page(1, u"f.htm"_s, std::nullopt, {}, u"Null"_s);
    plant.page(1, {}, QString(), {}, {});
    plant.page({}, u"lost.htm"_s, u"eight <a href='lost.htm'>"_s);
    plant.page(2, u"noending"_s, u"nine"_s);
    plant.page(42, u"lost.htm"_s, u"ten <a href='lost.htm'> <a href='a.htm'>"_s);
    plant.page(1, u"again.htm"_s, u"eleven"_s).id = 1;
    for (int level = 1; level <= 34; ++level) {
        plant.page(3, u"deep%1.htm"_s.arg(level), u"deep %1"_s.arg(level),
                   level == 1 ? std::nullopt : std::optional(level + 10), u"L"_s);
    }
    plant.image(42, u"i.png"_s, "picture");
    plant.image(1, u"none.png"_s, std::nullopt);
    plant.node(77, 1, u"Orphan"_s);
    plant.node(1, 2, u"Group"_s, u"Guide/gone.htm#x"_s);
    plant.node(2, 3, u"Topic"_s);
    plant.node(3, 4, {});
    plant.node(4, 9, u"Too deep"_s, u"Guide/a.htm#y"_s);
    plant.node(5, 6, u"Deeper"_s);
    plant.node(7, 1, u"Circle"_s);
    plant.word({}, 1, u"a.htm"_s);
    plant.word(u"gone"_s, 1, u"gone.htm"_s);
    plant.word(u"found"_s, 42, u"LOST.htm"_s);
    plant.link(u"X"_s, u"IBX"_s, 1, u"a.htm"_s);
    plant.link({}, u"IBD"_s, 1, u"a.htm"_s);
    plant.link(u"GONE"_s, u"IBS"_s, 1, u"gone.htm"_s);
    plant.migrate();

    QCOMPARE(plant.problems().join(u'\n'),
             uR"(Project: DateCreated is missing or cannot be read; the project has today's date.
Project: The database's language is DEU; the project's is ENU.
Books, BookID 2: Its acronym opg is taken; it is now opg2.
Books, BookID 2: Its folder "GUIDE" is taken; it is now GUIDE_2.
Books, BookID 4: Its acronym Global is taken; it is now Global2.
Books, BookID 3: It had no acronym; it is now BOOK.
Books, BookID 3: It had no name; it is called "BOOK".
Books, BookID 3: It had no folder; its folder is now Book_BOOK.
Books, BookID 3: It had no file; its file is now Book_BOOK.xml.
Books, BookID 4: Its acronym "A/B" cannot be used; it is now A_B.
Books, BookID 4: Its file "x" cannot be used; it is now x.xml.
Books, BookID 4: Row 5 has the same BookID as an earlier one, which gets the pages of both.
BookCategories, row 2: It names no category; it was left out.
BookCategories, row 3: The category "Oil, air" holds a comma; it is now "Oil; air".
BookCategories, row 1: There is no such book; the category "Lost" is only in the list of the project.
Pages, PageID 7: It had no file name; its file is now page_7.htm.
Pages, PageID 8: It has no BookID; the page is in Pages without a book.
Pages, PageID 9: Its file "noending" has no ending of a page; it is now noending.htm.
Pages, PageID 10: There is no book with BookID 42; the page is in Pages without a book.
Pages, PageID 10: Another file is named "lost.htm"; this one is now lost_2.htm.
Pages, PageID 1: Row 11 has the same PageID as an earlier one, which gets what stands below both.
Pages, PageID 2: There is no page with ParentPageID 99; the page stands at the top.
Pages, PageID 3: Its ParentPageID 9 is a page of another book; the page stands at the top.
Pages, PageID 4: It stands below itself; the page stands at the top now.
Pages, PageID 44: It stands more than 32 levels deep; it is now on level 32.
Pages, PageID 45: It stands more than 32 levels deep; it is now on level 32.
Pages, PageID 1: It has no title; it is called "From the page".
Pages, PageID 6: It has no text; an empty page stands in its place.
Pages, PageID 7: It has no title; it is called "page_7.htm".
Pages, PageID 7: It has no text; an empty page stands in its place.
QuickNav, NodeID 1: There is no node with ParentID 77; it is now a view.
QuickNav, NodeID 7: It stands below itself; it is now a view.
QuickNav: NodeLevel says another level than ParentID in this many rows: 1. ParentID was followed.
QuickNav, NodeID 4: It has no title; it is called "NodeID 4".
QuickNav, NodeID 5: "Too deep" stands below a category; it is a link of "NodeID 4".
QuickNav, NodeID 6: "Deeper" stands below a category and leads nowhere; it was left out.
QuickNav, NodeID 2: It leads to "Guide/gone.htm#x", which is no page of the project.
QuickNav, NodeID 2: It leads to "Guide/gone.htm#x", but only categories hold links; the link is in a category of that name below it.
SearchWords, row 1: It has no word; it was left out.
SearchWords, row 2: The word "gone" leads to "gone.htm", which is no page; it was left out.
Images, row 1: There is no book with BookID 42; the file is in Pages without a book.
Images, row 2: It holds nothing; there is no file "none.png".
Links, row 1: Its kind is "IBX", neither IBD nor IBS; the link X was left out.
Links, row 2: It has no identifier; it was left out.
Links, row 3: The link GONE is of "gone.htm", which is no page; it was left out.
Words: met while reading)"_s);
    QCOMPARE(plant.outline(0),
             QStringList({u"1 P0001 From the page a.htm"_s, u"1 P0002 A title b.htm"_s,
                          u"1 P0003 A title c.htm"_s, u"1 P0004 A title d.htm"_s,
                          u"2 P0005 A title e.htm"_s, u"1 P0006 Null f.htm"_s,
                          u"1 P0007 page_7.htm page_7.htm"_s, u"1 P0008 A title again.htm"_s}));
    QCOMPARE(plant.outline(1), QStringList{u"1 P0001 A title noending.htm"_s});
    QCOMPARE(plant.outline(3).first(3), // three books have no SortOrder and come behind the others
             QStringList(
                 {u"1 P0001 L deep1.htm"_s, u"2 P0002 L deep2.htm"_s, u"3 P0003 L deep3.htm"_s}));
    QCOMPARE(plant.outline(3).last(3),
             QStringList({u"32 P0032 L deep32.htm"_s, u"32 P0033 L deep33.htm"_s,
                          u"32 P0034 L deep34.htm"_s}));
    QCOMPARE(plant.input.books[5].entry.folder + plant.outline(5).join(u'|'),
             u"Book_LOST1 P0001 A title lost.htm|1 P0002 A title lost_2.htm"_s);
    QCOMPARE(plant.text(u"Book_LOST\\lost.htm"_s), u"eight <a href='lost.htm'>"_s);
    QCOMPARE(plant.text(u"Book_LOST\\lost_2.htm"_s),
             u"ten <a href='lost_2.htm'> <a href='a.htm'>"_s);
    QCOMPARE(plant.bytes(u"Guide\\e.htm"_s), u"\uFEFFfive \u00E4"_s.toUtf8());
    QCOMPARE(plant.bytes(u"Guide\\f.htm"_s), newPage(u"Null"_s, u"ENU"_s));
    QCOMPARE(plant.bytes(u"Book_LOST\\i.png"_s), QByteArray("picture"));
    QCOMPARE(plant.input.header.platform + plant.input.header.dateProcess, u"Plant3/14/2026"_s);
    QCOMPARE(plant.input.header.categories, QStringList({u"Oil; air"_s, u"Lost"_s}));
    const QuickNavNode &group = plant.input.quickNav.views[0].children[0];
    QCOMPARE(group.children[0].children[0].links,
             QList<QuickNavLink>({{{}, u"Guide/gone.htm"_s, u"Group"_s, u"x"_s, u"L0001"_s}}));
    QCOMPARE(group.children[1].children[0].links,
             QList<QuickNavLink>({{u"OPG"_s, u"P0001"_s, u"Too deep"_s, u"y"_s, u"L0002"_s}}));
    QCOMPARE(plant.input.keyWords.size(), 1);
    QCOMPARE(plant.input.keyWords[0].pages, QList<KeyWord::Page>({{u"LOST"_s, u"P0002"_s}}));
    QVERIFY(!plant.world.files.exists(u"S:\\Docs\\Plant\\QV_LinkID.xml"_s));
    QCOMPARE(plant.report.counts.first(), ConversionCount({u"Project"_s, 2, 1}));
    QCOMPARE(plant.report.counts.last(), ConversionCount({u"Links"_s, 3, 0}));
}

void tst_migration::stopsWithoutATableOfContents()
{
    LegacyWorld plant;
    plant.book(u"OPG"_s, u"Guide"_s);
    plant.page(1, u"a.htm"_s, u"one"_s);
    plant.page(1, u"b.htm"_s, u"two"_s);
    Stopper stopper;
    const Progress atSecond = stopper.when([](int done, const QString &) { return done == 1; });
    QVERIFY_THROWS_EXCEPTION(Unwinding, plant.write(atSecond));
    QCOMPARE(plant.files(), QStringList{u"s/Docs/Plant.qvnew/Guide/a.htm"_s});
}

QTEST_GUILESS_MAIN(tst_migration)
#include "tst_migration.moc"
