#pragma once

#include <QLocalServer>
#include <QObject>

class QLocalSocket;

/// Announces a window of this program to our other programs, as long as this object lives.
class WindowAnnouncer final : public QObject
{
    Q_OBJECT

public:
    WindowAnnouncer(const QString &className, const QString &caption, QObject *parent = nullptr);

    /// False when the system let it make no socket: the window works but will not be found.
    [[nodiscard]] bool isListening() const { return m_server.isListening(); }

Q_SIGNALS:
    /// Another program wants the window in front, maximized; kind and topic of a help request may
    /// be empty.
    void raiseRequested(const QString &kind, const QString &topic);
    /// Another program wants the window closed, as by its close box.
    void closeRequested();

private:
    void welcome();
    void answer(QLocalSocket *client);
    [[nodiscard]] bool isMeant(const QString &className, const QString &caption) const;

    QString m_className;
    QString m_caption;
    QLocalServer m_server;
};
