// Finding and replacing over all pages, comparing texts, and the references between pages.

#include "controls/pages/FindInPages.h"
#include "controls/pages/HitDelegate.h"
#include "controls/session/ProjectSession.h"
#include "support/FormDriver.h"
#include "support/SampleProject.h"
#include "tools/ByteSieve.h"
#include "tools/LinkContext.h"
#include "tools/PageReference.h"
#include "tools/TextDiff.h"

using namespace Qt::StringLiterals;

namespace {

/// Pages in several encodings, and a window that looks through them.
struct Desk
{
    SampleProject sample;
    ProjectSession session{sample.world.program};
    std::unique_ptr<FindInPages> window;

    Desk()
    {
        sample.world.messages.unexpected.clear();
        pump = sample.addBook(u"Pump"_s, u"PUMP"_s,
                              {{u"a.htm"_s, "<p>Pump</p>\r\n<p>a pump, pumps</p>\r\n"},
                               {u"kr.htm"_s, korean},
                               {u"wide.htm"_s, wide(u"<p>The pump</p>"_s)}});
        sample.addGlobals();
        session.open(sample.name);
        session.select(pump);
        window = std::make_unique<FindInPages>(session);
    }
    static QByteArray wide(const QString &text)
    {
        QStringEncoder encoder(QStringEncoder::Utf16BE, QStringEncoder::Flag::WriteBom);
        return encoder(text);
    }
    QString path(const QString &page) const { return sample.folder + u"Book_PUMP\\"_s + page; }
    QTableView *list() const { return control<QTableView>(window.get(), "lstHits"); }
    QString cell(int row, int column) const
    {
        return list()->model()->index(row, column).data().toString();
    }
    QString count() const { return control<QLabel>(window.get(), "lblCount")->text(); }
    void type(const char *field, const QString &text)
    {
        control<QLineEdit>(window.get(), field)->setText(text);
    }
    void run(const char *button)
    {
        click(window.get(), button);
        QTRY_VERIFY(!isEnabled(window.get(), "cmdStopSearch"));
    }

    TocBook pump;
    // EUC-KR: a hangul, then an ASCII word
    const QByteArray korean = "<meta charset=euc-kr><p>\xb0\xa1 PUMP \xb0\xa1</p>";
};

} // namespace

class tst_findpages final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsTextsAndPatterns();
    void passesOverNoPageThatHoldsIt();
    void givesUpEndlessPatterns();
    void findsInEveryEncoding();
    void replacesWhatWasChecked();
    void refusesWhatItCannotWrite();
    void comparesLines();
    void refersFromPageToPage();
};

void tst_findpages::findsTextsAndPatterns()
{
    const auto found = [](const FindOptions &options, const QString &text) {
        QStringList hits;
        for (const TextHit &hit : TextFinder(options).in(text).hits)
            hits.append(text.sliced(hit.start, hit.length));
        return hits.join(u'|');
    };
    const QString text = u"Pump pumps\r\nspump R100-pump\r\n"_s;
    QCOMPARE(found({u"pump"_s}, text), u"Pump|pump|pump|pump"_s);
    QCOMPARE(found({u"pump"_s, true}, text), u"pump|pump|pump"_s);
    QCOMPARE(found({u"pump"_s, false, true}, text), u"Pump|pump"_s);
    QCOMPARE(found({u"aa"_s}, u"aaaa a"_s), u"aa|aa"_s);
    QCOMPARE(found({u"mask"_s}, u"ma\u017F\u212A MASK mas"_s), u"ma\u017F\u212A|MASK"_s);
    QCOMPARE(found({u"^s?(p\\w+)$"_s, false, false, true}, u"pumps\r\nx\r\nspump\n"_s),
             u"pumps|spump"_s);
    QCOMPARE(found({u"p\\w+"_s, false, true, true}, text), u"Pump|pumps|pump"_s);
    QCOMPARE(found({u"x*"_s, false, false, true}, u"axxb"_s), u"xx"_s);

    const TextFinder swap({u"(\\d+)-(\\w+)"_s, false, false, true});
    QCOMPARE(swap.replaced(text, swap.in(text).hits, u"\\2\\\\\\n\\1"_s),
             u"Pump pumps\r\nspump Rpump\\\r\n100\r\n"_s);
    const TextFinder plain({u"pump"_s, true});
    QCOMPARE(plain.replaced(u"pump pump"_s, plain.in(u"pump pump"_s).hits, u"\\1"_s,
                            [](qsizetype hit) { return hit == 1; }),
             u"pump \\1"_s);
    QCOMPARE(TextFinder({u"a(b"_s, false, false, true}).problem(),
             u"missing closing parenthesis (character 4)"_s);
}

