#include "catalogue/StatusIndicators.h"
#include "dialogs/merge/ProjectMerge.h"
#include "support/LinkFile.h"
#include "support/Locked.h"
#include "support/SampleProject.h"
#include "support/System.h"

#include <QtTest>

using namespace Qt::StringLiterals;
using Kind = MergeFinding::Kind;

namespace {

/// Projects to be merged into "Both".
struct MergeWorld : TestProgram
{
    const QString merged = u"S:\\Docs\\Both\\"_s;

    MergeWorld()
    {
        CategoryFile(files).write(defaultCategoriesPath(server), {{{}, u"Safety"_s, {}}});
    }

    /// A catalogued project; `date` is its day of addition, or in the table of contents.
    ProjectFiles project(const QString &name, QDate date, bool isReleased = true)
    {
        session.projectName = name;
        session.projectId = u"P"_s;
        session.projectLanguage = name.startsWith("DEU_"_L1) ? u"DEU"_s : u"ENU"_s;
        ProjectFiles made(*this, name);
        files.makeFolder(withoutBackslash(made.folder));
        TableOfContents contents(session, files);
        contents.CreateQVTOCFile(made.folder + ProjectFile::toc);
        QString toc = xmlText(bytes(made.folder + ProjectFile::toc)).section(u'\n', 1);
        toc.replace(u"<QV_Date_Process/>"_s, u"<QV_Date_Process>%1</QV_Date_Process>"_s.arg(
                                                 locale.shortDate(isReleased ? QDate() : date)));
        put(made.folder + ProjectFile::toc, xmlFile(toc));
        list(name);
        if (isReleased)
            ProjectCatalogue(session, files).release(name, date);
        return made;
    }

    MergeResult merge(const QStringList &projects, const Progress &progress = {})
    {
        return ProjectMerge(program).merge({u"Both"_s, u"B01"_s, {}, projects}, progress);
    }
    QString page(const QString &below)
    {
        return xmlText(bytes(merged + below)).remove(QChar::ByteOrderMark);
    }
    Toc toc() { return TableOfContents(session, files).read(u"Both"_s); }
};

QStringList told(const MergeResult &result, Kind kind)
{
    QStringList lines;
    for (const MergeFinding &finding : result.findings) {
        if (finding.kind == kind)
            lines.append(u"%1 %2 %3"_s.arg(finding.project, finding.acronym, finding.detail));
    }
    return lines;
}

} // namespace

class tst_merge final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsDates();
    void mergesSharedBooks();
    void followsRenamedFolders();
    void bringsWhatBooksShare();
    void joinsCategoriesAndLinks();
    void refusesBeforeAnythingIsMade();
    void leavesHostileFoldersAlone();
    void stopLeavesNothing();
    void failureLeavesWhatThereIs();
};

void tst_merge::readsDates()
{
    FixedLocale locale;
    for (const QString &text : u"2024-03-02|2024-3-2T10:00|3/2/2024|03/02/24 1:00|2.3.2024|"
                               "02. 03. 24"_s.split(u'|'))
        QVERIFY2(dateOf(u' ' + text, locale) == QDate(2024, 3, 2), qPrintable(text));
    QCOMPARE(dateOf(u"3/2/99"_s, locale), QDate(1999, 3, 2));
    for (const QString &text : u"|soon|2024-13-02|31.2.2024|2.3.20245"_s.split(u'|'))
        QVERIFY2(!dateOf(text, locale).isValid(), qPrintable(text));
}

