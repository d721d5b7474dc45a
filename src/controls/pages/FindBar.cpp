#include "controls/pages/FindBar.h"

#include "controls/pages/PageTextView.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
constexpr int patience = 200; // milliseconds after the last key before hits are counted again
}

FindBar::FindBar(PageTextView *editor, QWidget *parent)
    : QWidget(parent)
    , m_editor(editor)
    , m_text(new QLineEdit)
    , m_replacement(new QLineEdit)
    , m_count(new QLabel)
    , m_message(new QLabel)
    , m_replaceRow(replaceRow())
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->addWidget(findRow());
    column->addWidget(m_replaceRow);
    column->addWidget(optionRow());
    m_soon.setSingleShot(true);
    m_soon.setInterval(patience);
    connect(&m_soon, &QTimer::timeout, this, &FindBar::findAll);
    connect(m_text, &QLineEdit::textChanged, this, &FindBar::useOptions);
    connect(m_editor->document(), &QTextDocument::contentsChange, this, &FindBar::textEdited);
    connect(m_editor, &QPlainTextEdit::cursorPositionChanged, this, &FindBar::showCount);
    m_editor->installEventFilter(this);
    hide();
}

QWidget *FindBar::findRow()
{
    auto *widget = new QWidget;
    auto *row = new QHBoxLayout(widget);
    row->setContentsMargins({});
    auto *label = new QLabel(tr("&Find:"));
    label->setBuddy(m_text);
    m_text->setObjectName(u"txtFind"_s);
    m_text->setAccessibleName(tr("Text to find in this page"));
    m_text->setClearButtonEnabled(true);
    m_count->setObjectName(u"lblFindCount"_s);
    row->addWidget(label);
    row->addWidget(m_text, 1);
    row->addWidget(m_count);
    button(row, "cmdFindNext", tr("&Next"), &FindBar::findNext)->setToolTip(tr("Next hit (F3)"));
    button(row, "cmdFindPrevious", tr("Pre&vious"), &FindBar::findPrevious)
        ->setToolTip(tr("Previous hit (Shift+F3)"));
    button(row, "cmdFindClose", tr("Close"), &FindBar::close)->setToolTip(tr("Close (Esc)"));
    return widget;
}

QWidget *FindBar::replaceRow()
{
    auto *widget = new QWidget;
    auto *row = new QHBoxLayout(widget);
    row->setContentsMargins({});
    auto *label = new QLabel(tr("Replace with:"));
    label->setBuddy(m_replacement);
    m_replacement->setObjectName(u"txtReplace"_s);
    m_replacement->setAccessibleName(tr("Text that takes the place of what is found"));
    row->addWidget(label);
    row->addWidget(m_replacement, 1);
    m_replace = button(row, "cmdReplace", tr("Replace"), &FindBar::replaceOne);
    m_replaceAll = button(row, "cmdReplaceAll", tr("Replace &all"), &FindBar::replaceAll);
    return widget;
}

QWidget *FindBar::optionRow()
{
    auto *widget = new QWidget;
    auto *row = new QHBoxLayout(widget);
    row->setContentsMargins({});
    m_matchCase = option(row, "chkMatchCase", tr("Match &case"));
    m_wholeWord = option(row, "chkWholeWord", tr("Whole &word"));
    m_isPattern = option(row, "chkPattern", tr("Regular e&xpression"));
    m_isPattern->setToolTip(
        tr("In the replacement, \\1 to \\9 stand for what the groups of the expression found."));
    m_message->setObjectName(u"lblFind"_s);
    m_message->setTextFormat(Qt::PlainText);
    m_message->setWordWrap(true);
    row->addWidget(m_message, 1);
    return widget;
}

QAbstractButton *FindBar::button(QHBoxLayout *row, const char *name, const QString &text,
                                 void (FindBar::*slot)())
{
    auto *made = new QPushButton(text);
    made->setObjectName(QLatin1StringView(name));
    made->setAutoDefault(false);
    connect(made, &QPushButton::clicked, this, slot);
    row->addWidget(made);
    return made;
}

QCheckBox *FindBar::option(QHBoxLayout *row, const char *name, const QString &text)
{
    auto *made = new QCheckBox(text);
    made->setObjectName(QLatin1StringView(name));
    connect(made, &QCheckBox::toggled, this, &FindBar::useOptions);
    row->addWidget(made);
    return made;
}

void FindBar::open(bool replacing)
{
    const QString chosen = m_editor->textCursor().selectedText();
    m_replaceRow->setVisible(replacing);
    show();
    if (!chosen.isEmpty() && !chosen.contains(QChar::ParagraphSeparator))
        m_text->setText(chosen);
    findAll();
    m_text->selectAll();
    m_text->setFocus();
}

void FindBar::close()
{
    hide();
    m_editor->setFocus();
}

void FindBar::hideEvent(QHideEvent *)
{
    m_soon.stop();
    m_editor->markHits({});
    m_outdated = true;
}

// A page that is locked or unlocked allows less or more.
bool FindBar::eventFilter(QObject *, QEvent *event)
{
    if (event->type() == QEvent::ReadOnlyChange)
        showCount();
    return false;
}

