#pragma once

#include "Journal.h"

#include <contracts/ICloudProtocol.h>

#include <map>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <variant>
#include <vector>

namespace Norlis::Test {

/// A cloud protocol in the hand of a test.
///
/// Every call is recorded and every callback is held until the test answers: now, later, twice, with another id, from
/// inside another operation, or when the receiver is long gone. Writes "-> uploadFile 1", "-> auth refused" and
/// "-> cancelOperation 1" to its journal.
class ScriptedProtocol : public PDF::Cloud::ICloudProtocol {
public:
    using RequestResult = Social::RequestResult;
    using Sharing = Social::NorlisCloudSharingResult;

    struct Call {
        std::string operation;
        qint64 id = -1; ///< the id returned, or the one given to cancelOperation
        QMap<QString, QString> fields = {};
        QMap<QString, QString> extra = {};
        QString localPath = {};
    };

    explicit ScriptedProtocol(std::shared_ptr<Journal> journal = std::make_shared<Journal>());
    ~ScriptedProtocol() override;

    /// What loggedIn() answers, and how often it was asked.
    bool signedIn = true;
    int loginQuestions = 0;

    /// Operations, by name, that are refused with -1.
    std::set<std::string> refused;

    /// Runs inside the operation of that name, after it was recorded, with the id that it is about to return.
    std::map<std::string, std::function<void(qint64 id)>> inside;

    /// Calls every callback that is still held from the destructor.
    bool answersWhenDestroyed = false;

    /// Everything but loggedIn().
    std::vector<Call> calls;

    std::vector<Call> CallsOf(const std::string& operation) const;
    const Call& LastCall(const std::string& operation) const;
    qint64 LastId(const std::string& operation) const;

    /// Requests that were started and neither answered nor cancelled.
    std::set<qint64> Running() const;

    /// Calls the completion callback of a request. The callback stays held, so a request can be answered twice. Without
    /// a payload the callback is given an empty one.
    template <typename... Payload>
    void Answer(qint64 id, RequestResult result, const Payload&... payload)
    {
        AnswerAs(id, id, result, payload...);
    }

    /// As Answer, but tells the callback another id than its own.
    template <typename... Payload>
    void AnswerAs(qint64 request, qint64 id, RequestResult result, const Payload&... payload)
    {
        running.erase(request);
        std::visit([&](auto& callback) { Fire(callback, id, result, payload...); }, completions.at(request));
    }

    void Progress(qint64 id, int value);
    void ProgressAs(qint64 request, qint64 id, int value);

    /// Destroys the callbacks of a request, even while one of them runs.
    void Drop(qint64 id);

    qint64 auth(const QMap<QString, QString>& fields, std::function<void(qint64, RequestResult)>&& done) override;
    void logout() override;
    bool loggedIn() override;
    qint64 userName(std::function<void(qint64, RequestResult, QString)>&& done) override;
    qint64 userProfile(std::function<void(qint64, RequestResult, QUrl)>&& done) override;
    qint64 userPic(std::function<void(qint64, RequestResult, QString)>&& done) override;
    qint64 userPic(std::function<void(qint64, RequestResult, QPixmap)>&& done) override;
    qint64 retriveFileInfo(const FileFieldData& data,
                           std::function<void(qint64, RequestResult, FileInfo)>&& done) override;
    qint64 retriveFileList(const FileFieldData& data,
                           std::function<void(qint64, RequestResult, QList<FileInfo>)>&& done) override;
    qint64 downloadFile(const FileFieldData& data, std::function<void(qint64, RequestResult)>&& done,
                        ProgressCallback&& progress) override;
    qint64 deleteFile(const FileFieldData& data, std::function<void(qint64, RequestResult)>&& done) override;
    qint64 uploadFile(const QString& localPath, const QMap<QString, QString>& fields,
                      std::function<void(qint64, RequestResult, const Sharing&)>&& done,
                      ProgressCallback&& progress) override;
    qint64 userQuota(std::function<void(qint64, RequestResult, const QMap<QString, QuotaValue>&)>&& done) override;
    qint64 retrievePreview(const QMap<QString, QString>& fields,
                           std::function<void(qint64, RequestResult, QPixmap)>&& done) override;
    void cancelOperation(qint64 id) override;

private:
    template <typename... Payload>
    using Done = std::function<void(qint64, RequestResult, Payload...)>;
    using Completion =
        std::variant<Done<>, Done<QString>, Done<QUrl>, Done<QPixmap>, Done<FileInfo>, Done<QList<FileInfo>>,
                     Done<const Sharing&>, Done<const QMap<QString, QuotaValue>&>>;

    template <typename... Wanted, typename... Payload>
    static void Fire(Done<Wanted...>& callback, qint64 id, RequestResult result, const Payload&... payload)
    {
        if constexpr (std::is_invocable_v<Done<Wanted...>&, qint64, RequestResult, const Payload&...>) {
            callback(id, result, payload...);
        } else if constexpr (sizeof...(Payload) == 0) {
            callback(id, result, std::decay_t<Wanted>()...);
        } else {
            throw std::logic_error("this request has another payload");
        }
    }

    qint64 Start(Call call, Completion&& done, ProgressCallback&& progress = {});
    void RunInside(const std::string& operation, qint64 id);

    std::shared_ptr<Journal> journal;
    qint64 nextId = 1;
    std::map<qint64, Completion> completions;
    std::map<qint64, ProgressCallback> progresses;
    std::set<qint64> running;
};

} // namespace Norlis::Test
