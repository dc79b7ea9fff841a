#pragma once

#include "WebDavSession.h"
#include <base/Lifetime.h>
#include <protocol/dav/MultiStatusParser.h>
#include <protocol/http/HttpRequestGroup.h>

#include <QTimer>

namespace Norlis::Social {

/// Parses a listing while it arrives and passes on its entries in batches. It returns to the event loop now and then,
/// however fast the listing arrives.
class ListingSink : public HttpSink {
public:
    using OnEntries = std::function<void(std::vector<DavEntry>&&)>;

    ListingSink(const DavPath& path, OnEntries onEntries);

    bool Begin(const HttpHead& head, std::function<void()> onReady) override;
    Taken Add(const char* data, qint64 size) override;

    /// After the last piece: what is wrong with the listing; empty when it is complete.
    QString Finish();

    /// Whether a complete listing has an entry of which nobody can say what it is: then nothing follows from what is
    /// missing.
    bool MayLackDocuments() const;

    /// When the server answered, by its own clock; invalid when it does not say.
    QDateTime ServerTime() const
    {
        return serverTime;
    }

private:
    const DavPath path;
    const OnEntries onEntries;
    std::function<void()> onReady; ///< while the listing waits for its turn
    qint64 takenInTurn = 0;        ///< bytes
    QTimer nextTurn;
    std::unique_ptr<MultiStatusParser> parser;
    bool isMultiStatus = false;
    QDateTime serverTime;
};

/// Fetches the documents of the collection, once.
class Listing {
public:
    struct Result {
        DavDocuments documents;
        QList<CloudFile> files;      ///< in the server's order
        QList<QByteArray> leftovers; ///< names of files that uploads left behind a day ago or earlier
        bool mayLackDocuments = false;
        std::optional<Reply> failure; ///< then the rest means nothing
    };

    Listing(WebDavSession& session, std::function<void(Result)> done);

private:
    void Send();
    void Add(std::vector<DavEntry>&& entries);
    void TakeKnownHash(DavDocument& document);
    void KeepKnownDocuments();
    bool MayHaveStoredHashes() const;
    void OnResponse(HttpResponse&& response);

    WebDavSession& session;
    std::function<void(Result)> done;
    HttpRequestGroup requests;
    std::shared_ptr<ListingSink> sink;
    Result result;
    int attempts = 1;
    bool asksForHashes;          ///< for some servers, looking up stored ones takes longer than all the rest
    bool hasNewVersions = false; ///< whose hashes are unknown
};

} // namespace Norlis::Social
