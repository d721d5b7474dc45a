#include "platform/Paths.h"
#include "projectfiles/Backup.h"
#include "projectfiles/BookFile.h"
#include "projectfiles/KeyWordFile.h"
#include "projectfiles/ProjectCopy.h"
#include "projectfiles/QuickNavFile.h"
#include "projectfiles/TableOfContents.h"
#include "support/System.h"
#include "support/TestProgram.h"
#include "support/XmlFile.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr auto plant = "S:\\Docs\\Plant\\"_L1;
constexpr auto plantToc = "S:\\Docs\\Plant\\QV_Toc.xml"_L1;
constexpr auto categoriesFile = "QV_BookCategories.xml"_L1;

QString header(const QString &platform = {}, const QString &variation = {},
               const QString &process = {}, const QString &migration = {})
{
    const auto element = [](const QString &name, const QString &text) {
        return text.isEmpty() ? u"\t\t<%1/>\n"_s.arg(name) : u"\t\t<%1>%2</%1>\n"_s.arg(name, text);
    };
    return u"\t<QV>\n"_s + element(u"QV_Platform"_s, platform)
           + element(u"QV_Variation"_s, variation) + element(u"QV_ID"_s, {})
           + element(u"QV_Date_Process"_s, process) + element(u"QV_Date_Migration"_s, migration)
           + u"\t</QV>\n"_s;
}

QByteArray toc(const QString &below)
{
    return xmlFile(u"<QV_Master>\n"_s + below + u"</QV_Master>\n"_s);
}

TocBook bookEntry(const QString &name, const QString &acronym)
{
    const QString folder = u"Book_"_s + acronym;
    return {name, acronym, u"Plant"_s, folder, folder + u".xml"_s, {}, {}};
}

QStringList acronyms(const Toc &toc)
{
    QStringList all;
    for (const TocBook &book : toc.books)
        all.append(book.acronym);
    return all;
}

QStringList names(const QList<Category> &categories)
{
    QStringList all;
    for (const Category &category : categories)
        all.append(category.id + u' ' + category.name);
    return all;
}

QString outline(const QList<BookPage> &pages)
{
    QStringList all;
    for (const BookPage &page : pages)
        all.append(page.id + u' ' + page.title
                   + (page.pages.isEmpty() ? QString() : u'(' + outline(page.pages) + u')'));
    return all.join(u", "_s);
}

Book bookNamed(const QString &name)
{
    Book book;
    book.name = name;
    return book;
}

BookPage newPage(const QString &title, const QList<BookPage> &below = {})
{
    return {{}, title, title.toLower() + u".html"_s, {}, below};
}

struct World : TestProgram
{
    TableOfContents contents{session, files};
    BookFile books{session, files};
    ProjectCopy copy{session, files, clock, locale};

    World()
    {
        session.projectName = u"Plant"_s;
        files.makeFolder(u"S:\\Docs\\Plant"_s);
    }
    QString textFile(const QString &path) { return xmlText(bytes(path)); }
};

} // namespace

class tst_projectfiles final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void splitsNames();
    void makesATableOfContents();
    void readsOnlyCompleteTables();
    void changesTheListOfBooks();
    void keepsFiveVersions();
    void writesABook();
    void readsPlainBooksAndRefusesStrayPaths();
    void copiesAProject();
    void seedsCategories();
    void takesCategoriesOfTheSource();
    void makesTheGlobalBookOnce();
    void keepsKeyWords();
    void readsTheExamplesOfTheFormatPages();
};

void tst_projectfiles::splitsNames()
{
    FixedLocale locale;
    for (const QString &row :
         {u"Plant=Plant|"_s, u"R300 Build 300=R|300"_s, u"Plant 3.5=Plant |3.5"_s,
          u"Plant 300 B=Plant 300 B|"_s, u"Plant 300 =Plant 300 |"_s}) {
        const QString name = row.section(u'=', 0, 0);
        const auto split = splitProjectName(name, locale);
        QCOMPARE(name + u'=' + split.platform + u'|' + split.variation, row);
    }
}