void FindBar::keyPressEvent(QKeyEvent *event)
{
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    auto *button = qobject_cast<QPushButton *>(focusWidget());
    if (event->key() == Qt::Key_Escape)
        close();
    else if (enter && button != nullptr)
        button->click();
    else if (enter && m_replacement->hasFocus())
        replaceOne();
    else if (enter && event->modifiers() & Qt::ShiftModifier)
        findPrevious();
    else if (enter)
        findNext();
    else
        QWidget::keyPressEvent(event);
}

// While the author types, the hit grows where it is.
void FindBar::useOptions()
{
    m_finder = TextFinder({m_text->text(), m_matchCase->isChecked(), m_wholeWord->isChecked(),
                           m_isPattern->isChecked()});
    findAll();
    if (isVisible() && !m_finder.isIdle())
        find(true, m_editor->textCursor().selectionStart());
}

void FindBar::findAll()
{
    m_soon.stop();
    m_outdated = false;
    m_found = m_finder.in(m_editor->plainLines());
    m_editor->markHits(isVisible() ? m_found.hits : QList<TextHit>());
    const QString problem = m_finder.problem();
    m_message->setText(!problem.isEmpty() ? problem
                       : m_found.complete ? QString()
                                          : tr("This takes too long: not all of the page was "
                                               "searched."));
    showCount();
}

void FindBar::textEdited()
{
    m_outdated = true;
    if (isVisible())
        m_soon.start();
}

void FindBar::findNext()
{
    find(true, m_editor->textCursor().selectionEnd());
}

void FindBar::findPrevious()
{
    find(false, m_editor->textCursor().selectionStart());
}

void FindBar::find(bool forward, int from)
{
    if (m_outdated)
        findAll();
    if (m_finder.isIdle())
        return;
    const QList<TextHit> &hits = m_found.hits;
    if (hits.isEmpty()) {
        m_message->setText(m_found.complete ? tr("Not found") : m_message->text());
        return;
    }
    const auto next = std::partition_point(hits.cbegin(), hits.cend(), [&](const TextHit &hit) {
        return forward ? hit.start < from : hit.start + hit.length <= from;
    });
    const qsizetype at = next - hits.cbegin() - (forward ? 0 : 1);
    const bool wraps = at < 0 || at >= hits.size();
    m_message->setText(wraps ? tr("Went on at the other end") : QString());
    select(wraps ? (forward ? 0 : hits.size() - 1) : at);
}

void FindBar::select(qsizetype number)
{
    const TextHit &hit = m_found.hits[number];
    QTextCursor cursor(m_editor->document());
    cursor.setPosition(static_cast<int>(hit.start));
    cursor.setPosition(static_cast<int>(hit.start + hit.length), QTextCursor::KeepAnchor);
    m_editor->setTextCursor(cursor);
}

qsizetype FindBar::selected() const
{
    const QTextCursor cursor = m_editor->textCursor();
    const TextHit here{cursor.selectionStart(), cursor.selectionEnd() - cursor.selectionStart()};
    const auto at =
        std::lower_bound(m_found.hits.cbegin(), m_found.hits.cend(), here,
                         [](const TextHit &a, const TextHit &b) { return a.start < b.start; });
    return at != m_found.hits.cend() && *at == here ? at - m_found.hits.cbegin() : -1;
}

void FindBar::showCount()
{
    if (!isVisible() || m_outdated)
        return;
    const auto all = m_found.hits.size();
    const qsizetype current = selected();
    m_count->setText(m_finder.isIdle() ? QString()
                     : current >= 0    ? tr("%1 of %2").arg(current + 1).arg(all)
                     : all == 1        ? tr("1 hit")
                                       : tr("%1 hits").arg(all));
    const bool can = all > 0 && !m_editor->isReadOnly();
    for (QAbstractButton *button : {m_replace, m_replaceAll}) {
        button->setEnabled(can);
        button->setToolTip(m_editor->isReadOnly() ? tr("The page cannot be edited")
                           : can                  ? QString()
                                                  : tr("Nothing was found"));
    }
}

void FindBar::replaceOne()
{
    if (m_outdated)
        findAll();
    if (const qsizetype number = selected(); number >= 0 && !m_editor->isReadOnly()) {
        const QString now = m_finder.replacementOf(m_editor->plainLines(), m_found.hits[number],
                                                   m_replacement->text());
        m_editor->textCursor().insertText(now);
    }
    findNext();
}

// All from the first hit to the last is put in anew, as one step.
void FindBar::replaceAll()
{
    findAll();
    if (m_found.hits.isEmpty() || m_editor->isReadOnly())
        return;
    const QList<TextHit> hits = m_found.hits;
    const QString page = m_editor->plainLines();
    const QString now = m_finder.replaced(page, hits, m_replacement->text());
    const qsizetype from = hits.constFirst().start;
    const qsizetype behind = page.size() - hits.constLast().start - hits.constLast().length;
    QTextCursor cursor(m_editor->document());
    cursor.setPosition(static_cast<int>(from));
    cursor.setPosition(static_cast<int>(page.size() - behind), QTextCursor::KeepAnchor);
    cursor.insertText(now.sliced(from, now.size() - behind - from));
    findAll();
    m_message->setText(hits.size() == 1 ? tr("1 hit was replaced")
                                        : tr("%1 hits were replaced").arg(hits.size()));
}
