#include "viewer/FindInPage.h"

#include "controls/parts/PlainLabel.h"
#include "controls/parts/Tables.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QTextEdit>

using namespace Qt::StringLiterals;

FindInPage::FindInPage(QTextEdit *page, QWidget *parent)
    : QWidget(parent)
    , m_page(page)
    , txtFind(new QLineEdit(this))
    , lblFound(plainLabel({}, this))
{
    setObjectName(u"FindInPage"_s);
    txtFind->setObjectName(u"txtFind"_s);
    txtFind->setAccessibleName(tr("Find in the page"));
    txtFind->setPlaceholderText(tr("Find in the page"));
    txtFind->setClearButtonEnabled(true);
    QPushButton *previous = makeIconButton(u"cmdPrevious"_s, "up"_L1, tr("Find previous"), this);
    QPushButton *next = makeIconButton(u"cmdNext"_s, "down"_L1, tr("Find next"), this);
    QPushButton *shut = makeIconButton(u"cmdCloseFind"_s, "close"_L1, tr("Close finding"), this);
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins({});
    row->addWidget(txtFind, 1);
    row->addWidget(previous);
    row->addWidget(next);
    row->addWidget(lblFound, 1);
    row->addWidget(shut);
    connect(txtFind, &QLineEdit::textEdited, this, &FindInPage::textEdited);
    connect(txtFind, &QLineEdit::returnPressed, this, &FindInPage::findNext);
    connect(previous, &QPushButton::clicked, this, &FindInPage::findPrevious);
    connect(next, &QPushButton::clicked, this, &FindInPage::findNext);
    connect(shut, &QPushButton::clicked, this, &QWidget::hide);
    hide();
}

void FindInPage::open()
{
    show();
    txtFind->setFocus();
    txtFind->selectAll();
}

void FindInPage::findNext()
{
    find({});
}

void FindInPage::findPrevious()
{
    find(QTextDocument::FindBackward);
}

// What is being typed is looked for from where the last hit begins, not behind it.
void FindInPage::textEdited()
{
    QTextCursor cursor = m_page->textCursor();
    cursor.setPosition(cursor.selectionStart());
    m_page->setTextCursor(cursor);
    findNext();
}

void FindInPage::find(QTextDocument::FindFlags flags)
{
    const QString text = txtFind->text();
    lblFound->clear();
    if (text.isEmpty())
        return open();
    if (m_page->find(text, flags))
        return;
    const QTextCursor before = m_page->textCursor();
    m_page->moveCursor(flags ? QTextCursor::End : QTextCursor::Start);
    if (m_page->find(text, flags)) {
        lblFound->setText(flags ? tr("From the end") : tr("From the beginning"));
    } else {
        m_page->setTextCursor(before);
        lblFound->setText(tr("Not found"));
    }
}

void FindInPage::keyPressEvent(QKeyEvent *event)
{
    if (event->key() != Qt::Key_Escape)
        return QWidget::keyPressEvent(event);
    hide();
    m_page->setFocus();
}
