#pragma once

#include "Directory.h"
#include "HashKeeper.h"
#include "Operation.h"
#include "Publication.h"
#include "Sweeper.h"
#include <protocol/transfer/UploadSource.h>

namespace Norlis::Social {

/// Sends a file: under a temporary name, which is given up for the document's when the server has shown that all of it
/// arrived. So a new document never takes another one's place, and a replaced one is whole at every moment, whatever
/// the server does with an upload that breaks off.
class UploadOperation : public Operation {
public:
    struct Tools {
        Directory& directory;
        Sweeper& sweeper;
        HashKeeper& hashKeeper;
        QThreadPool& pool;
        std::function<void(int percent)> progress;
        std::function<void(const DavDocument& made)> published; ///< called when a document has new content
    };

    UploadOperation(qint64 id, const Request::Upload& request, const std::shared_ptr<WebDavServer>& server,
                    const Tools& tools, Finish finish);
    ~UploadOperation() override;

    void Start() override;
    bool GiveUp() override;

private:
    enum class Step { Preparing, Sending, Checking, Publishing };

    void LookAtReplaced();
    void Put();
    void OnPut(const HttpResponse& response);
    void CheckWhatArrived(const HttpResponse& answer);
    void OnEntry(const DavEntry& entry, const HttpResponse& answer);
    void Publish();
    void OnPublished(const Publication::Outcome& outcome);
    void Succeed(const DavDocument& made);

    /// Ends with a reply when the temporary file is gone.
    void Fail(Reply reply, bool mayBeWritten = false);
    void ReportProgress(qint64 position);
    QString Name() const;
    DavPath PathOf(const QByteArray& document) const;

    const qint64 id;
    const Request::Upload request;
    const Tools tools;
    const std::shared_ptr<UploadSource> source;
    Step step = Step::Preparing;
    QByteArray name;                     ///< that the document shall have
    std::optional<DavDocument> replaced; ///< as it was before
    DavDocument sent;                    ///< under the name that it was sent to
    bool isDirect = false;               ///< sent to its own name: the server replaces safely by itself
    std::unique_ptr<Publication> publication;
    bool isGivenUp = false;
    int reportedPercent = -1;

    /// Held weakly by what may come after the end.
    const std::shared_ptr<bool> life = std::make_shared<bool>();
};

} // namespace Norlis::Social