void tst_merge::mergesSharedBooks()
{
    MergeWorld world;
    ProjectFiles third = world.project(u"Old"_s, QDate(2020, 5, 1), false);
    ProjectFiles base = world.project(u"DEU_Operator's"_s, QDate(2024, 1, 2));
    ProjectFiles second = world.project(u"Plant"_s, QDate(2023, 12, 31));
    const auto pages = [](const char *text) {
        return QList<QPair<QString, QByteArray>>{{u"start.htm"_s, text}};
    };
    base.addBook(u"Alpha"_s, u"ALP"_s, pages("**DEU_Operator's**"));
    base.addBook(u"Y"_s, u"Z"_s);
    base.addBook(u"Zeta"_s, u"Z1"_s);
    second.addBook(u"Alpha"_s, u"ALP"_s, pages("**Plant** **Old**"));
    second.addBook(u"Operator's Guide"_s, u"OG"_s, pages("x"));
    second.addBook(u"Global Information"_s, u"GLO"_s);
    second.addBook(u"Q"_s, u"Z"_s); // Z1 is tried, and taken as well
    third.addBook(u"Alpha"_s, u"ALP"_s);
    third.addBook(u"Gamma"_s, u"glo"_s); // another acronym, but the same folder name
    third.addBook(u"Delta"_s, u"ALP1"_s);
    for (const auto &derived :
         {u"QV_SearchKeyWords.xml"_s, u"QVDEU_Operator's_Server.Zip"_s, u"Merge_Log.txt"_s,
          u"DocToDoc_Log.txt"_s, u"DEU_Operator's_QA_Log.txt"_s, u"Search_Words\\Words_a.xml"_s,
          u"QV_QAReport.xml"_s, u"Migration_Log.txt"_s})
        world.put(base.folder + derived, "old");
    world.put(base.folder + ProjectFile::status, "red");
    world.files.setAttributes(second.folder + u"Book_ALP\\start.htm"_s, ReadOnlyFile);
    world.files.setAttributes(second.folder + u"Book_ALP\\Book_ALP.xml"_s, ReadOnlyFile);

    const MergeResult result = world.merge({u"Old"_s, u"Plant"_s, u"DEU_Operator's"_s});
    QCOMPARE(result.base, u"DEU_Operator's"_s);
    QCOMPARE(result.order, (QStringList{u"DEU_Operator's"_s, u"Plant"_s, u"Old"_s}));
    QStringList books;
    for (const TocBook &book : world.toc().books) {
        books.append(book.name + u' ' + book.acronym + u' ' + book.folder);
        const Book file = BookFile(world.session, world.files).read(u"Both"_s, book);
        QCOMPARE(book.key, u"Both"_s);
        QCOMPARE(file.key, u"Both"_s);
        QCOMPARE(file.path, u"Docs\\Both\\"_s + book.folder + u'\\');
        QCOMPARE(file.acronym, book.acronym);
        for (const BookPage &page : file.pages)
            QVERIFY(world.files.fileExists(world.merged + book.folder + u'\\' + page.file));
    }
    QCOMPARE(books, (QStringList{u"Alpha ALP Book_ALP"_s, u"Y Z Book_Z"_s, u"Zeta Z1 Book_Z1"_s,
                                 u"Alpha ALP1 Book_ALP1"_s, u"Operator's Guide OG Book_OG"_s,
                                 u"Global Information GLO Book_GLO"_s, u"Q Z1 Book_Z2"_s,
                                 u"Gamma glo Book_glo1"_s, u"Delta ALP11 Book_ALP11"_s}));
    QCOMPARE(result.books, 9);
    QCOMPARE(told(result, Kind::BookLeftOut),
             QStringList{u"Old ALP1 There are books of this name and of this acronym already"_s});
    QCOMPARE(told(result, Kind::BookRenamed).size(), 3);
    QCOMPARE(told(result, Kind::AcronymDoubled),
             QStringList{u"Plant Z1 Another book has this acronym too"_s});
    QCOMPARE(world.page(u"Book_ALP\\start.htm"_s), u"**Both**"_s);
    QCOMPARE(world.page(u"Book_ALP1\\start.htm"_s), u"**Both** **Old**"_s);
    QVERIFY(world.files.status(world.merged + u"Book_ALP1\\start.htm"_s).readOnly);

    QStringList own = world.below(world.merged);
    own.removeIf([](const QString &name) { return name.startsWith("Book_"_L1); });
    QCOMPARE(own, (QStringList{u"Merge_Log.txt"_s, u"QV_BookCategories.xml"_s, u"QV_LinkID.xml"_s,
                               u"QV_StatusIndicators.xml"_s, u"QV_Toc.xml"_s}));
    QCOMPARE(StatusIndicators(world.session, world.files, world.currentProject).lights()->docToDoc,
             neutralColour);
    const QString log = QString::fromUtf8(world.bytes(result.logPath));
    QVERIFY(log.startsWith("Merged project: Both (B01)\r\n"_L1));
    QCOMPARE(log.count(u"\r\n"_s), 7 + result.findings.size());

    const CatalogueEntry entry = ProjectCatalogue(world.session, world.files).entries().last();
    QCOMPARE((QStringList{entry.name, entry.id, entry.language, entry.addDate}),
             (QStringList{u"Both"_s, u"B01"_s, u"DEU"_s, QString()}));
}

