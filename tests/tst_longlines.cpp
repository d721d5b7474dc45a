// Long lines of a source: drawn in part, kept as they are.

#include "controls/pages/PageEditor.h"

#include <QApplication>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>

using namespace Qt::StringLiterals;

class tst_longlines final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepsEveryLetter();
    void looksAsEver();
};

void tst_longlines::keepsEveryLetter()
{
    const QString word = u"<b>K\u00e4fer</b>\u00a0&amp; \u30dd\u30f3\u30d7\t"_s;
    const QString page =
        u"first\r\n"_s + word.repeated(600) + u"\r\n\r\n"_s + word.repeated(20) + u"last"_s;
    PageEditor editor;
    editor.resize(700, 300);
    editor.setPage(page);
    editor.show();
    auto *view = editor.findChild<QPlainTextEdit *>(u"txtSource"_s);
    QTextCursor cursor(view->document()->findBlockByNumber(1));
    cursor.movePosition(QTextCursor::Right, QTextCursor::MoveAnchor, 5000);
    view->setTextCursor(cursor);
    QTest::keyClicks(view, u"pump"_s);
    view->grab();
    const qsizetype at = 7 + 5000;
    QCOMPARE(editor.text(), page.first(at) + u"pump"_s + page.sliced(at));
    view->undo();
    QCOMPARE(view->document()->isModified(), false);
    QCOMPARE(editor.text(), page);
}

void tst_longlines::looksAsEver()
{
    const QString text = u"short\n"_s + u"The pump & the valve of R100, \u30dd. "_s.repeated(200)
                         + u"\nshort again\n"_s + u"m"_s.repeated(800);
    PageEditor editor;
    editor.resize(700, 300);
    editor.setPage(text);
    editor.show();
    auto *view = editor.findChild<QPlainTextEdit *>(u"txtSource"_s);
    QPlainTextEdit plain;
    plain.setFont(view->font());
    plain.setTabStopDistance(view->tabStopDistance());
    plain.setLineWrapMode(QPlainTextEdit::NoWrap);
    plain.setPlainText(text);
    plain.resize(700, 300);
    plain.show();
    QTextCursor chosen(plain.document()->findBlockByNumber(1));
    chosen.movePosition(QTextCursor::Right, QTextCursor::MoveAnchor, 3000);
    chosen.movePosition(QTextCursor::Right, QTextCursor::KeepAnchor, 12);
    plain.setTextCursor(chosen);
    QTextCursor same(view->document());
    same.setPosition(chosen.anchor());
    same.setPosition(chosen.position(), QTextCursor::KeepAnchor);
    view->setTextCursor(same);
    view->setExtraSelections({});
    for (const int column : {0, 4000, plain.horizontalScrollBar()->value()}) {
        for (QPlainTextEdit *edit : {view, &plain}) {
            edit->setCursorWidth(0);
            edit->horizontalScrollBar()->setValue(column);
        }
        const QRect part(0, 0, 600, 200);
        QCOMPARE(view->viewport()->grab(part).toImage(), plain.viewport()->grab(part).toImage());
    }
}

int main(int argc, char *argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QApplication::setStyle(u"Fusion"_s);
    tst_longlines test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_longlines.moc"