void tst_findpages::passesOverNoPageThatHoldsIt()
{
    QMultiHash<QChar, QChar> forms; // letters by what they are without regard to case
    for (char16_t c = 0x21; c < 0xFFFE; ++c) {
        if (!QChar::isSurrogate(c))
            forms.insert(QChar(c).toCaseFolded(), QChar(c));
    }
    for (char16_t c = 0x21; c < 0x590; ++c) {
        const FindOptions find{QString(QChar(c)) + u'a'};
        const ByteSieve sieve(find);
        for (const QChar form : forms.values(QChar(c).toCaseFolded())) {
            const QString page = u"\u4e00 "_s + form + u'A';
            if (!TextFinder(find).in(page).hits.isEmpty())
                QVERIFY2(sieve.mayHold(page.toUtf8()), qPrintable(page));
        }
    }
    const ByteSieve sieve({u"K\u00e4fer"_s});
    QVERIFY(!sieve.mayHold("wei\xc3\x9f, K\xc3\xb6rper"));
    QVERIFY(sieve.mayHold("K\xc3\x84"
                          "FER")
            && sieve.mayHold("K\xe4"
                             "fer"));
}

void tst_findpages::givesUpEndlessPatterns()
{
    const TextFinder finder({u"(a+)+$"_s, false, false, true});
    const TextFinder::Found found = finder.in(QString(5000, u'a') + u'!');
    QVERIFY(!found.complete && found.hits.isEmpty());
}

void tst_findpages::findsInEveryEncoding()
{
    Desk desk;
    desk.sample.world.put(desk.path(u"jp.htm"_s), "<meta charset=iso-2022-jp>\x1b$B$\"\x1b(B pump");
    desk.type("txtFindAll", u"pump"_s);
    desk.run("cmdFindAll");
    QCOMPARE(desk.count(), u"Hits: 6   Pages: 4"_s);
    QCOMPARE(desk.cell(1, 0), u"Book_PUMP\\a.htm"_s);
    QCOMPARE(desk.cell(1, 1), u"2"_s);
    QCOMPARE(desk.cell(1, 2), u"<p>a pump, pumps</p> "_s);
    desk.type("txtFindAll", u"\uac00"_s);
    desk.run("cmdFindAll");
    QCOMPARE(desk.count(), u"Hits: 2   Pages: 1"_s);

    QSignalSpy places(desk.window.get(), &FindInPages::placeRequested);
    desk.window->show();
    desk.list()->setFocus();
    QTest::keyClick(desk.list(), Qt::Key_Return);
    QCOMPARE(places.value(0), QVariantList({u"Book_PUMP\\kr.htm"_s, qsizetype(24), qsizetype(1)}));

    control<QComboBox>(desk.window.get(), "cboScope")->setCurrentIndex(2);
    desk.type("txtFindAll", u"welcome"_s);
    desk.run("cmdFindAll");
    QCOMPARE(desk.cell(0, 0), u"_Global Information\\welcome.htm"_s);
    desk.type("txtFindAll", u"["_s);
    control<QCheckBox>(desk.window.get(), "chkPattern")->setChecked(true);
    QVERIFY(control<QLabel>(desk.window.get(), "lblFindProblem")->text().contains(u"character"_s));
    QVERIFY(!isEnabled(desk.window.get(), "cmdFindAll"));
}