void tst_projectfiles::makesATableOfContents()
{
    World world;
    const auto fill = [&] {
        return fillHeader(world.session, world.files, world.clock, world.locale, u"Plant 300"_s);
    };
    QVERIFY(!fill());
    QVERIFY(!world.files.exists(plantToc));
    QVERIFY(world.contents.CreateQVTOCFile(plantToc));
    QCOMPARE(world.bytes(plantToc), toc(header() + u"\t<QV_Books/>\n"_s));

    QVERIFY(fill());
    QVERIFY(fill());
    const QString filled = header(u"Plant "_s, u"300"_s, u"3/14/2026"_s) + u"\t<QV_Books/>\n"_s;
    QCOMPARE(world.bytes(u"S:\\Docs\\Plant\\QV_TOC.xml"_s),
             toc(QString(filled).replace(u"/>"_s, u" />"_s)));

    const QByteArray broken = toc(u"\t<QV>\n\t\t<QV_Platform/>\n\t</QV>\n"_s);
    world.put(plantToc, broken);
    QCOMPARE(raisedBy([&] { fill(); }).number(), 75);
    QCOMPARE(world.bytes(plantToc), broken);
}

void tst_projectfiles::readsOnlyCompleteTables()
{
    World world;
    const QString whole = header() + u"\t<QV_Books/>\n"_s;
    for (const auto &element : {u"QV_Platform"_s, u"QV_Variation"_s, u"QV_ID"_s,
                                u"QV_Date_Process"_s, u"QV_Date_Migration"_s, u"QV_Books"_s}) {
        world.put(plantToc, toc(QString(whole).remove(u"<%1/>"_s.arg(element))));
        const QvError error = raisedBy([&] { world.contents.read(u"Plant"_s); });
        QCOMPARE(error.number(), 75);
        QCOMPARE(error.description(),
                 plantToc + u" cannot be read: the element %1 is missing"_s.arg(element));
    }
    world.put(plantToc, toc(whole).chopped(20));
    QCOMPARE(raisedBy([&] { world.contents.read(u"Plant"_s); }).number(), 75);
    world.files.removeFile(plantToc);
    QCOMPARE(raisedBy([&] { world.contents.read(u"Plant"_s); }).number(), 53);
}

void tst_projectfiles::changesTheListOfBooks()
{
    World world;
    world.put(plantToc,
              toc(header()
                  + u"\t<QV_Books>\n\t\t<Book Mine=\"1\">\n\t\t\t<Book_File>a.xml</Book_File>\n"
                    "\t\t\t<Note>kept</Note>\n\t\t\t<Book_Name>Alpha</Book_Name>\n"
                    "\t\t</Book>\n\t</QV_Books>\n\t<QV_Books><Book/></QV_Books>\n"_s));
    const TocBook alpha = world.contents.read(u"Plant"_s).books.value(0);
    QCOMPARE(alpha, (TocBook{u"Alpha"_s, {}, {}, {}, u"a.xml"_s, {}, {}}));

    TocBook guide = bookEntry(u"Operator's Guide \"A\""_s, u"OPG"_s);
    guide.type = u"manual"_s;
    guide.categories = QStringList{u"Safety"_s, u"R&D"_s};
    world.contents.addBook(u"Plant"_s, guide);
    world.contents.addBook(u"Plant"_s, bookEntry(u"Beta"_s, u"BET"_s));
    world.contents.moveBook(u"Plant"_s, guide, 0);
    TocBook changed = alpha;
    changed.acronym = u"ALP"_s;
    world.contents.changeBook(u"Plant"_s, alpha, changed);
    const Toc read = world.contents.read(u"Plant"_s);
    QCOMPARE(acronyms(read), (QStringList{u"OPG"_s, u"ALP"_s, u"BET"_s}));
    QCOMPARE(read.books.first(), guide);
    const QString text = world.textFile(plantToc);
    QVERIFY(text.contains(u"<Book Mine=\"1\">"_s) && text.contains(u"<Note>kept</Note>"_s));
    QVERIFY(text.contains(
        u"\t\t<Book>\n\t\t\t<Book_Name>Beta</Book_Name>\n\t\t\t<Book_Acro>BET</Book_Acro>\n"
        "\t\t\t<Book_Key id=\"\">Plant</Book_Key>\n\t\t\t<Book_Folder>Book_BET</Book_Folder>\n"
        "\t\t\t<Book_File>Book_BET.xml</Book_File>\n\t\t\t<Book_Categories />\n\t\t</Book>\n"_s));

    const QByteArray before = world.bytes(plantToc);
    const TocBook beta = read.books.last();
    const QList<std::function<void()>> refused{
        [&] { world.contents.addBook(u"Plant"_s, bookEntry(u"BETA"_s, u"NEW"_s)); },
        [&] { world.contents.addBook(u"Plant"_s, bookEntry(u"New"_s, u"bet"_s)); },
        [&] { world.contents.changeBook(u"Plant"_s, beta, bookEntry(u"Beta"_s, u"alp"_s)); },
        [&] { world.contents.removeBook(u"Plant"_s, bookEntry(u"Beta"_s, u"ALP"_s)); },
        [&] { world.contents.moveBook(u"Plant"_s, beta, 3); },
    };
    for (const auto &change : refused)
        QCOMPARE(raisedBy(change).number(), 5);
    QCOMPARE(world.bytes(plantToc), before);

    world.contents.changeBook(u"Plant"_s, beta, bookEntry(u"BETA"_s, u"BET"_s));
    world.contents.removeBook(u"Plant"_s, guide);
    QCOMPARE(acronyms(world.contents.read(u"Plant"_s)), (QStringList{u"ALP"_s, u"BET"_s}));
    QCOMPARE(world.bytes(plant + u"_Backup\\QV_Toc.xml.5"_s), before);
}

