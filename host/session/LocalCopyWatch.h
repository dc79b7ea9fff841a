#pragma once

#include <files/FileIdentity.h>

#include <QFileSystemWatcher>
#include <QHash>
#include <QObject>
#include <QTimer>

#include <functional>

namespace Norlis::Host {

/// Tells when one of some files has other content: in place, or as a new file of that name, as editors save. What
/// happens while it is written is told once, when it has been quiet for a moment.
class LocalCopyWatch : public QObject {
public:
    explicit LocalCopyWatch(std::function<void(const QString& path)> onChanged);

    /// From now on; nothing happens when it is watched already.
    void Add(const QString& path);

private:
    void Look();

    const std::function<void(const QString&)> onChanged;
    QFileSystemWatcher watcher;
    QHash<QString, Files::FileIdentity> files; ///< as they were last, by path
    QTimer quiet;
};

} // namespace Norlis::Host
