#include "Md5HashCalculator.h"

#include "HashCache.h"

#include <files/FileReader.h>

#include <QPointer>
#include <QThreadPool>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <unordered_map>
#include <unordered_set>
#include <utility>

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

    /// Of files that were told, and may have been written over since without a trace.
    struct Told {
        FileIdentity identity;
        std::string hash;
    };

    HashCache cache;
    std::unordered_set<std::string> expected;      ///< paths
    std::unordered_map<std::string, Told> passing; ///< by path, until they are read
    QTimer reading;   ///< of those, when nothing new has been told for a while; receives what the pool reports
    std::mutex mutex; ///< guards isStopping
    std::condition_variable stopped;
    bool isStopping = false;
    QThreadPool pool;
};

namespace {

constexpr auto calm = 1s;

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

Md5HashCalculator::Md5HashCalculator(const QString& cacheFile) : d(std::make_unique<Private>(cacheFile))
{
    d->reading.setSingleShot(true);
    d->reading.setInterval(calm);
    QObject::connect(&d->reading, &QTimer::timeout, &d->reading, [this] {
        QStringList paths;
        for (const auto& told : d->passing) {
            paths.append(QString::fromStdString(told.first));
        }
        Prepare(paths, &d->reading, [this, paths] {
            for (const auto& path : paths) {
                d->passing.erase(path.toStdString());
            }
        });
    });
}

Md5HashCalculator::~Md5HashCalculator() = default;

std::string Md5HashCalculator::CalculateHash(const ioPath& path)
{
    const auto bytes = path.utf8string();
    if (d->expected.count(bytes) != 0) {
        return {};
    }
    const auto told = d->passing.find(bytes);
    const bool isKnown = told != d->passing.end() && FileIdentity::OfTarget(bytes) == told->second.identity;
    return isKnown ? told->second.hash : d->Hash(bytes);
}

void Md5HashCalculator::Expect(const QString& path)
{
    d->expected.insert(path.toStdString());
}

void Md5HashCalculator::StopExpecting(const QString& path)
{
    d->expected.erase(path.toStdString());
}

void Md5HashCalculator::Tell(const QString& path, const QString& identityText, const std::string& hash, bool isLasting)
{
    const auto identity = FileIdentity::FromString(identityText);
    const auto bytes = path.toStdString();
    d->expected.erase(bytes);
    d->passing.erase(bytes);
    if (isLasting) {
        d->cache.Store(bytes, identity, hash);
    } else {
        d->passing[bytes] = {identity, hash};
    }
    d->reading.start(); // which also writes down what is cached
}

void Md5HashCalculator::Prepare(const QStringList& paths, QObject* context, std::function<void()> done, Reading reading)
{
    // The context is looked at on this thread alone, where it may end at any time.
    auto report = [context = QPointer<QObject>(context), done = std::move(done)] {
        if (context && done) {
            done();
        }
    };
    d->pool.start([d = d.get(), paths, reading, report = std::move(report)]() mutable {
        for (const auto& path : paths) {
            if (d->IsStopping()) {
                return;
            }
            const std::string bytes = path.toStdString();
            d->LetSettle(bytes);
            d->Hash(bytes, reading);
        }
        d->cache.Flush();
        QMetaObject::invokeMethod(&d->reading, std::move(report), Qt::QueuedConnection);
    });
}

} // namespace Norlis::Host
