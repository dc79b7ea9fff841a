#pragma once

#include <gtest/gtest.h>

#include <csignal>

#include <sys/resource.h>

namespace Norlis::TestKit {

/// Lets no file grow beyond a size while it lives: what a full disk looks like to a writer, without filling one.
class FileSizeLimit {
public:
    /// \param most bytes
    explicit FileSizeLimit(rlim_t most) : handlerBefore(std::signal(SIGXFSZ, SIG_IGN))
    {
        EXPECT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
        const rlimit limit{most, before.rlim_max};
        EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    }

    ~FileSizeLimit()
    {
        EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
        std::signal(SIGXFSZ, handlerBefore);
    }

    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    rlimit before{};
    void (*handlerBefore)(int);
};

} // namespace Norlis::TestKit
