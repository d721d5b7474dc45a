#pragma once

#include <QKeySequence>
#include <QObject>
#include <QString>

#include <functional>

class QAction;
class QPushButton;
class QWidget;

/// One command in a list's context menu, with keys that work in the list. `picture` is the name of
/// an icon, or "".
QAction *addListAction(QWidget *list, const QString &text, QLatin1StringView picture,
                       const QKeySequence &keys, std::function<void()> run);

/// What an author can do with the entries of a list: each command is a button, an entry in the
/// list's context menu and keys, and all three are enabled together.
class ListCommands final : public QObject
{
    Q_OBJECT

public:
    explicit ListCommands(QWidget *list);

    /// `button` is named and captioned; the context menu takes its text and picture, and
    /// the accessible name of a button that has only a picture.
    QAction *add(QPushButton *button, const QKeySequence &keys, std::function<void()> run);

    /// Enables a command, or says why it cannot be done.
    static void offer(QAction *command, const QString &whyNot);

private:
    QWidget *m_list;
};
