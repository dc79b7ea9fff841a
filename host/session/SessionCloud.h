#pragma once

#include "CloudSession.h"
#include "FailureInbox.h"
#include "SessionCloudManager.h"

#include <base/Lifetime.h>

#include <memory>

namespace Norlis::Host {

class ProtocolAdapter;

/// The cloud side of a session: owns the cloud manager and its protocol, and reports the requests that fail, with the
/// reason.
class SessionCloud : public QObject {
public:
    /// What a request is about.
    struct Subject {
        QString subject;  ///< see CloudProblem
        QString document; ///< name, for the message
    };

    SessionCloud(CloudSession& session, const std::shared_ptr<PDF::Cloud::ICloudProtocol>& protocol,
                 const std::shared_ptr<PDF::IHashCalculator>& hashes,
                 const std::shared_ptr<PDF::IFileSystem>& fileSystem, const PictureFolder& pictures);

    /// Cancels what is running; nothing is emitted. Returns the protocol, whose destruction may wait for the service.
    /// Nothing but this may be called afterwards.
    std::shared_ptr<PDF::Cloud::ICloudProtocol> Close();

    SessionCloudManager& Manager();
    PDF::Cloud::ICloudProtocol& Protocol();
    FailureInbox& Failures();

    bool IsSignedIn() const;

    /// Whether the service is a folder.
    bool IsFolder() const;

    /// Whether transfers wait that the service is not there for; otherwise they fail.
    void SetPatient(bool isPatientNow);
    bool IsPatient() const;

    /// Whether CloudSession is told the hashes of files that are transferred. If not, they are read beforehand and
    /// afterwards.
    bool TellsHashes() const;

    // Told to the protocol object; nothing where the session has another kind of protocol.

    /// See NorlisCloudProtocol::copyMoved.
    void NoteCopyMoved(const QString& id, const QString& fromPath, const QString& toPath);

    /// See NorlisCloudProtocol::acceptListedVersion.
    /// \param cloudHash of the version that is meant, as the list tells it
    void AcceptListedVersion(const QString& id, const QString& localPath, const std::string& cloudHash);

    /// See NorlisCloudProtocol::mayListLackDocuments.
    bool MayListLackDocuments() const;

    /// See NorlisCloudProtocol::awaitChange. Only while somebody is signed in; done may be called at once.
    void AwaitChange(std::function<void(bool hasChanged)> done);

    /// See ProtocolAdapter. The session may be gone afterwards.
    void StopWaiting();

    /// See NorlisCloudProtocol::previewLocalFile.
    qint64 PreviewLocalFile(const QString& path, int page, const QSize& box,
                            std::function<void(qint64, Social::RequestResult, QPixmap, int pageCount)>&& done);

    // Those below emit as the last thing that they do, so the session may be gone afterwards.

    /// Has the cloud manager emit AuthorizationRequired.
    void AskToSignIn();

    /// True when somebody is signed in; false after AuthorizationRequired and Failed otherwise.
    bool RequireSignIn(CloudProblem::Request request, const Subject& about);

    /// Ends a request for the reason that nobody is signed in.
    void RefuseSignedOut(CloudProblem::Request request, const Subject& about);

    /// Ends a request that the cloud was not asked for.
    /// \param request Upload, Download, Remove or Preview
    /// \param reason  without a full stop
    /// \param advice  a sentence
    void Refuse(CloudProblem::Request request, const Subject& about, const QString& reason, const QString& advice,
                Social::OAuth2::FailureKind kind = Social::OAuth2::FailureKind::Other);

    /// Ends a request that the cloud manager has reported as failed.
    void Fail(CloudProblem::Request request, const QString& subject, const QString& message,
              const Social::OAuth2::Failure& cause);

private:
    CloudSession& session;
    FailureInbox failures;
    std::shared_ptr<PDF::Cloud::ICloudProtocol> protocol;
    ProtocolAdapter* const adapter; ///< the protocol, if it is one; null otherwise
    std::unique_ptr<SessionCloudManager> manager;
    bool isPatient = false;
    Lifetime lifetime;
};

} // namespace Norlis::Host
