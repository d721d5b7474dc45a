// The search words of a project, from its pages to the answers: what readers type finds the pages
// that hold it, a build of what changed gives the very files of a whole one, and whatever stops it
// leaves the old ones.

#include "platform/Paths.h"
#include "platform/TreeWalker.h"
#include "platform/Xml.h"
#include "support/DisturbedFiles.h"
#include "support/TestProgram.h"
#include "tools/build/FreshFolder.h"
#include "tools/words/SearchQuery.h"
#include "tools/words/SearchWords.h"

#include <QFile>
#include <QMap>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

using Files = QMap<QString, QByteArray>;

/// A project with one book, whose pages are those put there.
struct World : TestProgram
{
    const QString project = u"S:\\Docs\\Plant\\"_s;
    const QString folder = project + u"Search_Words"_s;
    const QString cache = project + u"QV_SearchWords.bin"_s;
    BuildInput input;
    DisturbedFiles disturbed{files};

    explicit World(const QString &language = u"ENU"_s)
    {
        files.makeFolder(withoutBackslash(project));
        input.project = u"Plant"_s;
        input.folder = project;
        input.language = language;
        TocBook book;
        book.acronym = u"GD"_s;
        input.books.append({book, {}, u"Book_GD\\"_s});
        disturbed.syncs = false;
    }

    void page(const QString &name, const QString &html) { raw(name, html.toUtf8()); }
    void raw(const QString &name, const QByteArray &bytes)
    {
        const QString path = u"Book_GD\\"_s + name + u".htm"_s;
        put(project + path, bytes);
        input.files.insert(u"gd\n"_s + name, path);
        input.owners[path.toCaseFolded()] = {{u"GD"_s, name, name}};
    }
    void keyWord(const QString &text, const QStringList &synonyms, const QString &page)
    {
        input.keyWords.append({text, u"Author"_s, synonyms, {{u"GD"_s, page}}});
    }
    ToolReport build(bool everything = false, const Progress &progress = {})
    {
        SearchWords words(disturbed, input, 2, everything);
        const ScanWishes wishes{.words = &words, .everything = everything};
        const ScannedPages pages = ScannedPages::read(disturbed, input, wishes, progress);
        pages.save(disturbed, input);
        words.prepare(pages, progress);
        return words.putInPlace();
    }
    /// All files of the index but the log, which tells of the run.
    Files index()
    {
        Files all;
        for (const QString &name : below(folder)) {
            if (name != SearchFile::log)
                all.insert(name, bytes(folder + u'\\' + name));
        }
        return all;
    }
    SearchResult ask(const QString &question)
    {
        return SearchQuery(files, project, input.keyWords).find(question);
    }
    QStringList found(const QString &question)
    {
        QStringList pages;
        for (const SearchHit &hit : ask(question).hits)
            pages.append(hit.page.page);
        return pages;
    }
    QStringList foundInOrder(const QString &question)
    {
        QStringList pages = found(question);
        pages.sort();
        return pages;
    }
};

QStringList codesOf(const ToolReport &report)
{
    QStringList codes;
    for (const Finding &finding : report.findings)
        codes.append(finding.code + u' ' + finding.file);
    return codes;
}

QString page(const QString &body)
{
    return u"<!doctype html><title>x</title><p>"_s + body;
}

/// Words enough for several files of words.
QString manyWords(int from, int to)
{
    QString text;
    for (int i = from; i < to; ++i)
        text += u"w%1 "_s.arg(i);
    return page(text);
}

} // namespace

class tst_searchwords final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsWhatReadersType();
    void findsGermanEitherWay();
    void ranksAndGivesReasons();
    void keyWordsLeadToTheirPages();
    void findsEveryPieceOfCjkText();
    void readsOnlyWhatChanged();
    void takesNothingFromADamagedCache();
    void takesNoNumbersThatCannotBe();
    void standsHostilePages();
    void leavesWholeFilesWhateverHappens();
};

