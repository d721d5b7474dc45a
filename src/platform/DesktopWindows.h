#pragma once

#include <QString>

/// Top-level windows of other programs on this desktop.
class DesktopWindows
{
public:
    virtual ~DesktopWindows() = default;

    /// True when a window with this caption is open; an empty class name means any.
    [[nodiscard]] virtual bool exists(const QString &className, const QString &caption) = 0;
    /// Brings the window to the front maximized and hands it `request` (kind and topic), which
    /// may be empty. Does nothing when it has gone.
    virtual void raiseMaximized(const QString &caption, const QString &requestKind,
                                const QString &requestTopic) = 0;
    /// Asks the window to close, as its close box would.
    virtual void close(const QString &className, const QString &caption) = 0;
    /// True when the same program already runs for this user.
    [[nodiscard]] virtual bool previousInstance() = 0;
};
