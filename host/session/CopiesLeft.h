#pragma once

#include "KeptCopies.h"

#include <host/store/Md5HashCalculator.h>

#include <QObject>
#include <QStringList>

#include <functional>
#include <memory>
#include <string>

namespace Norlis::Host {

/// Finds the local copies with changes that are not in the cloud whose documents have left the list: nothing else shows
/// them any more.
class CopiesLeft : public QObject {
public:
    /// \param copies      outlives this
    /// \param hasReturned whether the copy at this path is that of a document in the list
    CopiesLeft(KeptCopies& copies, const std::shared_ptr<Md5HashCalculator>& hashes,
               std::function<bool(const QString& path)> hasReturned);

    /// Whom to tell of such copies, some time after they were looked at. Until then Look does nothing.
    void Tell(std::function<void(const QString& path)> tell);

    /// Looks whether a copy has changes. It is read off the event loop.
    /// \param syncHash MD5 of the cloud copy when it was last the same
    void Look(const QString& path, const std::string& syncHash);

    /// Looks at those whose documents left the list in an earlier session, and have not come back. Once.
    void LookAtEarlier();

    /// No longer takes the file for a copy, if its document has not come back.
    void Forget(const QString& path);

private:
    KeptCopies& copies;
    const std::shared_ptr<Md5HashCalculator> hashes;
    const std::function<bool(const QString& path)> hasReturned;
    std::function<void(const QString& path)> tell;
    QStringList earlier; ///< paths of those whose documents had left the list before it was loaded
};

} // namespace Norlis::Host
