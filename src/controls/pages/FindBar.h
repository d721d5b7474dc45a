#pragma once

#include <QTextDocument>
#include <QWidget>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;

/// Finding text within the page of one editor. Goes on at the other end when it reaches one.
class FindBar final : public QWidget
{
    Q_OBJECT

public:
    FindBar(QPlainTextEdit *editor, QWidget *parent = nullptr);

    /// Shows the bar with the selected text in it and the cursor behind.
    void open();
    void findNext();
    void findPrevious();

private:
    void keyPressEvent(QKeyEvent *event) override;
    void find(QTextDocument::FindFlags direction);
    void findFromHere();
    void close();

    QPlainTextEdit *m_editor;
    QLineEdit *m_text;
    QCheckBox *m_matchCase;
    QLabel *m_message;
};
