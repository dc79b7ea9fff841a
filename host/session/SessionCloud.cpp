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

namespace {

Failure FailureOf(const QString& what, const QString& document, const QString& reason, const QString& advice)
{
    Failure failure;
    failure.what = what;
    failure.document = document;
    failure.reason = reason;
    failure.advice = advice;
    return failure;
}

} // namespace

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

bool SessionCloud::IsSignedIn() const
{
    return protocol->loggedIn();
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
         FailureOf("Sign-in", about.document, "nobody is signed in to the cloud", "Sign in and try again."));
}

void SessionCloud::Refuse(Request request, const Subject& about, const QString& reason, const QString& advice)
{
    switch (request) {
    case Request::Upload:
        Fail(request, about.subject, "The document was not uploaded",
             FailureOf("Upload", about.document, reason, advice));
        break;
    case Request::Download:
        Fail(request, about.subject, "The document was not downloaded",
             FailureOf("Download", about.document, reason, advice));
        break;
    case Request::Remove:
        Fail(request, about.subject, "The document was not removed",
             FailureOf("Remove", about.document, reason, advice));
        break;
    case Request::Preview:
        Fail(request, about.subject, "The preview was not fetched",
             FailureOf("Preview", about.document, reason, advice));
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
