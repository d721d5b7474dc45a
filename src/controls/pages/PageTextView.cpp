#include "controls/pages/PageTextView.h"

#include <QFontDatabase>
#include <QMimeData>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextLayout>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr int marginSpace = 6; // pixels on each side of a line number
constexpr qreal smallest = 5;
constexpr qreal largest = 60;
constexpr qsizetype mostMarks = 1000; // of hits, at a time

QColor mixed(const QColor &a, const QColor &b, qreal share)
{
    const auto mix = [share](int x, int y) { return qRound(x + (y - x) * share); };
    return {mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue())};
}

} // namespace

class PageTextView::Margin final : public QWidget
{
public:
    explicit Margin(PageTextView *view)
        : QWidget(view)
        , m_view(view)
    {
    }

private:
    void paintEvent(QPaintEvent *event) override { m_view->paintMargin(event); }

    PageTextView *m_view;
};

PageTextView::PageTextView(QWidget *parent)
    : QPlainTextEdit(parent)
    , m_margin(new Margin(this))
{
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_usualSize = font().pointSizeF();
    setLineWrapMode(NoWrap);
    setTabStopDistance(fontMetrics().horizontalAdvance(u' ') * 4);
    connect(this, &QPlainTextEdit::blockCountChanged, this, &PageTextView::fitMargin);
    connect(this, &QPlainTextEdit::updateRequest, this, &PageTextView::scrollMargin);
    connect(this, &QPlainTextEdit::cursorPositionChanged, this, &PageTextView::showMarks);
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, &PageTextView::showMarks);
    connect(horizontalScrollBar(), &QScrollBar::valueChanged, this, &PageTextView::showHits);
    connect(document(), &QTextDocument::contentsChange, this, &PageTextView::moveHits);
    fitMargin();
    showMarks();
}

// A document that is emptied puts the cursors aside that it had before and takes them back then: a
// mark that went meanwhile would be written to after its death.
void PageTextView::showText(const QString &text)
{
    m_hits.clear();
    setExtraSelections({});
    {
        const QScopedValueRollback changing(m_isChangingText, true);
        setPlainText(text);
    }
    showMarks();
}

// QPlainTextEdit::toPlainText() would turn no-break spaces into blanks.
QString PageTextView::plainLines() const
{
    return document()->toRawText().replace(QChar::ParagraphSeparator, u'\n');
}

void PageTextView::zoomBy(int steps)
{
    QFont zoomed = font();
    zoomed.setPointSizeF(qBound(smallest, zoomed.pointSizeF() + steps, largest));
    setFont(zoomed);
}

void PageTextView::resetZoom()
{
    zoomBy(qRound(m_usualSize - font().pointSizeF()));
}

bool PageTextView::canInsertFromMimeData(const QMimeData *source) const
{
    return source->hasFormat(projectMimeType) || QPlainTextEdit::canInsertFromMimeData(source);
}

void PageTextView::insertFromMimeData(const QMimeData *source)
{
    if (source->hasFormat(projectMimeType))
        Q_EMIT nodesDropped(nodesIn(source));
    else
        QPlainTextEdit::insertFromMimeData(source);
}

void PageTextView::keyPressEvent(QKeyEvent *event)
{
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isForPopup(event))
        event->ignore();
    else if (enter && !isReadOnly() && !(event->modifiers() & ~Qt::KeypadModifier))
        breakLine();
    else
        QPlainTextEdit::keyPressEvent(event);
}

bool PageTextView::isForPopup(const QKeyEvent *event) const
{
    if (m_popup == nullptr || !m_popup->isVisible())
        return false;
    constexpr std::array choosing{Qt::Key_Return, Qt::Key_Enter, Qt::Key_Tab, Qt::Key_Escape};
    return std::find(choosing.begin(), choosing.end(), event->key()) != choosing.end();
}

void PageTextView::breakLine()
{
    QTextCursor cursor = textCursor();
    cursor.setPosition(cursor.selectionStart());
    const QString before = cursor.block().text().first(cursor.positionInBlock());
    cursor = textCursor(); // with its selection, which the new line replaces
    qsizetype indent = 0;
    while (indent < before.size() && (before[indent] == u' ' || before[indent] == u'\t'))
        ++indent;
    cursor.beginEditBlock();
    cursor.insertBlock();
    cursor.insertText(before.first(indent));
    cursor.endEditBlock();
    setTextCursor(cursor);
    ensureCursorVisible();
}

// Long lines are drawn here, what lies between them by the editor.
void PageTextView::paintEvent(QPaintEvent *event)
{
    const QRect area = event->rect();
    QRect plain = area;
    const QTextBlock first = firstVisibleBlock();
    QTextBlock last = first;
    for (QTextBlock line = first; line.isValid(); line = line.next()) {
        const QRectF place = blockBoundingGeometry(line).translated(contentOffset());
        if (place.top() > viewport()->rect().bottom())
            break;
        last = line;
        const int top = qRound(place.top()), below = qRound(place.bottom());
        if (top > area.bottom() || below <= area.top() || !LongLines::canPaint(line))
            continue;
        plain.setBottom(top - 1);
        paintPlain(plain);
        paintLong(line, place.topLeft(), area);
        plain = QRect(QPoint(area.left(), below), area.bottomRight());
    }
    paintPlain(plain);
    m_longLines.keep(first, last);
}

void PageTextView::paintPlain(const QRect &strip)
{
    if (strip.isEmpty())
        return;
    QPaintEvent event(strip);
    QPlainTextEdit::paintEvent(&event);
}

