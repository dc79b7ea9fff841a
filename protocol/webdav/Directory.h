#pragma once

#include "Listing.h"

namespace Norlis::Social {

/// Finds documents by their ids: among those that are known, else by asking the server for a list. Whoever asks
/// meanwhile gets the answer of the same list.
class Directory {
public:
    /// The document, or the failure that says why there is none.
    using Found = std::function<void(const DavDocument* document, Reply&& failure)>;

    explicit Directory(WebDavServer& server);

    /// found is called once: at once for a known document, else from the event loop, unless Forget comes before.
    void Find(qint64 request, const QString& id, const QString& what, Found found);
    void Forget(qint64 request);

    bool IsIdle() const
    {
        return finders.empty() && !listing;
    }

private:
    struct Finder {
        QString id;
        QString what; ///< for error texts
        Found found;
    };

    void Answer(Listing::Result&& result);

    WebDavServer& server;
    std::map<qint64, Finder> finders;
    std::unique_ptr<Listing> listing;
};

} // namespace Norlis::Social
