#include "LocalCopyWatch.h"

#include "Later.h"

#include <QFileInfo>

namespace Norlis::Host {

namespace {

constexpr int quietMilliseconds = 700; // an editor may write for longer than that, and is told of twice then

} // namespace

LocalCopyWatch::LocalCopyWatch(std::function<void(const QString&)> onChanged) : onChanged(std::move(onChanged))
{
    quiet.setSingleShot(true);
    quiet.setInterval(quietMilliseconds);
    connect(&quiet, &QTimer::timeout, this, &LocalCopyWatch::Look);
    const auto wait = [this] { quiet.start(); };
    connect(&watcher, &QFileSystemWatcher::fileChanged, this, wait);
    connect(&watcher, &QFileSystemWatcher::directoryChanged, this, wait);
}

void LocalCopyWatch::Add(const QString& path)
{
    if (!files.contains(path)) {
        files.insert(path, Files::FileIdentity::OfPath(path));
        watcher.addPaths({path, QFileInfo(path).path()});
    }
}

void LocalCopyWatch::Look()
{
    for (auto file = files.begin(); file != files.end(); ++file) {
        const auto identity = Files::FileIdentity::OfPath(file.key());
        if (!identity.IsFile() || identity.HasContentOf(*file)) {
            continue; // while it is replaced it may be gone
        }
        *file = identity;
        watcher.addPath(file.key()); // the one that was watched may have been renamed over
        Later(this, [this, path = file.key()] { onChanged(path); });
    }
}

} // namespace Norlis::Host