void PageTextView::paintLong(const QTextBlock &line, const QPointF &offset, const QRect &area)
{
    QPainter painter(viewport());
    painter.setClipRect(area);
    const auto context = getPaintContext();
    LongLines::paint(painter, line, offset, area, context);
    const bool hasCursor =
        textInteractionFlags().testAnyFlags(Qt::TextEditable | Qt::TextSelectableByKeyboard);
    const int cursor = context.cursorPosition - line.position();
    if (hasCursor && cursor >= 0 && cursor < line.length())
        line.layout()->drawCursor(&painter, offset, cursor, cursorWidth());
}

void PageTextView::wheelEvent(QWheelEvent *event)
{
    if (event->modifiers() & Qt::ControlModifier)
        zoomBy(event->angleDelta().y() > 0 ? 1 : -1);
    else
        QPlainTextEdit::wheelEvent(event);
}

void PageTextView::resizeEvent(QResizeEvent *event)
{
    QPlainTextEdit::resizeEvent(event);
    fitMargin();
    showHits();
}

void PageTextView::changeEvent(QEvent *event)
{
    QPlainTextEdit::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        setTabStopDistance(fontMetrics().horizontalAdvance(u' ') * 4);
        fitMargin();
    } else if (event->type() == QEvent::PaletteChange) {
        showMarks();
    }
}

void PageTextView::fitMargin()
{
    const qsizetype digits = qMax<qsizetype>(3, QString::number(blockCount()).size());
    const int width =
        fontMetrics().horizontalAdvance(u'9') * static_cast<int>(digits) + 2 * marginSpace;
    const QRect inside = contentsRect();
    const bool left = layoutDirection() == Qt::LeftToRight;
    setViewportMargins(left ? width : 0, 0, left ? 0 : width, 0);
    m_margin->setGeometry(left ? inside.left() : inside.right() - width + 1, inside.top(), width,
                          inside.height());
}

void PageTextView::scrollMargin(const QRect &area, int dy)
{
    if (dy != 0)
        m_margin->scroll(0, dy);
    else
        m_margin->update(0, area.y(), m_margin->width(), area.height());
}

void PageTextView::paintMargin(const QPaintEvent *event)
{
    QPainter painter(m_margin);
    painter.setFont(font());
    painter.fillRect(event->rect(), palette().alternateBase());
    const QColor faint = palette().color(QPalette::PlaceholderText);
    const int current = textCursor().blockNumber();
    QRectF line;
    for (QTextBlock block = firstVisibleBlock(); block.isValid(); block = block.next()) {
        line = blockBoundingGeometry(block).translated(contentOffset());
        if (line.top() > event->rect().bottom())
            break;
        painter.setPen(block.blockNumber() == current ? palette().color(QPalette::Text) : faint);
        painter.drawText(
            QRectF(0, line.top(), m_margin->width() - marginSpace, fontMetrics().height()),
            Qt::AlignRight | Qt::AlignVCenter, QString::number(block.blockNumber() + 1));
    }
}

void PageTextView::markHits(const QList<TextHit> &hits)
{
    m_hits = hits;
    showMarks();
}

void PageTextView::moveHits(int at, int removed, int added)
{
    if (m_hits.isEmpty() || removed == added)
        return;
    const auto first = std::partition_point(m_hits.begin(), m_hits.end(), [at](const TextHit &hit) {
        return hit.start + hit.length <= at;
    });
    const auto last = std::partition_point(
        first, m_hits.end(), [end = at + removed](const TextHit &hit) { return hit.start < end; });
    for (auto hit = last; hit != m_hits.end(); ++hit)
        hit->start += added - removed;
    m_hits.erase(first, last);
}

void PageTextView::showMarks()
{
    if (m_isChangingText)
        return;
    setExtraSelections(QList{currentLine()} + visibleHits());
    m_margin->update();
}

void PageTextView::showHits()
{
    if (!m_hits.isEmpty())
        showMarks();
}

QTextEdit::ExtraSelection PageTextView::currentLine() const
{
    QTextEdit::ExtraSelection line;
    line.format.setBackground(
        mixed(palette().color(QPalette::Base), palette().color(QPalette::Highlight), 0.12));
    line.format.setProperty(QTextFormat::FullWidthSelection, true);
    line.cursor = textCursor();
    line.cursor.clearSelection();
    return line;
}

// Only those that can be seen: thousands of marks would make every key slow.
QList<QTextEdit::ExtraSelection> PageTextView::visibleHits() const
{
    QList<QTextEdit::ExtraSelection> marks;
    if (m_hits.isEmpty())
        return marks;
    const qreal left = -contentOffset().x();
    const int bottom = cursorForPosition(viewport()->rect().bottomLeft()).position();
    for (QTextBlock line = firstVisibleBlock(); line.isValid() && line.position() <= bottom;
         line = line.next()) {
        const auto seen = LongLines::seenOf(line, left, left + viewport()->width());
        markHits(line.position() + seen.from, line.position() + seen.to, marks);
    }
    return marks;
}

/// Adds marks for the hits between two places of the text that have none yet.
void PageTextView::markHits(int from, int to, QList<QTextEdit::ExtraSelection> &marks) const
{
    if (!marks.isEmpty())
        from = qMax(from, marks.constLast().cursor.selectionEnd());
    QTextEdit::ExtraSelection mark;
    mark.format.setBackground(
        mixed(palette().color(QPalette::Base), palette().color(QPalette::Link), 0.35));
    mark.cursor = QTextCursor(document());
    auto hit = std::partition_point(m_hits.cbegin(), m_hits.cend(), [from](const TextHit &earlier) {
        return earlier.start + earlier.length <= from;
    });
    for (; hit != m_hits.cend() && hit->start <= to && marks.size() < mostMarks; ++hit) {
        mark.cursor.setPosition(static_cast<int>(hit->start));
        mark.cursor.setPosition(static_cast<int>(hit->start + hit->length),
                                QTextCursor::KeepAnchor);
        marks.append(mark);
    }
}
