#pragma once

#include <contracts/IHashCalculator.h>
#include <host/Export.h>

#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

namespace Norlis::Host {

/// MD5 of files as 32 lower-case hexadecimal digits, read in pieces.
///
/// The hash of a file is cached for as long as its size, its time stamps and its inode stay the same; with a cache file
/// it survives restarts too.
class NORLIS_HOST_EXPORT Md5HashCalculator : public PDF::IHashCalculator {
public:
    /// \param cacheFile SQLite file for hashes; empty for none. One that is damaged is made anew, one that cannot be
    ///                  used is done without.
    explicit Md5HashCalculator(const QString& cacheFile = {});
    ~Md5HashCalculator() override;

    /// Empty for an empty path, a file that cannot be read, anything that is not a regular file, and what is expected.
    std::string CalculateHash(const ioPath& path) override;

    /// Somebody else reads the file and will tell its hash: until then it is not known, whatever is cached.
    void Expect(const QString& path);

    /// Ends what Expect began; without effect otherwise.
    void StopExpecting(const QString& path);

    /// The hash of a file that somebody else has read.
    /// \param identity  of the file when every byte of it had been seen, in the form of Social::OAuth2::TransferredFile
    /// \param isLasting whether every later write gives it another identity; else it is read once more, some time later
    void Tell(const QString& path, const QString& identity, const std::string& hash, bool isLasting);

    /// Which files are read.
    enum class Reading {
        IfChanged, ///< those whose hash is not cached
        Always,    ///< all: a program that changes a file through a memory map leaves its time stamps as they were
    };

    /// Hashes files on another thread, so that CalculateHash answers at once afterwards. Calls done on this thread,
    /// from its event loop, when all are ready; not at all when the context or the calculator is gone by then. \param
    /// context lives on this thread
    void Prepare(const QStringList& paths, QObject* context, std::function<void()> done,
                 Reading reading = Reading::IfChanged);

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace Norlis::Host
