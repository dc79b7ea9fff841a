#pragma once

#include <linux/capability.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace Norlis::Host {

/// For as long as it lives, permissions of files count for the calling thread even if the superuser runs the tests.
class OrdinaryUser {
public:
    OrdinaryUser()
    {
        syscall(SYS_capget, &header, capabilities);
        const auto before = capabilities[0].effective;
        capabilities[0].effective &= ~(1u << CAP_DAC_OVERRIDE | 1u << CAP_DAC_READ_SEARCH);
        syscall(SYS_capset, &header, capabilities);
        capabilities[0].effective = before;
    }

    ~OrdinaryUser()
    {
        syscall(SYS_capset, &header, capabilities);
    }

    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

private:
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct capabilities[_LINUX_CAPABILITY_U32S_3]{};
};

} // namespace Norlis::Host
