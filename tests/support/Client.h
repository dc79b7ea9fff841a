#pragma once

#include "Waiting.h"

#include <contracts/NorlisCloudProtocol.h>

#include <QThread>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Norlis::Test {

using Social::NorlisCloudProtocol;
using CloudFile = NorlisCloudProtocol::File::FileInfo;
using QuotaMap = QMap<QString, Social::Ability::Quota::QuotaValue>;

struct NoPayload {};

/// The outcome of one request.
template <typename Payload>
struct Answer {
    qint64 operation = -1; ///< the id that the operation returned
    int count = 0;         ///< number of callbacks
    qint64 id = 0;         ///< the id passed to the callback
    Social::RequestResult result = Social::Error;
    Payload payload = {};
    QThread* thread = nullptr; ///< of the callback
    bool cameInsideACall = false;
    std::vector<int> percents;
    std::function<void()> onDone; ///< runs inside the callback
    std::function<void(int)> onProgress;

    bool Came() const
    {
        return count > 0;
    }

    /// Waits for the callback. Whether it reported success.
    bool Succeeds() const
    {
        return WaitUntil([this] { return Came(); }) && result == Social::Success;
    }

    /// Waits for the callback. Whether it reported an error.
    bool Fails() const
    {
        return WaitUntil([this] { return Came(); }) && result == Social::Error;
    }
};

template <typename Payload = NoPayload>
using AnswerPtr = std::shared_ptr<Answer<Payload>>;

/// A user of the protocol object: starts requests and keeps their outcomes.
class Client {
public:
    /// \param token for SignIn and Authorize
    explicit Client(Social::OAuth2::AuthInfo authInfo, QString token = "token");
    ~Client();

    /// Signs in and waits for it.
    bool SignIn();

    AnswerPtr<> Authorize();
    AnswerPtr<> Authorize(const QString& otherToken);
    AnswerPtr<QString> UserName();
    AnswerPtr<QUrl> UserProfile();
    AnswerPtr<QString> UserPicAddress();
    AnswerPtr<QPixmap> UserPic();
    AnswerPtr<CloudFile> Info(const QString& id);
    AnswerPtr<QList<CloudFile>> List();
    AnswerPtr<> Download(const QString& id, const QString& path);
    AnswerPtr<> Remove(const QString& id);
    AnswerPtr<Social::NorlisCloudSharingResult> Upload(const QString& path, const QString& id = {},
                                                       const QString& md5 = {});
    AnswerPtr<QuotaMap> Quota();
    AnswerPtr<QPixmap> Preview(const QString& id, const QSize& box);
    AnswerPtr<NorlisCloudProtocol::ServiceCapabilities> Probe();

    void Cancel(qint64 id);

    /// Destroys the protocol object; may be called from its callbacks.
    void Destroy();

    /// The entry of the document with a name, from a list fetched now; an empty one when there is none.
    CloudFile Entry(const QString& name);

    NorlisCloudProtocol* Protocol() const
    {
        return protocol.get();
    }

    std::vector<Social::OAuth2::TransferredFile> transferred;
    std::vector<Social::OAuth2::Failure> failures;
    std::function<void(const Social::OAuth2::Failure&)> onFailure; ///< runs inside the observer

    /// "failure 3", "progress 3", "done 3"
    std::vector<std::string> journal;

private:
    template <typename Payload, typename Call>
    AnswerPtr<Payload> Start(Call call);

    const QString token;
    std::unique_ptr<NorlisCloudProtocol> protocol;
    bool isInsideACall = false;
};

} // namespace Norlis::Test
