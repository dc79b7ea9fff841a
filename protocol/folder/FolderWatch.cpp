#include "FolderWatch.h"

#include <QFile>
#include <QSocketNotifier>

#include <algorithm>
#include <iterator>

#include <sys/inotify.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace Norlis::Social {

namespace {

constexpr int quiet = 200;      // milliseconds without another change, after which one is told
constexpr int patience = 1'000; // milliseconds after which it is told anyway

/// Not IN_MODIFY: a file that is being written is no document yet. A file that gets its name by a link is never closed.
constexpr std::uint32_t interesting = IN_CREATE | IN_CLOSE_WRITE | IN_ATTRIB | IN_MOVED_FROM | IN_MOVED_TO | IN_DELETE |
                                      IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;

/// Whether the kernel sees all changes in a folder.
bool SeesAllChanges(const QString& folder)
{
    // As statfs(2) names them: NFS, SMB, CIFS, SMB 2, FUSE, 9P, Ceph, AFS, Coda.
    constexpr std::uint32_t others[] = {0x6969,     0x517B,     0xFF534D42, 0xFE534D42, 0x65735546,
                                        0x01021997, 0x00C36400, 0x5346414F, 0x73757245};
    struct statfs status = {};
    return statfs(QFile::encodeName(folder).constData(), &status) == 0 &&
           std::find(std::begin(others), std::end(others), static_cast<std::uint32_t>(status.f_type)) ==
               std::end(others);
}

} // namespace

FolderWatch::FolderWatch(const QString& folder, std::function<void()> onChange)
    : folder(folder),
      onChange(std::move(onChange))
{
    settling.setSingleShot(true);
    settling.setInterval(quiet);
    QObject::connect(&settling, &QTimer::timeout, &settling, [this] { OnSettling(); });
}

FolderWatch::~FolderWatch()
{
    End();
}

bool FolderWatch::Begin()
{
    settling.stop();
    ReadEvents(); // of changes before
    if (descriptor >= 0) {
        notifier->setEnabled(true);
        return true;
    }
    if (!SeesAllChanges(folder)) {
        return false;
    }
    descriptor = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    if (inotify_add_watch(descriptor, QFile::encodeName(folder).constData(), interesting) < 0) {
        End();
        return false;
    }
    notifier = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read);
    QObject::connect(notifier.get(), &QSocketNotifier::activated, notifier.get(), [this] { OnReadable(); });
    return true;
}

void FolderWatch::End()
{
    notifier.reset();
    ::close(descriptor);
    descriptor = -1;
}

bool FolderWatch::ReadEvents()
{
    bool hasChanges = false;
    bool isGone = false;
    alignas(inotify_event) char buffer[16 * 1024];
    ssize_t length = 0;
    while ((length = read(descriptor, buffer, sizeof buffer)) > 0) {
        for (ssize_t position = 0; position < length;) {
            const auto& event = *reinterpret_cast<const inotify_event*>(buffer + position);
            position += static_cast<ssize_t>(sizeof event + event.len);
            isGone = isGone || (event.mask & (IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT | IN_IGNORED)) != 0;
            hasChanges = hasChanges || isGone || (event.mask & IN_ISDIR) == 0; // an overflow is one, too
        }
    }
    if (isGone) {
        End();
    }
    return hasChanges;
}

void FolderWatch::OnReadable()
{
    if (ReadEvents()) {
        if (notifier) {
            notifier->setEnabled(false); // the rest is read when it is quiet
        }
        sinceChange.start();
        settling.start();
    }
}

void FolderWatch::OnSettling()
{
    if (ReadEvents() && sinceChange.elapsed() < patience) {
        settling.start();
        return;
    }
    if (notifier) {
        notifier->setEnabled(true);
    }
    onChange();
}

} // namespace Norlis::Social
