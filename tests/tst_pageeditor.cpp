// The editor of page sources, the preview and the list before an import, through the real widgets.

#include "controls/import/AddSourceFilesDialog.h"
#include "controls/pages/CompareDialog.h"
#include "controls/pages/CompareModel.h"
#include "controls/pages/HitDelegate.h"
#include "controls/pages/InsertLinkDialog.h"
#include "controls/pages/PageEditor.h"
#include "controls/pages/PagePane.h"
#include "controls/pages/PagePreview.h"
#include "controls/session/ProjectPages.h"
#include "platform/Paths.h"
#include "support/DisturbedFiles.h"
#include "support/FormDriver.h"
#include "support/SampleProject.h"
#include "support/System.h"

using namespace Qt::StringLiterals;

namespace {

struct Editor
{
    PageEditor editor;
    QPlainTextEdit *text = editor.findChild<QPlainTextEdit *>(u"txtSource"_s);
    QLabel *bar = editor.findChild<QLabel *>(u"lblPageLock"_s);

    Editor()
    {
        editor.show();
        editor.activateWindow();
        text->setFocus();
        [this] { QVERIFY(QTest::qWaitForWindowActive(&editor)); }();
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    }
};

/// A page pane over a project, and a count of the files that its thread touches.
struct Desk
{
    SampleProject sample;
    TestProgram &world = sample.world;
    DisturbedFiles files{world.files};
    Program program{world.session,   files,        world.registry,  world.processes,
                    world.windows,   world.clock,  world.messages,  world.dialogs,
                    world.locale,    world.ending, world.navigator, world.currentProject,
                    world.components};
    TocBook book;
    std::unique_ptr<ProjectSession> session;
    std::unique_ptr<PagePane> pane;
    int touched = 0;

    explicit Desk(const QByteArray &page)
        : book(sample.addBook(u"Pump"_s, u"PUMP"_s, {{u"a.htm"_s, page}}))
    {
        files.look = files.disturb = [this] {
            touched += QThread::currentThread() == QCoreApplication::instance()->thread() ? 1 : 0;
        };
        begin();
    }
    /// A new run of the program.
    void begin()
    {
        pane.reset();
        session = std::make_unique<ProjectSession>(program);
        session->open(sample.name);
        session->select(book, u"P0001"_s);
        pane = std::make_unique<PagePane>(*session);
        pane->resize(700, 400);
        pane->show();
        pane->showPage(currentPageOf(*session));
    }
    QPlainTextEdit *text() const { return control<QPlainTextEdit>(pane.get(), "txtSource"); }
    bool shows(const char *bar) const { return control<QWidget>(pane.get(), bar)->isVisible(); }
    void type(const QString &keys) const { QTest::keyClicks(text(), keys); }
    QString path() const { return sample.folder + u"Book_PUMP\\a.htm"_s; }
    QString kept(const QString &number = {}) const
    {
        return sample.folder + u"_Backup\\Recovered\\Book_PUMP\\a.htm"_s + number;
    }
};

/// A solid picture as a file's bytes.
QByteArray picture(Qt::GlobalColor colour, const char *format = "PNG")
{
    QImage image(40, 40, QImage::Format_RGB32);
    image.fill(colour);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.save(&buffer, format);
    return bytes;
}

int count(const QImage &image, QRgb colour)
{
    int pixels = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            pixels += (image.pixel(x, y) & 0xffffff) == (colour & 0xffffff) ? 1 : 0;
    }
    return pixels;
}

ImportItem item(ImportItem::Kind kind, const QString &target)
{
    ImportItem made;
    made.kind = kind;
    made.source = u"C:\\Source\\"_s + target;
    made.target = target;
    made.title = u"Title of "_s + target;
    made.size = 1000;
    made.actions = {ImportAction::Copy};
    return made;
}

} // namespace

class tst_pageeditor final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepsEveryLetterAndLineEnd();
    void showsWhatItCannotKeep();
    void findsAndIndents();
    void replacesInThePage();
    void takesMarksOutWithTheText();
    void keepsTextWhileItIsTyped();
    void leavesTheTextOfOthersAlone();
    void comparesWithAnotherAuthor();
    void savesEveryEncoding();
    void offersLinks();
    void coloursAcrossLines();
    void previewsOnlyTheProject();
    void listsWhatAnImportWouldDo();
};

