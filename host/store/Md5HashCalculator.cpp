#include "Md5HashCalculator.h"

#include "HashCache.h"

#include <base/Lifetime.h>
#include <files/FileReader.h>

#include <QRunnable>
#include <QThreadPool>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>

namespace Norlis::Host {

using namespace std::chrono_literals;
using Files::FileIdentity;
using std::chrono::nanoseconds;

class Md5HashCalculator::Private {
public:
    explicit Private(const QString& cacheFile) : cache(cacheFile)
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

    /// The cached hash, or else that of the file read once more. Empty when it cannot be read, or the calculator is
    /// being destroyed.
    std::string Hash(const std::string& path, Reading reading = Reading::IfChanged);

    /// Waits until the hash of the file can be cached, but not for a file that is written all the time.
    void LetSettle(const std::string& path);

    bool IsStopping()
    {
        const std::lock_guard lock(mutex);
        return isStopping;
    }

    HashCache cache;
    std::mutex mutex; ///< guards isStopping
    std::condition_variable stopped;
    bool isStopping = false;
    QThreadPool pool;
    Lifetime lifetime;
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

std::string Md5HashCalculator::Private::Hash(const std::string& path, Reading reading)
{
    const auto found = path.find('\0') == std::string::npos ? FileIdentity::OfTarget(path) : FileIdentity();
    if (!found.IsFile()) { // not opened either: it may be a pipe
        return {};
    }
    if (reading == Reading::IfChanged) {
        if (auto known = cache.Find(path, found); !known.empty()) {
            return known;
        }
    }
    Files::FileReader reader;
    if (!reader.Open(path)) {
        return {};
    }
    while (!reader.Next().isEmpty()) {
        if (IsStopping()) {
            return {};
        }
    }
    if (reader.Failed()) {
        return {};
    }
    auto hash = reader.Md5().toStdString();
    if (reader.IsLasting()) {
        cache.Store(path, reader.Version(), hash);
    }
    return hash;
}

void Md5HashCalculator::Private::LetSettle(const std::string& path)
{
    const auto identity = FileIdentity::OfTarget(path);
    if (!identity.IsFile() || !cache.Find(path, identity).empty()) {
        return;
    }
    std::unique_lock lock(mutex);
    // Bounded, because of stamps from the future. A little more than needed, because this clock is another one.
    const auto wait = std::min(identity.TimeUntilSettled(), nanoseconds(3s)) + 1ms;
    stopped.wait_for(lock, wait, [&] { return isStopping; });
}

Md5HashCalculator::Md5HashCalculator(const QString& cacheFile) : d(std::make_unique<Private>(cacheFile)) {}

Md5HashCalculator::~Md5HashCalculator() = default;

std::string Md5HashCalculator::CalculateHash(const ioPath& path)
{
    return d->Hash(path.utf8string());
}

void Md5HashCalculator::Prepare(const QStringList& paths, QObject* context, std::function<void()> done, Reading reading)
{
    auto batch = std::make_unique<Batch>([d = d.get(), paths, reading](Batch& batch) {
        for (const auto& path : paths) {
            if (d->IsStopping()) {
                return;
            }
            const std::string bytes = path.toStdString();
            d->LetSettle(bytes);
            d->Hash(bytes, reading);
        }
        emit batch.Finished();
    });
    if (context && done) {
        // The connection knows when the context goes; the calculator may still go before the call arrives.
        const auto finish = [guard = d->lifetime.Watch(), done = std::move(done)] {
            if (guard) {
                done();
            }
        };
        QObject::connect(batch.get(), &Batch::Finished, context, finish, Qt::QueuedConnection);
    }
    d->pool.start(batch.release());
}

} // namespace Norlis::Host

#include "Md5HashCalculator.moc"
