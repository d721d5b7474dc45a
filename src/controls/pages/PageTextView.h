#pragma once

#include "controls/pages/LongLines.h"
#include "controls/tree/ProjectMime.h"
#include "tools/TextFinder.h"

#include <QPlainTextEdit>

/// A plain text editor for page sources: line numbers in a margin, the current line shown, Enter
/// keeps the indent, Ctrl with the wheel zooms.
class PageTextView final : public QPlainTextEdit
{
    Q_OBJECT

public:
    explicit PageTextView(QWidget *parent = nullptr);

    /// Shows other text; nothing in it is marked or can be undone.
    void showText(const QString &text);
    /// The text with "\n" between its lines; no-break spaces and all else as they are.
    [[nodiscard]] QString plainLines() const;

    /// Marks these places of `plainLines()`; they move along when the text before them changes.
    void markHits(const QList<TextHit> &hits);

    /// While this list is open the keys that choose in it are left to it.
    void setPopup(const QWidget *popup) { m_popup = popup; }

    void zoomBy(int steps);
    void resetZoom();

Q_SIGNALS:
    void nodesDropped(const DraggedNodes &nodes); ///< from the project tree, at the cursor

protected:
    bool canInsertFromMimeData(const QMimeData *source) const override;
    void insertFromMimeData(const QMimeData *source) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    class Margin;
    void paintPlain(const QRect &strip);
    void paintLong(const QTextBlock &line, const QPointF &offset, const QRect &area);
    void paintMargin(const QPaintEvent *event);
    void fitMargin();
    void scrollMargin(const QRect &area, int dy);
    void showMarks();
    void showHits();
    void moveHits(int at, int removed, int added);
    [[nodiscard]] QTextEdit::ExtraSelection currentLine() const;
    [[nodiscard]] QList<QTextEdit::ExtraSelection> visibleHits() const;
    void markHits(int from, int to, QList<QTextEdit::ExtraSelection> &marks) const;
    void breakLine();
    [[nodiscard]] bool isForPopup(const QKeyEvent *event) const;

    QWidget *m_margin;
    const QWidget *m_popup = nullptr;
    LongLines m_longLines;
    QList<TextHit> m_hits;
    qreal m_usualSize;
    bool m_isChangingText = false;
};
