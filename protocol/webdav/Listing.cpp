#include "Listing.h"

#include <files/AtomicFile.h>

namespace Norlis::Social {

namespace {

constexpr int mostAttempts = 2;
constexpr qint64 leftoverAge = 24 * 60 * 60; // seconds

bool IsLeftover(const DavEntry& entry)
{
    return !entry.isCollection && Files::AtomicFile::IsTemporaryName(QString::fromUtf8(entry.name)) &&
           entry.modifiedAt.isValid() && entry.modifiedAt.secsTo(QDateTime::currentDateTimeUtc()) > leftoverAge;
}

/// Whoever wrote it may be about to store its hash.
bool IsJustWritten(const DavDocument& document)
{
    constexpr qint64 justNow = 60; // seconds
    return document.modifiedAt.isValid() && document.modifiedAt.secsTo(QDateTime::currentDateTimeUtc()) < justNow;
}

} // namespace

Listing::Listing(WebDavServer& server, std::function<void(Result)> done)
    : server(server),
      done(std::move(done)),
      requests(server.http),
      asksForHashes(server.documents.isEmpty())
{
    Send();
}

void Listing::Send()
{
    result = {};
    sink = std::make_shared<PropFindSink>(server.collection.Path(), server.collection.Origin(),
                                          [this](std::vector<DavEntry>&& entries) { Add(std::move(entries)); });
    hasNewVersions = false;
    HttpRequest request =
        PropFindMembers(server.collection.Url(), {server.isFamily, asksForHashes && MayHaveStoredHashes()});
    request.lane = HttpRequest::Lane::Listing;
    request.sink = sink;
    requests.Send(request, [this](HttpResponse&& response) { OnResponse(std::move(response)); });
}

void Listing::Add(std::vector<DavEntry>&& entries)
{
    for (const DavEntry& entry : entries) {
        auto document = DocumentOf(entry);
        if (document && !result.documents.contains(document->id)) {
            TakeKnownHash(*document);
            result.files.append(document->ToCloudFile());
            result.documents.insert(document->id, *document);
        } else if (IsLeftover(entry)) {
            result.leftovers.append(entry.name);
        }
    }
}

void Listing::TakeKnownHash(DavDocument& document)
{
    const auto known = server.documents.constFind(document.id);
    const bool isKnown = known != server.documents.constEnd() && IsSameVersion(*known, document);
    if (document.md5.isEmpty() && isKnown) {
        document.md5 = known->md5;
    }
    const bool mayGetHash = !document.etag.isEmpty() && document.md5.isEmpty();
    hasNewVersions = hasNewVersions || (mayGetHash && (!isKnown || IsJustWritten(document)));
}

bool Listing::MayHaveStoredHashes() const
{
    return !server.isFamily && server.keepsProperties.value_or(true);
}

void Listing::OnResponse(HttpResponse&& response)
{
    const auto what = QStringLiteral("Fetching the list of documents");
    if (response.fault == HttpResponse::Fault::Broken && attempts < mostAttempts) {
        ++attempts;
        Send();
        return;
    }
    const bool hasListing = response.HasSucceeded() || response.fault == HttpResponse::Fault::SinkRefused;
    const QString problem = hasListing ? sink->Finish() : QString();
    if (!hasListing) {
        result.failure = server.Failure(what, {}, response);
    } else if (!problem.isEmpty()) {
        result.failure = Failed(what, {}, problem, "Check that the address is that of a WebDAV collection.");
    } else if (hasNewVersions && !asksForHashes && MayHaveStoredHashes()) {
        asksForHashes = true;
        Send();
        return;
    }
    const auto whenDone = done; // it may destroy this object
    whenDone(std::move(result));
}

} // namespace Norlis::Social
