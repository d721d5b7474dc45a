#pragma once

#include <QAbstractTextDocumentLayout>
#include <QTextBlock>
#include <QTextLayout>

class QPainter;

/// The colours of a long line. Formats in its layout would cut the line into hundreds of pieces
/// that are shaped one by one at every key; here they only guide the pen.
class LineColours final : public QTextBlockUserData
{
public:
    explicit LineColours(const QList<QTextLayout::FormatRange> &coloured)
        : ranges(coloured)
    {
    }

    const QList<QTextLayout::FormatRange> ranges; ///< in order, without overlaps
};

/// Long lines of a source. A text layout draws a line as a whole, far beyond both edges of the
/// view, and shapes it anew for that; here what was shaped is kept while the line is seen, and only
/// what lies in view is drawn. The layout itself stays the document's own.
class LongLines
{
public:
    static constexpr int shortest = 300; ///< characters

    /// Whether a line is long and runs from left to right.
    [[nodiscard]] static bool isPlain(QStringView text);
    /// Whether `paint` can draw the line: one like that in which no input method is at work.
    [[nodiscard]] static bool canPaint(const QTextBlock &line);

    /// Characters of a line, from one to before another.
    struct Stretch
    {
        int from = 0, to = 0;

        [[nodiscard]] bool isEmpty() const { return from >= to; }
        [[nodiscard]] Stretch in(const Stretch &other) const
        {
            return {qMax(from, other.from), qMin(to, other.to)};
        }
    };

    /// What of a line lies between two places counted from its left end: all of it if `paint`
    /// cannot draw it.
    [[nodiscard]] static Stretch seenOf(const QTextBlock &line, qreal left, qreal right);

    /// Draws the part of the line that lies in `area`, with its colours and marks; `offset`
    /// is where its block begins.
    static void paint(QPainter &painter, const QTextBlock &line, const QPointF &offset,
                      const QRectF &area, const QAbstractTextDocumentLayout::PaintContext &context);

    /// Keeps what is shaped of the long lines among these, and lets go of those shown before.
    void keep(const QTextBlock &first, const QTextBlock &last);

private:
    int m_first = 0, m_last = -1; ///< numbers of the lines shown before
};
