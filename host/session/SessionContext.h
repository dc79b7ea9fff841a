#pragma once

#include "CloudSession.h"
#include <host/store/LocalFileSystem.h>
#include <host/store/Md5HashCalculator.h>
#include <host/store/SqliteCloudInfoStorage.h>

#include <NorlisCloud/NorlisCloudFilesManager.h>
#include <NorlisCloud/NorlisCloudManager.h>

#include <QHash>
#include <QQueue>
#include <QTimer>

#include <functional>
#include <optional>

namespace Norlis::Host {

/// What a files list tells of a document.
struct CloudFacts {
    explicit CloudFacts(PDF::FileInfo::CloudInfo cloudInfo);

    bool operator==(const CloudFacts& other) const;

    /// Whether both describe the same bytes, as far as the service lets one tell.
    bool HasSameContent(const CloudFacts& other) const;

    /// Whether a person would say that the document is no longer what it was.
    bool HasChangedFrom(const CloudFacts& older) const;

    std::string name;
    quint64 size;
    std::string hash;
    QDateTime createdAt;
    QDateTime modifiedAt;
};

/// What the session remembers of a document in the list, which can be searched by index only.
struct KnownDocument {
    std::optional<CloudFacts> facts; ///< none until the first refresh of a document that was restored from the store
    QString localPath;
    unsigned shownPreviews = 0; ///< one bit per size: the list holds the picture of this content
};

/// What the parts of a session share. Whoever calls something that emits must expect the context to be gone afterwards,
/// because a slot may delete the session.
class SessionContext : public QObject {
public:
    SessionContext(CloudSession& session, const QString& dataFolder,
                   const std::shared_ptr<PDF::Cloud::ICloudProtocol>& protocol,
                   const std::shared_ptr<PDF::Settings::ICloudAccountSettings>& settings);

    /// Cancels what is running, saves the list and lets the service go. Throws std::runtime_error when the list cannot
    /// be saved.
    void Close();

    /// Runs the action from the event loop, in the order of the calls; not at all once the session is closed.
    void Later(std::function<void()> action);

    /// False after AuthorizationRequired and Failed when nobody is signed in.
    bool RequireSignIn(CloudProblem::Request request, const QString& subject, const QString& document);

    /// Has the cloud manager say that somebody must sign in.
    void AskToSignIn();

    void NoteFailure(const Social::OAuth2::Failure& failure);

    /// Why the request failed whose error signal is being emitted; empty texts when nobody said.
    Social::OAuth2::Failure TakeCause();

    /// Emits Failed, so it comes last.
    void Fail(CloudProblem::Request request, const QString& subject, const QString& message,
              const Social::OAuth2::Failure& cause);
    void FailForSignIn(CloudProblem::Request request, const QString& subject, const QString& document);

    /// Puts a record in the place of the held one, or adds it. Unlike an update this carries the hash of the last
    /// synchronisation, and pictures of other content do not stay. False when the session is gone.
    bool Replace(const std::shared_ptr<PDF::FileInfo>& record);

    /// Drops what is known of a document that leaves the list, and its pictures on disk.
    void Forget(const QString& id);

    /// Counts the running transfers of a document, which the list shows as its syncing flag.
    void BeginTransfer(const QString& id);
    void EndTransfer(const QString& id);
    bool IsTransferring(const QString& id) const;

    /// Has the list look at a document again: its transfers, and its local copy, which is hashed off the event loop.
    void LookAgain(const QString& id);

    CloudSession& session;
    std::shared_ptr<PDF::Cloud::ICloudProtocol> protocol;
    const std::shared_ptr<LocalFileSystem> fileSystem;
    const std::shared_ptr<Md5HashCalculator> hashes;
    const std::shared_ptr<SqliteCloudInfoStorage> storage;
    std::unique_ptr<PDF::Cloud::NorlisCloudFilesManager> documents;
    std::unique_ptr<PDF::Cloud::NorlisCloudManager> cloud;

    QHash<QString, KnownDocument> known; ///< every document of the list

    // A list that was requested before an upload or a removal ended may not know of it yet.
    quint64 clock = 0;
    QHash<QString, quint64> uploadedAt;
    QHash<QString, quint64> removedAt;

    QTimer slices; ///< runs while there is work that is done piece by piece

private:
    QHash<QString, int> transfers;
    QVector<Social::OAuth2::Failure> causes;
    bool forgetsCauses = false;
};

ioPath ToPath(const QString& text);
QString ToText(const ioPath& path);

Social::OAuth2::Failure Cause(const QString& what, const QString& document, const QString& reason,
                              const QString& advice = {});

} // namespace Norlis::Host