void tst_findpages::replacesWhatWasChecked()
{
    Desk desk;
    ScriptedMessages &messages = desk.sample.world.messages;
    const QByteArray before = desk.sample.world.bytes(desk.path(u"a.htm"_s));
    desk.sample.world.files.setAttributes(desk.path(u"wide.htm"_s), ReadOnlyFile);
    desk.type("txtFindAll", u"pump"_s);
    desk.type("txtReplaceAll", u"valve"_s);
    desk.run("cmdFindAll");
    QVERIFY2(!isEnabled(desk.window.get(), "cmdReplaceChecked"), "not seen before");
    desk.run("cmdPreview");
    QCOMPARE(desk.cell(1, 3), u"<p>a valve, pumps</p> "_s);
    QCOMPARE(desk.cell(4, 0), u"Book_PUMP\\wide.htm (locked)"_s);
    QCOMPARE(desk.cell(4, 3), u"<p>The valve</p>"_s);
    desk.list()->model()->setData(desk.list()->model()->index(0, 0), Qt::Unchecked,
                                  Qt::CheckStateRole);
    QVERIFY(desk.count().endsWith(u"Checked: 4"_s));
    auto *all = control<QCheckBox>(desk.window.get(), "chkAllHits");
    QCOMPARE(all->checkState(), Qt::PartiallyChecked);
    all->click();
    QVERIFY(desk.count().endsWith(u"Checked: 5"_s));
    all->click();
    QVERIFY(desk.count().endsWith(u"Checked: 0"_s));
    QVERIFY(!isEnabled(desk.window.get(), "cmdReplaceChecked"));
    all->click();
    desk.list()->model()->setData(desk.list()->model()->index(0, 0), Qt::Unchecked,
                                  Qt::CheckStateRole);
    const QModelIndex after = desk.list()->model()->index(4, 3);
    QCOMPARE(after.data().toString().mid(after.data(HitDelegate::BeginRole).toInt(),
                                         after.data(HitDelegate::LengthRole).toInt()),
             u"valve"_s);
    QVERIFY2(!after.data(Qt::ToolTipRole).toString().contains("<p>"_L1), "drawn as HTML");

    messages.choices = {1};
    click(desk.window.get(), "cmdReplaceChecked");
    QCOMPARE(messages.shown.last(),
             u"These files are locked against changes:\nBook_PUMP\\wide.htm"_s);
    QCOMPARE(desk.sample.world.bytes(desk.path(u"a.htm"_s)), before);
    messages.choices = {0};
    click(desk.window.get(), "cmdReplaceChecked");
    QCOMPARE(desk.count(), u"Hits replaced: 4   Pages changed: 3   "_s);
    QCOMPARE(desk.sample.world.bytes(desk.path(u"a.htm"_s)),
             "<p>Pump</p>\r\n<p>a valve, valves</p>\r\n");
    QCOMPARE(desk.sample.world.bytes(desk.path(u"kr.htm"_s)),
             QByteArray(desk.korean).replace("PUMP", "valve"));
    QCOMPARE(desk.sample.world.bytes(desk.path(u"wide.htm"_s)), Desk::wide(u"<p>The valve</p>"_s));

    QCOMPARE(desk.session.history().undoName(), u"Replace \"pump\""_s);
    desk.session.undo();
    QCOMPARE(desk.sample.world.bytes(desk.path(u"a.htm"_s)), before);
    QCOMPARE(desk.sample.world.bytes(desk.path(u"kr.htm"_s)), desk.korean);
    QCOMPARE(messages.unexpected, QStringList());
}

