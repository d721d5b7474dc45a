#include "platform/windows/FoundWindows.h"

#include "platform/windows/SingleInstance.h"
#include "platform/windows/win32/DesktopWindows.h"

FoundWindows::FoundWindows(const SingleInstance &instance)
    : m_instance(instance)
{
}

bool FoundWindows::exists(const QString &className, const QString &caption)
{
    return win32::windowExists(className.toStdWString(), caption.toStdWString());
}

void FoundWindows::raiseMaximized(const QString &caption, const QString &requestKind,
                                  const QString &requestTopic)
{
    win32::raiseWindow(caption.toStdWString(),
                       {requestKind.toStdWString(), requestTopic.toStdWString()});
}

void FoundWindows::close(const QString &className, const QString &caption)
{
    win32::closeWindow(className.toStdWString(), caption.toStdWString());
}

bool FoundWindows::previousInstance()
{
    return m_instance.previousInstance();
}
