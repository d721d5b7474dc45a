#include "platform/portable/SocketWindows.h"

#include "platform/portable/SingleInstance.h"
#include "platform/portable/WindowSockets.h"

SocketWindows::SocketWindows(const SingleInstance &instance)
    : m_instance(instance)
{
}

bool SocketWindows::exists(const QString &className, const QString &caption)
{
    const WindowRequest request{
        .what = "exists", .className = className.toStdString(), .caption = caption.toStdString()};
    return sendToWindows(request) == WindowAnswer::Meant;
}

void SocketWindows::raiseMaximized(const QString &caption, const QString &requestKind,
                                   const QString &requestTopic)
{
    const WindowRequest request{.what = "raise",
                                .className = {},
                                .caption = caption.toStdString(),
                                .kind = requestKind.toStdString(),
                                .topic = requestTopic.toStdString()};
    if (sendToWindows(request) == WindowAnswer::NotMeant && previousInstance())
        SingleInstance::handOver({}, request.caption); // it may be about to open its window
}

void SocketWindows::close(const QString &className, const QString &caption)
{
    sendToWindows(
        {.what = "close", .className = className.toStdString(), .caption = caption.toStdString()});
}

bool SocketWindows::previousInstance()
{
    return m_instance.previousInstance();
}
