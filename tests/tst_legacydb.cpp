// Migrating a legacy book set: every row as it stands in the database, damaged and foreign files,
// and the project that comes of it, made by the real converter program.

#include "dbtoxml/LegacyReader.h"
#include "dbtoxml/Migration.h"
#include "dbtoxml/PropertyBlob.h"
#include "dbtoxml/RawValues.h"
#include "dbtoxml/StoredContents.h"
#include "projectfiles/BookFile.h"
#include "projectfiles/CategoryFile.h"
#include "projectfiles/GlobalBook.h"
#include "projectfiles/KeyWordFile.h"
#include "projectfiles/QuickNavFile.h"
#include "startup/PageText.h"
#include "support/LegacyWorld.h"

#include <QRandomGenerator>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype pageSize = 4096;

QString shown(const QString &text)
{
    return text;
}

QString shown(const std::optional<int> &number)
{
    return number ? QString::number(*number) : QString();
}

/// One line a row, sorted: rows that grew have moved. A database knows no empty values.
template <typename Row, typename... Members>
QStringList lines(const QList<Row> &rows, Members... members)
{
    QStringList lines;
    for (const Row &row : rows)
        lines.append(QStringList{shown(row.*members)...}.join(u'|'));
    lines.sort();
    return lines;
}

QStringList wantedLines(QLatin1StringView table, const QString &columns)
{
    QStringList lines;
    for (const QJsonObject &row : wanted(table)) {
        QStringList values;
        for (const QString &column : columns.split(u' '))
            values.append(row[column].toVariant().toString());
        lines.append(values.join(u'|'));
    }
    lines.sort();
    return lines;
}

/// "Title(file)[pages below]" for each page.
QString shown(const QList<BookPage> &pages)
{
    QString all;
    for (const BookPage &page : pages)
        all += page.title + u'(' + page.file + u")["_s + shown(page.pages) + u']';
    return all;
}

QString wantedOutline(int book, const QJsonValue &parent)
{
    QString all;
    for (const QJsonObject &page : wanted("Pages"_L1)) {
        if (page["BookID"_L1] == book && page["ParentPageID"_L1] == parent)
            all += page["Title"_L1].toString() + u'(' + page["FileName"_L1].toString() + u")["_s
                   + wantedOutline(book, page["PageID"_L1]) + u']';
    }
    return all;
}

QString wantedNavigation(const QJsonValue &parent)
{
    QString all;
    for (const QJsonObject &node : wanted("QuickNav"_L1)) {
        if (node["ParentID"_L1] != parent)
            continue;
        const QString title = node["Title"_L1].toString(), target = node["Target"_L1].toString();
        const int missing = target.isEmpty() ? 0 : 4 - node["NodeLevel"_L1].toInt();
        const QString link = target.isEmpty() ? QString() : u'{' + title + u'>' + target + u'}';
        all += (title + u'[').repeated(missing + 1) + link + wantedNavigation(node["NodeID"_L1])
               + QString(missing + 1, u']');
    }
    return all;
}

/// A page without what a change of its encoding changes.
QString withoutCharset(QString text)
{
    return text.replace(QRegularExpression(u"charset=[\"']?[\\w-]+"_s), u"charset"_s);
}

/// "OperatorGuide/", "_Global Information/", or `shared` for none.
QString folderOf(const QJsonValue &book, const QString &shared)
{
    for (const QJsonObject &row : wanted("Books"_L1)) {
        if (row["BookID"_L1] == book)
            return row["BookFolder"_L1].toString() + u'/';
    }
    return shared;
}

/// A migrated project with what its files say.
struct Migrated
{
    LegacyWorld &world;
    const QString project = lastComponent(world.target);
    Toc toc = TableOfContents(world.session, world.files).read(project);
    QMap<QString, QString> places; ///< "<acronym> <page id>" to "<folder>/<file>"

