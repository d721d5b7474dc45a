#pragma once

#include "platform/windows/win32/Instance.h"

#include <string>

/// Whether the same program already runs for this user.
class SingleInstance final
{
public:
    /// Is the instance of `program` until this process ends, unless another process is.
    explicit SingleInstance(const std::string &program);

    [[nodiscard]] bool previousInstance() const { return m_instance.isSecond(); }

    /// Brings the window of an instance that runs, or is just starting, to the front. Waits up to
    /// two seconds for its window; false when there was none.
    static bool handOver(const std::string &program, const std::string &caption);

private:
    win32::Instance m_instance;
};
