#pragma once

#include <QString>

/// The product's window helper component: carries a help request and finds windows by caption.
class WindowHelper
{
public:
    virtual ~WindowHelper() = default;
    virtual void setDynCall(const QString &kind) = 0;
    virtual void setDynCallInfo(const QString &topic) = 0;
    virtual bool checkWindowExists(const QString &caption) = 0;
    /// Brings the window to the front maximized; it receives the request set before, which is
    /// then used up.
    virtual void maximizeWindow(const QString &caption) = 0;
};