    explicit Migrated(LegacyWorld &made)
        : world(made)
    {
        for (const TocBook &book : toc.books) {
            for (const BookPage &page : flattened(outline(book)))
                places.insert(book.acronym + u' ' + page.id, book.folder + u'/' + page.file);
        }
        for (const GlobalPage &page : readGlobalPages(world.session, world.files, project))
            places.insert(u"GLOBAL "_s + page.id, u"_Global Information/"_s + page.file);
    }
    QList<BookPage> outline(const TocBook &book)
    {
        return BookFile(world.session, world.files).read(project, book).pages;
    }
    QString shown(const QList<QuickNavNode> &nodes)
    {
        QString all;
        for (const QuickNavNode &node : nodes) {
            all += node.name + u'[';
            for (const QuickNavLink &link : node.links)
                all += u'{' + link.title + u'>' + places[link.book + u' ' + link.page]
                       + (link.anchor.isEmpty() ? QString() : u'#' + link.anchor) + u'}';
            all += shown(node.children) + u']';
        }
        return all;
    }
    QByteArray bytes(QString file)
    {
        return world.bytes(world.target + u'\\' + file.replace(u'/', u'\\'));
    }
};

/// A name as it stands in the database, all of them replaced.
void rename(QByteArray &file, const QString &name, const QString &newName)
{
    const auto raw = [](const QString &text) {
        return QByteArray(reinterpret_cast<const char *>(text.utf16()), text.size() * 2);
    };
    QVERIFY(file.contains(raw(name)));
    file.replace(raw(name), raw(newName));
}

} // namespace

class tst_legacydb final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsEveryRowAsItStands();
    void makesAProjectOfTheWholeSet();
    void refusesWhatItCannotRead_data();
    void refusesWhatItCannotRead();
    void tellsWhatIsDamagedAndTakesTheRest();
    void looksThroughFields();
    void neverWritesWhereAProjectIs();
    void leavesNothingWhenStopped();
    void noticesThatTheDatabaseChanges();
    void outlivesFlippedBytes();
};

void tst_legacydb::readsEveryRowAsItStands()
{
    LegacyWorld world;
    const DatabaseFile file(world.files, world.database);
    LegacyFindings findings;
    const LegacyBookSet set = readBookSet(file, findings, {});
    QCOMPARE(set.project.name, u"Filling Line 40"_s);
    QCOMPARE(set.project.created, QDateTime({2003, 9, 15}, {14, 30}, Qt::UTC));
    QCOMPARE(lines(set.books, &LegacyBook::id, &LegacyBook::name, &LegacyBook::acronym,
                   &LegacyBook::folder, &LegacyBook::file, &LegacyBook::type, &LegacyBook::order),
             wantedLines("Books"_L1,
                         u"BookID BookName BookAcro BookFolder BookFile BookType SortOrder"_s));
    QCOMPARE(lines(set.pages, &LegacyPage::id, &LegacyPage::book, &LegacyPage::parent,
                   &LegacyPage::title, &LegacyPage::file, &LegacyPage::order),
             wantedLines("Pages"_L1, u"PageID BookID ParentPageID Title FileName SortOrder"_s));
    using Node = LegacyNavigationNode;
    QCOMPARE(lines(set.navigation, &Node::id, &Node::parent, &Node::level, &Node::title,
                   &Node::target, &Node::order),
             wantedLines("QuickNav"_L1, u"NodeID ParentID NodeLevel Title Target SortOrder"_s));
    QCOMPARE(lines(set.words, &LegacyWord::word, &LegacyWord::book, &LegacyWord::file),
             wantedLines("SearchWords"_L1, u"Word BookID FileName"_s));
    QCOMPARE(lines(set.links, &LegacyLink::identifier, &LegacyLink::kind, &LegacyLink::book,
                   &LegacyLink::file, &LegacyLink::anchor),
             wantedLines("Links"_L1, u"LinkID Kind BookID FileName Anchor"_s));

    StoredContents contents(file, set);
    QStringList pages, images;
    contents.pages([&](qsizetype at, const auto &html) {
        pages.append(shown(set.pages[at].id) + u'|' + html.value());
    });
    contents.images([&](qsizetype at, const auto &data) {
        images.append(set.images[at].file + u'|' + QString::fromLatin1(data->toBase64()));
    });
    pages.sort();
    images.sort();
    QCOMPARE(pages, wantedLines("Pages"_L1, u"PageID Html"_s));
    QCOMPARE(images, wantedLines("Images"_L1, u"FileName Data"_s));
    QVERIFY(findings.odd.isEmpty() && findings.damaged.isEmpty() && contents.problems().isEmpty());
}

