#include "FileMoments.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <ctime>
#include <utility>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

namespace {

std::function<void()> action;
int callsLeft = -1;
bool hasCome = false;
std::atomic<int> secondsAhead{0};
bool knowsFlags = true; // of renameat2
bool hasWholeSeconds = false;

void Call()
{
    if (callsLeft >= 0 && callsLeft-- == 0) {
        const int error = errno;
        hasCome = true;
        std::exchange(action, {})();
        errno = error;
    }
}

void Round(struct stat* status)
{
    if (hasWholeSeconds) {
        status->st_mtim.tv_nsec = 0;
        status->st_ctim.tv_nsec = 0;
    }
}

/// The function of the C library that one of those below stands before.
template <typename Function>
Function* Next(const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

} // namespace

// The program's own functions come before those of the C library, for all libraries that it uses.
#pragma GCC visibility push(default)
extern "C" {

int lstat(const char* path, struct stat* status) noexcept
{
    static const auto next = Next<int(const char*, struct stat*)>("lstat");
    Call();
    const int result = next(path, status);
    Round(status);
    Call();
    return result;
}

int fstat(int descriptor, struct stat* status) noexcept
{
    static const auto next = Next<int(int, struct stat*)>("fstat");
    const int result = next(descriptor, status);
    Round(status);
    return result;
}

int flock(int descriptor, int operation) noexcept
{
    static const auto next = Next<int(int, int)>("flock");
    const int result = next(descriptor, operation);
    Call();
    return result;
}

int fdatasync(int descriptor)
{
    static const auto next = Next<int(int)>("fdatasync");
    Call();
    return next(descriptor);
}

int fsync(int)
{
    return 0; // nobody pulls the plug
}

int rename(const char* from, const char* to) noexcept
{
    static const auto next = Next<int(const char*, const char*)>("rename");
    Call();
    const int result = next(from, to);
    Call();
    return result;
}

int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) noexcept
{
    static const auto next = Next<int(int, const char*, int, const char*, unsigned)>("renameat2");
    if (flags != 0 && !knowsFlags) {
        errno = EINVAL;
        return -1;
    }
    Call();
    const int result = next(fromFolder, from, toFolder, to, flags);
    Call();
    return result;
}

int unlink(const char* path) noexcept
{
    static const auto next = Next<int(const char*)>("unlink");
    Call();
    const int result = next(path);
    Call();
    return result;
}

int clock_gettime(clockid_t clock, struct timespec* time) noexcept
{
    static const auto next = Next<int(clockid_t, struct timespec*)>("clock_gettime");
    const int result = next(clock, time);
    if (clock == CLOCK_REALTIME) {
        time->tv_sec += secondsAhead;
    }
    return result;
}

int gettimeofday(struct timeval* time, void* zone) noexcept
{
    static const auto next = Next<int(struct timeval*, void*)>("gettimeofday");
    const int result = next(time, zone);
    time->tv_sec += secondsAhead;
    return result;
}
}
#pragma GCC visibility pop

namespace Norlis::Test {

FileMoment::FileMoment(int number, std::function<void()> newAction)
{
    hasCome = false;
    Next(number, std::move(newAction));
}

void FileMoment::Next(int number, std::function<void()> newAction)
{
    action = std::move(newAction);
    callsLeft = number;
}

FileMoment::~FileMoment()
{
    callsLeft = -1;
    action = {};
}

bool FileMoment::HasCome() const
{
    return hasCome;
}

LaterClock::LaterClock(int seconds)
{
    secondsAhead = seconds;
}

LaterClock::~LaterClock()
{
    secondsAhead = 0;
}

WithoutExchange::WithoutExchange()
{
    knowsFlags = false;
}

WithoutExchange::~WithoutExchange()
{
    knowsFlags = true;
}

WholeSeconds::WholeSeconds()
{
    hasWholeSeconds = true;
}

WholeSeconds::~WholeSeconds()
{
    hasWholeSeconds = false;
}

} // namespace Norlis::Test