void tst_projectfiles::keepsFiveVersions()
{
    World world;
    const QString path = plant + u"Book_A\\Book_A.xml"_s;
    const QString kept = plant + u"_Backup\\Book_A\\Book_A.xml."_s;
    world.files.makeFolder(plant + u"Book_A"_s);
    backUp(world.files, plant, u"Book_A\\Book_A.xml"_s);
    QVERIFY(!world.files.exists(plant + u"_Backup"_s));
    for (int version = 1; version <= 7; ++version) {
        world.put(path, QByteArray::number(version));
        world.files.setAttributes(path, version == 2 ? ReadOnlyFile : 0);
        backUp(world.files, plant, u"Book_A\\Book_A.xml"_s);
        world.files.setAttributes(path, 0);
    }
    for (int number = 3; number <= 7; ++number)
        QCOMPARE(world.bytes(kept + QString::number(number)), QByteArray::number(number));
    QCOMPARE(world.files.entries(plant + u"_Backup\\Book_A"_s).size(), 5);
}

void tst_projectfiles::writesABook()
{
    World world;
    const TocBook entry = bookEntry(u"Operator's Guide"_s, u"OPG"_s);
    const QString path = plant + u"Book_OPG\\Book_OPG.xml"_s;
    Book book = bookNamed(entry.name);
    book.pages = {newPage(u"Start"_s, {newPage(u"Stop"_s)}), newPage(u"End"_s)};
    book.pages[0].keyWords = QStringList{u"begin"_s, u"開始"_s};
    book.pages[0].contextIds = {{u"IDH_START"_s, u"7"_s}};
    book.pages[0].linkIds = QStringList{u"start-1"_s};
    book.sources = {{u"Import"_s, u"C:\\a.md"_s, u"2026-03-14"_s, u"1"_s, u"P0001"_s}};
    world.books.write(u"Plant"_s, entry, book);
    book = world.books.read(u"Plant"_s, entry);
    QCOMPARE(book.name, u"Operator's Guide"_s);
    QCOMPARE(outline(book.pages), u"P0001 Start(P0002 Stop), P0003 End"_s);
    QCOMPARE(book.pages[0].keyWords, (QStringList{u"begin"_s, u"開始"_s}));
    QCOMPARE(book.pages[0].contextIds, (QList<ContextId>{{u"IDH_START"_s, u"7"_s}}));
    QCOMPARE(book.pages[0].linkIds, QStringList{u"start-1"_s});
    QCOMPARE(book.sources.value(0).path, u"C:\\a.md"_s);

    // What other tools wrote stays with its page and source, wherever they move.
    QString text = world.textFile(path);
    text.replace(u"<Page_Title>Stop</Page_Title>"_s,
                 u"<Page_Title>Stop</Page_Title><Page_Note ID=\"N\">7</Page_Note>"_s);
    text.replace(u"<Source Kind=\"Import\">"_s, u"<Source Kind=\"Import\" By=\"Ann\">"_s);
    text.replace(u"</Book>"_s, u"<Book_Mood>good</Book_Mood></Book>"_s);
    world.put(path, utf16Bytes(text));
    const BookPage stop = book.pages[0].pages.takeFirst();
    book.pages.removeLast();
    book.pages.prepend(stop);
    book.pages.append(newPage(u"New"_s));
    book.sources.prepend({u"Source"_s, u"D:\\b.html"_s, {}, {}, {}});
    world.books.write(u"Plant"_s, entry, book);
    QCOMPARE(outline(world.books.read(u"Plant"_s, entry).pages),
             u"P0002 Stop, P0001 Start, P0004 New"_s);
    QCOMPARE(world.bytes(plant + u"_Backup\\Book_OPG\\Book_OPG.xml.1"_s), utf16Bytes(text));
    const QString written = world.textFile(path);
    QVERIFY(written.contains(u"<Page ID=\"P0002\">\n\t\t\t<Page_Title>Stop</Page_Title>\n"
                             "\t\t\t<Page_File>stop.html</Page_File>\n"
                             "\t\t\t<Page_Note ID=\"N\">7</Page_Note>\n\t\t</Page>"_s));
    QVERIFY(written.contains(u"<Book_Mood>good</Book_Mood>"_s));
    QVERIFY(written.indexOf(u"D:\\b.html"_s) < written.indexOf(u"By=\"Ann\""_s));

    BookPage deep = newPage(u"Deep"_s);
    for (int level = 0; level < 32; ++level)
        deep = newPage(u"Above"_s, {deep});
    book.pages = {deep};
    QCOMPARE(raisedBy([&] { world.books.write(u"Plant"_s, entry, book); }).number(), 5);
    QCOMPARE(world.textFile(path), written);
    book.pages = deep.pages;
    world.books.write(u"Plant"_s, entry, book);
    QCOMPARE(flattened(world.books.read(u"Plant"_s, entry).pages).size(), 32);
}

