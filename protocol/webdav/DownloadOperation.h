#pragma once

#include "Directory.h"
#include "Operation.h"
#include <protocol/transfer/DownloadSink.h>

namespace Norlis::Social {

/// Fetches a document into a local file, which is replaced when all of it has come and been checked. A connection that
/// breaks is taken up again where it broke, if the server can prove that the document is still the same, else from the
/// start.
class DownloadOperation : public Operation {
public:
    struct Tools {
        Directory& directory;
        QThreadPool& pool;
        std::function<void(int percent)> progress;
    };

    DownloadOperation(qint64 id, const Request::Download& request, const std::shared_ptr<WebDavServer>& server,
                      const Tools& tools, Finish finish);
    ~DownloadOperation() override;

    void Start() override;

private:
    void Get();
    QString WhyNotTaken(const HttpHead& head, qint64& from);
    QString WhyNotTheRest(const HttpHead& head, qint64& from) const;
    void OnResponse(const HttpResponse& response);
    bool GoOn(const HttpResponse& response);
    void AskForSize();
    void Check(qint64 expectedSize);
    void PutInPlace();
    void ReportProgress(qint64 position);
    void Fail(const QString& reason, const QString& advice);

    const qint64 id;
    const Request::Download request;
    const Tools tools;
    DavDocument document;
    std::shared_ptr<DownloadSink> sink;
    QByteArray etag;        ///< of the answer that is being written
    qint64 size = -1;       ///< of the document, as that answer said
    int attemptsInVain = 0; ///< since anything new came
    int startsOver = 0;
    qint64 positionBefore = 0; ///< when the attempt began
    int reportedPercent = -1;
};

} // namespace Norlis::Social
