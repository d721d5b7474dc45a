#include "platform/portable/WindowAnnouncer.h"

#include "platform/portable/WindowSockets.h"

#include <QCoreApplication>
#include <QFile>
#include <QLocalSocket>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 longestRequest = 64 * 1024;

QString freeSocketName()
{
    static int number = 0;
    const std::string folder = windowSocketFolder();
    if (folder.empty())
        return {};
    return QFile::decodeName(folder.c_str())
           + u"%1-%2.window"_s.arg(QCoreApplication::applicationPid()).arg(++number);
}

} // namespace

WindowAnnouncer::WindowAnnouncer(const QString &className, const QString &caption, QObject *parent)
    : QObject(parent)
    , m_className(className)
    , m_caption(caption)
{
    connect(&m_server, &QLocalServer::newConnection, this, &WindowAnnouncer::welcome);
    const QString name = freeSocketName();
    if (name.isEmpty())
        return;
    QLocalServer::removeServer(name); // of a process that died and had our number
    m_server.listen(name);
}

void WindowAnnouncer::welcome()
{
    while (QLocalSocket *client = m_server.nextPendingConnection()) {
        connect(client, &QLocalSocket::disconnected, client, &QObject::deleteLater);
        connect(client, &QLocalSocket::readyRead, this, [this, client] { answer(client); });
        answer(client); // what it sent may be here already
    }
}

void WindowAnnouncer::answer(QLocalSocket *client)
{
    if (client->bytesAvailable() > longestRequest)
        return client->abort();
    if (client->peek(longestRequest).count('\0') < windowRequestFields)
        return;
    const QStringList fields = QString::fromUtf8(client->readAll()).split(QChar(u'\0'));
    const bool meant = isMeant(fields[1], fields[2]);
    client->write(meant ? "yes" : "no");
    client->write("\0", 1);
    client->flush();
    client->disconnectFromServer();
    // Afterwards, and not from here: what is connected may run for long or delete this object.
    if (meant && fields[0] == "raise"_L1)
        QMetaObject::invokeMethod(
            this, [this, fields] { Q_EMIT raiseRequested(fields[3], fields[4]); },
            Qt::QueuedConnection);
    else if (meant && fields[0] == "close"_L1)
        QMetaObject::invokeMethod(this, &WindowAnnouncer::closeRequested, Qt::QueuedConnection);
}

bool WindowAnnouncer::isMeant(const QString &className, const QString &caption) const
{
    const auto fits = [](const QString &wanted, const QString &own) {
        return wanted.isEmpty() || wanted.compare(own, Qt::CaseInsensitive) == 0;
    };
    return fits(className, m_className) && fits(caption, m_caption);
}