void tst_searchwords::findsWhatReadersType()
{
    World world;
    world.page(u"pump"_s, page(u"The <b>R</b>100 pumps; IEC-61131, C++ and F#, version 3.11, "
                               "max_count. Stra&shy;ight 2026-03-14"_s));
    world.page(u"names"_s,
               page(u"Zürich, naïve, <i>ＮＡＲＲＯＷ</i>, Ёлка НАСОС, Ωμέγα, مُحَمَّد, R 100, "
                    "C 3 11"_s));
    world.page(u"plain"_s, page(u"Zurich Zuerich iec61131"_s));
    QCOMPARE(world.build().summary, u"3 pages, 34 words; 3 pages read anew."_s);

    const auto row = [&](const QString &question, const QStringList &pages) {
        const QStringList found = world.foundInOrder(question);
        QVERIFY2(found == pages, qPrintable(question + u": "_s + found.join(u' ')));
    };
    row(u"pumping"_s, {u"pump"_s});
    row(u"PUMP r100"_s, {u"pump"_s});
    row(u"R-100"_s, {u"names"_s, u"pump"_s});
    row(u"iec-61131"_s, {u"plain"_s, u"pump"_s});
    row(u"IEC61131"_s, {u"plain"_s, u"pump"_s});
    row(u"61131"_s, {u"pump"_s});
    row(u"C++"_s, {u"pump"_s});
    row(u"f#"_s, {u"pump"_s});
    row(u"3.11"_s, {u"names"_s, u"pump"_s});
    row(u"max_count"_s, {u"pump"_s});
    row(u"straight"_s, {u"pump"_s});
    row(u"2026-03-14"_s, {u"pump"_s});
    row(u"Zürich"_s, {u"names"_s, u"plain"_s});
    row(u"NAIVE narrow"_s, {u"names"_s});
    row(u"насос ёлка"_s, {u"names"_s});
    row(u"ωμεγα"_s, {u"names"_s});
    row(u"محمد"_s, {u"names"_s});
    row(u"„Zurich“"_s, {u"names"_s, u"plain"_s});
    row(u"pump Zurich"_s, {});

    QCOMPARE(world.ask(u"pump qwertz Zurich yxcv"_s).missing,
             (QStringList{u"qwertz"_s, u"yxcv"_s}));
    QVERIFY(world.ask(u" . "_s).hits.isEmpty());
}

void tst_searchwords::findsGermanEitherWay()
{
    World world(u"DEU"_s);
    world.page(u"umlaut"_s, page(u"Die Öffnungen der Gehäuse an der Straße"_s));
    world.page(u"ascii"_s, page(u"Oeffnung, Gehaeuse, Strasse"_s));
    (void)world.build();
    const QStringList both{u"ascii"_s, u"umlaut"_s};
    for (const char16_t *question :
         {u"Öffnung", u"Oeffnung", u"Gehäuse", u"GEHAEUSES", u"Straße", u"STRASSEN"})
        QCOMPARE(world.foundInOrder(QString::fromUtf16(question)), both);
    QCOMPARE(world.found(u"offnung"_s), QStringList{u"umlaut"_s});
    for (const char16_t *begun : {u"öff", u"oeff", u"GEH", u"straß"})
        QCOMPARE(world.foundInOrder(QString::fromUtf16(begun)), both);
}

void tst_searchwords::ranksAndGivesReasons()
{
    World world;
    world.page(u"title"_s, u"<title>The pump</title><h1>Pumps</h1><p>How it works: pump, pumps."_s);
    world.page(u"heading"_s, u"<title>Valve</title><h2>Its pump</h2><p>x</p>"_s);
    world.page(u"body"_s, page(u"A pump and a valve."_s));
    world.page(u"stem"_s, page(u"Two pumps and a valve."_s));
    world.page(u"picture"_s, page(u"<img src=p.png alt='The pump'> Some text."_s));
    (void)world.build();

    const SearchResult result = world.ask(u"the pump"_s);
    QStringList reasons;
    for (const SearchHit &hit : result.hits)
        reasons.append(hit.page.page + u" | "_s + hit.reason);
    QCOMPARE(reasons, (QStringList{u"title | title: pump; heading: pumps; 2 × pump; 2 × pumps"_s,
                                   u"heading | heading: pump"_s, u"body | 1 × pump"_s,
                                   u"stem | 1 × pumps"_s, u"picture | picture: pump"_s}));
    QCOMPARE(result.remark, u"Nearly every page holds, and so left out: the."_s);
    QCOMPARE(result.hits.first().page.book, u"GD"_s);
    QCOMPARE(result.hits.first().page.title, u"The pump"_s);
    QCOMPARE(result.hits.first().page.target, u"Book_GD\\title.htm"_s);

    // The last word may still be typed; where it stands whole comes first, whatever else tells.
    world.page(u"longer"_s, u"<title>Pumphouse</title><h1>Pumphouse</h1><p>R100-B"_s);
    (void)world.build();
    QCOMPARE(world.found(u"pump"_s).constLast(), u"longer"_s);
    QCOMPARE(world.found(u"pump"_s).size(), 6);
    QCOMPARE(world.found(u"pump "_s).size(), 5);
    QCOMPARE(world.ask(u"pumph"_s).hits.first().reason,
             u"title: pumphouse; heading: pumphouse; 2 × pumphouse"_s);
    QCOMPARE(world.found(u"pumphouse r10"_s), QStringList{u"longer"_s});
    QCOMPARE(world.found(u"r10 pumphouse"_s), QStringList()); // only the last one

    const SearchResult common = world.ask(u"the"_s);
    QCOMPARE(common.hits.size(), 1);
    QCOMPARE(common.remark,
             u"Nearly every page holds: the. Only titles, headings and keywords were "
             "searched."_s);
}