void tst_pageeditor::keepsEveryLetterAndLineEnd()
{
    const QList<QPair<QString, QString>> rows{
        {u"<p>\r\n\u00a0a\tb \r\n"_s, u"x<p>\r\n\u00a0a\tb \r\n"_s},
        {u"<p>\nü\U0001F600"_s, u"x<p>\nü\U0001F600"_s},
        {u"<p>\r\r"_s, u"x<p>\r\r"_s},
        {u""_s, u"x"_s},
        {u"a\u2028b\r\n"_s, u"xa\u2028b\r\n"_s},
        {u"a\nb\r\nc\r\n"_s, u"xa\r\nb\r\nc\r\n"_s}};
    for (const auto &[page, edited] : rows) {
        Editor w;
        QSignalSpy changes(&w.editor, &PageEditor::modificationChanged);
        w.editor.setPage(page);
        QCOMPARE(w.editor.text(), page);
        w.press(Qt::Key_X);
        QCOMPARE(changes.takeLast().first().toBool(), true);
        QCOMPARE(w.editor.text(), edited);

        w.editor.setModified(false);
        QCOMPARE(w.editor.text(), edited);
        w.press(Qt::Key_Backspace);
        w.press(Qt::Key_Z, Qt::ControlModifier);
        QVERIFY(!w.editor.isModified());
        QCOMPARE(w.editor.text(), edited);
    }
}

void tst_pageeditor::showsWhatItCannotKeep()
{
    Editor w;
    for (const QString &page : {u"a\u2029b"_s, u"a\rb\r\nc\r\n"_s, u"a\ufdd0b"_s}) {
        w.editor.setPage(page);
        w.press(Qt::Key_X);
        QCOMPARE(w.editor.text(), page);
        QVERIFY(w.bar->isVisible());
        QCOMPARE(w.bar->text(), u"This page holds characters that the editor cannot keep (odd line "
                                "separators). It is shown, but cannot be edited here."_s);
    }
    w.editor.setPage(u"a\nb\r\nc\n"_s);
    QCOMPARE(w.bar->text(), u"The lines of this page end in different ways. Once it is edited, all "
                            "are saved with LF."_s);
    w.editor.setPage(u"a\n"_s);
    QVERIFY(!w.bar->isVisible());
    w.editor.setReadOnlyReason(u"Bytes are damaged."_s);
    QVERIFY(w.text->isReadOnly() && !control<QWidget>(&w.editor, "cmdUnlockPage")->isVisible());
    QCOMPARE(w.bar->text(), u"Bytes are damaged."_s);
    w.editor.clear();
    QVERIFY(!w.text->isReadOnly());
}

void tst_pageeditor::findsAndIndents()
{
    Editor w;
    w.editor.setPage(u"\t  <p>Pump\r\nvalve pump\r\n"_s);
    w.press(Qt::Key_F, Qt::ControlModifier);
    auto *field = w.editor.findChild<QLineEdit *>(u"txtFind"_s);
    QCOMPARE(QApplication::focusWidget(), field);
    QTest::keyClicks(field, u"pump"_s);
    QCOMPARE(w.text->textCursor().selectedText(), u"Pump"_s);
    auto *message = w.editor.findChild<QLabel *>(u"lblFind"_s);
    w.editor.findChild<QAbstractButton *>(u"chkMatchCase"_s)->setChecked(true);
    QCOMPARE(w.text->textCursor().selectedText(), u"pump"_s);
    w.press(Qt::Key_F3);
    QCOMPARE(message->text(), u"Went on at the other end"_s);
    QTest::keyClicks(field, u"er"_s);
    QCOMPARE(message->text(), u"Not found"_s);
    w.press(Qt::Key_Escape);
    QCOMPARE(QApplication::focusWidget(), w.text);
    QVERIFY(!field->isVisible());

    w.press(Qt::Key_Home, Qt::ControlModifier);
    w.press(Qt::Key_End);
    w.press(Qt::Key_Return);
    QCOMPARE(w.editor.text(), u"\t  <p>Pump\r\n\t  \r\nvalve pump\r\n"_s);
}

