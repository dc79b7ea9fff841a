#pragma once

#include <functional>

namespace Norlis::Test {

/// While it lives, something is done in the middle of what the program does to files: before or after the call of that
/// number, counted from 0. Calls that look at a file, lock it, make it durable, rename it or remove it count. What is
/// done there may call them too. One of these at a time.
class FileMoment {
public:
    FileMoment(int number, std::function<void()> action);
    ~FileMoment();

    FileMoment(const FileMoment&) = delete;
    FileMoment& operator=(const FileMoment&) = delete;

    /// To be called by the action: what is done that many calls later.
    static void Next(int number, std::function<void()> action);

    /// False when there were fewer calls.
    bool HasCome() const;
};

/// While it lives, the program's clock is ahead, so that all files seem to have been written long ago.
class LaterClock {
public:
    explicit LaterClock(int seconds);
    ~LaterClock();

    LaterClock(const LaterClock&) = delete;
    LaterClock& operator=(const LaterClock&) = delete;
};

/// While it lives, no file system can exchange two files or rename without replacing, as most network drives.
class WithoutExchange {
public:
    WithoutExchange();
    ~WithoutExchange();

    WithoutExchange(const WithoutExchange&) = delete;
    WithoutExchange& operator=(const WithoutExchange&) = delete;
};

/// While it lives, the times of files are rounded to whole seconds, as on old file systems.
class WholeSeconds {
public:
    WholeSeconds();
    ~WholeSeconds();

    WholeSeconds(const WholeSeconds&) = delete;
    WholeSeconds& operator=(const WholeSeconds&) = delete;
};

} // namespace Norlis::Test