void tst_projectfiles::readsPlainBooksAndRefusesStrayPaths()
{
    World world;
    TocBook entry = bookEntry(u"Old"_s, u"OLD"_s);
    const QString path = plant + u"Book_OLD\\Book_OLD.xml"_s;
    world.files.makeFolder(plant + u"Book_OLD"_s);
    QCOMPARE(raisedBy([&] { world.books.read(u"Plant"_s, entry); }).number(), 53);
    world.put(path,
              xmlFile(u"<Book_Master><Book><Book_Name>Old</Book_Name></Book></Book_Master>\n"_s));
    QCOMPARE(world.books.read(u"Plant"_s, entry).name, u"Old"_s);
    QCOMPARE(world.books.pagePath(u"Plant"_s, entry, u"img/a.html"_s),
             plant + u"Book_OLD\\img\\a.html"_s);
    world.put(path, xmlFile(u"<Book_Master><Book_Pages/></Book_Master>\n"_s));
    QCOMPARE(raisedBy([&] { world.books.read(u"Plant"_s, entry); }).description(),
             path + u" cannot be read: the element Book is missing"_s);

    for (const QString &stray : {u"..\\Other"_s, u"C:\\Windows"_s, u"\\\\host\\x"_s, QString()}) {
        QCOMPARE(raisedBy([&] { (void)world.books.pagePath(u"Plant"_s, entry, stray); }).number(),
                 75);
        entry.folder = stray;
        QCOMPARE(raisedBy([&] { world.books.write(u"Plant"_s, entry, {}); }).number(), 75);
        entry.folder = u"Book_OLD"_s;
    }
}

