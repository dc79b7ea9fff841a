#include "Md5HashCalculator.h"

#include "HashMemory.h"

#include <QCryptographicHash>
#include <QRunnable>
#include <QThreadPool>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Norlis::Host {

namespace {

using namespace std::chrono_literals;
using std::chrono::nanoseconds;

constexpr std::size_t pieceSize = 256 * 1024;

/// A file that is open for reading.
class OpenFile {
public:
    // Does not wait for the other end of a pipe, in case the path became one just now.
    explicit OpenFile(const std::string& path) : descriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {}

    ~OpenFile()
    {
        if (descriptor >= 0) {
            ::close(descriptor);
        }
    }

    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    const int descriptor;
};

nanoseconds Nanoseconds(const timespec& time)
{
    return std::chrono::seconds(time.tv_sec) + nanoseconds(time.tv_nsec);
}

/// Nothing when there is no regular file.
std::optional<FileIdentity> IdentityOf(int result, const struct stat& status)
{
    if (result != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    return FileIdentity{static_cast<qint64>(status.st_dev), static_cast<qint64>(status.st_ino), status.st_size,
                        Nanoseconds(status.st_mtim).count(), Nanoseconds(status.st_ctim).count()};
}

std::optional<FileIdentity> IdentityOf(const std::string& path)
{
    struct stat status {};
    return IdentityOf(::stat(path.c_str(), &status), status);
}

std::optional<FileIdentity> IdentityOf(const OpenFile& file)
{
    struct stat status {};
    return IdentityOf(::fstat(file.descriptor, &status), status);
}

/// How long until the file's time stamp is so old that a write from now on gets another one; at most 0 when it is.
nanoseconds TimeUntilSettled(const FileIdentity& identity)
{
    // File systems round the time: most to a tick of the system's clock, old ones to one or two seconds.
    const nanoseconds changed(identity.changed);
    const nanoseconds margin = changed % 1s == nanoseconds::zero() ? nanoseconds(3s) : nanoseconds(50ms);
    return changed + margin - std::chrono::system_clock::now().time_since_epoch();
}

} // namespace

class Md5HashCalculator::Private {
public:
    explicit Private(const QString& memoryFile) : memory(memoryFile)
    {
        pool.setMaxThreadCount(1);
    }

    ~Private()
    {
        {
            const std::lock_guard lock(mutex);
            isStopping = true;
        }
        stopped.notify_all();
        pool.clear();
        pool.waitForDone();
    }

    /// The remembered hash, or else the file read once more. Empty when it cannot be, or the calculator is going.
    std::string Hash(const std::string& path);

    /// Waits until a hash of the file can be remembered, but not for a file that is written all the time.
    void LetSettle(const std::string& path);

    bool IsStopping()
    {
        const std::lock_guard lock(mutex);
        return isStopping;
    }

    std::string Read(const OpenFile& file);

    HashMemory memory;
    std::mutex mutex; ///< guards isStopping
    std::condition_variable stopped;
    bool isStopping = false;
    const std::shared_ptr<bool> life = std::make_shared<bool>(); ///< expires with the calculator
    QThreadPool pool;
};

namespace {

/// Hashes some files on the pool's thread.
class Batch : public QObject, public QRunnable {
    Q_OBJECT

public:
    explicit Batch(std::function<void(Batch&)> work) : work(std::move(work)) {}

    void run() override
    {
        work(*this);
    }

signals:
    void Finished();

private:
    std::function<void(Batch&)> work;
};

} // namespace

std::string Md5HashCalculator::Private::Hash(const std::string& path)
{
    const auto found = path.find('\0') == std::string::npos ? IdentityOf(path) : std::nullopt;
    if (!found) {
        return {};
    }
    if (auto known = memory.Find(path, *found); !known.empty()) {
        return known;
    }
    const OpenFile file(path);
    const auto before = IdentityOf(file);
    if (!before) {
        return {};
    }
    const bool isSettled = TimeUntilSettled(*before) <= nanoseconds::zero();
    const std::string hash = Read(file);
    if (isSettled && !hash.empty() && IdentityOf(file) == before) {
        memory.Remember(path, *before, hash);
    }
    return hash;
}

std::string Md5HashCalculator::Private::Read(const OpenFile& file)
{
    QCryptographicHash hash(QCryptographicHash::Md5);
    std::vector<char> piece(pieceSize);
    while (!IsStopping()) {
        const auto count = ::read(file.descriptor, piece.data(), piece.size());
        if (count > 0) {
            hash.addData(piece.data(), static_cast<int>(count));
        } else if (count == 0) {
            return hash.result().toHex().toStdString();
        } else if (errno != EINTR) {
            return {};
        }
    }
    return {};
}

void Md5HashCalculator::Private::LetSettle(const std::string& path)
{
    const auto identity = IdentityOf(path);
    if (!identity || !memory.Find(path, *identity).empty()) {
        return;
    }
    std::unique_lock lock(mutex);
    // Bounded, because of stamps from the future. A little more than needed, because this clock is another one.
    const auto wait = std::min(TimeUntilSettled(*identity), nanoseconds(3s)) + 1ms;
    stopped.wait_for(lock, wait, [&] { return isStopping; });
}

Md5HashCalculator::Md5HashCalculator(const QString& memoryFile) : d(std::make_unique<Private>(memoryFile)) {}

Md5HashCalculator::~Md5HashCalculator() = default;

std::string Md5HashCalculator::CalculateHash(const ioPath& path)
{
    return d->Hash(path.utf8string());
}

void Md5HashCalculator::Prepare(const QStringList& paths, QObject* context, std::function<void()> done)
{
    auto batch = std::make_unique<Batch>([d = d.get(), paths](Batch& batch) {
        for (const auto& path : paths) {
            if (d->IsStopping()) {
                return;
            }
            const std::string bytes = path.toStdString();
            d->LetSettle(bytes);
            d->Hash(bytes);
        }
        emit batch.Finished();
    });
    if (context && done) {
        // The connection knows when the context goes; the calculator may still go before the call arrives.
        const auto finish = [life = std::weak_ptr<bool>(d->life), done = std::move(done)] {
            if (!life.expired()) {
                done();
            }
        };
        QObject::connect(batch.get(), &Batch::Finished, context, finish, Qt::QueuedConnection);
    }
    d->pool.start(batch.release());
}

} // namespace Norlis::Host

#include "Md5HashCalculator.moc"