void tst_merge::followsRenamedFolders()
{
    MergeWorld world;
    ProjectFiles base = world.project(u"A"_s, QDate(2024, 1, 2));
    ProjectFiles other = world.project(u"B"_s, QDate(2024, 1, 1));
    const QString full = QString(127, u'\u00FC') + u'x'; // 255 bytes
    base.addBook(u"Pumps"_s, u"P&1"_s);
    base.addBook(u"Whole"_s, u"W"_s);
    other.addBook(
        u"Valves"_s, u"p&1"_s,
        {{u"start.htm"_s, "<a href='page.htm'>own</a> <a href='../book_P&amp;1/page.htm'>"},
         {u"page.htm"_s, "x"}});
    const QByteArray plain = "<a href='../Book_Z/x.htm'><a href='http://h/Book_P&amp;1/a.htm'>";
    other.addBook(
        u"Belts"_s, u"BLT"_s,
        {{u"links.htm"_s, "<a href=\"../Book_p%261/page.htm#a\"><img src='sub/..\\../Book_p"
                          "&amp;1/i.png'><a href='../../**B**/Book_p&1/page.htm'>"
                          "<a href='../"
                              + full.toUtf8() + "/a.htm'>"},
         {u"based.htm"_s, "<base href='../Book_p&1/'><a href='../Book_p&1/page.htm'>"},
         {u"plain.htm"_s, plain}});
    world.put(other.folder + u"Book_BLT\\s.css"_s, "p { background: url(../Book_p&1/i.png) }");
    world.files.setAttributes(other.folder + u"Book_BLT\\links.htm"_s, ReadOnlyFile);
    world.put(other.folder + u"Book_p&1\\sub\\s.htm"_s, "<a href='../page.htm'>");
    // A book in a folder of another book, and one in a folder that is a book of the base project.
    TableOfContents contents(world.session, world.files);
    BookFile books(world.session, world.files);
    for (const QString &folder :
         {u"Book_BLT\\Inner"_s, u"Book_W\\Deep"_s, u"Book_W\\More"_s, full}) {
        const TocBook book{folder, folder, u"B"_s, folder, u"Book.xml"_s, {}, {}};
        books.write(u"B"_s, book, {});
        contents.addBook(u"B"_s, book);
    }
    world.files.makeFolder(base.folder + full);
    world.put(other.folder + ProjectFile::links,
              xmlFile(u"<LINKS><IBS>%1</IBS></LINKS>"_s.arg(
                  linkReference(u"L"_s, u"B\\book_w/Deep\\a.htm"_s))));

    const MergeResult result = world.merge({u"A"_s, u"B"_s});
    QVERIFY(xmlText(world.bytes(world.merged + ProjectFile::links))
                .contains("<FilePath>Both\\Book_W1/Deep\\a.htm</FilePath>"_L1));
    QStringList folders;
    for (const TocBook &book : world.toc().books) {
        folders.append(book.folder);
        (void)books.read(u"Both"_s, book);
    }
    QCOMPARE(folders, (QStringList{u"Book_P&1"_s, u"Book_W"_s, u"Book_p&11"_s, u"Book_BLT"_s,
                                   u"Book_BLT\\Inner"_s, u"Book_W1\\Deep"_s, u"Book_W1\\More"_s,
                                   full.chopped(1) + u'1'}));
    QCOMPARE(world.below(world.merged + u"Book_W"_s), QStringList{u"Book_W.xml"_s});
    QCOMPARE(told(result, Kind::FolderRenamed).size(), 4);

    QCOMPARE(world.page(u"Book_p&11\\start.htm"_s),
             u"<a href='page.htm'>own</a> <a href='../book_P&amp;11/page.htm'>"_s);
    QCOMPARE(world.page(u"Book_BLT\\links.htm"_s),
             u"<a href=\"../Book_p%2611/page.htm#a\"><img src='sub/..\\../Book_p&amp;11/i.png'>"
             "<a href='../../**Both**/Book_p&11/page.htm'><a href='../"_s
                 + u"%C3%BC"_s.repeated(127) + u"1/a.htm'>"_s);
    QVERIFY(world.files.status(world.merged + u"Book_BLT\\links.htm"_s).readOnly);
    QCOMPARE(world.page(u"Book_p&11\\sub\\s.htm"_s), u"<a href='../page.htm'>"_s);
    QCOMPARE(world.page(u"Book_BLT\\plain.htm"_s), QString::fromLatin1(plain));
    QCOMPARE(world.bytes(world.merged + u"Book_BLT\\s.css"_s),
             "p { background: url(../Book_p&11/i.png) }"_ba);
    QCOMPARE(told(result, Kind::LinksUnchanged),
             QStringList{u"B  The page has a base address: "_s + world.merged
                         + u"Book_BLT\\based.htm"_s});
}

