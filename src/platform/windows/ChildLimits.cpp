#include "platform/shared/ChildLimits.h"

#include "platform/windows/win32/Handle.h"

#include <QProcess>

struct ChildLimits::System
{
    win32::Handle job;
};

ChildLimits::ChildLimits(const ProcessLimits &limits)
    : m_system(std::make_unique<System>(System{win32::Handle(CreateJobObjectW(nullptr, nullptr))}))
{
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION wanted{};
    wanted.BasicLimitInformation.LimitFlags =
        JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE | JOB_OBJECT_LIMIT_PROCESS_MEMORY;
    wanted.ProcessMemoryLimit = static_cast<SIZE_T>(limits.memory);
    SetInformationJobObject(m_system->job.get(), JobObjectExtendedLimitInformation, &wanted,
                            sizeof(wanted));
}

ChildLimits::~ChildLimits() = default;

void ChildLimits::beforeStart(QProcess &process)
{
    process.setCreateProcessArgumentsModifier(
        [](QProcess::CreateProcessArguments *arguments) { arguments->flags |= CREATE_NO_WINDOW; });
}

void ChildLimits::afterStart(QProcess &process)
{
    const win32::Handle child(OpenProcess(PROCESS_SET_QUOTA | PROCESS_TERMINATE, FALSE,
                                          static_cast<DWORD>(process.processId())));
    AssignProcessToJobObject(m_system->job.get(), child.get());
}
