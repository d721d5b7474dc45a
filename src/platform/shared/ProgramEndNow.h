#pragma once

#include "platform/ProgramEnd.h"

#include <map>

/// Ends the process: the jobs newest first, whatever they raise, then exit status 1.
class ProgramEndNow final : public ProgramEnd
{
public:
    [[noreturn]] void endNow() override;
    int before(std::function<void()> last) override;
    void forget(int number) override;

private:
    std::map<int, std::function<void()>> m_jobs;
    int m_lastNumber = 0;
};
