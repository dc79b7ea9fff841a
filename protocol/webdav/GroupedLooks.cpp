#include "GroupedLooks.h"

#include "Listing.h"
#include "WebDavSession.h"

#include <algorithm>
#include <utility>

namespace Norlis::Social {

namespace {

constexpr int patience = 250; // milliseconds

// A look takes a server about as long as this many entries of a listing.
constexpr int entriesPerLook = 10;
constexpr int minGroup = 4;
constexpr int maxGroup = 256; // where a list is not worth it for so many, nobody waits for others

} // namespace

GroupedLooks::GroupedLooks(WebDavSession& session)
    : session(session),
      files(session, HttpRequest::Lane::Control),
      requests(session.http)
{
    soon.setSingleShot(true);
    overdue.setSingleShot(true);
    overdue.setInterval(patience);
    connect(&soon, &QTimer::timeout, this, [this] { Decide(false); });
    connect(&overdue, &QTimer::timeout, this, [this] { Decide(true); });
}

GroupedLooks::~GroupedLooks() = default;

void GroupedLooks::Look(const QByteArray& name, Expected expected, Wait wait, const Lifetime::Guard& guard,
                        FileRequests::Looked looked)
{
    waiting.push_back({name, expected, wait, guard, std::move(looked)});
    soon.start(0);
}

void GroupedLooks::Decide(bool isOverdue)
{
    if (waiting.empty() || !listing.empty()) {
        return;
    }
    const auto count = static_cast<int>(waiting.size());
    const int worthAList = std::max(minGroup, static_cast<int>(session.documents.size()) / entriesPerLook);
    const bool mayWait =
        std::all_of(waiting.begin(), waiting.end(), [](const Item& item) { return item.wait == Wait::ForAnnounced; });
    const bool isWorthWaiting = announced > 0 && count < maxGroup && worthAList <= maxGroup;
    if (mayWait && isWorthWaiting && !isOverdue) {
        if (!overdue.isActive()) {
            overdue.start();
        }
        return;
    }
    overdue.stop();
    if (count >= worthAList) {
        List();
        return;
    }
    const Items alone = std::exchange(waiting, {});
    for (const Item& item : alone) {
        LookAt(item);
    }
}

void GroupedLooks::List()
{
    listing = std::exchange(waiting, {});
    QSet<QByteArray> wanted;
    for (const Item& item : listing) {
        wanted.insert(item.name);
    }
    seen.clear();
    sink = std::make_shared<ListingSink>(session.collection.Path(), [this, wanted](std::vector<DavEntry>&& entries) {
        for (const DavEntry& entry : entries) {
            if (wanted.contains(entry.name)) {
                seen.insert(entry.name, entry);
            }
        }
    });
    HttpRequest request = PropFindMembers(session.collection.Url(), {session.isNextcloudLike, false});
    request.sink = sink;
    requests.Send(OnLane(HttpRequest::Lane::Listing, request),
                  [this](const HttpResponse& response) { OnListed(response); });
}

void GroupedLooks::OnListed(const HttpResponse& response)
{
    const bool isComplete = response.HasSucceeded() && sink->Finish().isEmpty() && !sink->MayLackDocuments();
    const auto found = std::exchange(seen, {});
    const Items looking = std::exchange(listing, {});
    soon.start(0); // for what has come meanwhile
    for (const Item& item : looking) {
        const auto entry = found.constFind(item.name);
        const bool isThere = entry != found.constEnd();
        if (!isComplete || item.name.startsWith('.') || isThere != (item.expected == Expected::There)) {
            LookAt(item);
        } else if (item.guard) {
            HttpResponse look = response; // as that of a look at it
            look.head.status = isThere ? 207 : 404;
            item.looked(look, isThere ? std::optional(*entry) : std::nullopt);
        }
    }
}

void GroupedLooks::LookAt(const Item& item)
{
    files.Look(item.name, [item](const HttpResponse& response, const std::optional<DavEntry>& entry) {
        if (item.guard) {
            item.looked(response, entry);
        }
    });
}

} // namespace Norlis::Social
