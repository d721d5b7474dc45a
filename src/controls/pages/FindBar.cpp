#include "controls/pages/FindBar.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextBlock>

using namespace Qt::StringLiterals;

FindBar::FindBar(QPlainTextEdit *editor, QWidget *parent)
    : QWidget(parent)
    , m_editor(editor)
    , m_text(new QLineEdit)
    , m_matchCase(new QCheckBox(tr("Match &case")))
    , m_message(new QLabel)
{
    auto *label = new QLabel(tr("&Find:"));
    auto *next = new QPushButton(tr("&Next"));
    auto *previous = new QPushButton(tr("&Previous"));
    auto *done = new QPushButton(tr("Cl&ose"));
    label->setBuddy(m_text);
    m_text->setObjectName(u"txtFind"_s);
    m_text->setAccessibleName(tr("Text to find in this page"));
    m_text->setClearButtonEnabled(true);
    m_matchCase->setObjectName(u"chkMatchCase"_s);
    m_message->setObjectName(u"lblFind"_s);
    next->setObjectName(u"cmdFindNext"_s);
    previous->setObjectName(u"cmdFindPrevious"_s);
    done->setObjectName(u"cmdFindClose"_s);

    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    for (QWidget *widget : {static_cast<QWidget *>(label), static_cast<QWidget *>(m_text),
                            static_cast<QWidget *>(next), static_cast<QWidget *>(previous),
                            static_cast<QWidget *>(m_matchCase), static_cast<QWidget *>(m_message),
                            static_cast<QWidget *>(done)})
        row->addWidget(widget);
    row->setStretchFactor(m_text, 1);

    connect(m_text, &QLineEdit::textEdited, this, &FindBar::findFromHere);
    connect(m_matchCase, &QCheckBox::toggled, this, &FindBar::findFromHere);
    connect(next, &QPushButton::clicked, this, &FindBar::findNext);
    connect(previous, &QPushButton::clicked, this, &FindBar::findPrevious);
    connect(done, &QPushButton::clicked, this, &FindBar::close);
    hide();
}

void FindBar::open()
{
    const QString selected = m_editor->textCursor().selectedText();
    if (!selected.isEmpty() && !selected.contains(QChar::ParagraphSeparator))
        m_text->setText(selected);
    m_message->clear();
    show();
    m_text->selectAll();
    m_text->setFocus();
}

void FindBar::close()
{
    hide();
    m_editor->setFocus();
}

void FindBar::keyPressEvent(QKeyEvent *event)
{
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (event->key() == Qt::Key_Escape)
        close();
    else if (enter && event->modifiers() & Qt::ShiftModifier)
        findPrevious();
    else if (enter)
        findNext();
    else
        QWidget::keyPressEvent(event);
}

void FindBar::findNext()
{
    find({});
}

void FindBar::findPrevious()
{
    find(QTextDocument::FindBackward);
}

/// While the author types, the hit grows where it is.
void FindBar::findFromHere()
{
    QTextCursor cursor = m_editor->textCursor();
    cursor.setPosition(cursor.selectionStart());
    m_editor->setTextCursor(cursor);
    findNext();
}

void FindBar::find(QTextDocument::FindFlags direction)
{
    m_message->clear();
    if (m_text->text().isEmpty())
        return;
    if (m_matchCase->isChecked())
        direction |= QTextDocument::FindCaseSensitively;
    QTextDocument *page = m_editor->document();
    QTextCursor hit = page->find(m_text->text(), m_editor->textCursor(), direction);
    if (hit.isNull()) {
        QTextCursor end(page);
        if (direction & QTextDocument::FindBackward)
            end.movePosition(QTextCursor::End);
        hit = page->find(m_text->text(), end, direction);
        m_message->setText(hit.isNull() ? tr("Not found") : tr("Went on at the other end"));
    }
    if (!hit.isNull())
        m_editor->setTextCursor(hit);
}