void tst_projectfiles::copiesAProject()
{
    World world;
    const QString header = u"\t<QV>\n\t\t<QV_Platform>Plant </QV_Platform>\n"
                           "\t\t<QV_Variation>300</QV_Variation>\n\t\t<Own>x</Own>\n"
                           "\t\t<QV_Date_Process>1/1/2020</QV_Date_Process>\n\t</QV>\n"_s;
    world.put(plantToc, toc(header + u"\t<QV_Books/>\n"_s));
    const TocBook guide = bookEntry(u"Operator's Guide"_s, u"OPG"_s);
    const TocBook torn = bookEntry(u"Torn"_s, u"TRN"_s);
    for (const TocBook &book : {guide, torn, bookEntry(u"Lost"_s, u"LST"_s)}) {
        // The header lacks elements, which reading refuses but copying accepts.
        world.contents.addBook(u"Plant"_s, book);
        world.books.write(u"Plant"_s, book, bookNamed(book.name));
    }
    const QByteArray page = "a page\0of bytes"_ba;
    world.put(plant + u"Book_OPG\\start.html"_s, page);
    world.put(plant + u"Book_TRN\\Book_TRN.xml"_s, "torn");
    world.files.removeFile(plant + u"Book_LST\\Book_LST.xml"_s);
    world.files.setAttributes(plant + u"Book_OPG\\Book_OPG.xml"_s, ReadOnlyFile);
    world.put(plant + u"QV_Toc.xml.qvtmp77"_s, "half");
    world.put(plant + u"Book_OPG\\x.xml.lock"_s, {});
    world.put(plant + u"gate.lock\\a.qvtmp.html"_s, page);
    const bool isLinked = here::link(QDir::rootPath(), world.native(u"Docs/Plant/outside"_s));
    makeGlobalBookIfMissing(world.session, world.files, *world.parts.globalInformation);
    const QByteArray sourceBook = world.bytes(plant + u"Book_OPG\\Book_OPG.xml"_s);

    world.session.projectName = u"DEU_Copy"_s;
    const QvError missing = raisedBy([&] { world.copy.CopyProjectFolder(u"Gone"_s); });
    QCOMPARE(missing.number(), 76);
    QCOMPARE(missing.source(), u"QV_Developer::CopyProjectFolder"_s);
    QVERIFY(!world.files.exists(u"S:\\Docs\\DEU_Copy"_s));
    const QStringList seen = world.copy.CopyProjectFolder(u"Plant"_s).all();
    const QString copied = u"S:\\Docs\\DEU_Copy\\"_s;
    QCOMPARE(seen.size(), isLinked ? 2 : 1);
    QCOMPARE(seen.contains(u"outside"_s), isLinked);
    QVERIFY2(seen.last().startsWith(copied + u"Book_TRN\\Book_TRN.xml cannot be read: "_s),
             qPrintable(seen.last()));
    QCOMPARE(world.bytes(copied + u"Book_TRN\\Book_TRN.xml"_s), "torn"_ba);
    QCOMPARE(world.bytes(copied + u"Book_OPG\\start.html"_s), page);
    QCOMPARE(world.bytes(copied + u"gate.lock\\a.qvtmp.html"_s), page);
    for (const auto &behind : {u"_Backup"_s, u"QV_Toc.xml.qvtmp77"_s, u"Book_OPG\\x.xml.lock"_s})
        QVERIFY2(!world.files.exists(copied + behind), qPrintable(behind));

    const QString text = world.textFile(copied + u"QV_TOC.xml"_s);
    QVERIFY(text.contains(u"\t<QV>\n\t\t<QV_Platform>DEU_Copy</QV_Platform>\n\t\t<QV_Variation />\n"
                          "\t\t<Own>x</Own>\n"
                          "\t\t<QV_Date_Process>3/14/2026</QV_Date_Process>\n\t</QV>\n"_s));
    QVERIFY(world.textFile(copied + u"_Global Information\\Book_Global.xml"_s)
                .contains(u"<Book_Path>Docs\\DEU_Copy\\_Global Information\\</Book_Path>"_s));
    QCOMPARE(text.count(u"<Book_Key id=\"\">DEU_Copy</Book_Key>"_s), 3);
    const Book book = world.books.read(u"DEU_Copy"_s, guide);
    QCOMPARE((QStringList{book.name, book.key, book.path}),
             (QStringList{guide.name, u"DEU_Copy"_s, u"Docs\\DEU_Copy\\Book_OPG\\"_s}));
    QVERIFY(world.files.status(copied + u"Book_OPG\\Book_OPG.xml"_s).readOnly);
    QCOMPARE(world.bytes(plant + u"Book_OPG\\Book_OPG.xml"_s), sourceBook);
}

