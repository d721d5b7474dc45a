#pragma once

#include <QWidget>

class QLabel;
class QLineEdit;

/// The filter field above a tree, with what it found.
class FilterBox final : public QWidget
{
    Q_OBJECT

public:
    explicit FilterBox(QWidget *parent = nullptr);

    [[nodiscard]] QString text() const; ///< without blanks at its ends
    void clear();
    void enter(); ///< takes the focus, with its text marked
    /// Says what was found; screen readers hear it. "" hides it.
    void say(const QString &what);

Q_SIGNALS:
    void textChanged(const QString &text);
    void left(); ///< Down, Enter, or Escape in the empty field: on to the tree

private:
    bool eventFilter(QObject *watched, QEvent *event) override;

    QLineEdit *txtFilter;
    QLabel *lblMatches;
};