void tst_merge::bringsWhatBooksShare()
{
    MergeWorld world;
    ProjectFiles base = world.project(u"A"_s, QDate(2024, 1, 3));
    ProjectFiles other = world.project(u"B"_s, QDate(2024, 1, 2));
    ProjectFiles third = world.project(u"C"_s, QDate(2024, 1, 1));
    base.addBook(u"One"_s, u"X"_s);
    other.addBook(u"Two"_s, u"X"_s);
    third.addBook(u"Three"_s, u"Y"_s);
    const auto put = [&](const ProjectFiles &project, const QString &name, const char *bytes) {
        world.put(project.folder + name, bytes);
    };
    put(base, u"Images\\logo.png"_s, "A");
    put(base, u"Images\\same.png"_s, "=");
    put(base, u"legal.htm"_s, "see **A**");
    put(other, u"legal.htm"_s, "see **B**"); // the same once it is merged
    put(other, u"images\\LOGO.png"_s, "B");
    put(other, u"images\\same.png"_s, "=");
    put(other, u"images\\own.png"_s, "own");
    put(other, u"Frames\\menu.htm"_s, "<a href='../Book_X/p.htm'>**B**");
    for (const auto &products :
         {u"QV_Extra.xml"_s, u"B_QA_Log.txt"_s, u"QVB_Server.Zip"_s, u"x.xml.lock"_s,
          u"docTodoc\\d.htm"_s, u"_Backup\\b.htm"_s, u"Shared.qvnew\\s.htm"_s})
        put(other, products, "B");
    put(third, u"Frames"_s, "no folder");
    put(third, u"BOOK_x1\\left.png"_s, "of no book here");

    const MergeResult result = world.merge({u"A"_s, u"B"_s, u"C"_s});
    const QString there = u"  Something else is there already, and pages may show that instead: "_s;
    QCOMPARE(told(result, Kind::NotCopied),
             (QStringList{u"B"_s + there + u"Images\\logo.png"_s, u"C"_s + there + u"Book_X1"_s,
                          u"C"_s + there + u"Frames"_s}));
    QCOMPARE(world.below(world.merged),
             (QStringList{u"Book_X"_s, u"Book_X1"_s, u"Book_Y"_s, u"Frames"_s, u"Images"_s,
                          u"Merge_Log.txt"_s, u"QV_BookCategories.xml"_s, u"QV_LinkID.xml"_s,
                          u"QV_StatusIndicators.xml"_s, u"QV_Toc.xml"_s, u"Shared.qvnew"_s,
                          u"legal.htm"_s}));
    QCOMPARE(world.bytes(world.merged + u"Images\\logo.png"_s), "A"_ba);
    QCOMPARE(world.bytes(world.merged + u"Images\\own.png"_s), "own"_ba);
    QCOMPARE(world.page(u"Frames\\menu.htm"_s), u"<a href='../Book_X1/p.htm'>**Both**"_s);
    QCOMPARE(world.below(world.merged + u"Book_X1"_s), QStringList{u"Book_X.xml"_s});
}

