#pragma once

#include "DocumentOperations.h"
#include "Operation.h"
#include "Publication.h"
#include <protocol/streams/UploadSource.h>

namespace Norlis::Social {

/// Uploads a file under a temporary name, and publishes it under that of the document when the server has shown that
/// all of it arrived. So a new document never takes another one's place, and a replaced one is complete at every
/// moment, whatever the server does with an interrupted upload.
class UploadOperation : public Operation {
public:
    struct Tools {
        QThreadPool& pool;
        std::function<void(int percent)> progress;
        std::function<void(const DavDocument& made)> published; ///< called when a document has new content
        std::function<void()> settling; ///< called when only a look is left: the next transfer may begin
    };

    UploadOperation(qint64 id, const Request::Upload& request, const std::shared_ptr<WebDavSession>& session,
                    const Tools& tools, Finish finish);
    ~UploadOperation() override;

    void Start() override;
    bool GiveUp() override;

private:
    enum class Step { Preparing, Sending, Checking, Publishing };

    /// \param expectedVersion that the local file was made from, or that was seen
    void LookAtReplaced(const QString& expectedVersion);
    void Put();
    void OnPut(const ChangeResult& result);

    /// False when there is no other way to send the file that this server may take.
    bool PutDifferently(const ChangeResult& result);

    /// Compares what arrived with what was sent. Ends when they are not the same.
    void Compare(const std::function<void()>& whenSame);
    void LookAtDirect(const ChangeResult& put);
    void OnDirectEntry(const DavEntry& entry, const ChangeResult& put);
    void Publish();
    void OnPublished(const Publication::Outcome& outcome);
    void Succeed(const DavDocument& made);

    /// Ends with the reply once the temporary file is deleted.
    void Fail(Reply reply, bool mayBeWritten = false);
    void FailAsChanged(bool mayBeWritten);
    void ReportProgress(qint64 position);
    QString Name() const;

    const qint64 id;
    const Request::Upload request;
    const Tools tools;
    FileRequests files;
    const std::shared_ptr<UploadSource> source;
    Step step = Step::Preparing;
    QByteArray name;                     ///< of the document
    std::optional<DavDocument> replaced; ///< as it was before the upload
    DavDocument sent;                    ///< under the name to which it was sent
    bool isDirect = false;               ///< to its final name, on servers that replace safely by themselves
    bool isProven = false;               ///< the server has shown that it has all of the bytes
    std::unique_ptr<ReadBack> readBack;
    std::unique_ptr<Publication> publication;
    std::optional<GroupedLooks::Announcement> announcement;
    std::unique_ptr<RemoveOperation> undoing; ///< of an upload that was cancelled at the last moment
    std::optional<HttpResponse> lost;         ///< to a PUT that may have been carried out
    bool isGivenUp = false;
    int reportedPercent = -1;
    Lifetime lifetime; ///< its temporary file is deleted also after the end
};

} // namespace Norlis::Social
