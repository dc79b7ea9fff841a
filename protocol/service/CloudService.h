#pragma once

#include <contracts/Ability.h>
#include <contracts/NorlisCloudSharingResult.h>
#include <contracts/OAuth2.h>

#include <QImage>
#include <QSize>

#include <functional>
#include <memory>
#include <mutex>
#include <variant>

// What the protocol object and a cloud service say to each other. The protocol object lives on the event-loop thread of
// its user, the service on a worker thread; requests and replies are values that travel between the two.
namespace Norlis::Social {

using CloudFile = Ability::File<NorlisCloudSharingResult>::FileInfo;
using QuotaByApplication = QMap<QString, Ability::Quota::QuotaValue>;
using ServiceTraits = QList<QPair<QString, QString>>; ///< see NorlisCloudProtocol::probeService

/// Settles the race between a cancellation and the last step of a transfer, which run on two threads: a transfer that
/// was cancelled never puts its result in place afterwards, and one that has is known to the canceller.
class TransferToken {
public:
    /// Runs publish(), which returns the id of the document that it has newly made in the cloud or an empty id, unless
    /// the transfer was cancelled. False when it was.
    template <typename Publish>
    bool Commit(Publish publish)
    {
        const std::lock_guard guard(mutex);
        if (!canceled) {
            madeDocument = publish();
        }
        return !canceled;
    }

    /// Returns the id of the document that the transfer has newly made; empty when there is none.
    QString Cancel()
    {
        const std::lock_guard guard(mutex);
        canceled = true;
        return madeDocument;
    }

private:
    std::mutex mutex;
    bool canceled = false;
    QString madeDocument;
};

namespace Request {

struct SignIn {
    QString token;
};
/// Forgets the token and everything that was learnt with it.
struct SignOut {};
struct UserName {};
struct UserPage {};
struct UserPictureAddress {};
struct UserPicture {};
struct Info {
    QString document;
};
struct List {};
struct Download {
    QString document;
    QString localPath;
    std::shared_ptr<TransferToken> token;
};
struct Upload {
    QString localPath;
    QString document; ///< the one to replace; empty makes a new one
    QString mimeType;
    QString md5Hash; ///< of the local file; empty when unknown
    std::shared_ptr<TransferToken> token;
};
struct Remove {
    QString document;
};
struct Quota {};
struct Examination {};
struct Preview {
    QString document;
    QSize box; ///< the picture fits into it without being distorted
};

using Any = std::variant<SignIn, SignOut, UserName, UserPage, UserPictureAddress, UserPicture, Info, List, Download,
                         Upload, Remove, Quota, Examination, Preview>;

} // namespace Request

struct Reply {
    using Payload = std::variant<std::monostate, QString, QUrl, QImage, CloudFile, QList<CloudFile>,
                                 NorlisCloudSharingResult, QuotaByApplication, ServiceTraits>;

    RequestResult result = Success;
    Payload payload;
    OAuth2::Failure failure;  ///< of an Error
    bool isSignedOut = false; ///< the service takes the token no longer
};

/// A reply that says what went wrong.
Reply Failed(const QString& what, const QString& document, const QString& reason, const QString& advice = {});

/// One kind of cloud. Created, used and destroyed on the worker thread, which runs an event loop; nothing may block it
/// for longer than a few milliseconds.
class CloudService {
public:
    /// Where a service sends what it has to say; both may be called from inside Start.
    struct Listener {
        std::function<void(qint64 id, Reply)> reply;
        std::function<void(qint64 id, int percent)> progress;
    };

    virtual ~CloudService() = default;

    /// Begins a request, which ends in exactly one reply unless it is cancelled.
    virtual void Start(qint64 id, const Request::Any& request) = 0;

    /// Gives up a request and leaves nothing of it behind. No reply follows. Unknown ids are ignored.
    virtual void Cancel(qint64 id) = 0;
};

using CloudServiceFactory = std::function<std::unique_ptr<CloudService>(const CloudService::Listener&)>;

} // namespace Norlis::Social