void tst_findpages::refusesWhatItCannotWrite()
{
    Desk desk;
    desk.type("txtFindAll", u"pump"_s);
    desk.type("txtReplaceAll", u"\U0001F600"_s);
    desk.run("cmdPreview");
    QVERIFY(desk.cell(3, 3).startsWith(u"Refused: Line 1: the character"_s));
    QVERIFY(desk.count().endsWith(u"Checked: 4"_s));

    // What another author changed since is not replaced in, and nothing else either.
    const QByteArray wide = desk.sample.world.bytes(desk.path(u"wide.htm"_s));
    desk.sample.world.put(desk.path(u"a.htm"_s), "<p>Pump of another author</p>");
    click(desk.window.get(), "cmdReplaceChecked");
    QVERIFY(desk.sample.world.messages.shown.last().contains(u"a.htm was changed"_s));
    QCOMPARE(desk.sample.world.bytes(desk.path(u"a.htm"_s)), "<p>Pump of another author</p>");
    QCOMPARE(desk.sample.world.bytes(desk.path(u"wide.htm"_s)), wide);
}

void tst_findpages::comparesLines()
{
    const auto compared = [](const QString &left, const QString &right) {
        QString signs;
        for (const DiffRow &row : compareLines(left.split(u' '), right.split(u' ')))
            signs += u"=~-+"_s[int(row.kind)];
        return signs;
    };
    QCOMPARE(compared(u"a b c"_s, u"a b c"_s), u"==="_s);
    QCOMPARE(compared(u"a b c d"_s, u"a x d"_s), u"=~-="_s);
    QCOMPARE(compared(u"a b c a b b a"_s, u"c b a b a c"_s), u"--=+==-=+"_s);
    QCOMPARE(compared(u"x"_s, u"y x z"_s), u"+=+"_s);

    // Whatever the texts are, both can be read off the rows.
    QRandomGenerator random(7);
    for (int round = 0; round < 200; ++round) {
        QStringList left, right;
        for (int line = random.bounded(12); line >= 0; --line)
            left.append(QString::number(random.bounded(4)));
        for (int line = random.bounded(12); line >= 0; --line)
            right.append(QString::number(random.bounded(4)));
        int l = 0;
        int r = 0;
        for (const DiffRow &row : compareLines(left, right)) {
            QCOMPARE(row.left, row.left < 0 ? -1 : l++);
            QCOMPARE(row.right, row.right < 0 ? -1 : r++);
            if (row.kind == DiffRow::Kind::Same)
                QCOMPARE(left[row.left], right[row.right]);
        }
        QCOMPARE(l, left.size());
        QCOMPARE(r, right.size());
    }
}

void tst_findpages::refersFromPageToPage()
{
    const auto to = [](const QString &path, const QString &anchor = {}) {
        return referenceTo(u"Book_A\\sub\\page.htm"_s, path, anchor);
    };
    QCOMPARE(to(u"Book_A\\sub\\b.htm"_s), u"b.htm"_s);
    QCOMPARE(to(u"book_a\\SUB\\page.htm"_s, u"x y"_s), u"#x%20y"_s);
    QCOMPARE(to(u"Book_A\\sub\\page.htm"_s), u"page.htm"_s);
    QCOMPARE(to(u"Book_A\\a#1 & b.htm"_s, u"t\u00fcr"_s), u"../a%231%20%26%20b.htm#t%C3%BCr"_s);
    QCOMPARE(to(u"Top.htm"_s), u"../../Top.htm"_s);
    QCOMPARE(referenceTo(u"Top.htm"_s, u"Book_A\\a:b.htm"_s), u"Book_A/a%3Ab.htm"_s);

    const auto typed = [](const QString &before) {
        const auto context = linkContext(before);
        return context ? (context->isResource ? u"src "_s : u"href "_s) + context->typed
                       : QString();
    };
    QCOMPARE(typed(u"<p><a class='x' HREF=\"sub/a"_s), u"href sub/a"_s);
    QCOMPARE(typed(u"<img alt=\"a\" src='"_s), u"src "_s);
    QCOMPARE(typed(u"<a href=\"a.htm\" title=\"x"_s), QString());
    QCOMPARE(typed(u"<a href=\"a.htm\">b"_s), QString());
    QCOMPARE(typed(u"<!-- href=\"a"_s), QString());
}

QV_FORM_TEST_MAIN(tst_findpages)
#include "tst_findpages.moc"
