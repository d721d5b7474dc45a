#include "platform/shared/ChildLimits.h"

#include <QProcess>

#include <csignal>

#include <sys/prctl.h>
#include <sys/resource.h>

namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr bool limitsMemory = false; // a checked program reserves terabytes that it never uses
#else
constexpr bool limitsMemory = true;
#endif

/// Runs in the child before the program does: nothing here may allocate.
void limitChild(rlim_t memory)
{
    const rlimit space{memory, memory};
    if (limitsMemory)
        setrlimit(RLIMIT_AS, &space);
    const rlimit noCore{0, 0};
    setrlimit(RLIMIT_CORE, &noCore);
    prctl(PR_SET_PDEATHSIG, SIGKILL); // whatever ends this program ends the child
}

} // namespace

struct ChildLimits::System
{
    rlim_t memory;
};

ChildLimits::ChildLimits(const ProcessLimits &limits)
    : m_system(std::make_unique<System>(System{static_cast<rlim_t>(limits.memory)}))
{
}

ChildLimits::~ChildLimits() = default;

void ChildLimits::beforeStart(QProcess &process)
{
    process.setChildProcessModifier([memory = m_system->memory] { limitChild(memory); });
}

void ChildLimits::afterStart(QProcess &) {}
