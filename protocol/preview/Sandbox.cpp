#include "Sandbox.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include <fcntl.h>
#include <linux/audit.h>
#include <linux/capability.h>
#include <linux/filter.h>
#include <linux/landlock.h>
#include <linux/seccomp.h>
#include <sched.h>
#include <sys/mman.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace Norlis::Social {

namespace {

namespace fs = std::filesystem;

/// The folders in which PDFium looks for the fonts that a document does not bring along, and those elsewhere that
/// packages have put links to into them.
std::vector<fs::path> FontFolders()
{
    std::vector<fs::path> folders = {"/usr/share/fonts", "/usr/share/X11/fonts/Type1", "/usr/share/X11/fonts/TTF",
                                     "/usr/local/share/fonts"};
    const auto isWithin = [](const fs::path& path, const fs::path& folder) {
        return std::mismatch(folder.begin(), folder.end(), path.begin(), path.end()).first == folder.end();
    };
    const auto all = folders;
    std::error_code error; // what cannot be read holds no fonts
    for (const fs::path& folder : all) {
        for (fs::recursive_directory_iterator entry(folder, error), end; entry != end; entry.increment(error)) {
            if (!entry->is_symlink(error)) {
                continue;
            }
            fs::path target = fs::canonical(entry->path(), error);
            if (!fs::is_directory(target, error)) {
                target = target.parent_path();
            }
            const bool isKnown =
                std::any_of(folders.begin(), folders.end(), [&](const auto& known) { return isWithin(target, known); });
            if (!isKnown && isWithin(target, "/usr/share") && target != "/usr/share") {
                folders.push_back(target);
            }
        }
    }
    folders.erase(std::remove_if(folders.begin(), folders.end(),
                                 [&](const auto& folder) { return !fs::is_directory(folder, error); }),
                  folders.end());
    return folders;
}

bool WriteTo(const char* path, const std::string& text)
{
    const int file = open(path, O_WRONLY | O_CLOEXEC);
    const bool isWritten = file >= 0 && write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    close(file);
    return isWritten;
}

/// Moves into namespaces of its own: no network, and a tree of files that holds the given folders alone. False where
/// the system does not allow that.
bool EnterNamespaces(const std::vector<fs::path>& folders)
{
    const auto identity = [](unsigned id) { return std::to_string(id) + ' ' + std::to_string(id) + " 1"; };
    const std::string user = identity(geteuid());
    const std::string group = identity(getegid());
    if (unshare(CLONE_NEWUSER | CLONE_NEWNS | CLONE_NEWNET | CLONE_NEWIPC | CLONE_NEWUTS) != 0 ||
        !WriteTo("/proc/self/setgroups", "deny") || !WriteTo("/proc/self/uid_map", user) ||
        !WriteTo("/proc/self/gid_map", group)) {
        return false;
    }
    const fs::path root = "/tmp"; // any folder will do
    if (mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
        mount("norlis", root.c_str(), "tmpfs", 0, "size=1m") != 0) {
        return false;
    }
    for (const fs::path& folder : folders) {
        const fs::path place = root / folder.relative_path();
        std::error_code error;
        fs::create_directories(place, error);
        mount(folder.c_str(), place.c_str(), nullptr, MS_BIND | MS_REC, nullptr);
    }
    // The new root is put on top of the old one, which is then taken away.
    if (chdir(root.c_str()) != 0 || syscall(SYS_pivot_root, ".", ".") != 0 || umount2(".", MNT_DETACH) != 0) {
        return false;
    }
    mount_attr attributes = {};
    attributes.attr_set = MOUNT_ATTR_RDONLY | MOUNT_ATTR_NOSUID | MOUNT_ATTR_NODEV | MOUNT_ATTR_NOEXEC;
    mount_setattr(AT_FDCWD, "/", AT_RECURSIVE, &attributes, sizeof attributes); // which is refused again below
    return chdir("/") == 0;
}

/// Lets no file be used but for reading, and only below the given folders. False where the kernel has no Landlock.
bool RestrictFiles(const std::vector<fs::path>& folders)
{
    landlock_ruleset_attr ruleset = {};
    ruleset.handled_access_fs = (LANDLOCK_ACCESS_FS_MAKE_SYM << 1U) - 1; // all that its first version knows
    const auto rules = static_cast<int>(syscall(SYS_landlock_create_ruleset, &ruleset, sizeof ruleset, 0));
    if (rules < 0) {
        return false;
    }
    for (const fs::path& folder : folders) {
        landlock_path_beneath_attr rule = {};
        rule.allowed_access = LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_READ_DIR;
        rule.parent_fd = open(folder.c_str(), O_PATH | O_CLOEXEC);
        syscall(SYS_landlock_add_rule, rules, LANDLOCK_RULE_PATH_BENEATH, &rule, 0);
        close(rule.parent_fd);
    }
    const bool isInForce = syscall(SYS_landlock_restrict_self, rules, 0) == 0;
    close(rules);
    return isInForce;
}

bool LimitResources()
{
    const auto limit = [](auto resource, rlim_t maximum) {
        rlimit value = {};
        getrlimit(resource, &value);
        value.rlim_max = std::min(value.rlim_max, maximum);
        value.rlim_cur = value.rlim_max;
        return setrlimit(resource, &value) == 0;
    };
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    constexpr rlim_t memory = RLIM_INFINITY; // sanitizers reserve far more than they use
#else
    constexpr rlim_t memory = rlim_t{2} * 1024 * 1024 * 1024;
#endif
    return limit(RLIMIT_AS, memory) && limit(RLIMIT_CPU, 60) && limit(RLIMIT_NOFILE, 64) &&
           limit(RLIMIT_FSIZE, 0) && // no file is written; pipes do not count
           limit(RLIMIT_CORE, 0) && prctl(PR_SET_DUMPABLE, 0) == 0;
}

/// Those of the user in whose namespace it is, should it have been started by the administrator.
bool DropCapabilities()
{
    __user_cap_header_struct header = {_LINUX_CAPABILITY_VERSION_3, 0};
    std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3> none = {};
    return syscall(SYS_capset, &header, none.data()) == 0;
}

#if defined(__x86_64__)
constexpr std::uint32_t architecture = AUDIT_ARCH_X86_64;
#elif defined(__aarch64__)
constexpr std::uint32_t architecture = AUDIT_ARCH_AARCH64;
#endif // for another one, check whether its calls have the names below

/// A system call that is allowed, unless an argument has one of some bits.
struct AllowedCall {
    long number;
    unsigned argument = 0;
    std::uint32_t forbiddenBits = 0;
};

constexpr AllowedCall allowedCalls[] = {
    // What it has open. None of these opens anything, though two can tell whether there is a file of some name.
    {SYS_read},
    {SYS_pread64},
    {SYS_lseek},
    {SYS_write},
    {SYS_recvmsg},
    {SYS_close},
    {SYS_getdents64},
    {SYS_fstat},
    {SYS_newfstatat},
    {SYS_statx},
    // Memory, of which nothing becomes code.
    {SYS_brk},
    {SYS_mmap, 2, PROT_EXEC},
    {SYS_mprotect, 2, PROT_EXEC},
    {SYS_mremap},
    {SYS_munmap},
    {SYS_madvise},
    // Itself.
    {SYS_futex},
    {SYS_sched_yield},
    {SYS_clock_gettime},
    {SYS_clock_nanosleep},
    {SYS_gettimeofday},
    {SYS_getpid},
    {SYS_gettid},
    {SYS_getrandom},
    {SYS_sysinfo},
    {SYS_rt_sigprocmask},
    {SYS_rt_sigreturn},
    {SYS_exit},
    {SYS_exit_group},
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    {SYS_pipe2}, // by which they find out whether memory can be read
    {SYS_sigaltstack},
#endif
};

/// Lets the kernel refuse all other calls, as not permitted. The C library and Qt get along with that where one of
/// theirs is missing above; killing the process instead would lose the picture.
bool FilterSystemCalls(bool mayOpenFonts)
{
    constexpr std::uint32_t refuse = SECCOMP_RET_ERRNO | EPERM;
    std::vector<sock_filter> program = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, arch)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, architecture, 1, 0),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_KILL_PROCESS),
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
    };
    const auto allow = [&](const AllowedCall& call) {
        const auto argument =
            static_cast<std::uint32_t>(offsetof(seccomp_data, args) + call.argument * sizeof(std::uint64_t));
        const std::array<sock_filter, 5> rule = {{
            BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<std::uint32_t>(call.number), 0, 4),
            BPF_STMT(BPF_LD | BPF_W | BPF_ABS, argument), // its lower half: all of these are of type int
            BPF_JUMP(BPF_JMP | BPF_JSET | BPF_K, call.forbiddenBits, 0, 1),
            BPF_STMT(BPF_RET | BPF_K, refuse),
            BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
        }};
        program.insert(program.end(), rule.begin(), rule.end());
    };
    std::for_each(std::begin(allowedCalls), std::end(allowedCalls), allow);
    if (mayOpenFonts) {
        allow({SYS_openat, 2, O_WRONLY | O_RDWR | O_CREAT | O_TRUNC});
    }
    program.push_back(BPF_STMT(BPF_RET | BPF_K, refuse));

    const sock_fprog filter = {static_cast<unsigned short>(program.size()), program.data()};
    return syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER, SECCOMP_FILTER_FLAG_TSYNC, &filter) == 0;
}

} // namespace

bool EnterSandbox()
{
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0) {
        return false;
    }
    const auto folders = FontFolders();
    const bool isAlone = EnterNamespaces(folders);
    const bool isRestricted = RestrictFiles(folders);
    // Where there is neither, nothing can be opened at all; text without fonts is then drawn in PDFium's own.
    return DropCapabilities() && LimitResources() && prctl(PR_SET_PDEATHSIG, SIGKILL) == 0 &&
           FilterSystemCalls(isAlone || isRestricted);
}

} // namespace Norlis::Social
