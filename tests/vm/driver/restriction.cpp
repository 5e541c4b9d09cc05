// SPDX-License-Identifier: MIT
#include "tests/vm/driver/restriction.h"

#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/netlink.h>
#include <linux/seccomp.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <vector>

namespace {

constexpr const char *callsFile = "/calls";

using Filter = std::vector<sock_filter>;

constexpr sock_filter kill = BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_KILL_PROCESS);
constexpr sock_filter refuse = BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EPERM);
constexpr sock_filter allow = BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW);

void load(Filter &filter, std::size_t offset)
{
    filter.push_back(BPF_STMT(BPF_LD | BPF_W | BPF_ABS, static_cast<std::uint32_t>(offset)));
}

constexpr std::size_t argument(int index)
{
    return offsetof(seccomp_data, args) + static_cast<std::size_t>(index) * sizeof(std::uint64_t); // the lower half
}

/// Only sockets of this machine, like RestrictAddressFamilies.
void restrictSockets(Filter &filter)
{
    filter.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_socket, 0, 5));
    load(filter, argument(0));
    filter.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, AF_UNIX, 1, 0));
    filter.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, AF_NETLINK, 0, 1));
    filter.push_back(allow);
    filter.push_back(kill);
}

/// No memory that is writable and executable, like MemoryDenyWriteExecute. Returns an error, as the service does: Qt's
/// regular expressions request such memory for speed, and work without it.
void restrictMemory(Filter &filter)
{
    filter.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_mmap, 0, 4));
    load(filter, argument(2));
    filter.push_back(BPF_STMT(BPF_ALU | BPF_AND | BPF_K, PROT_WRITE | PROT_EXEC));
    filter.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, PROT_WRITE | PROT_EXEC, 0, 1));
    filter.push_back(refuse);
    load(filter, offsetof(seccomp_data, nr));
    filter.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_mprotect, 0, 3));
    load(filter, argument(2));
    filter.push_back(BPF_JUMP(BPF_JMP | BPF_JSET | BPF_K, PROT_EXEC, 0, 1));
    filter.push_back(refuse);
    load(filter, offsetof(seccomp_data, nr));
}

Filter makeFilter()
{
    Filter filter;
    load(filter, offsetof(seccomp_data, arch));
    filter.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, AUDIT_ARCH_X86_64, 1, 0));
    filter.push_back(kill);
    load(filter, offsetof(seccomp_data, nr));
    restrictSockets(filter);
    restrictMemory(filter);
    std::ifstream calls(callsFile);
    for (std::uint32_t call = 0; calls >> call;) {
        filter.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, call, 0, 1));
        filter.push_back(allow);
    }
    filter.push_back(kill);
    return filter;
}

} // namespace

bool isRestrictionKnown()
{
    return std::filesystem::exists(callsFile);
}

bool restrictThisProcess()
{
    Filter filter = makeFilter();
    const sock_fprog program{.len = static_cast<unsigned short>(filter.size()), .filter = filter.data()};
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}
