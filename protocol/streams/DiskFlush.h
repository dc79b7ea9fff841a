#pragma once

#include "Background.h"
#include <files/AtomicFile.h>

#include <QString>

#include <functional>
#include <memory>
#include <vector>

namespace Norlis::Social {

/// Makes files and names durable on another thread, in groups: what becomes ready while the disk works for one group
/// goes together in the next. Lives on one thread.
class DiskFlush {
public:
    /// \param error empty when all went well
    using Done = std::function<void(const QString& error)>;

    explicit DiskFlush(QThreadPool& pool);

    // done is called once, from the event loop, unless this object is destroyed before.

    /// The content of a file that is written to no more.
    void AddFile(const std::shared_ptr<Files::AtomicFile>& file, Done done);

    /// The names in a folder. No error: not every file system can do it.
    void AddFolder(const QString& folder, Done done);

private:
    struct Item {
        std::shared_ptr<Files::AtomicFile> file; ///< null for a folder
        QString folder;
        Done done;
    };
    using Items = std::vector<Item>;

    void Add(Item item);
    void StartNext();
    static std::vector<QString> Flush(const Items& items);

    Items waiting;
    bool isUnderWay = false;
    Background work;
};

} // namespace Norlis::Social
