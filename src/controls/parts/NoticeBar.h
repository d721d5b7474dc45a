#pragma once

#include <QWidget>

class QHBoxLayout;
class QLabel;
class QPushButton;

/// A bar above an editor that says something and offers what can be done about it.
class NoticeBar final : public QWidget
{
    Q_OBJECT

public:
    explicit NoticeBar(const QString &objectName, QWidget *parent = nullptr);

    void setText(const QString &text);
    /// One more button, at the end.
    QPushButton *addButton(const QString &objectName, const QString &text);

private:
    QHBoxLayout *m_row;
    QLabel *m_text;
};
