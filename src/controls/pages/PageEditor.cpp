#include "controls/pages/PageEditor.h"

#include "controls/pages/FindBar.h"
#include "controls/pages/HtmlHighlighter.h"
#include "controls/pages/PageTextView.h"

#include <QAction>
#include <QEvent>
#include <QHBoxLayout>
#include <QInputDialog>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QTextBlock>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

struct LineEnds
{
    qsizetype crlf = 0, lf = 0, cr = 0;
};

LineEnds countLineEnds(const QString &text)
{
    LineEnds ends;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] == u'\n')
            ++ends.lf;
        else if (text[i] == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n')
            ++ends.crlf, ++i;
        else if (text[i] == u'\r')
            ++ends.cr;
    }
    return ends;
}

/// The line end that most lines have.
QString usualLineEnd(const LineEnds &ends)
{
    if (ends.cr > ends.crlf && ends.cr > ends.lf)
        return u"\r"_s;
    return ends.lf > ends.crlf ? u"\n"_s : u"\r\n"_s;
}

qsizetype longestLine(const QString &lines)
{
    qsizetype longest = 0;
    for (const QStringView line : QStringView(lines).split(u'\n'))
        longest = qMax(longest, line.size());
    return longest;
}

} // namespace

PageEditor::PageEditor(QWidget *parent)
    : QWidget(parent)
    , m_view(new PageTextView)
    , m_highlighter(new HtmlHighlighter(m_view->document(), palette()))
    , m_find(new FindBar(m_view))
    , m_bar(new QWidget)
    , m_barText(new QLabel)
    , m_unlock(new QPushButton(tr("&Unlock page")))
    , m_lineEnd(u"\r\n"_s)
{
    m_view->setObjectName(u"txtSource"_s);
    m_view->setAccessibleName(tr("Source of the page"));
    m_barText->setObjectName(u"lblPageLock"_s);
    m_unlock->setObjectName(u"cmdUnlockPage"_s);
    makeLayout();
    makeActions();
    connect(m_view->document(), &QTextDocument::modificationChanged, this,
            &PageEditor::modificationChanged);
    connect(m_view, &QPlainTextEdit::textChanged, this, &PageEditor::textChanged);
    connect(m_view, &PageTextView::nodesDropped, this, &PageEditor::nodesDropped);
    connect(m_unlock, &QPushButton::clicked, this, &PageEditor::unlockRequested);
    setFocusProxy(m_view);
    updateBar();
}

PageEditor::~PageEditor() = default;

void PageEditor::makeLayout()
{
    m_barText->setWordWrap(true);
    m_barText->setTextFormat(Qt::PlainText);
    auto *bar = new QHBoxLayout(m_bar);
    bar->setContentsMargins(0, 0, 0, 0);
    bar->addWidget(m_barText, 1);
    bar->addWidget(m_unlock);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_bar);
    column->addWidget(m_view, 1);
    column->addWidget(m_find);
}

void PageEditor::makeActions()
{
    addAction(tr("&Find..."), QKeySequence::Find, &PageEditor::openFind)
        ->setObjectName(u"actFind"_s);
    addAction(tr("&Replace..."), Qt::CTRL | Qt::Key_H, &PageEditor::openReplace);
    addAction(tr("Find &next"), Qt::Key_F3, &PageEditor::findNext);
    addAction(tr("Find &previous"), Qt::SHIFT | Qt::Key_F3, &PageEditor::findPrevious);
    addAction(tr("&Go to line..."), Qt::CTRL | Qt::Key_G, &PageEditor::goToLine);
    addAction(tr("&Insert link..."), Qt::CTRL | Qt::Key_K, &PageEditor::insertLinkRequested);
    addAction(tr("&Larger letters"), QKeySequence::ZoomIn, &PageEditor::zoomIn);
    addAction(tr("S&maller letters"), QKeySequence::ZoomOut, &PageEditor::zoomOut);
    addAction(tr("Letters as &usual"), Qt::CTRL | Qt::Key_0, &PageEditor::resetZoom);
    m_view->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_view, &QWidget::customContextMenuRequested, this, &PageEditor::showMenu);
}

QAction *PageEditor::addAction(const QString &text, const QKeySequence &keys,
                               void (PageEditor::*slot)())
{
    auto *action = new QAction(text, this);
    action->setShortcut(keys);
    action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    action->setShortcutVisibleInContextMenu(true);
    connect(action, &QAction::triggered, this, slot);
    QWidget::addAction(action);
    return action;
}

void PageEditor::showMenu(const QPoint &place)
{
    QMenu *menu = m_view->createStandardContextMenu(place);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addSeparator();
    menu->addActions(actions());
    menu->popup(m_view->viewport()->mapToGlobal(place));
}

void PageEditor::setPage(const QString &text)
{
    const LineEnds ends = countLineEnds(text);
    m_loaded = text;
    m_lineEnd = usualLineEnd(ends);
    m_mixedLineEnds = (ends.crlf > 0) + (ends.lf > 0) + (ends.cr > 0) > 1;
    m_view->showText(text);
    m_view->document()->setModified(false);

    QString lines = text;
    lines.replace("\r\n"_L1, "\n"_L1);
    if (ends.cr > 0 && !m_mixedLineEnds)
        lines.replace(u'\r', u'\n');
    m_editable = m_view->plainLines() == lines;
    m_isLong = longestLine(lines) > HtmlHighlighter::longestLine;
    updateBar();
}

