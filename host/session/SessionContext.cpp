#include "SessionContext.h"

#include <host/store/RestorableStorage.h>
#include <NorlisCloud/PreviewFile.h>

#include <QFile>
#include <QPointer>

namespace Norlis::Host {

using PDF::FileInfo;
using Social::OAuth2::Failure;

CloudFacts::CloudFacts(FileInfo::CloudInfo cloudInfo)
    : name(cloudInfo.GetFileName()),
      size(cloudInfo.GetSize()),
      hash(cloudInfo.GetMd5Hash()),
      createdAt(cloudInfo.GetCreatedAt()),
      modifiedAt(cloudInfo.GetModifyTime())
{
}

bool CloudFacts::operator==(const CloudFacts& other) const
{
    return name == other.name && size == other.size && hash == other.hash && createdAt == other.createdAt &&
           modifiedAt == other.modifiedAt;
}

bool CloudFacts::HasSameContent(const CloudFacts& other) const
{
    if (!hash.empty() && !other.hash.empty()) {
        return hash == other.hash;
    }
    // The time of a document that was restored from the store is not known.
    return size == other.size &&
           (modifiedAt == other.modifiedAt || !modifiedAt.isValid() || !other.modifiedAt.isValid());
}

bool CloudFacts::HasChangedFrom(const CloudFacts& older) const
{
    return name != older.name || size != older.size || !HasSameContent(older) ||
           (modifiedAt.isValid() && older.modifiedAt.isValid() && modifiedAt != older.modifiedAt);
}

SessionContext::SessionContext(CloudSession& session, const QString& dataFolder,
                               const std::shared_ptr<PDF::Cloud::ICloudProtocol>& protocol,
                               const std::shared_ptr<PDF::Settings::ICloudAccountSettings>& settings)
    : session(session),
      protocol(protocol),
      fileSystem(std::make_shared<LocalFileSystem>()),
      hashes(std::make_shared<Md5HashCalculator>(dataFolder + "/hashes.sqlite")),
      storage(std::make_shared<SqliteCloudInfoStorage>(dataFolder + "/documents.sqlite")),
      documents(std::make_unique<PDF::Cloud::NorlisCloudFilesManager>(std::make_shared<RestorableStorage>(storage),
                                                                      fileSystem, hashes)),
      cloud(std::make_unique<PDF::Cloud::NorlisCloudManager>(protocol, hashes, fileSystem, settings))
{
    for (int index = 0; index < documents->FilesCount(); ++index) {
        known[documents->GetDocumentId(index)].localPath = documents->GetDocumentPath(index);
    }
    slices.setInterval(0);
}

void SessionContext::Close()
{
    cloud.reset();
    const auto service = std::move(protocol); // released last, and in any case
    if (documents) {
        documents.reset();
        storage->Commit();
    }
}

void SessionContext::Later(std::function<void()> action)
{
    QMetaObject::invokeMethod(this, std::move(action), Qt::QueuedConnection);
}

bool SessionContext::RequireSignIn(CloudProblem::Request request, const QString& subject, const QString& document)
{
    if (protocol->loggedIn()) {
        return true;
    }
    const QPointer<SessionContext> self(this);
    AskToSignIn();
    if (self) {
        FailForSignIn(request, subject, document);
    }
    return false;
}

void SessionContext::AskToSignIn()
{
    cloud->Upload(QList<QString>()); // every request asks first; this one is about nothing else
}

void SessionContext::NoteFailure(const Failure& failure)
{
    causes.append(failure);
    if (!forgetsCauses) {
        // The error signal follows at once. A cause that nobody has taken by the next turn of the loop belongs to a
        // request without one, and must not be shown for another.
        forgetsCauses = true;
        Later([this] {
            forgetsCauses = false;
            causes.clear();
        });
    }
}

Failure SessionContext::TakeCause()
{
    // The last one first: the manager cleans up after a failed upload, which may fail too, before it reports the
    // upload.
    return causes.isEmpty() ? Failure() : causes.takeLast();
}

void SessionContext::Fail(CloudProblem::Request request, const QString& subject, const QString& message,
                          const Failure& cause)
{
    emit session.Failed({request, subject, message, cause});
}

void SessionContext::FailForSignIn(CloudProblem::Request request, const QString& subject, const QString& document)
{
    Fail(request, subject, "Not signed in",
         Cause("Sign-in", document, "nobody is signed in to the cloud", "Sign in and try again."));
}

bool SessionContext::Replace(const std::shared_ptr<FileInfo>& record)
{
    const QPointer<SessionContext> self(this);
    const auto id = QString::fromStdString(record->GetId());
    auto& cloudInfo = record->GetRedactableCloudInfo().value();
    KnownDocument now{CloudFacts(cloudInfo), ToText(record->GetPath())};

    const auto held = documents->GetFileInfo(id);
    if (held) {
        auto& heldCloudInfo = held->GetRedactableCloudInfo().value();
        if (now.facts->HasSameContent(CloudFacts(heldCloudInfo))) {
            cloudInfo.SetPreviewsSet(heldCloudInfo.GetPreviewsSet());
            record->SetPreviewsSet(held->GetPreviewsSet());
            now.shownPreviews = known.value(id).shownPreviews;
        }
    }
    record->SetIsSyncingInProgress(IsTransferring(id));
    known[id] = now;
    if (held) {
        documents->Remove(held);
    }
    if (self) {
        documents->Add(record);
    }
    return self;
}

void SessionContext::Forget(const QString& id)
{
    known.remove(id);
    if (id.contains('/')) {
        return; // which may lead out of the folder
    }
    // The cloud manager keeps its pictures for ever.
    for (const auto& [size, edge] : PDF::Cloud::previewPixelSizes) {
        QFile::remove(PDF::Cloud::PreviewPath(id, size));
    }
}

void SessionContext::BeginTransfer(const QString& id)
{
    ++transfers[id];
    LookAgain(id);
}

void SessionContext::EndTransfer(const QString& id)
{
    if (--transfers[id] == 0) {
        transfers.remove(id);
    }
    LookAgain(id);
}

bool SessionContext::IsTransferring(const QString& id) const
{
    return transfers.contains(id);
}

void SessionContext::LookAgain(const QString& id)
{
    const auto look = [this, id] {
        const auto held = documents->GetFileInfo(id);
        if (held) {
            held->SetIsSyncingInProgress(IsTransferring(id));
            documents->Update(held);
        }
    };
    const auto path = known.value(id).localPath;
    if (path.isEmpty()) {
        Later(look);
    } else {
        hashes->Prepare({path}, this, look);
    }
}

ioPath ToPath(const QString& text)
{
    return ioPath(text.toStdString());
}

QString ToText(const ioPath& path)
{
    return QString::fromStdString(path.utf8string());
}

Failure Cause(const QString& what, const QString& document, const QString& reason, const QString& advice)
{
    Failure cause;
    cause.what = what;
    cause.document = document;
    cause.reason = reason;
    cause.advice = advice;
    return cause;
}

} // namespace Norlis::Host