void tst_pageeditor::replacesInThePage()
{
    Editor w;
    w.editor.setPage(u"<b>R1</b>\r\n<b>R2</b>\r\nr3\r\n"_s);
    w.press(Qt::Key_H, Qt::ControlModifier);
    const auto count = [&] { return control<QLabel>(&w.editor, "lblFindCount")->text(); };
    auto *field = control<QLineEdit>(&w.editor, "txtFind");
    QTest::keyClicks(field, u"r(\\d"_s);
    control<QCheckBox>(&w.editor, "chkPattern")->setChecked(true);
    QVERIFY(control<QLabel>(&w.editor, "lblFind")->text().startsWith(u"missing closing"_s));
    QTest::keyClicks(field, u")"_s);
    QCOMPARE(count(), u"1 of 3"_s);
    w.press(Qt::Key_F3);
    QCOMPARE(count(), u"2 of 3"_s);
    control<QLineEdit>(&w.editor, "txtReplace")->setText(u"No. \\1"_s);
    click(&w.editor, "cmdReplace");
    QCOMPARE(w.editor.text(), u"<b>R1</b>\r\n<b>No. 2</b>\r\nr3\r\n"_s);
    QCOMPARE(count(), u"2 of 2"_s);
    click(&w.editor, "cmdReplaceAll");
    QCOMPARE(w.editor.text(), u"<b>No. 1</b>\r\n<b>No. 2</b>\r\nNo. 3\r\n"_s);
    w.text->setFocus();
    w.press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(w.editor.text(), u"<b>R1</b>\r\n<b>No. 2</b>\r\nr3\r\n"_s);
    QTRY_COMPARE(count(), u"2 hits"_s);
    w.editor.setLocked(true);
    w.press(Qt::Key_H, Qt::ControlModifier);
    QVERIFY(!isEnabled(&w.editor, "cmdReplaceAll"));
    w.editor.setLocked(false);
    QVERIFY(isEnabled(&w.editor, "cmdReplaceAll"));
    control<QWidget>(&w.editor, "cmdReplaceAll")->setFocus();
    w.press(Qt::Key_Return);
    QCOMPARE(w.editor.text(), u"<b>No. 1</b>\r\n<b>No. 2</b>\r\nNo. 3\r\n"_s);
}

// Marks that come or go while the text is taken out are looked after death.
void tst_pageeditor::takesMarksOutWithTheText()
{
    Editor w;
    w.editor.setPage(u"a pump\n"_s.repeated(2000));
    w.press(Qt::Key_F, Qt::ControlModifier);
    QTest::keyClicks(control<QLineEdit>(&w.editor, "txtFind"), u"pump"_s);
    QVERIFY(w.text->extraSelections().size() > 5);
    int looks = 0;
    qsizetype marks = 0;
    connect(w.text, &QPlainTextEdit::blockCountChanged, &w.editor, [&] {
        ++looks;
        w.text->resize(w.text->width() - 1, w.text->height()); // as when a scroll bar comes
        marks += w.text->extraSelections().size();
    });
    w.editor.setPage(u"one pump\n"_s);
    QVERIFY(looks > 0);
    QCOMPARE(marks, 0);
    QTRY_COMPARE(control<QLabel>(&w.editor, "lblFindCount")->text(), u"1 hit"_s);
    QCOMPARE(w.text->extraSelections().size(), 2);
}