void tst_searchwords::keyWordsLeadToTheirPages()
{
    World world;
    world.page(u"start"_s, page(u"Something else"_s));
    world.page(u"other"_s, u"<title>Circulator</title>circulator circulator"_s);
    world.keyWord(u"centrifugal pump"_s, {u"circulator"_s, u"Umwälzpumpe"_s}, u"start"_s);
    world.keyWord(u"lost"_s, {}, u"gone"_s);
    const ToolReport report = world.build();
    QCOMPARE(codesOf(report), QStringList{u"WORD03 QV_SearchKeyWords.xml"_s});
    QVERIFY(report.outcome == ToolReport::Outcome::Warnings);

    QCOMPARE(world.found(u"circulator"_s), (QStringList{u"start"_s, u"other"_s}));
    QCOMPARE(world.found(u"centrifugal pump"_s), (QStringList{u"start"_s, u"other"_s}));
    QCOMPARE(world.found(u"umwaelzpumpe"_s), (QStringList{u"start"_s, u"other"_s}));
    QCOMPARE(world.found(u"centrifugal"_s), QStringList{u"start"_s});
    QCOMPARE(world.ask(u"centrifugal"_s).hits.first().reason, u"keyword: centrifugal"_s);
    QCOMPARE(world.ask(u"circulator"_s).names,
             (QStringList{u"centrifugal pump"_s, u"circulator"_s, u"Umwälzpumpe"_s}));

    world.input.keyWords.clear();
    (void)world.build();
    QCOMPARE(world.found(u"centrifugal"_s), QStringList());
}

void tst_searchwords::findsEveryPieceOfCjkText()
{
    const QStringList texts{
        u"ポンプの運転を開始する前に、必ず取扱説明書をお読みください。電源を切り、弁を閉じます。"_s,
        u"この装置はR100型のポンプと三つの弁で構成されています。データベースの設定も必要です。"_s,
        u"启动水泵之前，请务必阅读使用说明书。关闭电源，然后关闭阀门，检查压力表的读数。"_s,
        u"啟動水泵之前，請務必閱讀使用說明書。關閉電源，然後關閉閥門，檢查壓力錶的讀數。"_s,
        u"펌프를 시작하기 전에 반드시 사용 설명서를 읽으십시오. 전원을 끄고 밸브를 닫습니다."_s,
        u"ปั๊มน้ำต้องหยุดก่อนเปิดวาล์ว"_s};
    World world(u"JPN"_s);
    for (qsizetype i = 0; i < texts.size(); ++i)
        world.page(u"p%1"_s.arg(i), page(texts[i]));
    world.page(u"narrow"_s, page(u"ﾎﾟﾝﾌﾟ"_s));
    world.page(u"apart"_s, page(u"か\u3099っこ 日本\n語"_s));
    (void)world.build();

    QRandomGenerator random(20260314);
    int asked = 0;
    for (int round = 0; round < 600; ++round) {
        const QString &text = texts[random.bounded(int(texts.size()))];
        const QString piece = text.mid(random.bounded(int(text.size())), 1 + random.bounded(8));
        QString letters = piece;
        letters.removeIf([](QChar unit) { return !unit.isLetterOrNumber() && !unit.isMark(); });
        if (letters.isEmpty() || letters.contains(u'R') || letters.contains(u'0'))
            continue; // pieces of R100 are no words
        const QStringList pages = world.found(piece);
        for (qsizetype i = 0; i < texts.size(); ++i)
            QVERIFY2(!texts[i].contains(piece) || pages.contains(u"p%1"_s.arg(i)),
                     qPrintable(piece));
        ++asked;
    }
    QVERIFY(asked > 400);
    QVERIFY(world.found(u"ポンプ"_s).contains(u"narrow"_s));
    QVERIFY(world.found(u"がっこ"_s).contains(u"apart"_s));
    QVERIFY(world.found(u"日本語"_s).contains(u"apart"_s));
    QCOMPARE(world.found(u"R100型"_s), QStringList{u"p1"_s});
    QCOMPARE(world.ask(u"データベース"_s).hits.first().reason, u"1 × データベース"_s);
}