void tst_projectfiles::seedsCategories()
{
    World world;
    CategoryFile file(world.files);
    const QString target = plant + categoriesFile;
    const auto seed = [&] {
        QStringList grown;
        seedCategories(world.session, world.files, *world.parts.categories, u"Nobody"_s, grown);
        return grown;
    };
    world.put(target, "an old one that no one can read");
    QCOMPARE(seed(), QStringList(1));
    QVERIFY(file.read(target).isEmpty());

    file.write(u"S:\\Docs\\QV_DefaultCategories.xml"_s, {{{}, u"Safety"_s, {}}});
    world.put(plantToc,
              toc(u"\t<QV>\n\t\t<QV_Categories>\n\t\t\t<C>SAFETY</C>\n\t\t\t<C>Pumps</C>\n"
                  "\t\t\t<D/>\n\t\t\t<C>Belts, pumps ,Oil</C>\n\t\t</QV_Categories>\n\t</QV>\n"_s));
    QCOMPARE(seed(), (QStringList{{}, u"SAFETY"_s, u"Pumps"_s, {}, u"Belts, pumps ,Oil"_s}));
    QCOMPARE(names(file.read(target)),
             (QStringList{u"C0001 Pumps"_s, u"C0002 Belts"_s, u"C0003 Oil"_s}));
    QCOMPARE(raisedBy([&] { world.parts.categories->add(u"a,b"_s); }).number(), 5);
}

void tst_projectfiles::takesCategoriesOfTheSource()
{
    World world;
    world.files.makeFolder(u"S:\\Docs\\Old"_s);
    CategoryFile file(world.files);
    const QString source = u"S:\\Docs\\Old\\"_s + categoriesFile;
    file.write(source, {{{}, u"Pumps"_s, u"all of them"_s}, {{}, u"Belts"_s, {}}});
    file.write(source, {{u"C0001"_s, u"Pumps"_s, u"all of them"_s}});
    file.write(source, file.read(source) << Category{{}, u"Oil"_s, {}});
    const QString end = u"</QV_BookCategories>"_s;
    world.put(source, utf16Bytes(world.textFile(source).replace(end, u"\t<Own />\n"_s + end)));
    world.put(plantToc, toc(u"\t<QV>\n\t\t<QV_Categories><C>X</C></QV_Categories>\n\t</QV>\n"_s));

    QStringList grown{{}, u"earlier"_s};
    seedCategories(world.session, world.files, *world.parts.categories, u"Old"_s, grown);
    QCOMPARE(grown, (QStringList{{}, u"earlier"_s, u"X"_s}));
    QCOMPARE(world.textFile(plant + categoriesFile),
             u"<?xml version=\"1.0\" encoding=\"utf-16\"?>\n<QV_BookCategories NextID=\"4\">\n"
             "\t<Category ID=\"C0001\">\n\t\t<Category_Name>Pumps</Category_Name>\n"
             "\t\t<Category_Description>all of them</Category_Description>\n\t</Category>\n"
             "\t<Category ID=\"C0003\">\n\t\t<Category_Name>Oil</Category_Name>\n"
             "\t\t<Category_Description />\n\t</Category>\n\t<Own />\n</QV_BookCategories>\n"_s);
}

void tst_projectfiles::makesTheGlobalBookOnce()
{
    World world;
    const QString path = plant + u"_Global Information\\Book_Global.xml"_s;
    QVERIFY(readGlobalPages(world.session, world.files, u"Plant"_s).isEmpty());
    makeGlobalBookIfMissing(world.session, world.files, *world.parts.globalInformation);
    QCOMPARE(world.bytes(path),
             xmlFile(u"<Book_Master>\n\t<Book>\n\t\t<Book_Name>Global Information</Book_Name>\n"
                     "\t\t<Book_Acro>GLOBAL</Book_Acro>\n\t\t<Book_Key>Plant</Book_Key>\n"
                     "\t\t<Book_Path>Docs\\Plant\\_Global Information\\</Book_Path>\n\t</Book>\n"
                     "\t<Global_Pages />\n</Book_Master>\n"_s));
    world.put(path, "the author's own");
    makeGlobalBookIfMissing(world.session, world.files, *world.parts.globalInformation);
    QCOMPARE(world.bytes(path), "the author's own"_ba);
    QCOMPARE(raisedBy([&] { readGlobalPages(world.session, world.files, u"Plant"_s); }).number(),
             75);
}

