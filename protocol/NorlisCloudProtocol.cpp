#include <contracts/NorlisCloudProtocol.h>

#include "ServiceConnection.h"
#include "Services.h"
#include <base/Lifetime.h>
#include <protocol/service/DeliveredFiles.h>

#include <QFileInfo>
#include <QGuiApplication>
#include <QPixmap>

namespace Norlis::Social {

namespace {

constexpr qint64 notStarted = -1;

/// The payload of a successful reply; an empty one of any other.
template <typename Payload>
Payload PayloadOf(Reply&& reply)
{
    const auto payload = std::get_if<Payload>(&reply.payload);
    return reply.result == Success && payload ? std::move(*payload) : Payload();
}

/// Pixmaps belong to the platform, which only a QGuiApplication loads.
bool CanHavePixmaps()
{
    return qobject_cast<QGuiApplication*>(QCoreApplication::instance()) != nullptr;
}

} // namespace

class NorlisCloudProtocol::Private {
public:
    Private(const OAuth2::AuthInfo& authInfo, const std::string& programName)
        : delivered(authInfo),
          onFailure(authInfo.onFailure),
          onTransferred(authInfo.onTransferred),
          connection(std::make_unique<ServiceConnection>(ServiceFor(authInfo, programName)))
    {
    }

    /// Sends a request and passes its reply to answer(id, result, reply).
    template <typename Answer>
    qint64 Send(const Request::Any& request, Answer answer, ProgressCallback&& progress = {})
    {
        if (!isLoggedIn && Request::NeedsSignIn(request)) {
            Report(notStarted, SignedOutReply("The request").failure);
            return notStarted;
        }
        auto onReply = [this, answer = std::move(answer)](qint64 id, Reply&& reply) {
            const auto guard = lifetime.Watch();
            if (reply.isSignedOut) {
                isLoggedIn = false; // a sign-in in progress may still succeed
            }
            if (reply.result == Error && !reply.failure.what.isEmpty()) {
                Report(id, reply.failure);
            }
            if (guard && !reply.file.localPath.isEmpty()) {
                Report(id, reply.file);
            }
            if (guard) {
                answer(id, reply.result, std::move(reply));
            }
        };
        // This is how a host clears up after an upload that made no document: an error, but nothing to report.
        const auto removal = std::get_if<Request::Remove>(&request);
        return removal && removal->document.isEmpty()
                   ? connection->Answer({Error, {}, {}, false}, std::move(onReply))
                   : connection->Send(request, std::move(onReply), std::move(progress));
    }

    /// Sends a request whose callback takes the payload of the reply.
    template <typename Payload, typename Callback>
    qint64 SendFor(const Request::Any& request, Callback&& done, ProgressCallback&& progress = {})
    {
        return Send(
            request,
            [done = std::forward<Callback>(done)](qint64 id, RequestResult result, Reply&& reply) {
                done(id, result, PayloadOf<Payload>(std::move(reply)));
            },
            std::move(progress));
    }

    /// The callback takes the number of pages too.
    template <typename Callback>
    qint64 SendForPage(const Request::Any& request, Callback&& done)
    {
        return Send(
            request, [this, done = std::forward<Callback>(done)](qint64 id, RequestResult result, Reply&& reply) {
                const int pageCount = reply.pageCount;
                const QImage image = PayloadOf<QImage>(std::move(reply));
                if (result == Success && !CanHavePixmaps()) {
                    const auto guard = lifetime.Watch();
                    Report(id, FailureReply("Fetching a picture", {}, "The program has no QGuiApplication").failure);
                    if (guard) {
                        done(id, Error, {}, 0);
                    }
                    return;
                }
                done(id, result, image.isNull() ? QPixmap() : QPixmap::fromImage(image), pageCount);
            });
    }

    template <typename Callback>
    qint64 SendForPixmap(const Request::Any& request, Callback&& done)
    {
        return SendForPage(request, [done = std::forward<Callback>(done)](qint64 id, RequestResult result,
                                                                          const QPixmap& picture,
                                                                          int) { done(id, result, picture); });
    }

    void Report(qint64 id, OAuth2::Failure failure)
    {
        failure.operation = id;
        const auto observer = onFailure; // a copy, since it may destroy this object
        if (observer) {
            observer(failure);
        }
    }

