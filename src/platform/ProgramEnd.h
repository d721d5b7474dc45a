#pragma once

#include <functional>

/// Ends the program at once, status 1, nothing asked: first runs what was registered (unsaved page
/// text is kept, workers are stopped), then leaves. Never returns to its caller.
class ProgramEnd
{
public:
    virtual ~ProgramEnd() = default;
    [[noreturn]] virtual void endNow() = 0;
    /// Something to do first; gives a number to take it back with.
    virtual int before(std::function<void()> last) = 0;
    virtual void forget(int number) = 0;
};
