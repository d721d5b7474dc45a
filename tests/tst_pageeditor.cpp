// The editor of page sources, the preview and the list before an import, through the real widgets.

#include "controls/import/AddSourceFilesDialog.h"
#include "controls/pages/PageEditor.h"
#include "controls/pages/PagePreview.h"
#include "platform/Paths.h"
#include "support/FormDriver.h"
#include "support/TestProgram.h"

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
    QVERIFY(QFile::link(world.native(u"Docs/Other"_s), world.native(u"Docs/Plant/door"_s)));
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
        QCOMPARE(resource.value<QImage>().size(), QSize(24, 24));
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
