#pragma once

#include <QPlainTextEdit>

/// A plain text editor for page sources: line numbers in a margin, the current line shown, Enter
/// keeps the indent, Ctrl with the wheel zooms.
class PageTextView final : public QPlainTextEdit
{
    Q_OBJECT

public:
    explicit PageTextView(QWidget *parent = nullptr);

    /// The text with "\n" between its lines; no-break spaces and all else as they are.
    [[nodiscard]] QString plainLines() const;

    void zoomBy(int steps);
    void resetZoom();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    class Margin;
    void paintMargin(const QPaintEvent *event);
    void fitMargin();
    void scrollMargin(const QRect &area, int dy);
    void showCurrentLine();
    void breakLine();

    QWidget *m_margin;
    qreal m_usualSize;
};
