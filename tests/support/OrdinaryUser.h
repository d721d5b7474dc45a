#pragma once

#ifdef __linux__
#include <linux/capability.h>
#include <sys/syscall.h>
#include <unistd.h>
#endif

/// While it lives, this thread and those it starts meet file permissions as an ordinary user does,
/// even when the tests run as root.
class OrdinaryUser final
{
public:
#ifdef __linux__
    OrdinaryUser()
    {
        syscall(SYS_capget, &m_header, m_saved);
        __user_cap_data_struct fewer[2] = {m_saved[0], m_saved[1]};
        fewer[0].effective &= ~((1U << CAP_DAC_OVERRIDE) | (1U << CAP_DAC_READ_SEARCH));
        syscall(SYS_capset, &m_header, fewer);
    }
    ~OrdinaryUser()
    {
        syscall(SYS_capset, &m_header, m_saved);
    }
#else
    OrdinaryUser() {} // every user meets the read-only attribute
    ~OrdinaryUser() {}
#endif
    OrdinaryUser(const OrdinaryUser &) = delete;
    OrdinaryUser &operator=(const OrdinaryUser &) = delete;

#ifdef __linux__
private:
    __user_cap_header_struct m_header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct m_saved[2]{};
#endif
};
