#pragma once

#include <QElapsedTimer>
#include <QString>
#include <QTimer>

#include <functional>
#include <memory>

class QSocketNotifier;

namespace Norlis::Social {

/// Notices that files in a folder change, whoever changes them, without looking at them again and again: the kernel
/// tells (inotify). Files that a program changes through a memory map, and those in sub-folders, it does not tell of.
///
/// Lives on a thread with an event loop.
class FolderWatch {
public:
    /// \param onChange called from the event loop, soon after something has changed; once for what changes together
    FolderWatch(const QString& folder, std::function<void()> onChange);
    ~FolderWatch();

    /// What changes from now on is told. False where it would not be: on a file system that other computers can change,
    /// or that is a program (FUSE), or if the kernel refuses. Nothing more is told after the folder has gone; begin
    /// again then.
    bool Begin();

private:
    void End();

    /// Whether there is anything among what the kernel has told.
    bool ReadEvents();
    void OnReadable();
    void OnSettling();

    const QString folder;
    const std::function<void()> onChange;
    int descriptor = -1; ///< while something is watched
    std::unique_ptr<QSocketNotifier> notifier;
    QTimer settling; ///< runs from a change until it is told
    QElapsedTimer sinceChange;
};

} // namespace Norlis::Social
