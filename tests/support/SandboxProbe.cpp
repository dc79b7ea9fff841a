// Finds out what the sandbox of the preview renderer lets through.
//
//   SandboxProbe [--without CALL]...           enters the sandbox, tries to get out of it in many ways, and prints the
//                                              name of each way that led anywhere
//   SandboxProbe --burn                        enters it with a second to live, and uses the processor
//   SandboxProbe [--without CALL]... PROGRAM   runs a program
//
// CALL is a system call that the kernel then does not have: unshare, landlock_create_ruleset or seccomp.

#include <protocol/preview/Sandbox.h>

#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sched.h>
#include <sys/mman.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

namespace {

/// From now on a system call fails as one that the kernel does not know.
void Remove(const std::string& name)
{
    const long call = name == "unshare" ? SYS_unshare : name == "seccomp" ? SYS_seccomp : SYS_landlock_create_ruleset;
    sock_filter program[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<__u32>(call), 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | ENOSYS),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    const sock_fprog filter = {sizeof program / sizeof *program, program};
    prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter);
}

bool Opens(const char* path, int flags)
{
    return open(path, flags, 0600) >= 0;
}

bool Makes(const char* path, int flags)
{
    const bool isMade = Opens(path, flags | O_CREAT | O_EXCL);
    unlink(path);
    return isMade;
}

bool Lists(const char* path)
{
    return opendir(path) != nullptr;
}

struct Attempt {
    const char* name;
    std::function<bool()> succeeds;
};