    void Report(qint64 id, OAuth2::TransferredFile file)
    {
        file.operation = id;
        const auto observer = onTransferred;
        if (observer) {
            observer(file);
        }
    }

    void SignOut()
    {
        isLoggedIn = false;
        ++signOuts;
    }

    DeliveredFiles delivered;
    FailureObserver onFailure;
    const std::function<void(const OAuth2::TransferredFile&)> onTransferred;
    bool isLoggedIn = false;
    bool mayListLackDocuments = false;
    int signOuts = 0; ///< a sign-in that sees another count at its end was overtaken by a sign-out
    std::unique_ptr<ServiceConnection> connection;
    Lifetime lifetime; ///< the user's callbacks may destroy the protocol object
};

NorlisCloudProtocol::NorlisCloudProtocol(const OAuth2::AuthInfo& authInfo, const std::string& name, QObject* parent)
    : QObject(parent),
      d(std::make_shared<Private>(authInfo, name))
{
}

NorlisCloudProtocol::~NorlisCloudProtocol() = default;

qint64 NorlisCloudProtocol::auth(const QMap<QString, QString>& fields,
                                 std::function<void(qint64, RequestResult)>&& done)
{
    return d->Send(
        Request::SignIn{fields.value(SSO_TOKEN)},
        [d = d.get(), done = std::move(done), signOuts = d->signOuts](qint64 id, RequestResult result, Reply&&) {
            const bool isSignedOut = signOuts != d->signOuts;
            if (result == Success && !isSignedOut) {
                d->isLoggedIn = true;
            }
            done(id, isSignedOut ? Canceled : result);
        });
}

void NorlisCloudProtocol::logout()
{
    d->SignOut();
    d->connection->Send(Request::SignOut{}, [](qint64, Reply&&) {});
}

bool NorlisCloudProtocol::loggedIn()
{
    return d->isLoggedIn;
}

qint64 NorlisCloudProtocol::userName(std::function<void(qint64, RequestResult, QString)>&& done)
{
    return d->SendFor<QString>(Request::UserName{}, std::move(done));
}

qint64 NorlisCloudProtocol::userProfile(std::function<void(qint64, RequestResult, QUrl)>&& done)
{
    return d->SendFor<QUrl>(Request::UserPage{}, std::move(done));
}

qint64 NorlisCloudProtocol::userPic(std::function<void(qint64, RequestResult, QString)>&& done)
{
    return d->SendFor<QString>(Request::UserPictureAddress{}, std::move(done));
}

qint64 NorlisCloudProtocol::userPic(std::function<void(qint64, RequestResult, QPixmap)>&& done)
{
    return d->SendForPixmap(Request::UserPicture{}, std::move(done));
}

qint64 NorlisCloudProtocol::retriveFileInfo(const FileFieldData& data,
                                            std::function<void(qint64, RequestResult, FileInfo)>&& done)
{
    return d->SendFor<CloudFile>(Request::Info{data.fields.value(ID)}, std::move(done));
}

qint64 NorlisCloudProtocol::retriveFileList(const FileFieldData&,
                                            std::function<void(qint64, RequestResult, QList<FileInfo>)>&& done)
{
    return d->Send(Request::List{},
                   [d = d.get(), done = std::move(done)](qint64 id, RequestResult result, Reply&& reply) {
                       d->mayListLackDocuments = reply.mayLackDocuments;
                       done(id, result, PayloadOf<QList<CloudFile>>(std::move(reply)));
                   });
}

qint64 NorlisCloudProtocol::downloadFile(const FileFieldData& data, std::function<void(qint64, RequestResult)>&& done,
                                         ProgressCallback&& progress)
{
    const QString document = data.fields.value(ID);
    const QString localPath = data.fields.value(FILE_NAME);
    const auto replaceable = d->isLoggedIn ? d->delivered.ReplaceableAt(document, localPath) : std::nullopt;
    if (d->isLoggedIn && !replaceable) {
        const auto problem = Files::ForeignFileProblem(localPath);
        const QString name = QFileInfo(localPath).fileName();
        d->Report(notStarted, TargetReply("Download", name, problem).failure);
        return notStarted;
    }
    const Request::Download request{document, localPath, replaceable.value_or(Files::ReplaceableFile()),
                                    std::make_shared<TransferToken>()};
    return d->Send(
        request,
        [d = d.get(), document, done = std::move(done)](qint64 id, RequestResult result, Reply&& reply) {
            if (result == Success) {
                d->delivered.Note(document, reply.file);
            }
            done(id, result);
        },
        std::move(progress));
}

qint64 NorlisCloudProtocol::deleteFile(const FileFieldData& data, std::function<void(qint64, RequestResult)>&& done)
{
    return d->Send(Request::Remove{data.fields.value(ID)},
                   [done = std::move(done)](qint64 id, RequestResult result, Reply&&) { done(id, result); });
}

qint64
NorlisCloudProtocol::uploadFile(const QString& localPath, const QMap<QString, QString>& fields,
                                std::function<void(qint64, RequestResult, const NorlisCloudSharingResult&)>&& done,
                                ProgressCallback&& progress)
{
    const Request::Upload request{localPath, fields.value(ID), fields.value(FILE_MIME_TYPE), fields.value(MD5_HASH),
                                  std::make_shared<TransferToken>()};
    return d->Send(
        request,
        [d = d.get(), done = std::move(done)](qint64 id, RequestResult result, Reply&& reply) {
            const auto file = reply.file;
            const auto made = PayloadOf<NorlisCloudSharingResult>(std::move(reply));
            if (result == Success) {
                d->delivered.Note(made.id, file);
            }
            done(id, result, made);
        },
        std::move(progress));
}

qint64
NorlisCloudProtocol::userQuota(std::function<void(qint64, RequestResult, const QMap<QString, QuotaValue>&)>&& done)
{
    return d->SendFor<QuotaByApplication>(Request::Quota{}, std::move(done));
}

qint64 NorlisCloudProtocol::retrievePreview(const QMap<QString, QString>& fields,
                                            std::function<void(qint64, RequestResult, QPixmap)>&& done)
{
    const QSize box(fields.value(FILE_PREVIEW_WIDTH).toInt(), fields.value(FILE_PREVIEW_HEIGHT).toInt());
    const int page = fields.value(FILE_PREVIEW_PAGE, QStringLiteral("1")).toInt();
    return d->SendForPixmap(Request::Preview{fields.value(ID), page, box}, std::move(done));
}

QStringList NorlisCloudProtocol::serviceSchemes()
{
    QStringList schemes;
    for (const ServiceKind& kind : ServiceKinds()) {
        schemes += kind.schemes;
    }
    return schemes;
}

void NorlisCloudProtocol::SetFailureObserver(FailureObserver observer)
{
    d->onFailure = std::move(observer);
}

qint64 NorlisCloudProtocol::probeService(std::function<void(qint64, RequestResult, const ServiceCapabilities&)>&& done)
{
    return d->SendFor<ServiceCapabilities>(Request::Capabilities{}, std::move(done));
}

qint64 NorlisCloudProtocol::awaitChange(std::function<void(qint64, RequestResult)>&& done)
{
    return d->Send(Request::Change{},
                   [done = std::move(done)](qint64 id, RequestResult result, Reply&&) { done(id, result); });
}

qint64 NorlisCloudProtocol::previewLocalFile(const QString& localPath, int page, const QSize& box,
                                             std::function<void(qint64, RequestResult, QPixmap, int)>&& done)
{
    return d->SendForPage(Request::LocalPreview{localPath, page, box}, std::move(done));
}

void NorlisCloudProtocol::copyMoved(const QString& id, const QString& fromPath, const QString& toPath)
{
    if (d->isLoggedIn) {
        d->delivered.Move(id, fromPath, toPath);
        d->connection->Send(Request::CopyMoved{id, fromPath, toPath}, [](qint64, Reply&&) {});
    }
}

void NorlisCloudProtocol::acceptListedVersion(const QString& id, const QString& localPath, const QString& md5Hash)
{
    if (d->isLoggedIn) {
        d->connection->Send(Request::AcceptVersion{id, localPath, md5Hash}, [](qint64, Reply&&) {});
    }
}

bool NorlisCloudProtocol::mayListLackDocuments() const
{
    return d->mayListLackDocuments;
}

void NorlisCloudProtocol::cancelOperation(qint64 id)
{
    d->connection->Cancel(id);
}

} // namespace Norlis::Social