void tst_merge::joinsCategoriesAndLinks()
{
    MergeWorld world;
    ProjectFiles first = world.project(u"First"_s, QDate(2021, 1, 1));
    ProjectFiles base = world.project(u"Base"_s, QDate(2022, 1, 1), false);
    const auto setCategories = [&](ProjectFiles &project, const QStringList &names) {
        TocBook book = project.addBook(project.name, u"X"_s);
        const TocBook old = book;
        book.categories = names;
        TableOfContents(world.session, world.files).changeBook(project.name, old, book);
    };
    setCategories(first, {u"Network"_s, u"net"_s, u"SAFE"_s, u"Safety"_s});
    setCategories(base, {u"Pumps, Valves"_s, u"own"_s});
    CategoryFile(world.files).write(first.folder + ProjectFile::categories, {{{}, u"Own"_s, {}}});
    CategoryFile(world.files).write(base.folder + ProjectFile::categories, {{{}, u"Lost"_s, {}}});
    const auto linkFile = [&](ProjectFiles &project, const QString &id) {
        world.put(project.folder + ProjectFile::links,
                  xmlFile(u"<LINKS><IBD>%1</IBD></LINKS>"_s.arg(
                      linkTarget(id, project.name + u"\\Book_X\\a.htm"_s))));
    };
    linkFile(first, u"L1"_s);
    linkFile(base, u"L2"_s);

    const MergeResult result = world.merge({u"First"_s, u"Base"_s});
    QCOMPARE(result.base, u"Base"_s);
    QStringList names;
    for (const Category &category :
         CategoryFile(world.files).read(world.merged + ProjectFile::categories))
        names.append(category.name);
    QCOMPARE(names, (QStringList{u"Own"_s, u"Network"_s, u"SAFE"_s, u"Pumps"_s, u"Valves"_s}));
    QCOMPARE(told(result, Kind::CategoryLeftOut),
             QStringList{u"  The name is part of another category's: net"_s});
    QCOMPARE(world.toc().books.last().categories, // copied as they are
             (QStringList{u"Network"_s, u"net"_s, u"SAFE"_s, u"Safety"_s}));
    const QString links = xmlText(world.bytes(world.merged + ProjectFile::links));
    QVERIFY(links.indexOf("Both\\Book_X\\a.htm"_L1) < links.indexOf("Both\\Book_X1\\a.htm"_L1));
    QCOMPARE(links.count("<LinkID>"_L1), 2);
}

void tst_merge::refusesBeforeAnythingIsMade()
{
    MergeWorld world;
    ProjectFiles torn = world.project(u"Torn"_s, QDate(2022, 1, 1));
    world.project(u"A"_s, QDate(2022, 1, 1));
    world.put(torn.folder + ProjectFile::toc, "<QV_Master>");
    const bool isLinked = here::link(QDir::rootPath(), world.native(u"Docs/Link"_s));
    world.list(u"Link"_s);
    world.files.makeFolder(u"S:\\Docs\\Unlisted"_s);
    const QStringList before = world.below(u"S:\\Docs"_s);

    for (const QString &row : {u"5:A"_s, u"5:A|a"_s, u"5:A|Unlisted"_s, u"5:A|"_s,
                               u"5:A|My Favorites"_s, u"75:A|Torn"_s, u"75:A|Link"_s}) {
        if (row == u"75:A|Link"_s && !isLinked)
            continue;
        const QStringList projects = row.section(u':', 1).split(u'|');
        const QvError error = raisedBy([&] { world.merge(projects); });
        QVERIFY2(error.number() == row.section(u':', 0, 0).toInt(), qPrintable(row + error.text()));
        QVERIFY2(error.description().contains(projects.last()) || projects.size() == 1,
                 qPrintable(error.text()));
        QCOMPARE(world.below(u"S:\\Docs"_s), before);
    }
    for (const QString &name : {u"a"_s, u"..\\X"_s})
        QVERIFY(raisedBy([&] {
                    ProjectMerge(world.program).merge({name, {}, {}, {u"A"_s, u"Torn"_s}});
                }).number()
                > 0);
    QCOMPARE(world.below(u"S:\\Docs"_s), before);
}

