#pragma once

#include "DavDocument.h"
#include "OverwriteCheck.h"
#include <protocol/http/HttpRequestGroup.h>

#include <QTimer>

namespace Norlis::Social {

/// Gives an uploaded file its name. An answer that is lost on the way is made up for by looking.
class Publication {
public:
    struct Outcome {
        QByteArray name; ///< that the document has now
        std::optional<HttpResponse> failure;
        QByteArray leftover;     ///< of a failure: name of the uploaded file; empty when it is gone
        bool isOnlyCopy = false; ///< of a failure: the server has lost the document that was to be replaced
    };
    using Done = std::function<void(Outcome)>;

    /// \param uploaded what lies under the temporary name
    Publication(WebDavServer& server, const DavDocument& uploaded, Done done);
    ~Publication();

    /// As the document of a name, or of the next free one with a number.
    void MakeNew(const QByteArray& name);

    void Replace(const QByteArray& name);

private:
    using Answer = std::function<void(const HttpResponse& response, const std::optional<DavEntry>& entry)>;

    void Try(const QByteArray& newName);
    void Move();
    void OnMoved(const HttpResponse& response);
    void TryNextName();
    void LookWhetherMoved(const HttpResponse& answer);
    void LookAtTarget(const HttpResponse& answer, bool isUploadedThere);
    void LookAt(const QByteArray& name, Answer answer);
    bool IsUploaded(const DavEntry& entry) const;
    void Succeed();
    void Fail(const HttpResponse& answer, bool isUploadedThere, bool isOnlyCopy = false);

    WebDavServer& server;
    DavDocument uploaded;
    const Done done;
    HttpRequestGroup requests;
    std::unique_ptr<OverwriteCheck> check;
    QByteArray wantedName;
    QByteArray name;         ///< that is tried
    bool isReserved = false; ///< it is among the names in the making because of this
    bool isNew = true;
    int number = 1;
    int attempts = 0;
    QObject context; ///< of what comes after a pause
};

} // namespace Norlis::Social
