#include "components/WindowHelperComponent.h"

#include "platform/DesktopWindows.h"

#include <utility>

WindowHelperComponent::WindowHelperComponent(DesktopWindows &windows)
    : m_windows(windows)
{
}

void WindowHelperComponent::setDynCall(const QString &kind)
{
    m_kind = kind;
}

void WindowHelperComponent::setDynCallInfo(const QString &topic)
{
    m_topic = topic;
}

bool WindowHelperComponent::checkWindowExists(const QString &caption)
{
    return m_windows.exists({}, caption);
}

void WindowHelperComponent::maximizeWindow(const QString &caption)
{
    const QString kind = std::exchange(m_kind, {});
    const QString topic = std::exchange(m_topic, {});
    m_windows.raiseMaximized(caption, kind, topic);
}