void PageEditor::clear()
{
    m_reason.clear();
    m_locked = false;
    setPage({});
}

QString PageEditor::text() const
{
    if (!isModified() || !m_editable)
        return m_loaded;
    return m_view->plainLines().replace(u'\n', m_lineEnd);
}

bool PageEditor::isModified() const
{
    return m_view->document()->isModified();
}

void PageEditor::setModified(bool modified)
{
    if (!modified && m_editable && isModified()) {
        m_loaded = text();
        m_mixedLineEnds = false;
        updateBar();
    }
    m_view->document()->setModified(modified);
}

void PageEditor::replaceAll(const QString &text)
{
    const View place = view();
    QTextCursor cursor(m_view->document());
    cursor.select(QTextCursor::Document);
    cursor.insertText(text);
    setView(place);
}

void PageEditor::showPlace(qsizetype start, qsizetype length)
{
    const QString page = text();
    const qsizetype to = qMin(start + length, page.size());
    const auto inView = [&](qsizetype place) {
        const auto before = QStringView(page).first(qMin(place, page.size()));
        return static_cast<int>(before.size() - before.count(u"\r\n"_s));
    };
    QTextCursor cursor(m_view->document());
    cursor.setPosition(inView(start));
    cursor.setPosition(inView(to), QTextCursor::KeepAnchor);
    m_view->setTextCursor(cursor);
    m_view->centerCursor();
    m_view->setFocus();
}

void PageEditor::offerLinks(LinkCompleter::Index index)
{
    m_completer = new LinkCompleter(m_view, std::move(index));
}

void PageEditor::setLinksFrom(const QString &page)
{
    if (m_completer != nullptr)
        m_completer->setPage(page);
}

QString PageEditor::selectedText() const
{
    return m_view->textCursor().selectedText().replace(QChar::ParagraphSeparator, u'\n');
}

void PageEditor::insertText(const QString &text)
{
    if (!m_view->isReadOnly())
        m_view->textCursor().insertText(text);
    m_view->setFocus();
}

PageEditor::View PageEditor::view() const
{
    const QTextCursor cursor = m_view->textCursor();
    return {cursor.blockNumber(), cursor.positionInBlock(), m_view->verticalScrollBar()->value()};
}

void PageEditor::setView(const View &view)
{
    const QTextBlock line = m_view->document()->findBlockByNumber(
        qMin(view.line, m_view->document()->blockCount() - 1));
    QTextCursor cursor(line);
    cursor.setPosition(line.position() + qMin(view.column, line.length() - 1));
    m_view->setTextCursor(cursor);
    m_view->verticalScrollBar()->setValue(view.scroll);
}

void PageEditor::setLocked(bool locked)
{
    m_locked = locked;
    updateBar();
}

bool PageEditor::isReadOnly() const
{
    return m_view->isReadOnly();
}

void PageEditor::setReadOnlyReason(const QString &reason)
{
    m_reason = reason;
    updateBar();
}

void PageEditor::updateBar()
{
    QStringList notices;
    if (m_locked)
        notices.append(tr("This page is locked."));
    if (!m_reason.isEmpty())
        notices.append(m_reason);
    if (!m_editable)
        notices.append(tr("This page holds characters that the editor cannot keep (odd line "
                          "separators). It is shown, but cannot be edited here."));
    else if (m_mixedLineEnds)
        notices.append(tr("The lines of this page end in different ways. Once it is edited, all "
                          "are saved with %1.")
                           .arg(m_lineEnd == "\n"_L1 ? "LF"_L1 : "CR LF"_L1));
    if (m_isLong)
        notices.append(tr("Lines of more than %L1 characters are shown without colours.")
                           .arg(HtmlHighlighter::longestLine));
    m_barText->setText(notices.join(u' '));
    m_bar->setVisible(!notices.isEmpty());
    m_unlock->setVisible(m_locked);
    m_view->setReadOnly(m_locked || !m_editable || !m_reason.isEmpty());
}

void PageEditor::openFind()
{
    m_find->open(false);
}

void PageEditor::openReplace()
{
    m_find->open(true);
}

QString PageEditor::selectedLine() const
{
    const QString chosen = m_view->textCursor().selectedText();
    return chosen.contains(QChar::ParagraphSeparator) ? QString() : chosen;
}

void PageEditor::goToLine()
{
    auto *question = new QInputDialog(this);
    question->setAttribute(Qt::WA_DeleteOnClose);
    question->setWindowTitle(tr("Go to line"));
    question->setLabelText(tr("&Line (1 to %1):").arg(m_view->blockCount()));
    question->setInputMode(QInputDialog::IntInput);
    question->setIntRange(1, m_view->blockCount());
    question->setIntValue(view().line + 1);
    connect(question, &QInputDialog::intValueSelected, this, [this](int line) {
        setView({line - 1, 0, 0});
        m_view->centerCursor();
        m_view->setFocus();
    });
    question->open();
}

void PageEditor::findNext()
{
    m_find->findNext();
}

void PageEditor::findPrevious()
{
    m_find->findPrevious();
}

void PageEditor::zoomIn()
{
    m_view->zoomBy(1);
}

void PageEditor::zoomOut()
{
    m_view->zoomBy(-1);
}

void PageEditor::resetZoom()
{
    m_view->resetZoom();
}

void PageEditor::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        m_highlighter->usePalette(palette());
}
