#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <functional>

/// A copy of this process that runs `body` and ends with its result.
class ChildProcess
{
public:
    explicit ChildProcess(const std::function<int()> &body)
        : m_id(fork())
    {
        if (m_id == 0)
            _exit(body());
    }
    /// Waits for its end; -1 when it did not end by itself.
    [[nodiscard]] int exitStatus() const
    {
        int status = -1;
        waitpid(m_id, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

private:
    pid_t m_id;
};
