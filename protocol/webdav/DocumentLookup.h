#pragma once

#include "DavDocument.h"
#include <protocol/service/Reply.h>

#include <functional>
#include <map>
#include <memory>

namespace Norlis::Social {

class Listing;
struct WebDavSession;

/// Finds documents by their ids: among the known ones, otherwise by a new list. Searches that begin meanwhile share
/// that list.
class DocumentLookup {
public:
    /// The document, or the failure that says why it was not found.
    using Found = std::function<void(const DavDocument* document, Reply&& failure)>;

    explicit DocumentLookup(WebDavSession& session);
    ~DocumentLookup();

    DocumentLookup(const DocumentLookup&) = delete;
    DocumentLookup& operator=(const DocumentLookup&) = delete;

    /// found is called once: at once for a known document, otherwise from the event loop, unless Forget comes before.
    /// \param what for error texts
    void Find(qint64 request, const QString& id, const QString& what, Found found);
    void Forget(qint64 request);

    /// Forgets all searches.
    void Stop();

    bool IsIdle() const
    {
        return searches.empty() && !listing;
    }

private:
    struct Search {
        QString id;
        QString what;
        Found found;
    };

    void FetchList();
    void Adopt(DavDocuments&& found);
    void Answer(const Search& search);

    WebDavSession& session;
    std::map<qint64, Search> searches; ///< waiting for the list, by request
    std::unique_ptr<Listing> listing;
};

} // namespace Norlis::Social
