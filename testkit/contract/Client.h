#pragma once

#include "Waiting.h"

#include <contracts/ICloudProtocol.h>
#include <contracts/OAuth2.h>

#include <QThread>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Norlis::TestKit {

using CloudFile = PDF::Cloud::ICloudProtocol::FileInfo;
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

    /// Waits for the callback, if the request was started. Whether it reported success.
    bool Succeeds() const
    {
        return operation >= 0 && WaitUntil([this] { return Came(); }) && result == Social::Success;
    }

    /// Waits for the callback, if the request was started. Whether it reported an error.
    bool Fails() const
    {
        return operation >= 0 && WaitUntil([this] { return Came(); }) && result == Social::Error;
    }
};

template <typename Payload = NoPayload>
using AnswerPtr = std::shared_ptr<Answer<Payload>>;

/// A user of a protocol: starts requests and keeps their outcomes.
class Client {
public:
    /// \param token for SignIn and Authorize
    Client(std::unique_ptr<PDF::Cloud::ICloudProtocol> protocol, QString token);
    virtual ~Client();

    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

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
    /// \param page its number, for protocols that draw others than page one
    AnswerPtr<QPixmap> Preview(const QString& id, const QSize& box, const QString& page = {});

    void Cancel(qint64 id);

    /// Destroys the protocol; may be called from its callbacks.
    void Destroy();

    /// The entry of the document with a name, from a list fetched now; an empty one when there is none.
    CloudFile Entry(const QString& name);

    /// Null after Destroy.
    PDF::Cloud::ICloudProtocol* Protocol() const
    {
        return protocol.get();
    }

    /// Whether the protocol says why requests fail. If not, `failures` stays empty.
    bool TellsFailures() const
    {
        return tellsFailures;
    }

    std::vector<Social::OAuth2::Failure> failures;
    std::function<void(const Social::OAuth2::Failure&)> onFailure; ///< runs inside the observer

    /// "failure 3", "progress 3", "done 3"
    std::vector<std::string> journal;

protected:
    /// Fills the answer; for a request's completion callback.
    template <typename Payload>
    auto DoneInto(const AnswerPtr<Payload>& answer)
    {
        return [answer, this](qint64 id, Social::RequestResult result, const auto&... payload) {
            ++answer->count;
            answer->id = id;
            answer->result = result;
            if constexpr (sizeof...(payload) > 0) {
                answer->payload = (payload, ...);
            }
            answer->thread = QThread::currentThread();
            answer->cameInsideACall = isInsideACall;
            journal.push_back("done " + std::to_string(id));
            if (answer->onDone) {
                answer->onDone();
            }
        };
    }

    /// Runs an operation, which is given the answer to fill.
    template <typename Payload, typename Call>
    AnswerPtr<Payload> Start(Call call)
    {
        const auto answer = std::make_shared<Answer<Payload>>();
        isInsideACall = true;
        answer->operation = call(answer);
        isInsideACall = false;
        return answer;
    }

private:
    const QString token;
    std::unique_ptr<PDF::Cloud::ICloudProtocol> protocol;
    bool tellsFailures = false;
    bool isInsideACall = false;
};

} // namespace Norlis::TestKit
