#pragma once

#include <QTextDocument>
#include <QWidget>

class QLabel;
class QLineEdit;
class QTextEdit;

/// Finding within the page that is shown. Goes on at the other end when it reaches one.
class FindInPage final : public QWidget
{
    Q_OBJECT

public:
    explicit FindInPage(QTextEdit *page, QWidget *parent = nullptr);

    /// Shows the bar with the cursor in it.
    void open();
    void findNext();
    void findPrevious();

private:
    void find(QTextDocument::FindFlags flags);
    void textEdited();
    void keyPressEvent(QKeyEvent *event) override;

    QTextEdit *m_page;
    QLineEdit *txtFind;
    QLabel *lblFound;
};
