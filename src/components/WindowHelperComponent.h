#pragma once

#include "components/WindowHelper.h"

class DesktopWindows;

/// The window helper component over the desktop's windows.
class WindowHelperComponent final : public WindowHelper
{
public:
    explicit WindowHelperComponent(DesktopWindows &windows);

    void setDynCall(const QString &kind) override;
    void setDynCallInfo(const QString &topic) override;
    bool checkWindowExists(const QString &caption) override;
    void maximizeWindow(const QString &caption) override;

private:
    DesktopWindows &m_windows;
    QString m_kind;
    QString m_topic;
};
