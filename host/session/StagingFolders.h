#pragma once

#include "StagingFolder.h"

#include <QHash>
#include <QSet>

#include <memory>
#include <vector>

namespace Norlis::Host {

/// The staging folders that the running downloads share: one for each folder that documents go to, and one more for
/// each document that has the name of another on its way there.
class StagingFolders {
public:
    /// \param list see StagingFolder; swept at once, off the event loop
    explicit StagingFolders(const QString& list);

    /// Where a document arrives that goes to a folder. Never null, but perhaps not valid.
    std::shared_ptr<StagingFolder> Open(const QString& target, const QString& name);

    /// The document of that name has left the folder, or will not come. The folder goes with the last one; if it cannot
    /// be removed yet, because the service still writes to it, when a later one is closed, or with this.
    /// \param folder what Open gave for the same target and name
    void Close(std::shared_ptr<StagingFolder> folder, const QString& target, const QString& name);

private:
    struct Shared {
        std::weak_ptr<StagingFolder> folder;
        QSet<QString> names; ///< of what arrives in it, without the differences that some file systems do not make
    };

    const QString list;
    QHash<QString, Shared> byTarget;
    std::vector<std::shared_ptr<StagingFolder>> closed; ///< that could not be removed yet
};

} // namespace Norlis::Host
