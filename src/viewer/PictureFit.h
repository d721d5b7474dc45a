#pragma once

#include <QObject>

class QTextEdit;

/// Keeps the pictures of a page within its width: wide ones are shown smaller, never larger than
/// they are or than the page says.
class PictureFit final : public QObject
{
    Q_OBJECT

public:
    explicit PictureFit(QTextEdit *page);

    /// After another page was shown.
    void fit();

private:
    bool eventFilter(QObject *watched, QEvent *event) override;

    QTextEdit *m_page;
};
