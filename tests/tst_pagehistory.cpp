// Going back and forward among pages, and unsaved text that an earlier run left of them.

#include "controls/books/PageCommands.h"
#include "controls/pages/KeptTextsDialog.h"
#include "support/BooksDesk.h"

using namespace Qt::StringLiterals;

class tst_pagehistory final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void goesBackAndForward();
    void offersTextOfPagesThatWentToo();
};

void tst_pagehistory::goesBackAndForward()
{
    SampleProject sample;
    const TocBook pump = sample.addBook(u"Pump"_s, u"PUMP"_s,
                                        {{u"a.htm"_s, "a"}, {u"b.htm"_s, "b"}, {u"c.htm"_s, "c"}});
    const TocBook valve = sample.addBook(u"Valve"_s, u"VALVE"_s, {{u"d.htm"_s, "d"}});
    Desk desk(sample);
    const auto go = [&](Qt::Key key) {
        QTest::keyClick(&desk.tab, key, Qt::ControlModifier);
        return desk.source()->toPlainText();
    };
    const auto back = [&] { return go(Qt::Key_BracketLeft); };
    const auto forward = [&] { return go(Qt::Key_BracketRight); };
    for (const QString &page : {u"P0001"_s, u"P0002"_s, u"P0003"_s})
        desk.open(pump, page);
    desk.open(valve);
    desk.session.select(valve);
    desk.open(valve);
    QCOMPARE(back(), u"c"_s);
    desk.insert(u"1"_s);
    QCOMPARE(back(), u"b"_s);
    QCOMPARE(sample.world.bytes(sample.folder + u"Book_PUMP\\c.htm"_s), "1c");

    // Pages that are gone are passed over; a visit elsewhere ends what lay ahead.
    PageCommands(desk.session).remove(pump, {u"P0003"_s}, false);
    QCOMPARE(forward(), u"d"_s);
    QCOMPARE(forward(), u"d"_s);
    QCOMPARE(back(), u"b"_s);
    QCOMPARE(back(), u"a"_s);
    QCOMPARE(back(), u"a"_s);
    desk.open(pump, u"P0002"_s);
    QCOMPARE(forward(), u"b"_s);

    // Another project has pages of the same names, but nobody was there.
    ProjectFiles copy(sample.world, u"Copy"_s);
    sample.world.files.makeFolder(withoutBackslash(copy.folder));
    TableOfContents(sample.world.session, sample.world.files)
        .CreateQVTOCFile(copy.folder + ProjectFile::toc);
    const TocBook same = copy.addBook(u"Pump"_s, u"PUMP"_s, {{u"a.htm"_s, "A"}, {u"b.htm"_s, "B"}});
    desk.tab.setProjectName(copy.name);
    desk.open(same, u"P0002"_s);
    QCOMPARE(back(), u"B"_s);
}

void tst_pagehistory::offersTextOfPagesThatWentToo()
{
    SampleProject sample;
    sample.addBook(u"Pump"_s, u"PUMP"_s, {{u"a.htm"_s, "a"}});
    KeptTexts texts(sample.world.files);
    const auto keep = [&](const QString &page, const QString &text) {
        auto place = texts.take(sample.folder, u"Book_PUMP\\"_s + page);
        texts.keep(*place, text);
        return place;
    };
    keep(u"a.htm"_s, u"kept a"_s);
    const QString gone = keep(u"gone.htm"_s, u"<meta charset=big5>\u6f22"_s)->path();
    const auto running = keep(u"theirs.htm"_s, u"their program runs"_s);
    ScriptedMessages &messages = sample.world.messages;
    messages.choices = {0};
    Desk desk(sample);
    QTRY_VERIFY(openWindow<KeptTextsDialog>());
    QCOMPARE(messages.shown, QStringList{u"Unsaved text of 2 pages was kept."_s});
    auto *dialog = openWindow<KeptTextsDialog>();
    auto *list = control<QListWidget>(dialog, "lstKept");
    QCOMPARE(textsIn(list->model()),
             (QStringList{u"Book_PUMP\\a.htm"_s, u"Book_PUMP\\gone.htm"_s}));
    list->setCurrentRow(1);
    click(dialog, "cmdOpenKept");
    QVERIFY(messages.shown.last().startsWith(u"No book of this project lists the page"_s));
    sample.world.dialogs.paths = {u"S:\\mine.htm"_s};
    click(dialog, "cmdSaveKept");
    QCOMPARE(sample.world.bytes(u"S:\\mine.htm"_s), "<meta charset=utf-8>\xe6\xbc\xa2");
    messages.choices = {1, 0};
    click(dialog, "cmdDiscardKept");
    QVERIFY(sample.world.files.fileExists(gone));
    {
        const auto claimed = KeptPlace::claim(sample.world.files, gone, gone);
        click(dialog, "cmdDiscardKept");
        QVERIFY2(messages.shown.last().contains(u"a QV Developer that is running keeps it"_s)
                     && sample.world.files.fileExists(gone),
                 qPrintable(messages.shown.last()));
    }
    click(dialog, "cmdDiscardKept");
    QVERIFY(!sample.world.files.fileExists(gone));
    QCOMPARE(list->count(), 1);
    click(dialog, "cmdOpenKept");
    QCOMPARE(desk.session.currentPage(), u"P0001"_s);
    QVERIFY(control<QWidget>(&desk.tab, "recoveryBar")->isVisible());
}

QV_FORM_TEST_MAIN(tst_pagehistory)
#include "tst_pagehistory.moc"
