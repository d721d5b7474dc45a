#pragma once

#include "platform/DesktopWindows.h"

class SingleInstance;

/// The windows of our other programs, as they announce themselves by local sockets.
class SocketWindows final : public DesktopWindows
{
public:
    /// `instance` is that of this program.
    explicit SocketWindows(const SingleInstance &instance);

    [[nodiscard]] bool exists(const QString &className, const QString &caption) override;
    void raiseMaximized(const QString &caption, const QString &requestKind,
                        const QString &requestTopic) override;
    void close(const QString &className, const QString &caption) override;
    [[nodiscard]] bool previousInstance() override;

private:
    const SingleInstance &m_instance;
};