void tst_searchwords::readsOnlyWhatChanged()
{
    World world;
    world.page(u"first"_s, page(u"alpha beta"_s));
    world.page(u"second"_s, page(u"beta gamma"_s));
    world.page(u"large"_s, manyWords(0, 40000));
    (void)world.build();
    const quint32 first = world.ask(u"alpha"_s).hits.first().page.number;
    QCOMPARE(world.index().size(), 2 + 2); // two files of words
    QCOMPARE(world.build().summary, u"3 pages, 40,004 words; 0 pages read anew."_s);

    world.page(u"second"_s, page(u"gamma delta <h1>beta</h1>"_s));
    world.page(u"new"_s, manyWords(39000, 75000));
    QCOMPARE(world.build().summary, u"4 pages, 75,005 words; 2 pages read anew."_s);
    const Files grown = world.index();
    QCOMPARE(grown.size(), 4 + 2);
    QCOMPARE(world.ask(u"w39500"_s).hits.size(), 2);
    QCOMPARE(world.build(true).summary, u"4 pages, 75,005 words; 4 pages read anew."_s);
    QCOMPARE(world.index(), grown);

    world.files.removeFile(world.project + u"Book_GD\\large.htm"_s);
    (void)world.build();
    const Files shrunk = world.index();
    QCOMPARE(shrunk.size(), 2 + 2);
    QCOMPARE(world.found(u"w1 "_s), QStringList());
    const SearchResult many = world.ask(u"w"_s);
    QCOMPARE(many.hits.size(), 1);
    QCOMPARE(many.remark, u"Very many words begin so; only the shortest were searched."_s);
    QCOMPARE(world.ask(u"alpha"_s).hits.first().page.number, first);
    world.files.removeFile(world.cache);
    (void)world.build();
    QCOMPARE(world.index(), shrunk);
}

void tst_searchwords::takesNothingFromADamagedCache()
{
    World world;
    for (int i = 0; i < 5; ++i)
        world.page(u"p%1"_s.arg(i), page(u"pump %1 ポンプ"_s.arg(i)));
    (void)world.build();
    const Files good = world.index();
    const QByteArray cache = world.bytes(world.cache);
    QRandomGenerator random(7);
    for (int round = 0; round < 40; ++round) {
        QByteArray damaged = cache;
        if (round % 2 == 0)
            damaged.truncate(random.bounded(int(cache.size())));
        else
            damaged[random.bounded(int(cache.size()))] ^= char(1 + random.bounded(255));
        world.put(world.cache, damaged);
        (void)world.build();
        QCOMPARE(world.index(), good);
        QCOMPARE(world.bytes(world.cache), cache);
    }
}

