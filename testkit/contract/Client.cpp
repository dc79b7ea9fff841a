#include "Client.h"

#include <contracts/IFailureSource.h>
#include <contracts/NorlisCloudProtocol.h>

#include <QLoggingCategory>
#include <QPixmap>

#include <gtest/gtest.h>

namespace Norlis::TestKit {

using Social::NorlisCloudProtocol;

namespace {

/// What a user reads; for programs that check all of it.
Q_LOGGING_CATEGORY(failureLog, "norlis.test.failure", QtInfoMsg)

template <typename Payload>
auto ProgressInto(const AnswerPtr<Payload>& answer, Client* client)
{
    return [answer, client](qint64 id, int percent) {
        EXPECT_EQ(id, answer->operation);
        EXPECT_FALSE(answer->Came());
        answer->percents.push_back(percent);
        client->journal.push_back("progress " + std::to_string(id));
        if (answer->onProgress) {
            answer->onProgress(percent);
        }
    };
}

} // namespace

Client::Client(std::unique_ptr<PDF::Cloud::ICloudProtocol> protocol, QString token)
    : token(std::move(token)),
      protocol(std::move(protocol))
{
    auto* const source = dynamic_cast<PDF::Cloud::IFailureSource*>(this->protocol.get());
    if (source) {
        tellsFailures = true;
        source->SetFailureObserver([this](const Social::OAuth2::Failure& failure) {
            qCDebug(failureLog).noquote() << failure.what << failure.document << failure.reason << failure.advice;
            failures.push_back(failure);
            journal.push_back("failure " + std::to_string(failure.operation));
            if (onFailure) {
                onFailure(failure);
            }
        });
    }
}

Client::~Client() = default;

bool Client::SignIn()
{
    return Authorize()->Succeeds() && protocol->loggedIn();
}

AnswerPtr<> Client::Authorize()
{
    return Authorize(token);
}

AnswerPtr<> Client::Authorize(const QString& otherToken)
{
    return Start<NoPayload>([&](const AnswerPtr<>& answer) {
        return protocol->auth({{NorlisCloudProtocol::SSO_TOKEN, otherToken},
                               {NorlisCloudProtocol::APP_ID_ON_CLOUD, "pdf"},
                               {NorlisCloudProtocol::API_VERSION, "2"}},
                              DoneInto(answer));
    });
}

AnswerPtr<QString> Client::UserName()
{
    return Start<QString>([&](const AnswerPtr<QString>& answer) { return protocol->userName(DoneInto(answer)); });
}

AnswerPtr<QUrl> Client::UserProfile()
{
    return Start<QUrl>([&](const AnswerPtr<QUrl>& answer) { return protocol->userProfile(DoneInto(answer)); });
}

AnswerPtr<QString> Client::UserPicAddress()
{
    return Start<QString>([&](const AnswerPtr<QString>& answer) {
        return protocol->userPic(std::function<void(qint64, Social::RequestResult, QString)>(DoneInto(answer)));
    });
}

AnswerPtr<QPixmap> Client::UserPic()
{
    return Start<QPixmap>([&](const AnswerPtr<QPixmap>& answer) {
        return protocol->userPic(std::function<void(qint64, Social::RequestResult, QPixmap)>(DoneInto(answer)));
    });
}

AnswerPtr<CloudFile> Client::Info(const QString& id)
{
    return Start<CloudFile>([&](const AnswerPtr<CloudFile>& answer) {
        return protocol->retriveFileInfo({{{NorlisCloudProtocol::ID, id}}, {}}, DoneInto(answer));
    });
}

AnswerPtr<QList<CloudFile>> Client::List()
{
    return Start<QList<CloudFile>>(
        [&](const AnswerPtr<QList<CloudFile>>& answer) { return protocol->retriveFileList({}, DoneInto(answer)); });
}

AnswerPtr<> Client::Download(const QString& id, const QString& path)
{
    return Start<NoPayload>([&](const AnswerPtr<>& answer) {
        return protocol->downloadFile({{{NorlisCloudProtocol::ID, id}, {NorlisCloudProtocol::FILE_NAME, path}}, {}},
                                      DoneInto(answer), ProgressInto(answer, this));
    });
}

AnswerPtr<> Client::Remove(const QString& id)
{
    return Start<NoPayload>([&](const AnswerPtr<>& answer) {
        return protocol->deleteFile({{{NorlisCloudProtocol::ID, id}}, {}}, DoneInto(answer));
    });
}

AnswerPtr<Social::NorlisCloudSharingResult> Client::Upload(const QString& path, const QString& id, const QString& md5)
{
    using Result = Social::NorlisCloudSharingResult;
    QMap<QString, QString> fields = {{NorlisCloudProtocol::FILE_MIME_TYPE, "application/pdf"},
                                     {NorlisCloudProtocol::CHUNK_MIME_TYPE, "application/pdf"},
                                     {NorlisCloudProtocol::MD5_HASH, md5}};
    if (!id.isEmpty()) {
        fields.insert(NorlisCloudProtocol::ID, id);
    }
    return Start<Result>([&](const AnswerPtr<Result>& answer) {
        return protocol->uploadFile(path, fields, DoneInto(answer), ProgressInto(answer, this));
    });
}

AnswerPtr<QuotaMap> Client::Quota()
{
    return Start<QuotaMap>([&](const AnswerPtr<QuotaMap>& answer) { return protocol->userQuota(DoneInto(answer)); });
}

AnswerPtr<QPixmap> Client::Preview(const QString& id, const QSize& box, const QString& page)
{
    QMap<QString, QString> fields = {{NorlisCloudProtocol::ID, id},
                                     {NorlisCloudProtocol::FILE_PREVIEW_WIDTH, QString::number(box.width())},
                                     {NorlisCloudProtocol::FILE_PREVIEW_HEIGHT, QString::number(box.height())}};
    if (!page.isNull()) {
        fields.insert(NorlisCloudProtocol::FILE_PREVIEW_PAGE, page);
    }
    return Start<QPixmap>(
        [&](const AnswerPtr<QPixmap>& answer) { return protocol->retrievePreview(fields, DoneInto(answer)); });
}

void Client::Cancel(qint64 id)
{
    isInsideACall = true;
    protocol->cancelOperation(id);
    isInsideACall = false;
}

void Client::Destroy()
{
    isInsideACall = true;
    protocol.reset();
    isInsideACall = false;
}

CloudFile Client::Entry(const QString& name)
{
    const auto list = List();
    EXPECT_TRUE(list->Succeeds());
    for (const CloudFile& file : qAsConst(list->payload)) {
        if (file.name == name) {
            return file;
        }
    }
    return {};
}

} // namespace Norlis::TestKit
