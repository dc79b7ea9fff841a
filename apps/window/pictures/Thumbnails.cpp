#include "Thumbnails.h"

#include <QImageReader>
#include <QRunnable>

#include <algorithm>

namespace Norlis::Window {

namespace {

constexpr int threads = 2;

/// In KiB, because QCache uses int.
int CostOf(const QImage& image)
{
    return 1 + static_cast<int>(image.sizeInBytes() / 1024);
}

} // namespace

Thumbnails::Thumbnails(qsizetype limit, QObject* parent) : QObject(parent), previews(static_cast<int>(limit / 1024))
{
    pool.setMaxThreadCount(threads);
}

Thumbnails::~Thumbnails()
{
    pool.clear();
    pool.waitForDone();
}

QPixmap Thumbnails::Find(const QString& path)
{
    if (previews.contains(path) && !changed.contains(path)) {
        return Known(path);
    }
    if (!reading.contains(path)) {
        wanted.erase(std::remove(wanted.begin(), wanted.end(), path), wanted.end());
        wanted.push_front(path);
        if (wanted.size() > std::size_t{maxWanted}) {
            wanted.pop_back();
        }
        ReadNext();
    }
    return Known(path);
}

QPixmap Thumbnails::Known(const QString& path) const
{
    const auto known = previews.object(path);
    return known ? *known : QPixmap();
}

void Thumbnails::NoteChange(const QString& path)
{
    if (previews.contains(path) || reading.contains(path)) {
        changed.insert(path);
    }
}

void Thumbnails::ReadNext()
{
    while (!wanted.empty() && reading.size() < threads) {
        const QString path = wanted.front();
        wanted.pop_front();
        reading.insert(path);
        changed.remove(path);
        pool.start([this, path] { // the destructor waits for it
            const QImage image = QImageReader(path).read();
            QMetaObject::invokeMethod(
                this, [this, path, image] { Keep(path, image); }, Qt::QueuedConnection);
        });
    }
}

void Thumbnails::Keep(const QString& path, const QImage& image)
{
    reading.remove(path);
    previews.insert(path, new QPixmap(QPixmap::fromImage(image)), CostOf(image));
    ReadNext();
    emit Loaded(path);
}

} // namespace Norlis::Window
