#pragma once

#include <NorlisTestKit/Journal.h>

#include <contracts/ICloudProtocol.h>
#include <contracts/IFailureSource.h>

#include <map>
#include <memory>
#include <set>
#include <string>
#include <type_traits>
#include <variant>
#include <vector>

namespace Norlis::TestKit {

/// A cloud protocol in the hands of a test.
///
/// Every call is recorded and every callback is held until the test answers: now, later, never, twice, with another id,
/// or when the receiver is long gone. Writes "-> uploadFile 1", "-> auth refused" and "-> cancelOperation 1" to its
/// journal.
///
///     protocol->Progress(protocol->LastId("uploadFile"), 50);
///     protocol->Answer(protocol->LastId("uploadFile"), Social::Success, sharing);
///     protocol->Answer(protocol->LastId("userQuota"), Social::Error);
///     protocol->Fail(protocol->LastId("deleteFile"), "The document is locked"); // and tells the observer why
///     protocol->Answer(protocol->LastId("downloadFile"), Social::Canceled);   // by the service
///     protocol->refused = {"deleteFile"};                                     // returns -1
///     protocol->inside["auth"] = [&](qint64 id) { protocol->Answer(id, Social::Success); }; // before auth returns
///
/// Operations go by their names in ICloudProtocol. A wrong name, an id that no request has, or a payload of another
/// request's type throws a std::logic_error that says what is wrong: at once, or for `refused` and `inside` at the next
/// operation.
///
/// Used on one thread, that of the manager over it. The test and the manager share it.
class ScriptedProtocol : public PDF::Cloud::ICloudProtocol, public PDF::Cloud::IFailureSource {
public:
    /// Shorthand.
    using RequestResult = Social::RequestResult;

    /// What an upload is answered with.
    using Sharing = Social::NorlisCloudSharingResult;

    /// A call by the manager.
    struct Call {
        std::string operation;              ///< "uploadFile"
        qint64 id = -1;                     ///< the id returned, or the one given to cancelOperation
        QMap<QString, QString> fields = {}; ///< empty where the operation has none
        QMap<QString, QString> extra = {};  ///< as above
        QString localPath = {};             ///< of uploadFile
    };

    /// \param journal shared with its readers
    explicit ScriptedProtocol(std::shared_ptr<Journal> journal = std::make_shared<Journal>());
    ~ScriptedProtocol() override;

    /// What loggedIn() returns.
    bool signedIn = true;
    int loggedInCalls = 0; ///< how often it was called

    /// Operations that are refused with -1: they are recorded, and their callbacks are destroyed.
    std::set<std::string> refused;

    /// Runs inside the operation of that name, after it was recorded, with the id that it is about to return, or with
    /// the one that is cancelled.
    std::map<std::string, std::function<void(qint64 id)>> inside;

    /// Calls every callback that is still held from the destructor.
    bool answersWhenDestroyed = false;

    /// Everything but loggedIn().
    std::vector<Call> calls;

    /// The calls of one operation, in order.
    std::vector<Call> CallsOf(const std::string& operation) const;

    /// The last call of an operation; std::logic_error when there was none. Valid until the next call.
    const Call& LastCall(const std::string& operation) const;

    /// The id of the last call of an operation; std::logic_error when there was none.
    qint64 LastId(const std::string& operation) const;

    /// Requests that were started and neither answered nor cancelled.
    std::set<qint64> Running() const;

    /// Calls the completion callback of a request. The callback stays held, so that a request can be answered twice, or
    /// after it was cancelled. Without a payload the callback is given an empty one.
    template <typename... Payload>
    void Answer(qint64 id, RequestResult result, const Payload&... payload)
    {
        AnswerAs(id, id, result, payload...);
    }

    /// As Answer, but tells the callback another id than its own.
    template <typename... Payload>
    void AnswerAs(qint64 request, qint64 id, RequestResult result, const Payload&... payload)
    {
        std::visit([&](auto& callback) { Fire(callback, request, id, result, payload...); }, CompletionOf(request));
    }

    /// Tells the failure observer the reason, and answers the request with an error.
    void Fail(qint64 id, const QString& reason, Social::OAuth2::FailureKind kind = Social::OAuth2::FailureKind::Other);

    /// Calls the failure observer, if there is one, and nothing else.
    void TellFailure(const Social::OAuth2::Failure& failure) const;

    /// Calls the progress callback of an upload or a download.
    /// \param value percent
    void Progress(qint64 id, int value);

    /// As Progress, but tells the callback another id than its own.
    void ProgressAs(qint64 request, qint64 id, int value);

    /// Destroys the callbacks of a request, even while one of them runs.
    void Drop(qint64 id);

    /// \name Called by the manager
    /// @{

    /// Recorded, and held until the test answers; see Ability.h for what it asks for.
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

    /// Kept for Fail and TellFailure.
    void SetFailureObserver(FailureObserver observer) override;

    /// @}

private:
    template <typename... Payload>
    using Done = std::function<void(qint64, RequestResult, Payload...)>;
    using Completion =
        std::variant<Done<>, Done<QString>, Done<QUrl>, Done<QPixmap>, Done<FileInfo>, Done<QList<FileInfo>>,
                     Done<const Sharing&>, Done<const QMap<QString, QuotaValue>&>>;

    template <typename... Wanted, typename... Payload>
    void Fire(Done<Wanted...>& callback, qint64 request, qint64 id, RequestResult result, const Payload&... payload)
    {
        constexpr bool isItsPayload = std::is_invocable_v<Done<Wanted...>&, qint64, RequestResult, const Payload&...>;
        if constexpr (!isItsPayload && sizeof...(Payload) != 0) {
            ThrowWrongPayload(request);
        } else {
            running.erase(request);
            if constexpr (isItsPayload) {
                callback(id, result, payload...);
            } else {
                callback(id, result, std::decay_t<Wanted>()...);
            }
        }
    }

    qint64 Start(Call call, Completion&& done, ProgressCallback&& progress = {});
    void RunInside(const std::string& operation, qint64 id);
    Completion& CompletionOf(qint64 request);
    void CheckNames() const;
    std::string NameOf(qint64 request) const;
    [[noreturn]] void ThrowNoSuchRequest(qint64 request, const std::string& callback) const;
    [[noreturn]] void ThrowWrongPayload(qint64 request) const;

    std::shared_ptr<Journal> journal;
    qint64 nextId = 1;
    std::map<qint64, Completion> completions;
    std::map<qint64, ProgressCallback> progresses;
    std::set<qint64> running;
    FailureObserver failureObserver;
};

} // namespace Norlis::TestKit
