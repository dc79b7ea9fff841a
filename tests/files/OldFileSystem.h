#pragma once

namespace Norlis::Test {

/// While it lives, no file system can rename without replacing, and where asked for none knows second names. One of
/// these at a time.
class OldFileSystem {
public:
    explicit OldFileSystem(bool hasLinks);
    ~OldFileSystem();

    OldFileSystem(const OldFileSystem&) = delete;
    OldFileSystem& operator=(const OldFileSystem&) = delete;
};

} // namespace Norlis::Test
