#pragma once

#include "tools/TextFinder.h"

#include <QTimer>
#include <QWidget>

class PageTextView;
class QAbstractButton;
class QCheckBox;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QPushButton;

/// Finding and replacing within the page of one editor: all hits are marked and counted while the
/// author types. Goes on at the other end when it reaches one.
class FindBar final : public QWidget
{
    Q_OBJECT

public:
    explicit FindBar(PageTextView *editor, QWidget *parent = nullptr);

    /// Shows the bar, with the fields for replacing if wanted, the selected text in it and the
    /// cursor behind.
    void open(bool replacing);
    void findNext();
    void findPrevious();

private:
    QWidget *findRow();
    QWidget *replaceRow();
    QWidget *optionRow();
    QAbstractButton *button(QHBoxLayout *row, const char *name, const QString &text,
                            void (FindBar::*slot)());
    QCheckBox *option(QHBoxLayout *row, const char *name, const QString &text);
    void keyPressEvent(QKeyEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

    void useOptions();
    void findAll();
    void textEdited();
    void find(bool forward, int from);
    void select(qsizetype number);
    void showCount();
    void replaceOne();
    void replaceAll();
    void close();
    [[nodiscard]] qsizetype selected() const; ///< number of the selected hit, -1 for none

    PageTextView *m_editor;
    QLineEdit *m_text, *m_replacement;
    QCheckBox *m_matchCase, *m_wholeWord, *m_isPattern;
    QLabel *m_count, *m_message;
    QAbstractButton *m_replace = nullptr, *m_replaceAll = nullptr;
    QWidget *m_replaceRow;
    TextFinder m_finder;
    TextFinder::Found m_found;
    bool m_outdated = true; ///< the page was edited since
    QTimer m_soon;
};
