#include "ScriptedProtocol.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

namespace Norlis::TestKit {

namespace {

/// A name that is not an operation's would match nothing, silently.
void CheckName(const std::string& operation)
{
    static const std::set<std::string> operations = {
        "auth",       "cancelOperation", "deleteFile",      "downloadFile",
        "logout",     "retriveFileInfo", "retriveFileList", "retrievePreview",
        "uploadFile", "userName",        "userPic",         "userProfile",
        "userQuota"};
    if (operations.count(operation) == 0) {
        throw std::logic_error("The cloud protocol has no operation " + operation + " that is recorded");
    }
}

} // namespace

ScriptedProtocol::ScriptedProtocol(std::shared_ptr<Journal> journal) : journal(std::move(journal)) {}

ScriptedProtocol::~ScriptedProtocol()
{
    if (answersWhenDestroyed) {
        for (auto& [id, progress] : progresses) {
            progress(id, 100);
        }
        for (const auto& completion : completions) {
            Answer(completion.first, Social::Canceled);
        }
    }
}

std::vector<ScriptedProtocol::Call> ScriptedProtocol::CallsOf(const std::string& operation) const
{
    CheckName(operation);
    std::vector<Call> found;
    std::copy_if(calls.begin(), calls.end(), std::back_inserter(found),
                 [&](const Call& call) { return call.operation == operation; });
    return found;
}

const ScriptedProtocol::Call& ScriptedProtocol::LastCall(const std::string& operation) const
{
    CheckName(operation);
    const auto last =
        std::find_if(calls.rbegin(), calls.rend(), [&](const Call& call) { return call.operation == operation; });
    if (last == calls.rend()) {
        throw std::logic_error(operation + " was not called");
    }
    return *last;
}

qint64 ScriptedProtocol::LastId(const std::string& operation) const
{
    return LastCall(operation).id;
}

std::set<qint64> ScriptedProtocol::Running() const
{
    return running;
}

void ScriptedProtocol::Fail(qint64 id, const QString& reason, Social::OAuth2::FailureKind kind)
{
    Social::OAuth2::Failure failure;
    failure.operation = id;
    failure.reason = reason;
    failure.kind = kind;
    TellFailure(failure);
    Answer(id, Social::Error);
}

void ScriptedProtocol::TellFailure(const Social::OAuth2::Failure& failure) const
{
    const auto observer = failureObserver; // it may set another one
    if (observer) {
        observer(failure);
    }
}

void ScriptedProtocol::Progress(qint64 id, int value)
{
    ProgressAs(id, id, value);
}

void ScriptedProtocol::ProgressAs(qint64 request, qint64 id, int value)
{
    const auto found = progresses.find(request);
    if (found == progresses.end()) {
        ThrowNoSuchRequest(request, "progress callback");
    }
    found->second(id, value);
}

void ScriptedProtocol::Drop(qint64 id)
{
    completions.erase(id);
    progresses.erase(id);
}

qint64 ScriptedProtocol::auth(const QMap<QString, QString>& fields, std::function<void(qint64, RequestResult)>&& done)
{
    return Start({"auth", -1, fields}, std::move(done));
}

void ScriptedProtocol::logout()
{
    CheckNames();
    calls.push_back({"logout"});
    journal->Write("-> logout");
    RunInside("logout", -1);
}

bool ScriptedProtocol::loggedIn()
{
    ++loggedInCalls;
    return signedIn;
}

qint64 ScriptedProtocol::userName(std::function<void(qint64, RequestResult, QString)>&& done)
{
    return Start({"userName"}, std::move(done));
}

qint64 ScriptedProtocol::userProfile(std::function<void(qint64, RequestResult, QUrl)>&& done)
{
    return Start({"userProfile"}, std::move(done));
}

qint64 ScriptedProtocol::userPic(std::function<void(qint64, RequestResult, QString)>&& done)
{
    return Start({"userPic"}, std::move(done));
}

qint64 ScriptedProtocol::userPic(std::function<void(qint64, RequestResult, QPixmap)>&& done)
{
    return Start({"userPic"}, std::move(done));
}

qint64 ScriptedProtocol::retriveFileInfo(const FileFieldData& data,
                                         std::function<void(qint64, RequestResult, FileInfo)>&& done)
{
    return Start({"retriveFileInfo", -1, data.fields, data.extra}, std::move(done));
}

qint64 ScriptedProtocol::retriveFileList(const FileFieldData& data,
                                         std::function<void(qint64, RequestResult, QList<FileInfo>)>&& done)
{
    return Start({"retriveFileList", -1, data.fields, data.extra}, std::move(done));
}

qint64 ScriptedProtocol::downloadFile(const FileFieldData& data, std::function<void(qint64, RequestResult)>&& done,
                                      ProgressCallback&& progress)
{
    return Start({"downloadFile", -1, data.fields, data.extra}, std::move(done), std::move(progress));
}

qint64 ScriptedProtocol::deleteFile(const FileFieldData& data, std::function<void(qint64, RequestResult)>&& done)
{
    return Start({"deleteFile", -1, data.fields, data.extra}, std::move(done));
}

qint64 ScriptedProtocol::uploadFile(const QString& localPath, const QMap<QString, QString>& fields,
                                    std::function<void(qint64, RequestResult, const Sharing&)>&& done,
                                    ProgressCallback&& progress)
{
    return Start({"uploadFile", -1, fields, {}, localPath}, std::move(done), std::move(progress));
}

qint64 ScriptedProtocol::userQuota(std::function<void(qint64, RequestResult, const QMap<QString, QuotaValue>&)>&& done)
{
    return Start({"userQuota"}, std::move(done));
}

qint64 ScriptedProtocol::retrievePreview(const QMap<QString, QString>& fields,
                                         std::function<void(qint64, RequestResult, QPixmap)>&& done)
{
    return Start({"retrievePreview", -1, fields}, std::move(done));
}

void ScriptedProtocol::cancelOperation(qint64 id)
{
    CheckNames();
    calls.push_back({"cancelOperation", id});
    journal->Write("-> cancelOperation " + std::to_string(id));
    running.erase(id);
    RunInside("cancelOperation", id);
}

void ScriptedProtocol::SetFailureObserver(FailureObserver observer)
{
    failureObserver = std::move(observer);
}

qint64 ScriptedProtocol::Start(Call call, Completion&& done, ProgressCallback&& progress)
{
    CheckNames();
    const bool isRefused = refused.count(call.operation) != 0;
    journal->Write("-> " + call.operation + ' ' + (isRefused ? "refused" : std::to_string(nextId)));
    if (!isRefused) {
        call.id = nextId++;
        completions.emplace(call.id, std::move(done));
        if (progress) {
            progresses.emplace(call.id, std::move(progress));
        }
        running.insert(call.id);
    }
    calls.push_back(call);
    RunInside(call.operation, call.id);
    return call.id;
}

void ScriptedProtocol::RunInside(const std::string& operation, qint64 id)
{
    const auto found = inside.find(operation);
    if (found != inside.end()) {
        const auto hook = found->second; // it may take itself out
        hook(id);
    }
}

ScriptedProtocol::Completion& ScriptedProtocol::CompletionOf(qint64 request)
{
    const auto found = completions.find(request);
    if (found == completions.end()) {
        ThrowNoSuchRequest(request, "callback");
    }
    return found->second;
}

void ScriptedProtocol::CheckNames() const
{
    std::for_each(refused.begin(), refused.end(), CheckName);
    for (const auto& hook : inside) {
        CheckName(hook.first);
    }
}

std::string ScriptedProtocol::NameOf(qint64 request) const
{
    const auto call = std::find_if(calls.begin(), calls.end(), [&](const Call& made) { return made.id == request; });
    return (call == calls.end() ? "request " : call->operation + ' ') + std::to_string(request);
}

void ScriptedProtocol::ThrowNoSuchRequest(qint64 request, const std::string& callback) const
{
    std::string held;
    for (const auto& completion : completions) {
        held += (held.empty() ? "" : ", ") + NameOf(completion.first);
    }
    throw std::logic_error("No " + callback + " is held for " + NameOf(request) +
                           "; held are: " + (held.empty() ? "none" : held));
}

void ScriptedProtocol::ThrowWrongPayload(qint64 request) const
{
    throw std::logic_error(NameOf(request) + " is answered with a payload of another type");
}

} // namespace Norlis::TestKit