std::vector<Attempt> Attempts()
{
    static const pid_t parent = getppid();
    static char byte = 0;
    static iovec here = {&byte, 1};
    static char* nothing[] = {nullptr};
    static const auto isThere = [](long result) { return result >= 0; };
    static const auto call = [](auto... arguments) { return isThere(syscall(arguments...)); };
    // For those that would fail here for other reasons too.
    static const auto reaches = [](auto... arguments) { return call(arguments...) || errno != EPERM; };
    static void* const memory = mmap(nullptr, 4096, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    return
    {
        {"read a font", [] { return Opens("/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf", O_RDONLY); }},
            {"read a file", [] { return Opens("/etc/passwd", O_RDONLY); }},
            {"read a file beside the fonts", [] { return Opens("/usr/share/fonts/../../lib/os-release", O_RDONLY); }},
            {"read the environment", [] { return Opens("/proc/self/environ", O_RDONLY); }},
            {"read memory", [] { return Opens("/proc/self/mem", O_RDONLY); }},
            {"list a folder", [] { return Lists("/etc"); }}, {"list processes", [] { return Lists("/proc"); }},
            {"write a font", [] { return Opens("/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf", O_WRONLY); }},
            {"make a font", [] { return Makes("/usr/share/fonts/SandboxProbe", O_RDONLY); }},
            {"make a file", [] { return Makes("/tmp/SandboxProbe", O_WRONLY); }},
            {"make a nameless file", [] { return Opens("/tmp", O_RDWR | O_TMPFILE); }},
            {"make a file in memory", [] { return call(SYS_memfd_create, "probe", 0U); }},
            {"make a folder", [] { return mkdir("/tmp/SandboxProbe", 0700) == 0 && rmdir("/tmp/SandboxProbe") == 0; }},
            {"make a link", [] { return symlink("/etc/passwd", "/tmp/SandboxProbe") == 0; }},
            {"remove a file", [] { return reaches(SYS_unlinkat, AT_FDCWD, "/tmp/SandboxProbe", 0); }},
            {"rename a file", [] { return rename("/etc/passwd", "/etc/passwd") == 0; }},
            {"change a mode", [] { return fchmod(STDOUT_FILENO, 0600) == 0; }},
            {"connect to the network", [] { return isThere(socket(AF_INET, SOCK_STREAM, 0)); }},
            {"connect by IPv6", [] { return isThere(socket(AF_INET6, SOCK_DGRAM, 0)); }},
            {"connect to a program", [] { return isThere(socket(AF_UNIX, SOCK_STREAM, 0)); }},
            {"talk to the kernel's network", [] { return isThere(socket(AF_NETLINK, SOCK_RAW, 0)); }},
            {"make a pair of sockets",
             [] { return socketpair(AF_UNIX, SOCK_STREAM, 0, std::vector<int>(2).data()) == 0; }},
            {"start a process",
             [] {
                 const long child = syscall(SYS_clone, SIGCHLD, nullptr, nullptr, nullptr, nullptr);
                 if (child == 0) {
                     _exit(0);
                 }
                 return isThere(child);
             }},
            {"start a program", [] { return execve("/bin/true", nothing, nothing) == 0; }},
            {"watch a process", [] { return call(SYS_ptrace, PTRACE_SEIZE, parent, nullptr, nullptr); }},
            {"be watched", [] { return call(SYS_ptrace, PTRACE_TRACEME, 0, nullptr, nullptr); }},
            {"read another's memory", [] { return isThere(process_vm_readv(parent, &here, 1, &here, 1, 0)); }},
            {"signal a process", [] { return kill(parent, 0) == 0; }},
            {"hold on to a process", [] { return call(SYS_pidfd_open, parent, 0U); }},
            {"allow dumps", [] { return prctl(PR_SET_DUMPABLE, 1) == 0; }},
            {"raise a limit",
             [] {
                 const rlimit none = {RLIM_INFINITY, RLIM_INFINITY};
                 return setrlimit(RLIMIT_CPU, &none) == 0;
             }},
            {"make memory executable", [] { return mprotect(memory, 4096, PROT_READ | PROT_EXEC) == 0; }},
            {"get executable memory",
             [] {
                 return mmap(nullptr, 4096, PROT_READ | PROT_EXEC, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0) != MAP_FAILED;
             }},
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
            {"use much memory",
             [] {
                 return mmap(nullptr, 3UL << 30U, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0) !=
                        MAP_FAILED;
             }},
#endif
            {"enter namespaces", [] { return unshare(CLONE_NEWUSER) == 0; }},
            {"mount", [] { return mount("probe", "/tmp", "tmpfs", 0, nullptr) == 0; }},
            {"change the root", [] { return chroot("/") == 0; }}, {"change folders", [] { return chdir("/usr") == 0; }},
            {"change the user", [] { return setuid(1) == 0; }},
            {"talk to a device", [] { return reaches(SYS_ioctl, 1, 0, nullptr); }},
            {"use io_uring", [] { return reaches(SYS_io_uring_setup, 0U, nullptr); }},
            {"load a filter", [] { return reaches(SYS_bpf, 0, nullptr, 0U); }},
            {"use keys", [] { return reaches(SYS_keyctl, 0, -3, 0, 0, 0); }},
    };
}

/// Uses the processor until it is stopped.
[[noreturn]] void Burn()
{
    for (volatile unsigned turn = 0;; turn = turn + 1) {
    }
}

} // namespace

int main(int argc, char** argv)
{
    int index = 1;
    for (; index + 1 < argc && std::strcmp(argv[index], "--without") == 0; index += 2) {
        Remove(argv[index + 1]);
    }
    const bool isToBurn = index < argc && std::strcmp(argv[index], "--burn") == 0;
    if (index < argc && !isToBurn) {
        execv(argv[index], argv + index);
        return 1;
    }
    if (isToBurn) {
        const rlimit second = {1, 1};
        setrlimit(RLIMIT_CPU, &second);
    }
    if (!Norlis::Social::EnterSandbox()) {
        std::puts("no sandbox");
        std::fflush(stdout);
        return 1;
    }
    if (isToBurn) {
        Burn();
    }
    for (const Attempt& attempt : Attempts()) {
        if (attempt.succeeds()) {
            std::puts(attempt.name);
        }
    }
    std::fflush(stdout);
    _exit(0);
}