void tst_legacydb::makesAProjectOfTheWholeSet()
{
    LegacyWorld world;
    const ConversionReport report = world.convert();
    QCOMPARE(report.reason, QString());
    QVERIFY(world.converter.completed());
    QCOMPARE(report.folder, world.target);
    QCOMPARE(world.destination(), world.target);
    QCOMPARE(world.docs(), QStringList{u"Plant"_s});
    QCOMPARE(ProjectCatalogue(world.session, world.files).entries().last().name, u"Plant"_s);

    Migrated made(world);
    QCOMPARE(made.toc.header.id, u"FL"_s);
    QCOMPARE(made.toc.books.size(), wanted("Books"_L1).size());
    for (qsizetype i = 0; const QJsonObject &row : wanted("Books"_L1)) {
        const TocBook &book = made.toc.books[i++];
        QCOMPARE(book.name, row["BookName"_L1].toString());
        QCOMPARE(book.acronym, row["BookAcro"_L1].toString());
        QCOMPARE(shown(made.outline(book)), wantedOutline(row["BookID"_L1].toInt(), {}));
    }
    QCOMPARE(made.toc.books[0].categories, (QStringList{u"Operation"_s, u"Safety"_s}));
    QStringList categories;
    for (const Category &each :
         CategoryFile(world.files).read(world.target + u'\\' + ProjectFile::categories))
        categories.append(each.name);
    QCOMPARE(categories,
             u"Operation|Safety|Maintenance|Electrical|Spare Parts|General"_s.split(u'|'));

    for (const auto &[table, shared] : {std::pair("Pages"_L1, QString()),
                                        std::pair("GlobalPages"_L1, u"_Global Information/"_s)}) {
        for (const QJsonObject &row : wanted(table)) {
            const QString file = folderOf(row["BookID"_L1], shared) + row["FileName"_L1].toString();
            const PageText page = decodePage(made.bytes(file), u"ENU"_s);
            QCOMPARE(withoutCharset(page.text), withoutCharset(row["Html"_L1].toString()));
        }
    }
    for (const QJsonObject &row : wanted("Images"_L1))
        QCOMPARE(made.bytes(folderOf(row["BookID"_L1], {}) + row["FileName"_L1].toString()),
                 QByteArray::fromBase64(row["Data"_L1].toString().toLatin1()));

    QCOMPARE(made.shown(readQuickNav(world.session, world.files, made.project).views),
             wantedNavigation({}));
    QMap<QString, QSet<QString>> words, wantedWords;
    for (const KeyWord &word : readKeyWords(world.session, world.files, made.project)) {
        for (const KeyWord::Page &page : word.pages)
            words[word.text].insert(made.places[page.book + u' ' + page.page]);
    }
    for (const QJsonObject &row : wanted("SearchWords"_L1))
        wantedWords[row["Word"_L1].toString()].insert(
            folderOf(row["BookID"_L1], u"_Global Information/"_s) + row["FileName"_L1].toString());
    QCOMPARE(words, wantedWords);
}

