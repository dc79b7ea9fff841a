#pragma once

#include "WebDavSession.h"
#include <protocol/http/HttpRequestGroup.h>
#include <protocol/preview/DocumentPieces.h>

#include <QHash>
#include <QTimer>

namespace Norlis::Social {

/// One version of a document on a server, read by ranges (RFC 9110, 14): no more than a preview is worth.
class RemotePieces : public DocumentPieces {
public:
    /// \param document its size is known
    RemotePieces(const std::shared_ptr<WebDavSession>& session, const DavDocument& document);

    /// Reads the end, by which the rest of a PDF document is found, and so finds out whether the server sends parts.
    void ReadEnd(Done done);

    /// Whether it sends nothing but whole documents.
    bool IsWithoutRanges() const;

    /// Set once HasFailed.
    const Reply& Failure() const;

    qint64 Size() const override;
    void Read(qint64 offset, qint64 length, Done done) override;
    bool HasFailed() const override;

private:
    class PartSink;

    /// Pieces by their numbers.
    void Fetch(qint64 first, qint64 end);
    void OnFetched(qint64 first, const PartSink& part, const HttpResponse& response);
    void Fail(Reply reply);
    void Refuse(const QString& reason);

    const std::shared_ptr<WebDavSession> session;
    const DavDocument document;
    const qint64 size;
    QByteArray etag;                  ///< of all parts; empty before the first
    QHash<qint64, QByteArray> pieces; ///< by number
    qint64 offset = 0;                ///< what is waited for
    qint64 length = 0;
    Done done;
    int rounds = 0;
    qint64 fetched = 0; ///< bytes
    bool isFetching = false;
    bool isWithoutRanges = false;
    QTimer strongTag; ///< runs until the server has one for a document that was just written
    Reply failure;
    HttpRequestGroup requests;
};

} // namespace Norlis::Social
