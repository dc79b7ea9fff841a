#include "Listing.h"

#include <files/AtomicFile.h>
#include <protocol/dav/DavRequests.h>
#include <protocol/http/HttpDate.h>

namespace Norlis::Social {

namespace {

constexpr int maxAttempts = 2;
constexpr qint64 maxBytesPerTurn = 128 * 1024; // bytes; a few milliseconds' work
constexpr qint64 leftoverAge = 24 * 60 * 60;   // seconds

/// \param now by the server's clock, as are its files' dates: that of this computer may be days ahead
bool IsLeftover(const DavEntry& entry, const QDateTime& now)
{
    return !entry.isCollection && Files::AtomicFile::IsTemporaryName(FromUtf8(entry.name)) &&
           entry.modifiedAt.isValid() && now.isValid() && entry.modifiedAt.secsTo(now) > leftoverAge;
}

/// Its hash may be about to be stored.
bool IsJustWritten(const DavDocument& document, const QDateTime& serverTime)
{
    constexpr qint64 justNow = 60; // seconds
    const QDateTime now = serverTime.isValid() ? serverTime : QDateTime::currentDateTimeUtc();
    return document.modifiedAt.isValid() && document.modifiedAt.secsTo(now) < justNow;
}

} // namespace

ListingSink::ListingSink(const DavPath& path, OnEntries onEntries) : path(path), onEntries(std::move(onEntries))
{
    nextTurn.setSingleShot(true);
    QObject::connect(&nextTurn, &QTimer::timeout, &nextTurn, [this] {
        const auto resume = onReady; // it may destroy this object
        resume();
    });
}

bool ListingSink::Begin(const HttpHead& head, std::function<void()> whenReady)
{
    onReady = std::move(whenReady);
    takenInTurn = 0;
    parser = std::make_unique<MultiStatusParser>(path);
    isMultiStatus = head.status == 207 || head.status == 200;
    serverTime = ParseHttpDate(head.Field("date"));
    return true;
}

HttpSink::Taken ListingSink::Add(const char* data, qint64 size)
{
    if (takenInTurn >= maxBytesPerTurn) {
        takenInTurn = 0;
        nextTurn.start(0);
        return Taken::Later;
    }
    takenInTurn += size;
    if (!parser->Add(QByteArray::fromRawData(data, static_cast<int>(size)))) {
        return Taken::Refused;
    }
    auto entries = parser->TakeEntries();
    const bool bringsNothing = entries.empty(); // such as blanks, which a server may send for ever
    onEntries(std::move(entries));
    return bringsNothing ? Taken::Idle : Taken::Yes;
}

QString ListingSink::Finish()
{
    if (!parser || !isMultiStatus) {
        return QStringLiteral("The answer is not a WebDAV listing");
    }
    if (!parser->Finish()) {
        return parser->ErrorText();
    }
    onEntries(parser->TakeEntries());
    if (!parser->SawSelf()) {
        return QStringLiteral("The listing is for another folder");
    }
    const int withheld = parser->RefusedCount() + parser->UndescribedCount();
    if (withheld > 0) {
        return QStringLiteral("The server withholds the details of %1 documents").arg(withheld);
    }
    return {};
}

bool ListingSink::MayLackDocuments() const
{
    return parser->UnidentifiedCount() > 0;
}

Listing::Listing(WebDavSession& session, std::function<void(Result)> done)
    : session(session),
      done(std::move(done)),
      requests(session.http),
      asksForHashes(session.documents.isEmpty())
{
    Send();
}

void Listing::Send()
{
    result = {};
    sink = std::make_shared<ListingSink>(session.collection.Path(),
                                         [this](std::vector<DavEntry>&& entries) { Add(std::move(entries)); });
    hasNewVersions = false;
    session.versions.Refresh();
    HttpRequest request =
        PropFindMembers(session.collection.Url(), {session.isNextcloudLike, asksForHashes && MayHaveStoredHashes()});
    request.sink = sink;
    requests.Send(OnLane(HttpRequest::Lane::Listing, request),
                  [this](HttpResponse&& response) { OnResponse(std::move(response)); });
}

void Listing::Add(std::vector<DavEntry>&& entries)
{
    for (const DavEntry& entry : entries) {
        auto document = DocumentOf(entry);
        if (document && !result.documents.contains(document->id)) {
            TakeKnownHash(*document);
            result.files.append(session.EntryOf(*document));
            result.documents.insert(document->id, *document);
        } else if (IsLeftover(entry, sink->ServerTime())) {
            result.leftovers.append(entry.name);
        }
    }
}

void Listing::TakeKnownHash(DavDocument& document)
{
    const auto known = session.documents.constFind(document.id);
    const bool isKnown = known != session.documents.constEnd() && IsSameVersion(*known, document);
    if (document.md5.isEmpty() && isKnown) {
        document.md5 = known->md5;
    }
    const bool mayGetHash = !document.etag.isEmpty() && document.md5.isEmpty();
    hasNewVersions = hasNewVersions || (mayGetHash && (!isKnown || IsJustWritten(document, sink->ServerTime())));
}

void Listing::KeepKnownDocuments()
{
    for (const DavDocument& known : qAsConst(session.documents)) {
        if (!result.documents.contains(known.id)) {
            result.files.append(known.ToCloudFile());
            result.documents.insert(known.id, known);
        }
    }
}

bool Listing::MayHaveStoredHashes() const
{
    return !session.isNextcloudLike && session.storesProperties.value_or(true);
}

void Listing::OnResponse(HttpResponse&& response)
{
    const auto what = QStringLiteral("Fetching the list of documents");
    if (response.fault == HttpResponse::Fault::Broken && attempts < maxAttempts) {
        ++attempts;
        Send();
        return;
    }
    const bool hasListing = response.HasSucceeded() || response.fault == HttpResponse::Fault::SinkRefused;
    const QString problem = hasListing ? sink->Finish() : QString();
    if (!hasListing) {
        result.failure = session.FailureReplyTo(what, {}, response);
    } else if (!problem.isEmpty()) {
        result.failure =
            FailureReply(what, {}, problem, "Check that the address is that of a folder on a WebDAV server.");
    } else if (hasNewVersions && !asksForHashes && MayHaveStoredHashes()) {
        asksForHashes = true;
        Send();
        return;
    } else if (sink->MayLackDocuments()) {
        result.mayLackDocuments = true;
        KeepKnownDocuments();
    }
    CallOnce(done, std::move(result)); // it may destroy this object
}

} // namespace Norlis::Social