void tst_legacydb::refusesWhatItCannotRead_data()
{
    using Edit = std::function<void(QByteArray &)>;
    QTest::addColumn<Edit>("change");
    QTest::addColumn<int>("end");
    QTest::addColumn<QString>("reason"); // behind the file's name
    const auto add = [](const char *name, ConversionEnd end, const QString &reason,
                        const Edit &change) {
        QTest::newRow(name) << change << static_cast<int>(end) << reason;
    };
    using enum ConversionEnd;
    const QString repair =
        u" Repair it with the program it was made with, or take an older copy of it."_s;
    const QString choose = u" Choose the database of a book set."_s;
    add("empty", Refused, u" is empty. Choose the database of a legacy book set."_s,
        [](QByteArray &file) { file.clear(); });
    add("a text", Refused, u" is no database. Choose the database of a legacy book set."_s,
        [](QByteArray &file) { file = QByteArray("Dear reader,\r\n").repeated(500); });
    add("newer", Refused,
        u" is a database of an unknown, perhaps newer format (42). Convert it to the format of "
        u"2000 "
        u"or 2002-2003 with a program that can, then choose the converted one."_s,
        [](QByteArray &file) { file[0x14] = 42; });
    add("cut off", Damaged,
        u" is damaged: it ends in the middle of a page, so a piece of it is missing."_s + repair,
        [](QByteArray &file) { file.truncate(361'267); });
    add("cut off at a page", Damaged,
        u" is damaged: its table GlobalPages cannot be read."_s + repair,
        [](QByteArray &file) { file.truncate(88 * pageSize); });
    add("zeros", Damaged,
        u" cannot be read: its list of tables is damaged, or all of it is encrypted. Take its "
        "encryption off with the program it was made with, repair it there, or take an older copy "
        "of it."_s,
        [](QByteArray &file) {
            file.replace(pageSize, file.size() - pageSize,
                         QByteArray(file.size() - pageSize, '\0'));
        });
    add("no table", Refused, u" is no legacy book set: it has no table SearchWords."_s + choose,
        [](QByteArray &file) { rename(file, u"SearchWords"_s, u"SearchTerms"_s); });
    add("no column", Refused,
        u" is no legacy book set: its table Books has no column BookFolder."_s + choose,
        [](QByteArray &file) { rename(file, u"BookFolder"_s, u"BookFalter"_s); });
}

void tst_legacydb::refusesWhatItCannotRead()
{
    QFETCH(std::function<void(QByteArray &)>, change);
    QFETCH(QString, reason);
    LegacyWorld world;
    world.change(change);
    world.order.acceptPartly = true;
    const ConversionReport report = world.convert();
    QCOMPARE(report.reason, world.database + reason);
    QTEST(static_cast<int>(report.end), "end");
    QCOMPARE(world.docs(), QStringList());
    QCOMPARE(world.destination(), QString());
}

void tst_legacydb::tellsWhatIsDamagedAndTakesTheRest()
{
    LegacyWorld world;
    world.change([](QByteArray &file) {
        constexpr qsizetype link = 72 * pageSize + 0x14; // of the first piece of "faults.htm"
        file.replace(link, 4, QByteArray(4, '\0'));      // no next piece
        file[134 * pageSize] = 0;                        // a page of search words
        const qsizetype title = file.indexOf("\xdd\x4f\x88\x5b", 68 * pageSize);
        file.replace(title, 2, QByteArray("\0\xd8", 2)); // half a character
    });
    const QList<ConversionProblem> damaged{
        {u"SearchWords"_s, {}, u"99 of its 167 rows cannot be read."_s},
        {u"Pages"_s, u"PageID 12"_s,
         u"What Html holds is damaged: only 4072 of its 146844 bytes can be read."_s}};
    const ConversionReport partly = world.convert();
    QCOMPARE(partly.end, ConversionEnd::PartlyReadable);
    QCOMPARE(partly.problems, damaged);
    QCOMPARE(partly.reason,
             world.database
                 + u" is damaged: 2 pieces of it cannot be read. Nothing was created. Repair it "
                   "with the program it was made with, take an older copy of it, or accept what "
                   "can be read."_s);
    QCOMPARE(world.docs(), QStringList());

    world.order.acceptPartly = true;
    const ConversionReport done = world.convert();
    QCOMPARE(done.reason, QString());
    const ConversionProblem odd{u"Pages"_s, u"PageID 26"_s,
                                u"The text of Title cannot be decoded everywhere; characters that "
                                "are none became U+FFFD."_s};
    for (const ConversionProblem &problem : damaged + QList{odd})
        QVERIFY2(done.problems.contains(problem), qPrintable(problem.text));
    const QByteArray cut = world.bytes(world.target + u"\\OperatorGuide\\faults.htm"_s);
    QVERIFY(cut.size() > 1000 && cut.startsWith("<!DOCTYPE"));
}

void tst_legacydb::looksThroughFields()
{
    const auto date = [](double days) {
        return dateOfDays({reinterpret_cast<const char *>(&days), sizeof(days)});
    };
    QCOMPARE(date(-1.25), QDateTime({1899, 12, 29}, {6, 0}, Qt::UTC)); // the time counts forward
    QVERIFY(!date(qQNaN()) && !date(1e300));
    QCOMPARE(decodeText({"\xff\xfe\x61\0\x42\x30\0\x63", 8}).text, u"a\u3042c"_s);
    QVERIFY(!decodeText({"a\0b", 3}).isClean);

    const QByteArray blob = sample("legacy_plant.mdb"_L1).mid(0x17f5e, 0xa2);
    QVERIFY(isSoundPropertyBlob(blob));
    QVERIFY(!isSoundPropertyBlob(blob.chopped(1)));
    for (const qsizetype length : {4, 10, 52}) { // of a record, of a name, of a value
        QByteArray endless = blob;
        endless.replace(length, 2, QByteArray(2, length == 10 ? '\xff' : '\0'));
        QVERIFY2(!isSoundPropertyBlob(endless), qPrintable(QString::number(length)));
    }
}

void tst_legacydb::neverWritesWhereAProjectIs()
{
    LegacyWorld world;
    const auto refusal = [&] {
        const ConversionReport report = world.convert();
        return report.end == ConversionEnd::Refused ? report.reason : u"not refused"_s;
    };
    const QString growing = world.target + u".qvnew"_s;
    QFile::link(world.folder.path(), world.files.nativePath(growing));
    QCOMPARE(world.convert().end, ConversionEnd::Failed);
    QCOMPARE(world.docs(), QStringList{lastComponent(growing)});
    world.files.removeFile(growing);
    world.put(world.target + u"\\notes.txt"_s, "mine");
    QCOMPARE(refusal(),
             u"The folder S:\\Docs\\Plant is already there with files in it. Nothing was "
             "created. Choose another name, or move the folder away."_s);
    QCOMPARE(world.bytes(world.target + u"\\notes.txt"_s), "mine");
    QCOMPARE(world.docs(), QStringList{u"Plant"_s});
    world.list(u"PLANT"_s);
    QCOMPARE(refusal(), u"A project of the name Plant is already there. Nothing was created. "
                        "Choose another name."_s);
    world.order.targetFolder = u"S:\\Elsewhere\\Plant"_s;
    QCOMPARE(refusal(), u"S:\\Elsewhere\\Plant lies not directly in the folder Docs of an "
                        "installation. Nothing was created. Choose a project folder there."_s);
    world.order.mode = u"2"_s;
    QCOMPARE(refusal(), u"The converter has no mode \"2\"; \"1\" migrates a whole book set."_s);
    QVERIFY(!world.files.exists(u"S:\\Elsewhere"_s));
}

void tst_legacydb::leavesNothingWhenStopped()
{
    for (int last = 1, isDone = 0; isDone == 0; last += 7) {
        LegacyWorld world;
        Stopper stop;
        int steps = 0;
        const auto isLast = [&](int, const QString &) { return ++steps == last; };
        const MigrationWorld ports{world.files, world.registry, world.clock, world.locale};
        try {
            const ConversionReport report = migrate(ports, world.order, stop.when(isLast));
            QCOMPARE(report.end, ConversionEnd::Done);
            isDone = 1;
        } catch (const Unwinding &) {
            QCOMPARE(world.docs(), QStringList());
        }
        QCOMPARE(stop.pressed(), isDone == 0);
    }
}

void tst_legacydb::noticesThatTheDatabaseChanges()
{
    LegacyWorld world;
    const auto change = [&](int, int, const QString &what) {
        if (what.endsWith("fuses.htm"_L1))
            world.change([](QByteArray &file) { file.append(pageSize, '\0'); });
    };
    const MigrationWorld ports{world.files, world.registry, world.clock, world.locale};
    QCOMPARE(migrate(ports, world.order, {change, {}}).reason,
             world.database
                 + u" was changed by another program while it was read, so nothing was created. "
                   "Close it there, then migrate it again."_s);
    QCOMPARE(world.docs(), QStringList());
}

void tst_legacydb::outlivesFlippedBytes()
{
    QRandomGenerator random(20);
    for (int run = 0; run < 40; ++run) {
        LegacyWorld world;
        world.change([&](QByteArray &file) {
            for (int change = random.bounded(1, 64); change > 0; --change)
                file[random.bounded(pageSize, file.size())] =
                    static_cast<char>(random.bounded(256));
        });
        world.order.acceptPartly = true;
        const ConversionReport report = world.convert();
        const bool isDone = report.end == ConversionEnd::Done;
        QVERIFY2(report.end != ConversionEnd::Failed && report.end != ConversionEnd::BrokenOff,
                 qPrintable(report.reason));
        QCOMPARE(world.docs(), isDone ? QStringList{u"Plant"_s} : QStringList());
        QCOMPARE(world.below(u"S:"_s), (QStringList{u"Docs"_s, u"Old"_s}));
    }
}

QTEST_GUILESS_MAIN(tst_legacydb)
#include "tst_legacydb.moc"
