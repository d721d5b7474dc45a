#include "controls/pages/PageEditor.h"

#include "controls/pages/FindBar.h"
#include "controls/pages/HtmlHighlighter.h"
#include "controls/pages/PageTextView.h"

#include <QAction>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
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
    addAction(QKeySequence::Find, &PageEditor::openFind);
    addAction(Qt::Key_F3, &PageEditor::findNext);
    addAction(Qt::SHIFT | Qt::Key_F3, &PageEditor::findPrevious);
    addAction(QKeySequence::ZoomIn, &PageEditor::zoomIn);
    addAction(QKeySequence::ZoomOut, &PageEditor::zoomOut);
    addAction(Qt::CTRL | Qt::Key_0, &PageEditor::resetZoom);
    connect(m_view->document(), &QTextDocument::modificationChanged, this,
            &PageEditor::modificationChanged);
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

void PageEditor::addAction(const QKeySequence &keys, void (PageEditor::*slot)())
{
    auto *action = new QAction(this);
    action->setShortcut(keys);
    action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    connect(action, &QAction::triggered, this, slot);
    QWidget::addAction(action);
}

void PageEditor::setPage(const QString &text)
{
    const LineEnds ends = countLineEnds(text);
    m_loaded = text;
    m_lineEnd = usualLineEnd(ends);
    m_mixedLineEnds = (ends.crlf > 0) + (ends.lf > 0) + (ends.cr > 0) > 1;
    m_view->setPlainText(text);
    m_view->document()->setModified(false);

    QString lines = text;
    lines.replace("\r\n"_L1, "\n"_L1);
    if (ends.cr > 0 && !m_mixedLineEnds)
        lines.replace(u'\r', u'\n');
    m_editable = m_view->plainLines() == lines;
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

void PageEditor::setLocked(bool locked)
{
    m_locked = locked;
    updateBar();
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
    m_barText->setText(notices.join(u' '));
    m_bar->setVisible(!notices.isEmpty());
    m_unlock->setVisible(m_locked);
    m_view->setReadOnly(m_locked || !m_editable || !m_reason.isEmpty());
}

void PageEditor::openFind()
{
    m_find->open();
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
