#include "controls/pages/LongLines.h"

#include <QPainter>

#include <algorithm>

namespace {

using Selection = QAbstractTextDocumentLayout::Selection;

using Stretch = LongLines::Stretch;

bool runsLeft(QChar c)
{
    constexpr char16_t firstThatMay = 0x590;
    if (c.unicode() < firstThatMay)
        return false;
    switch (c.direction()) {
    case QChar::DirL:
    case QChar::DirON:
    case QChar::DirEN:
    case QChar::DirES:
    case QChar::DirET:
    case QChar::DirCS:
    case QChar::DirNSM:
    case QChar::DirB:
    case QChar::DirS:
    case QChar::DirWS:
        return c.isSurrogate(); // the letter is not known; some such scripts run left
    default:
        return true;
    }
}

class Row
{
public:
    Row(QPainter &painter, const QTextBlock &block, const QPointF &offset, const QRectF &area)
        : m_painter(painter)
        , m_block(block)
        , m_line(block.layout()->lineAt(0))
        , m_offset(offset)
        , m_row(area.left(), offset.y() + m_line.y(), area.width(), m_line.height())
        , m_seen(LongLines::seenOf(block, area.left() - offset.x(), area.right() - offset.x()))
    {
    }

    void fill(const Selection &selection)
    {
        const QBrush brush = selection.format.background();
        if (brush.style() != Qt::NoBrush)
            m_painter.fillRect(placeOf(selection), brush);
    }

    /// The text in the colours of its formats.
    void drawText(const QColor &usual)
    {
        const auto *colours = static_cast<const LineColours *>(m_block.userData());
        const QList<QTextLayout::FormatRange> ranges =
            colours != nullptr ? colours->ranges : m_block.layout()->formats();
        int at = m_seen.from;
        for (const QTextLayout::FormatRange &range : ranges) {
            const Stretch coloured =
                Stretch{range.start, range.start + range.length}.in({at, m_seen.to});
            if (coloured.isEmpty())
                continue;
            draw({at, coloured.from}, usual);
            const QBrush brush = range.format.foreground();
            draw(coloured, brush.style() == Qt::NoBrush ? usual : brush.color());
            at = coloured.to;
        }
        draw({at, m_seen.to}, usual);
    }

    /// Selected text, in its own colour over what was drawn there.
    void drawSelected(const Selection &selection)
    {
        const QBrush brush = selection.format.foreground();
        if (brush.style() == Qt::NoBrush)
            return;
        m_painter.save();
        m_painter.setClipRect(placeOf(selection), Qt::IntersectClip);
        fill(selection);
        draw(m_seen, brush.color());
        m_painter.restore();
    }

private:
    [[nodiscard]] Stretch rangeOf(const Selection &selection) const
    {
        return {selection.cursor.selectionStart() - m_block.position(),
                selection.cursor.selectionEnd() - m_block.position()};
    }

    /// Where a selection lies in the row; empty where it does not.
    [[nodiscard]] QRectF placeOf(const Selection &selection) const
    {
        const bool full = selection.format.boolProperty(QTextFormat::FullWidthSelection);
        if (full && !selection.cursor.hasSelection())
            return m_block.contains(selection.cursor.position()) ? m_row : QRectF();
        const Stretch range = rangeOf(selection);
        const Stretch seen = range.in(m_seen);
        if (seen.isEmpty())
            return {};
        QRectF place = m_row;
        place.setLeft(m_offset.x() + m_line.cursorToX(seen.from));
        if (!full || range.to < m_block.length())
            place.setRight(m_offset.x() + m_line.cursorToX(seen.to));
        return place.toAlignedRect();
    }

    void draw(const Stretch &stretch, const QColor &colour)
    {
        if (stretch.isEmpty())
            return;
        m_painter.setPen(colour);
        for (const QGlyphRun &run : m_line.glyphRuns(stretch.from, stretch.to - stretch.from))
            m_painter.drawGlyphRun(m_offset, run);
    }

    QPainter &m_painter;
    QTextBlock m_block;
    QTextLine m_line;
    QPointF m_offset;
    QRectF m_row;
    Stretch m_seen;
};

} // namespace

bool LongLines::canPaint(const QTextBlock &line)
{
    if (line.length() <= shortest)
        return false;
    const QTextLayout &layout = *line.layout();
    if (layout.lineCount() != 1 || !layout.preeditAreaText().isEmpty()
        || layout.textOption().textDirection() == Qt::RightToLeft)
        return false;
    return isPlain(line.text());
}

bool LongLines::isPlain(QStringView text)
{
    return text.size() >= shortest && std::none_of(text.cbegin(), text.cend(), runsLeft);
}

LongLines::Stretch LongLines::seenOf(const QTextBlock &line, qreal left, qreal right)
{
    const Stretch all{0, line.length() - 1};
    if (!canPaint(line))
        return all;
    constexpr int overhang = 2; // a letter may reach into the place of the next one
    const QTextLine row = line.layout()->lineAt(0);
    return Stretch{row.xToCursor(left) - overhang, row.xToCursor(right) + overhang}.in(all);
}

void LongLines::paint(QPainter &painter, const QTextBlock &line, const QPointF &offset,
                      const QRectF &area, const QAbstractTextDocumentLayout::PaintContext &context)
{
    Row row(painter, line, offset, area);
    for (const Selection &selection : context.selections)
        row.fill(selection);
    row.drawText(context.palette.color(QPalette::Text));
    for (const Selection &selection : context.selections)
        row.drawSelected(selection);
}

void LongLines::keep(const QTextBlock &first, const QTextBlock &last)
{
    const QTextDocument *document = first.document();
    for (int number = m_first; number <= m_last; ++number) {
        const QTextBlock line = document->findBlockByNumber(number);
        const bool isSeen = number >= first.blockNumber() && number <= last.blockNumber();
        if (!isSeen && line.isValid() && line.layout()->cacheEnabled()) {
            line.layout()->setCacheEnabled(false);
            line.layout()->clearLayout();
        }
    }
    for (QTextBlock line = first; line.isValid(); line = line.next()) {
        if (line.length() > shortest)
            line.layout()->setCacheEnabled(true);
        if (line == last)
            break;
    }
    m_first = first.blockNumber();
    m_last = last.blockNumber();
}
