#pragma once

#include "platform/portable/Descriptor.h"

#include <string>

/// Whether the same program already runs for this user, by a lock that the system releases when the
/// holder dies. Without Qt, as the front program needs it too.
class SingleInstance final
{
public:
    /// Takes the lock of `program` for the rest of this process, unless another process holds it.
    /// Without a folder of the user's own there is no telling, and no other instance is assumed.
    explicit SingleInstance(const std::string &program);

    [[nodiscard]] bool previousInstance() const { return m_previous; }

    /// The same question without taking the lock.
    [[nodiscard]] static bool isRunning(const std::string &program);

    /// Brings the window of an instance that runs, or is just starting, to the front. Waits up to
    /// two seconds for its window; false when there was none.
    static bool handOver(const std::string &program, const std::string &caption);

private:
    Descriptor m_lock;
    bool m_previous = false;
};
