#pragma once

#include "platform/DesktopWindows.h"

class SingleInstance;

/// The windows of this desktop, as Windows finds them.
class FoundWindows final : public DesktopWindows
{
public:
    /// `instance` is that of this program.
    explicit FoundWindows(const SingleInstance &instance);

    [[nodiscard]] bool exists(const QString &className, const QString &caption) override;
    void raiseMaximized(const QString &caption, const QString &requestKind,
                        const QString &requestTopic) override;
    void close(const QString &className, const QString &caption) override;
    [[nodiscard]] bool previousInstance() override;

private:
    const SingleInstance &m_instance;
};
