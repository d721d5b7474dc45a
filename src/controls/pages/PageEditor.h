#pragma once

#include "controls/pages/LinkCompleter.h"

#include <QString>
#include <QWidget>

class FindBar;
class HtmlHighlighter;
class PageTextView;
class QAction;
class QLabel;
class QPushButton;
struct DraggedNodes;

/// The source of one page: line numbers, HTML colours, find and replace (Ctrl+F, F3, Shift+F3,
/// Ctrl+H), go to line (Ctrl+G), zoom (Ctrl with the wheel, +, - and 0). Line ends stay what they
/// were; text that the editor could not give back letter by letter is shown but cannot be edited.
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

    /// Puts other text in place of the whole, as one step that can be undone; the author stays
    /// where he is.
    void replaceAll(const QString &text);
    /// Marks a place of `text()`, counted with its line ends, and brings it into view.
    void showPlace(qsizetype start, qsizetype length);

    /// Offers pages and places while a reference is typed; `page` is relative to the project
    /// folder.
    void offerLinks(LinkCompleter::Index index);
    void setLinksFrom(const QString &page);
    [[nodiscard]] QString selectedText() const; ///< with "\n" between its lines
    /// Puts text in place of the selection, as one step that can be undone.
    void insertText(const QString &text);

    /// Where the author is in the text.
    struct View
    {
        int line = 0, column = 0, scroll = 0;
    };
    [[nodiscard]] View view() const;
    void setView(const View &view);

    /// A locked page cannot be edited; a bar says so and offers to unlock it.
    void setLocked(bool locked);
    [[nodiscard]] bool isLocked() const { return m_locked; }
    [[nodiscard]] bool isReadOnly() const;
    /// Why the text cannot be edited whoever holds the file (damaged bytes); "" allows it again.
    void setReadOnlyReason(const QString &reason);

    /// The selected text where it lies in one line, else "".
    [[nodiscard]] QString selectedLine() const;

Q_SIGNALS:
    void modificationChanged(bool modified);
    void textChanged();
    void insertLinkRequested();                   ///< Ctrl+K
    void nodesDropped(const DraggedNodes &nodes); ///< from the project tree
    void unlockRequested();                       ///< *Unlock page* was pressed

private:
    void makeLayout();
    void makeActions();
    QAction *addAction(const QString &text, const QKeySequence &keys, void (PageEditor::*slot)());
    void showMenu(const QPoint &place);
    void openFind();
    void openReplace();
    void findNext();
    void findPrevious();
    void goToLine();
    void zoomIn();
    void zoomOut();
    void resetZoom();
    void updateBar();
    void changeEvent(QEvent *event) override;

    PageTextView *m_view;
    HtmlHighlighter *m_highlighter;
    FindBar *m_find;
    LinkCompleter *m_completer = nullptr;
    QWidget *m_bar;
    QLabel *m_barText;
    QPushButton *m_unlock;

    QString m_loaded; ///< the page as it was set
    QString m_lineEnd;
    bool m_mixedLineEnds = false;
    bool m_isLong = false;  ///< some lines have no colours
    bool m_editable = true; ///< the view gives back every letter
    bool m_locked = false;
    QString m_reason;
};
