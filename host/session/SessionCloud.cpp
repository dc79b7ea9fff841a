#include "SessionCloud.h"

#include "ProtocolAdapter.h"
#include "Records.h"

#include <contracts/IFailureSource.h>

#include <QPointer>

namespace Norlis::Host {

using PDF::Cloud::AbstractCloudManager;
using PDF::Cloud::ICloudProtocol;
using Request = CloudProblem::Request;
using Social::OAuth2::Failure;
using Social::OAuth2::FailureKind;

SessionCloud::SessionCloud(CloudSession& session, const std::shared_ptr<ICloudProtocol>& protocol,
                           const std::shared_ptr<PDF::IHashCalculator>& hashes,
                           const std::shared_ptr<PDF::IFileSystem>& fileSystem, const PictureFolder& pictures)
    : session(session),
      protocol(protocol),
      adapter(dynamic_cast<ProtocolAdapter*>(protocol.get())),
      manager(std::make_unique<SessionCloudManager>(protocol, hashes, fileSystem, pictures))
{
    if (const auto source = dynamic_cast<PDF::Cloud::IFailureSource*>(protocol.get())) {
        source->SetFailureObserver([inbox = QPointer(&failures)](const Failure& failure) {
            if (inbox) {
                inbox->Put(failure);
            }
        });
    }
    // Nobody else in the session requests these.
    connect(manager.get(), &AbstractCloudManager::AuthorizationFailed, this,
            [this] { Fail(Request::SignIn, {}, "Auth failed", failures.Take()); });
    connect(manager.get(), &AbstractCloudManager::RetrievingUserQuotaErrorRequested, this,
            [this](const QString& message) { Fail(Request::Quota, {}, message, failures.Take()); });
}

std::shared_ptr<ICloudProtocol> SessionCloud::Close()
{
    manager.reset();
    return std::move(protocol);
}

SessionCloudManager& SessionCloud::Manager()
{
    return *manager;
}

ICloudProtocol& SessionCloud::Protocol()
{
    return *protocol;
}

FailureInbox& SessionCloud::Failures()
{
    return failures;
}

bool SessionCloud::IsFolder() const
{
    return adapter && adapter->IsFolder();
}

bool SessionCloud::TellsHashes() const
{
    return adapter != nullptr;
}

void SessionCloud::NoteCopyMoved(const QString& id, const QString& fromPath, const QString& toPath)
{
    if (adapter) {
        adapter->Protocol().copyMoved(id, fromPath, toPath);
    }
}

void SessionCloud::AcceptListedVersion(const QString& id, const QString& localPath, const std::string& cloudHash)
{
    if (adapter) {
        const auto md5Hash = IsMd5(cloudHash) ? QString::fromStdString(cloudHash) : QString();
        adapter->Protocol().acceptListedVersion(id, localPath, md5Hash);
    }
}

bool SessionCloud::MayListLackDocuments() const
{
    return adapter && adapter->Protocol().mayListLackDocuments();
}

void SessionCloud::AwaitChange(std::function<void(bool)> done)
{
    if (adapter) {
        adapter->Protocol().awaitChange(
            [done = std::move(done)](qint64, Social::RequestResult result) { done(result == Social::Success); });
    } else {
        done(false);
    }
}

void SessionCloud::StopWaiting()
{
    if (adapter) {
        adapter->StopWaiting();
    }
}

qint64 SessionCloud::PreviewLocalFile(const QString& path, int page, const QSize& box,
                                      std::function<void(qint64, Social::RequestResult, QPixmap, int)>&& done)
{
    constexpr qint64 notStarted = -1;
    return adapter ? adapter->Protocol().previewLocalFile(path, page, box, std::move(done)) : notStarted;
}

bool SessionCloud::IsSignedIn() const
{
    return protocol->loggedIn();
}

void SessionCloud::SetPatient(bool isPatientNow)
{
    isPatient = isPatientNow;
}

bool SessionCloud::IsPatient() const
{
    return isPatient;
}

void SessionCloud::AskToSignIn()
{
    // The manager has no call that only asks for sign-in. Uploading an empty list emits AuthorizationRequired and sends
    // nothing.
    manager->Upload(QList<QString>());
}

bool SessionCloud::RequireSignIn(Request request, const Subject& about)
{
    if (IsSignedIn()) {
        return true;
    }
    const auto guard = lifetime.Watch();
    AskToSignIn();
    if (guard) {
        RefuseSignedOut(request, about);
    }
    return false;
}

void SessionCloud::RefuseSignedOut(Request request, const Subject& about)
{
    Fail(request, about.subject, "Not signed in",
         {-1, "Sign-in", about.document, "Nobody is signed in to the cloud", "Sign in and try again.",
          FailureKind::NotSignedIn});
}

void SessionCloud::Refuse(Request request, const Subject& about, const QString& reason, const QString& advice,
                          FailureKind kind)
{
    const auto fail = [&](const QString& what, const QString& message) {
        Fail(request, about.subject, message, {-1, what, about.document, reason, advice, kind});
    };
    switch (request) {
    case Request::Upload:
        fail("Upload", "The document was not uploaded");
        break;
    case Request::Download:
        fail("Download", "The document was not downloaded");
        break;
    case Request::Remove:
        fail("Remove", "The document was not removed");
        break;
    case Request::Preview:
        fail("Preview", "The preview was not fetched");
        break;
    case Request::SignIn:
    case Request::List:
    case Request::Quota:
        Q_UNREACHABLE(); // the cloud is always asked for these
    }
}

void SessionCloud::Fail(Request request, const QString& subject, const QString& message, const Failure& cause)
{
    emit session.Failed({request, subject, message, cause});
}

} // namespace Norlis::Host