void tst_merge::leavesHostileFoldersAlone()
{
    MergeWorld world;
    world.project(u"A"_s, QDate(2024, 1, 2));
    ProjectFiles other = world.project(u"B"_s, QDate(2024, 1, 1));
    const QStringList hostile{u"..\\A"_s, u"C:\\Windows"_s, u"\\\\host\\x"_s,
                              QString(),  u"gone"_s,        u"outside"_s};
    here::link(QDir::rootPath(), world.native(u"Docs/B/outside"_s)); // else it is not there
    QString books;
    for (const QString &folder : hostile)
        books +=
            u"<Book><Book_Name>%1</Book_Name><Book_Acro>%1</Book_Acro><Book_Folder>%1"
            "</Book_Folder><Book_File x='pdf' type=''>Book.xml</Book_File></Book>"_s.arg(folder);
    const QString toc = xmlText(world.bytes(other.folder + ProjectFile::toc)).section(u'\n', 1);
    world.put(
        other.folder + ProjectFile::toc,
        xmlFile(QString(toc).replace(u"<QV_Books/>"_s, u"<QV_Books>%1</QV_Books>"_s.arg(books))));

    const MergeResult result = world.merge({u"A"_s, u"B"_s});
    QStringList folders;
    for (const TocBook &book : world.toc().books) {
        folders.append(book.folder);
        QCOMPARE(book.type, u"pdf"_s); // whatever the attribute was called
    }
    QCOMPARE(folders, hostile);
    QCOMPARE(told(result, Kind::NotCopied).size(), hostile.size());
    QCOMPARE(world.below(world.merged).size(), 5); // the log and the project's own files
}

void tst_merge::stopLeavesNothing()
{
    MergeWorld world;
    world.project(u"A"_s, QDate(2024, 1, 2)).addBook(u"One"_s, u"ONE"_s, {{u"one.htm"_s, "x"}});
    world.project(u"B"_s, QDate(2024, 1, 1)).addBook(u"Two"_s, u"TWO"_s, {{u"two.htm"_s, "x"}});
    world.put(u"S:\\Docs\\B\\shared.css"_s, "x");
    const QStringList before = world.below(u"S:\\Docs"_s);
    for (const QString &file : {u"one.htm"_s, u"two.htm"_s, u"shared.css"_s, u"Both"_s}) {
        Stopper stop;
        const auto atFile = stop.when([&](int, const QString &what) { return what == file; });
        QVERIFY_THROWS_EXCEPTION(Unwinding, world.merge({u"A"_s, u"B"_s}, atFile));
        QVERIFY(stop.pressed());
        QCOMPARE(world.below(u"S:\\Docs"_s), before);
        QCOMPARE(ProjectCatalogue(world.session, world.files).entries().size(), 3);
    }
}

void tst_merge::failureLeavesWhatThereIs()
{
    MergeWorld world;
    world.project(u"A"_s, QDate(2024, 1, 2)).addBook(u"One"_s, u"ONE"_s);
    ProjectFiles other = world.project(u"B"_s, QDate(2024, 1, 1));
    other.addBook(u"Two"_s, u"TWO"_s, {{u"two.htm"_s, "x"}});
    other.addBook(u"Three"_s, u"TRE"_s, {{u"locked.htm"_s, "x"}});
    const Locked locked(world.native(u"Docs/B/Book_TRE/locked.htm"_s), Locked::Against::Reading);
    const QvError error = raisedBy([&] { world.merge({u"A"_s, u"B"_s}); });
    QCOMPARE(error.number(), 70);
    QVERIFY2(error.description().contains("locked.htm"_L1)
                 && error.description().endsWith("Folder: S:\\Docs\\Both"_L1),
             qPrintable(error.description()));
    QCOMPARE(world.toc().books.size(), 3);
    QVERIFY(world.files.fileExists(world.merged + u"Book_TWO\\two.htm"_s));
    QVERIFY(world.bytes(world.merged + u"Merge_Log.txt"_s).contains("locked.htm"));
    QVERIFY(!world.files.exists(u"S:\\Docs\\Both.qvnew"_s));
    QCOMPARE(ProjectCatalogue(world.session, world.files).entries().size(), 3);

    // The next try asks the dialog first, and is refused here.
    QCOMPARE(raisedBy([&] { world.merge({u"A"_s, u"B"_s}); }).number(), 5);
}

QTEST_GUILESS_MAIN(tst_merge)
#include "tst_merge.moc"
