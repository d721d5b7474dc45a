#include "platform/shared/ProgramEndNow.h"

#include <cstdio>
#include <cstdlib>

void ProgramEndNow::endNow()
{
    // A job that ends the program itself finds only the jobs behind it.
    while (!m_jobs.empty()) {
        const auto job = m_jobs.extract(std::prev(m_jobs.end()));
        try {
            job.mapped()();
        } catch (...) {
            std::fputs("Something failed while the program ended.\n", stderr);
        }
    }
    std::fflush(nullptr);
    std::_Exit(1);
}

int ProgramEndNow::before(std::function<void()> last)
{
    m_jobs.emplace(++m_lastNumber, std::move(last));
    return m_lastNumber;
}

void ProgramEndNow::forget(int number)
{
    m_jobs.erase(number);
}