void tst_searchwords::takesNoNumbersThatCannotBe()
{
    for (const char *const wrong : {"NextPage=\"4294967295\"", "NextPage=\"4000000000\"",
                                    "NextPage=\"1\"", "No=\"2\"", "No=\"4294967295\""}) {
        World world;
        for (const QString &name : {u"a"_s, u"b"_s, u"c"_s})
            world.page(name, page(u"pump "_s + name));
        (void)world.build();
        world.files.removeFile(world.cache);
        const QString path = world.folder + u'\\' + SearchFile::pages;
        QString list = readXmlText(world.files, path);
        const QString attribute = QString::fromLatin1(wrong).section(u'=', 0, 0);
        list.replace(QRegularExpression(u"\\b%1=\"[0-9]+\""_s.arg(attribute)),
                     QString::fromLatin1(wrong));
        QFile file(world.files.nativePath(path));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("\xFF\xFE");
        file.write(reinterpret_cast<const char *>(list.utf16()), list.size() * 2);
        file.close();

        world.page(u"d"_s, page(u"pump d"_s));
        (void)world.build();
        QCOMPARE(world.foundInOrder(u"pump"_s), QStringList({u"a"_s, u"b"_s, u"c"_s, u"d"_s}));
        QSet<quint32> numbers;
        for (const SearchHit &hit : world.ask(u"pump"_s).hits)
            numbers.insert(hit.page.number);
        QCOMPARE(numbers.size(), 4);
    }
}

void tst_searchwords::standsHostilePages()
{
    World world;
    const QString endless(1'000'000, u'x');
    world.page(u"long"_s, page(endless + u" pump\u0001valve "_s + QString(300'000, u'字')));
    const QString broken = page(u"lone \xD800 surrogate \xFFFF & <weir"_s);
    world.raw(u"lone"_s,
              QByteArray("\xFF\xFE")
                  + QByteArray(reinterpret_cast<const char *>(broken.utf16()), broken.size() * 2));
    world.raw(u"bytes"_s, "<title>\xFF\xFE\x00 \xE4\xF6 & \"x\"</title>a\x00"
                          "b"_ba);
    world.page(u"empty"_s, u"<p> . </p>"_s);
    const ToolReport report = world.build();
    QCOMPARE(codesOf(report), QStringList{u"WORD02 Book_GD\\empty.htm"_s});
    QVERIFY(world.bytes(world.folder + u"\\SearchWords_Log.txt"_s).contains("WORD02"));

    QCOMPARE(world.found(endless), QStringList{u"long"_s});
    QCOMPARE(world.found(u"pump valve"_s), QStringList{u"long"_s});
    QCOMPARE(world.found(u"surrogate"_s), QStringList{u"lone"_s});
    for (const QString &name : world.below(world.folder)) {
        if (name.endsWith(u".xml"_s))
            QVERIFY(loadXml(world.files, world.folder + u'\\' + name,
                            name == SearchFile::pages       ? "Search_Pages"
                            : name == SearchFile::stopWords ? "Stop_Words"
                                                            : "Search_Words"));
    }
}

void tst_searchwords::leavesWholeFilesWhateverHappens()
{
    World world;
    world.page(u"pump"_s, page(u"pump"_s));
    (void)world.build();
    const Files old = world.index();
    world.put(world.project + u"SearchWords_Log.txt"_s, "of an earlier version");
    world.page(u"pump"_s, page(u"valve"_s));

    int steps = 0;
    bool stopped = true;
    for (; stopped; ++steps) {
        Stopper stopper;
        stopped = false;
        try {
            (void)world.build(true, stopper.when([&, left = steps](int, const QString &) mutable {
                return left-- == 0;
            }));
        } catch (const Unwinding &) {
            stopped = true;
            QCOMPARE(world.index(), old);
            QVERIFY(!world.files.exists(world.folder + u".qvnew"_s));
        }
    }
    QVERIFY(steps > 4); // what is written is stopped four times at least
    const Files fresh = world.index();
    QVERIFY(fresh != old);
    QVERIFY(!world.files.exists(world.project + u"SearchWords_Log.txt"_s));

    world.page(u"pump"_s, page(u"pump"_s));
    bool failed = true;
    for (int call = 0; failed; ++call) {
        failed = false;
        world.disturbed.disturb = [&, left = call]() mutable {
            if (left-- == 0)
                throw QvError(PermissionDenied, {}, u"The disk is full."_s);
        };
        trap([&](const QvError &) { failed = true; }, [&] { (void)world.build(); });
        world.disturbed.disturb = [] {};
        recoverFreshFolder(world.files, world.folder);
        QVERIFY(world.index() == fresh || world.index() == old);
    }
    QCOMPARE(world.index(), old);
}

QTEST_GUILESS_MAIN(tst_searchwords)
#include "tst_searchwords.moc"
