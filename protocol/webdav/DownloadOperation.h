#pragma once

#include "Operation.h"
#include <protocol/streams/DiskFlush.h>
#include <protocol/streams/DownloadSink.h>

namespace Norlis::Social {

/// Downloads a document to a local file, which is replaced when all of it has arrived and been checked. After a broken
/// connection the download is resumed, if the server can prove that the document is still the same; otherwise it starts
/// again.
class DownloadOperation : public Operation {
public:
    struct Tools {
        QThreadPool& pool;
        DiskFlush& disk;
        std::function<void(int percent)> progress;
        std::function<void()> settling; ///< called when all bytes are there: the next transfer may begin
    };

    DownloadOperation(qint64 id, const Request::Download& request, const std::shared_ptr<WebDavSession>& session,
                      const Tools& tools, Finish finish);
    ~DownloadOperation() override;

    void Start() override;

private:
    void Get();

    /// These return why a response is refused, empty when it is not.
    QString CheckResponse(const HttpHead& head, qint64& from);
    QString CheckRange(const HttpHead& head, qint64& from) const;
    void OnResponse(const HttpResponse& response);

    /// Sends another request, if one may succeed after this response.
    bool Resume(const HttpResponse& response);
    void AskForSize(std::function<void(qint64)> onSize);
    void CheckSize();

    /// More has arrived than the document has: it has grown, or the answer has no end.
    void LookWhetherItHasGrown();
    void Check(qint64 expectedSize);
    void OnWritten();
    void PutInPlace();
    void FailToWrite(const QString& reason);
    void RememberVersion();
    void ReportProgress(qint64 position);
    void Fail(const QString& reason, const QString& advice);

    const qint64 id;
    const Request::Download request;
    const Tools tools;
    DavDocument document;
    std::shared_ptr<DownloadSink> sink;
    QByteArray etag;           ///< of the response that is being written
    QDateTime modifiedAt;      ///< of that response; invalid when not reported
    qint64 size = -1;          ///< of the document, according to that response
    int fruitlessAttempts = 0; ///< since the last one that brought anything new
    int restarts = 0;
    qint64 positionBefore = 0; ///< when the attempt began
    int reportedPercent = -1;
    Lifetime lifetime; ///< the disk may be busy for longer
};

} // namespace Norlis::Social