void tst_pageeditor::keepsTextWhileItIsTyped()
{
    Desk desk("<p>old</p>");
    (void)desk.session->pages().current();
    desk.touched = 0;
    desk.type(u"one <a href=\"a#"_s);
    QTRY_VERIFY_WITH_TIMEOUT(desk.world.files.fileExists(desk.kept()), 20'000);
    QCOMPARE(desk.touched, 0);
    QCOMPARE(desk.world.bytes(desk.kept()), "one <a href=\"a#<p>old</p>");
    QCOMPARE(desk.world.bytes(desk.path()), "<p>old</p>");

    // The program dies here. The next one offers the text, and does not write over it.
    desk.begin();
    QVERIFY(desk.shows("recoveryBar"));
    desk.type(u"two "_s);
    QVERIFY_THROWS_EXCEPTION(Unwinding, desk.world.ending.endNow());
    QCOMPARE(desk.world.bytes(desk.kept()), "one <a href=\"a#<p>old</p>");
    QCOMPARE(desk.world.bytes(desk.kept(u"~2"_s)), "two <p>old</p>");
    QCOMPARE(KeptTexts(desk.files).pages(desk.sample.folder), QStringList{u"Book_PUMP\\a.htm"_s});
    QVERIFY(desk.pane->save());
    QVERIFY2(!desk.world.files.fileExists(desk.kept(u"~2"_s)), "what is saved is not kept");
    click(desk.pane.get(), "cmdUseRecovered");
    QCOMPARE(desk.pane->text(), u"one <a href=\"a#<p>old</p>"_s);
    QTest::keyClick(desk.text(), Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(desk.pane->text(), u"two <p>old</p>"_s);
    QTest::keyClick(desk.text(), Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    QVERIFY(desk.pane->save());
    QVERIFY(!desk.world.files.fileExists(desk.kept()));
}

void tst_pageeditor::leavesTheTextOfOthersAlone()
{
    Desk mine("<p>old</p>");
    FileSystem &files = mine.world.files;
    KeptTexts texts(mine.world.files);
    const auto left = [&] { return texts.pages(mine.sample.folder).size(); };
    const QString lock = mine.kept(u".lock"_s);
    const auto keep = [&] {
        QVERIFY_THROWS_EXCEPTION(Unwinding, mine.world.ending.endNow());
        QVERIFY(files.fileExists(mine.kept()) && files.fileExists(lock));
    };
    // What is undone needs no keeping, and a place is free again.
    mine.type(u"x"_s);
    keep();
    QTest::keyClick(mine.text(), Qt::Key_Z, Qt::ControlModifier);
    QVERIFY(!files.exists(mine.kept()) && !files.exists(lock));
    mine.type(u"mine "_s);
    keep();

    // Another program on the same page sees nothing of it, and keeps its own text elsewhere.
    ProjectSession session(mine.program);
    session.open(mine.sample.name);
    session.select(mine.book, u"P0001"_s);
    PagePane theirs(session);
    theirs.show();
    theirs.showPage(currentPageOf(session));
    auto *bar = control<QWidget>(&theirs, "recoveryBar");
    QVERIFY(!bar->isVisible());
    QCOMPARE(left(), 0);
    QTest::keyClicks(control<QPlainTextEdit>(&theirs, "txtSource"), u"their "_s);
    keep();
    QCOMPARE(mine.world.bytes(mine.kept(u"~2"_s)), "their <p>old</p>");
    theirs.showPage(std::nullopt);
    QCOMPARE(left(), 1);
    QVERIFY(!files.exists(mine.kept(u"~2.lock"_s)));
    theirs.showPage(currentPageOf(session));
    click(&theirs, "cmdDiscardRecovered");
    QVERIFY(!files.exists(mine.kept(u"~2"_s)));
    QVERIFY2(!bar->isVisible() && files.exists(mine.kept()), "that one is needed");
    QVERIFY(errorOf([&] { texts.discard(mine.kept()); }).contains(u"another QV Developer keeps"_s));
    QCOMPARE(mine.world.bytes(mine.kept()), "mine <p>old</p>");

    // A lock that cannot be used tells nothing: the text is offered, and stays.
    mine.pane.reset();
    QVERIFY(!files.exists(lock));
    files.makeFolder(lock);
    theirs.showPage(std::nullopt);
    theirs.showPage(currentPageOf(session));
    QVERIFY(bar->accessibleDescription().endsWith(u"Another author may still be working on it."_s));
    click(&theirs, "cmdDiscardRecovered");
    QVERIFY(mine.world.messages.shown.last().contains(u"delete that file yourself"_s));
    QVERIFY(bar->isVisible() && files.exists(mine.kept()));

    // A program that died left its lock behind.
    files.removeFolder(lock);
    mine.world.put(lock, {});
    mine.world.put(mine.kept(u"~3.lock"_s), {});
    QCOMPARE(left(), 1);
    QVERIFY(!files.exists(lock) && !files.exists(mine.kept(u"~3.lock"_s)));
    click(&theirs, "cmdDiscardRecovered");
    QVERIFY(!files.exists(mine.kept()) && !bar->isVisible());
}

void tst_pageeditor::comparesWithAnotherAuthor()
{
    Desk desk("one\r\ntwo\r\nthree\r\n");
    desk.world.put(desk.path(), "one\r\ntwo\r\n3\r\n");
    desk.pane->noticeChanges();
    QCOMPARE(desk.pane->text(), u"one\r\ntwo\r\n3\r\n"_s);
    desk.type(u"my "_s);
    desk.world.put(desk.path(), "one\r\ntwo\r\nIII\r\n");
    desk.pane->noticeChanges();
    QVERIFY(desk.shows("conflictBar"));
    QVERIFY(desk.world.messages.shown.isEmpty());

    click(desk.pane.get(), "cmdCompare");
    auto *dialog = desk.pane->findChild<CompareDialog *>();
    QCOMPARE(control<QLabel>(dialog, "lblDifferences")->text(), u"2 differences"_s);
    auto *table = control<QTableView>(dialog, "lstDifferences");
    QCOMPARE(table->currentIndex().row(), 0);
    const auto differing = [&](int column) {
        const QModelIndex cell = table->currentIndex().siblingAtColumn(column);
        return cell.data().toString().mid(cell.data(HitDelegate::BeginRole).toInt(),
                                          cell.data(HitDelegate::LengthRole).toInt());
    };
    QCOMPARE(differing(CompareModel::LeftText) + u'|' + differing(CompareModel::RightText),
             u"|my "_s);
    QTest::keyClick(table, Qt::Key_Return); // which answers nothing
    QCOMPARE(table->currentIndex().row(), 2);
    QVERIFY(dialog->isVisible());
    QCOMPARE(table->currentIndex().data(Qt::AccessibleTextRole).toString(),
             u"Line 3 differs. Theirs: III. Mine: 3"_s);
    desk.world.put(desk.path(), "unseen");
    click(dialog, "cmdKeepMine");
    QVERIFY2(desk.shows("conflictBar"), "mine was kept over what was shown, and no other text");
    click(desk.pane.get(), "cmdKeepMine");
    QVERIFY(!desk.shows("conflictBar"));
    QVERIFY(desk.pane->save());
    QCOMPARE(desk.world.bytes(desk.path()), "my one\r\ntwo\r\n3\r\n");

    // A command of ours that moves the page takes its open text along.
    desk.type(u"and "_s);
    desk.world.files.move(desk.path(), desk.sample.folder + u"Book_PUMP\\b.htm"_s);
    PageRef moved = desk.pane->page()->ref;
    moved.page.file = u"b.htm"_s;
    desk.pane->showPage(moved);
    QVERIFY(!desk.shows("conflictBar"));
    QVERIFY(desk.pane->save());
    QCOMPARE(desk.world.bytes(desk.sample.folder + u"Book_PUMP\\b.htm"_s),
             "my and one\r\ntwo\r\n3\r\n");
    QVERIFY(!desk.world.files.fileExists(desk.path()));
}

void tst_pageeditor::savesEveryEncoding()
{
    const auto wide = [](QStringConverter::Encoding encoding) {
        QStringEncoder encoder(encoding, QStringEncoder::Flag::WriteBom);
        const QByteArray bytes = encoder(u"<p>\uac00\U0001F600</p>\r\n"_s);
        return std::pair{bytes.first(2), bytes.sliced(2)};
    };
    const auto [littleMark, little] = wide(QStringConverter::Utf16LE);
    const auto [bigMark, big] = wide(QStringConverter::Utf16BE);
    struct Row
    {
        QByteArray mark, letter, bytes;
        QString encoding;
    };
    const QList<Row> rows{
        {{}, "x", "<meta charset=euc-kr>\xb0\xa1\r\n\xc7\xd1", u"windows-949"_s},
        {{}, "x", "<meta charset=shift_jis>\x83\x5c\x83\x7c\n", u"shift_jis"_s},
        {{}, "x", "<meta charset=iso-2022-jp>\x1b$B$\"\x1b(B pump\n", u"iso-2022-jp"_s},
        {{}, "x", "<meta charset=windows-1252>Gr\xfc\xdf\x80\n", u"windows-1252"_s},
        {{}, "x", "<p>\xe6\xbc\xa2</p>\n", u"UTF-8"_s},
        {"\xef\xbb\xbf", "x", "<p>\xe6\xbc\xa2</p>\n", u"UTF-8"_s},
        {littleMark, QByteArray("x\0", 2), little, u"UTF-16LE"_s},
        {bigMark, QByteArray("\0x", 2), big, u"UTF-16BE"_s}};
    for (const Row &row : rows) {
        if (!here::hasCharset(row.encoding.toLatin1()))
            continue;
        Desk desk(row.mark + row.bytes);
        auto *encoding = control<QToolButton>(desk.pane.get(), "cmdEncoding");
        QCOMPARE(encoding->text(), row.encoding);
        desk.type(u"x"_s);
        QVERIFY(desk.pane->save());
        QCOMPARE(desk.world.bytes(desk.path()), row.mark + row.letter + row.bytes);
        QCOMPARE(desk.world.messages.shown, QStringList());
    }

    Desk desk("<meta charset=euc-kr>\xb0\xa1\r\n");
    desk.world.messages.choices = {0};
    desk.pane->findChild<QAction *>(u"actConvertToUtf8"_s)->trigger();
    QVERIFY(desk.world.messages.shown.last().contains(u"changed to utf-8"_s));
    QCOMPARE(desk.world.bytes(desk.path()), "<meta charset=utf-8>\xea\xb0\x80\r\n");
    QCOMPARE(desk.session->history().undoName(), u"Convert a.htm to UTF-8"_s);
    desk.session->undo();
    QCOMPARE(desk.world.bytes(desk.path()), "<meta charset=euc-kr>\xb0\xa1\r\n");
    QCOMPARE(control<QToolButton>(desk.pane.get(), "cmdEncoding")->text(), u"windows-949"_s);
}

void tst_pageeditor::offersLinks()
{
    Desk desk("<p></p>");
    desk.sample.addBook(u"Valve"_s, u"VALVE"_s,
                        {{u"open it.htm"_s, "<title>Opening</title><h1 id=top>Opening</h1>"}});
    desk.session->reread();
    (void)desk.session->pages().current();
    desk.pane->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(desk.pane.get()));
    desk.text()->setFocus();
    desk.type(u"<a href=\"openin"_s);
    QAbstractItemView *choices = nullptr;
    QTRY_VERIFY((choices = qobject_cast<QAbstractItemView *>(QApplication::activePopupWidget())));
    QCOMPARE(textsIn(choices->model()), QStringList{u"Opening \u2013 Book_VALVE\\open it.htm"_s});
    QTest::keyClick(choices, Qt::Key_Down);
    QTest::keyClick(choices, Qt::Key_Return);
    QCOMPARE(desk.pane->text(), u"<a href=\"../Book_VALVE/open%20it.htm<p></p>"_s);
    desk.type(u"#"_s);
    QTRY_VERIFY((choices = qobject_cast<QAbstractItemView *>(QApplication::activePopupWidget())));
    QCOMPARE(textsIn(choices->model()), QStringList{u"#top"_s});
    QTest::keyClick(choices, Qt::Key_Escape);

    desk.text()->moveCursor(QTextCursor::End);
    QTest::keyClick(desk.text(), Qt::Key_K, Qt::ControlModifier);
    auto *dialog = desk.pane->findChild<InsertLinkDialog *>();
    QVERIFY(dialog);
    control<QLineEdit>(dialog, "txtFilter")->setText(u"open it"_s);
    control<QComboBox>(dialog, "cboAnchor")->setCurrentIndex(1);
    click(dialog, "cmdInsertLink");
    QVERIFY(
        desk.pane->text().endsWith(u"<a href=\"../Book_VALVE/open%20it.htm#top\">Opening</a>"_s));
}

void tst_pageeditor::coloursAcrossLines()
{
    Editor w;
    w.editor.setPage(
        u"<p class=\"a\nb\">x &amp; y<!-- c\n<b> --><script>\nif (a < b)\n</script>z"_s);
    const auto coloured = [&](int line) {
        QStringList pieces;
        const QTextBlock block = w.text->document()->findBlockByNumber(line);
        for (const QTextLayout::FormatRange &range : block.layout()->formats())
            pieces.append(block.text().mid(range.start, range.length));
        return pieces.join(u'|');
    };
    QTRY_COMPARE(coloured(0), u"<p|class|\"a"_s);
    QCOMPARE(coloured(1), u"b\"|>|&amp;|<!-- c"_s);
    QCOMPARE(coloured(2), u"<b> -->|<script>"_s);
    QCOMPARE(coloured(3), u"if (a < b)"_s);
    QCOMPARE(coloured(4), u"</script>"_s);
}

void tst_pageeditor::previewsOnlyTheProject()
{
    TestProgram world;
    world.put(u"S:\\Docs\\Plant\\green.png"_s, picture(Qt::green));
    world.files.makeFolder(u"S:\\Docs\\Plant\\Book_A"_s);
    world.put(u"S:\\Docs\\Other\\red.png"_s, picture(Qt::red));
    here::link(world.native(u"Docs/Other"_s), world.native(u"Docs/Plant/door"_s));
    world.put(u"S:\\Docs\\Plant\\look.css"_s, "p { background-color: #0000ff }");
    world.put(u"S:\\Docs\\Other\\look.css"_s, "p { background-color: #ff0000 }");
    world.put(u"S:\\Docs\\Plant\\leak.svg"_s,
              "<svg xmlns='http://www.w3.org/2000/svg' width='40' height='40'><image href='"
                  + world.native(u"Docs/Other/red.png"_s).toUtf8()
                  + "' width='40' height='40'/></svg>");
    QByteArray huge = picture(Qt::red, "BMP");
    huge.replace(18, 8, QByteArray::fromHex("60ea000060ea0000")); // says 60000 x 60000
    world.put(u"S:\\Docs\\Plant\\huge.bmp"_s, huge);

    PagePreview preview(world.files, u"ENU"_s);
    preview.resize(500, 300);
    preview.show();
    const auto shot = [&](const QString &html) {
        preview.showPage(html, u"S:\\Docs\\Plant\\"_s, u"Book_A\\page.htm"_s);
        return preview.grab().toImage();
    };
    QCOMPARE(count(shot(u"<img src='../green.png'>"_s), qRgb(0, 255, 0)), 1600);
    QVERIFY(count(shot(u"<head><link rel=stylesheet href='../look.css'></head><p>x</p>"_s),
                  qRgb(0, 0, 255))
            > 500);

    const QString outside = world.native(u"Docs/Other/red.png"_s);
    preview.setSource(QUrl::fromLocalFile(outside)); // shows nothing
    QCOMPARE(preview.toPlainText(), u"x"_s);
    for (const QString &address :
         {outside, u"file://"_s + outside, u"file:"_s + outside, u"../../Other/red.png"_s,
          u"..\\..\\Other\\red.png"_s, u"%2e%2e/%2e%2e/Other/red.png"_s, u"../door/red.png"_s,
          u"S:\\Docs\\Other\\red.png"_s, u"//localhost"_s + outside, u"../leak.svg"_s,
          u"../huge.bmp"_s, u"../green.png/../../../Other/red.png"_s,
          u"http://127.0.0.1:9/red.png"_s}) {
        const QImage shown =
            shot(u"<img src=\"%1\" width=40 height=40><p style=\"background-image:url('%1')\">"
                 "text</p>"_s.arg(address));
        QVERIFY2(count(shown, qRgb(255, 0, 0)) == 0, qPrintable(address));
        const QVariant resource =
            preview.document()->resource(QTextDocument::ImageResource, QUrl(address));
        QCOMPARE(resource.value<QImage>().size(), QSize(1, 1)); // what cannot be seen
    }
    for (const QString &sheet :
         {u"../../Other/look.css"_s, u"file://"_s + world.native(u"Docs/Other/look.css"_s)})
        QCOMPARE(count(shot(u"<head><link rel=stylesheet href='%1'></head><p>x</p>"_s.arg(sheet)),
                       qRgb(255, 0, 0)),
                 0);
}

void tst_pageeditor::listsWhatAnImportWouldDo()
{
    TestProgram world;
    ImportPlan plan;
    plan.items = {
        item(ImportItem::Kind::Page, u"a.htm"_s), item(ImportItem::Kind::Page, u"b.htm"_s),
        item(ImportItem::Kind::Page, u"con.htm"_s), item(ImportItem::Kind::Style, u"s.css"_s)};
    plan.items[0].uses = {3};
    plan.items[1].actions = {ImportAction::Skip, ImportAction::Replace, ImportAction::Rename};
    plan.items[1].action = ImportAction::Skip;
    plan.items[1].conflict = u"the book has a file of this name"_s;
    plan.items[1].renamed = u"b-2.htm"_s;
    plan.items[2].refusal = u"The name cannot be used."_s;
    plan.omissions = {{u"../x.png"_s, u"a.htm"_s, u"Outside, not copied."_s}};

    AddSourceFilesDialog dialog(world.files, plan);
    dialog.show();
    auto *table = dialog.findChild<QTableView *>(u"lstFiles"_s);
    auto *totals = dialog.findChild<QLabel *>(u"lblTotals"_s);
    auto *add = dialog.findChild<QPushButton *>(u"cmdAdd"_s);
    const auto cell = [&](int row, int column) { return table->model()->index(row, column); };
    QVERIFY(totals->text().startsWith(u"Pages: 1   Other files: 1   Names taken: 0"_s));
    QCOMPARE(cell(2, 5).data().toString(), u"Cannot be added: The name cannot be used."_s);
    QVERIFY(!(cell(2, 0).flags() & Qt::ItemIsEnabled));
    QCOMPARE(dialog.findChild<QPlainTextEdit *>(u"txtOmissions"_s)->toPlainText(),
             u"../x.png (in a.htm): Outside, not copied."_s);

    table->setFocus();
    table->setCurrentIndex(cell(1, 5));
    QTest::keyClick(table, Qt::Key_F2);
    auto *box = table->findChild<QComboBox *>();
    QVERIFY(box);
    QTest::keyClick(box, Qt::Key_Down);
    QTest::keyClick(box, Qt::Key_Down);
    QTest::keyClick(box, Qt::Key_Return);
    QTRY_COMPARE(dialog.plan().items[1].action, ImportAction::Rename);
    QCOMPARE(cell(1, 5).data().toString(),
             u"Rename to b-2.htm: the book has a file of this name"_s);
    QVERIFY(totals->text().startsWith(u"Pages: 2   Other files: 1   Names taken: 1"_s));

    table->setFocus();
    for (const int row : {0, 1}) {
        table->setCurrentIndex(cell(row, 0));
        QTest::keyClick(table, Qt::Key_Space);
    }
    QVERIFY(totals->text().startsWith(u"Pages: 0   Other files: 0"_s));
    QVERIFY(!add->isEnabled());
    QCOMPARE(dialog.findChild<QLabel *>(u"lblReason"_s)->text(),
             u"No page is chosen that could be added."_s);
    QTest::keyClick(table, Qt::Key_Space);
    QVERIFY(add->isEnabled());
    QTest::mouseClick(add, Qt::LeftButton);
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QVERIFY(!dialog.plan().items[0].included);
}

QV_FORM_TEST_MAIN(tst_pageeditor)
#include "tst_pageeditor.moc"