void tst_projectfiles::keepsKeyWords()
{
    World world;
    const QString path = plant + ProjectFile::keyWords;
    QVERIFY(readKeyWords(world.session, world.files, u"Plant"_s).isEmpty());
    world.put(path, xmlFile(u"<QV_SearchKeyWords Language=\"ENU\">\n"
                            "\t<KeyWord Origin=\"Author\" Rank=\"2\">\n"
                            "\t\t<KeyWord_Text>Oil</KeyWord_Text>\n"
                            "\t\t<KeyWord_Page Book=\"A\" Page=\"P1\" Weight=\"3\"/>\n"
                            "\t\t<KeyWord_Page Book=\"A\" Page=\"P2\"/>\n\t</KeyWord>\n"
                            "\t<KeyWord Origin=\"Meta\">\n"
                            "\t\t<KeyWord_Text>Oil</KeyWord_Text>\n\t</KeyWord>\n"
                            "</QV_SearchKeyWords>\n"_s));
    QList<KeyWord> keyWords = readKeyWords(world.session, world.files, u"Plant"_s);
    QCOMPARE(keyWords.size(), 2);
    keyWords.removeLast();
    keyWords.first().pages.removeLast();
    keyWords.first().synonyms = {u"Grease"_s};
    writeKeyWords(world.session, world.files, u"Plant"_s, keyWords);
    QCOMPARE(xmlText(world.bytes(path)),
             xmlText(xmlFile(u"<QV_SearchKeyWords Language=\"ENU\">\n"
                             "\t<KeyWord Origin=\"Author\" Rank=\"2\">\n"
                             "\t\t<KeyWord_Text>Oil</KeyWord_Text>\n"
                             "\t\t<KeyWord_Synonym>Grease</KeyWord_Synonym>\n"
                             "\t\t<KeyWord_Page Book=\"A\" Page=\"P1\" Weight=\"3\" />\n"
                             "\t</KeyWord>\n</QV_SearchKeyWords>\n"_s)));
    QVERIFY(world.files.exists(plant + u"_Backup\\QV_SearchKeyWords.xml.1"_s));
}

void tst_projectfiles::readsTheExamplesOfTheFormatPages()
{
    World world;
    const QList<QPair<QString, QString>> examples{
        {u"table-of-contents"_s, plantToc},
        {u"book"_s, plant + u"Book_OPG\\Book_OPG.xml"_s},
        {u"categories"_s, plant + categoriesFile},
        {u"global-book"_s, plant + u"_Global Information\\Book_Global.xml"_s},
        {u"quick-navigation"_s, plant + u"QuickNav\\Book_QuickNav.xml"_s},
        {u"catalogue"_s, u"S:\\Docs\\QV_Selection.xml"_s}};
    for (const auto &[page, path] : examples) {
        QFile format(QFINDTESTDATA(u"../docs/formats/%1.md"_s.arg(page)));
        QVERIFY2(format.open(QFile::ReadOnly), qPrintable(page));
        const QString text = QString::fromUtf8(format.readAll());
        world.put(path, utf16Bytes(text.section(u"```xml\n"_s, 1).section(u"```"_s, 0, 0)));
    }
    const Toc toc = world.contents.read(u"Plant"_s);
    QCOMPARE(toc.header.platform + toc.header.variation, u"Plant 300"_s);
    QCOMPARE(toc.books.value(0).type, u"manual"_s);
    QCOMPARE(outline(world.books.read(u"Plant"_s, toc.books.value(0)).pages),
             u"P0001 Start(P0003 Stop)"_s);
    QCOMPARE(names(CategoryFile(world.files).read(plant + categoriesFile)),
             (QStringList{u"C0001 Safety"_s, u"C0002 Maintenance"_s}));
    QCOMPARE(readGlobalPages(world.session, world.files, u"Plant"_s).value(0).file,
             u"welcome.html"_s);
    const QuickNav nav = readQuickNav(world.session, world.files, u"Plant"_s);
    const QuickNavNode topic = nav.views.value(0).children.value(0).children.value(0);
    const QuickNavLink link = topic.children.value(0).links.value(0);
    QCOMPARE((QStringList{nav.categories.value(0), topic.name, link.book, link.page, link.title,
                          link.anchor}),
             (QStringList{u"Procedures"_s, u"Starting"_s, u"OPG"_s, u"P0001"_s, u"Start the pump"_s,
                          u"step1"_s}));
    QCOMPARE(ProjectCatalogue(world.session, world.files).GetProdQVSelection_Data(),
             (QStringList{{}, u"My Favorites#500"_s, u"Plant#20"_s}));
}

QTEST_GUILESS_MAIN(tst_projectfiles)
#include "tst_projectfiles.moc"
