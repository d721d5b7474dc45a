#pragma once

#include <QString>
#include <QWidget>

class FindBar;
class HtmlHighlighter;
class PageTextView;
class QLabel;
class QPushButton;

/// The source of one page: line numbers, HTML colours, find (Ctrl+F, F3, Shift+F3), zoom (Ctrl with
/// the wheel, +, - and 0). Line ends stay what they were; text that the editor could not give back
/// letter by letter is shown but cannot be edited.
class PageEditor final : public QWidget
{
    Q_OBJECT

public:
    explicit PageEditor(QWidget *parent = nullptr);
    ~PageEditor() override;

    /// Shows a page; nothing is modified and nothing can be undone.
    void setPage(const QString &text);
    /// Shows nothing.
    void clear();
    /// The page with its own line ends: exactly what was set as long as nothing was edited. A
    /// page with both CRLF and LF takes the kind it has more of once it is edited; the bar says so.
    [[nodiscard]] QString text() const;

    [[nodiscard]] bool isModified() const;
    /// True once the page was saved; false marks it unsaved (recovered text).
    void setModified(bool modified);

    /// A locked page cannot be edited; a bar says so and offers to unlock it.
    void setLocked(bool locked);
    [[nodiscard]] bool isLocked() const { return m_locked; }
    /// Why the text cannot be edited whoever holds the file (damaged bytes); "" allows it again.
    void setReadOnlyReason(const QString &reason);

Q_SIGNALS:
    void modificationChanged(bool modified);
    void unlockRequested(); ///< *Unlock page* was pressed

private:
    void makeLayout();
    void addAction(const QKeySequence &keys, void (PageEditor::*slot)());
    void openFind();
    void findNext();
    void findPrevious();
    void zoomIn();
    void zoomOut();
    void resetZoom();
    void updateBar();
    void changeEvent(QEvent *event) override;

    PageTextView *m_view;
    HtmlHighlighter *m_highlighter;
    FindBar *m_find;
    QWidget *m_bar;
    QLabel *m_barText;
    QPushButton *m_unlock;

    QString m_loaded; ///< the page as it was set
    QString m_lineEnd;
    bool m_mixedLineEnds = false;
    bool m_editable = true; ///< the view gives back every letter
    bool m_locked = false;
    QString m_reason;
};
