#pragma once

#include "OverwriteCheck.h"
#include <base/Lifetime.h>
#include <protocol/http/HttpRequestGroup.h>

#include <QObject>

namespace Norlis::Social {

/// Gives an uploaded file its final name, in one step, so that a new document never takes another one's place. When a
/// response is lost, a look at the server shows what has become of the request.
class Publication : public QObject {
public:
    struct Outcome {
        QByteArray name; ///< that the document has now
        std::optional<HttpResponse> failure;
        QByteArray leftover;     ///< of a failure: name of the uploaded file; empty when it is gone
        bool isOnlyCopy = false; ///< of a failure: the server has lost the document that should have been replaced
    };
    using Done = std::function<void(Outcome)>;

    /// \param uploaded the file, under its temporary name
    Publication(WebDavSession& session, const DavDocument& uploaded, Done done);
    ~Publication() override;

    /// As a new document of this name, or of the next free one with a number.
    void MakeNew(const QByteArray& name);

    void Replace(const QByteArray& name);

private:
    using Looked = std::function<void(const HttpResponse& response, const std::optional<DavEntry>& entry)>;

    void Try(const QByteArray& newName);
    void Move();
    void OnMoved(const HttpResponse& response);
    void TryNextName();
    void LookWhetherMoved(const HttpResponse& moveResponse);
    void LookAtTarget(const HttpResponse& moveResponse, bool isUploadedThere);
    void LookAt(const QByteArray& name, Looked onLooked);
    bool IsUploaded(const DavEntry& entry) const;
    void Succeed();
    void Fail(const HttpResponse& moveResponse, bool isUploadedThere, bool isOnlyCopy = false);

    WebDavSession& session;
    DavDocument uploaded;
    Done done;
    HttpRequestGroup requests;
    std::unique_ptr<OverwriteCheck> check;
    QByteArray wantedName;
    QByteArray name;         ///< the one that is being tried
    bool isReserved = false; ///< this publication has put it among the reserved names
    bool isNew = true;
    int number = 1;
    int attempts = 0;
};

} // namespace Norlis::Social
