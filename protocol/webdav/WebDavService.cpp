#include "WebDavService.h"

#include "DownloadOperation.h"
#include "PreviewFetch.h"
#include "ServerProbe.h"
#include "SignInOperations.h"
#include "UploadOperation.h"
#include <base/Lifetime.h>
#include <files/AbandonedFolder.h>
#include <files/PrivateFolder.h>
#include <protocol/http/Origin.h>

#include <QDir>

#include <algorithm>

namespace Norlis::Social {

namespace {

constexpr int maxTransfers = 4;     // at once
constexpr int maxSettling = 256;    // transfers that wait to be flushed, or looked at, together
constexpr int shutdownTimeout = 70; // milliseconds; somebody waits for it in front of a closed window

QString UserOf(const OAuth2::AuthInfo& authInfo)
{
    return authInfo.userName.isEmpty() ? authInfo.serviceUrl.userName(QUrl::FullyDecoded) : authInfo.userName;
}

bool IsOneLine(const QString& text)
{
    return std::none_of(text.begin(), text.end(), [](QChar character) { return character.unicode() < 0x20; });
}

/// What is wrong with the address or the user.
std::optional<QString> Validate(const OAuth2::AuthInfo& authInfo)
{
    const QUrl& url = authInfo.serviceUrl;
    const QByteArray address = url.toEncoded(QUrl::RemoveUserInfo);
    if (OriginOfUrl(address).isEmpty() || !SegmentsOfUrl(address)) {
        return QStringLiteral("it is not the address of a folder");
    }
    if (url.hasQuery() || url.hasFragment()) {
        return QStringLiteral("leave out what follows \"?\" or \"#\"");
    }
    if (url.scheme() == "http" && !IsLoopback(address) && !authInfo.allowPlainHttp) {
        return QStringLiteral("http: would send the password and the documents unencrypted; use https:");
    }
    if (!IsOneLine(UserOf(authInfo)) || UserOf(authInfo).contains(':')) {
        return QStringLiteral("a user name must not contain colons or control characters");
    }
    return {};
}

/// For documents while they are rendered. Those of programs that were killed are removed where nobody else makes
/// folders.
QString PreviewFolderTemplate(const QString& cacheFolder)
{
    const auto prefix = QStringLiteral("norlis-preview-");
    const QString parent = cacheFolder.isEmpty() ? QDir::tempPath() : cacheFolder;
    Files::MakePrivateFolder(parent);
    if (!cacheFolder.isEmpty()) {
        const auto folders = QDir(cacheFolder).entryInfoList({prefix + "??????"}, QDir::Dirs);
        for (const auto& folder : folders) {
            Files::RemoveAbandonedFolder(folder.filePath());
        }
    }
    return parent + '/' + prefix + "XXXXXX";
}

} // namespace

WebDavService::WebDavService(const OAuth2::AuthInfo& authInfo, const std::string& programName, const Listener& listener)
    : authInfo(authInfo),
      user(UserOf(authInfo)),
      programName(QByteArray::fromStdString(programName)),
      listener(listener),
      versions(MemoryFile("versions", authInfo)),
      previewFolder(PreviewFolderTemplate(authInfo.cacheFolder)),
      previews(authInfo.cacheFolder, *this, listener.reply),
      quotas([this](const auto& found) { FindQuota(found); },
             [this] { return runningTransfers + settlingTransfers > 0; }, listener.reply)
{
    pool.setMaxThreadCount(maxTransfers + 2); // two for the disk, which may take long
    cleanUpTimer.setSingleShot(true);
    QObject::connect(&cleanUpTimer, &QTimer::timeout, &cleanUpTimer, [this] { CleanUp(); });
    shutdownTimer.setSingleShot(true);
    shutdownTimer.setInterval(shutdownTimeout);
    QObject::connect(&shutdownTimer, &QTimer::timeout, &shutdownTimer, [this] { CallOnce(onShutDown); });
}

WebDavService::~WebDavService()
{
    active.clear();
    quota.reset();
    pool.waitForDone();
}

void WebDavService::Shutdown(std::function<void()> done)
{
    for (auto each = active.begin(); each != active.end();) {
        each->second.isGivenUp = true;
        const auto ended = each->second.session;
        each = each->second.operation->GiveUp() ? active.erase(each) : std::next(each);
        Retire(ended);
    }
    waitingTransfers.clear();
    quota.reset();
    Retire(std::exchange(session, nullptr));
    for (const auto& each : endedSessions) {
        each->lookup.Stop();
    }
    onShutDown = std::move(done);
    shutdownTimer.start();
    cleanUpTimer.start();
}

ServiceKind WebDavService::Kind()
{
    return {{"https", "http"},
            "a WebDAV server, such as https://me@cloud.example/dav/",
            Validate,
            [](const OAuth2::AuthInfo& authInfo, const std::string& programName,
               const Listener& listener) -> std::unique_ptr<CloudService> {
                return std::make_unique<WebDavService>(authInfo, programName, listener);
            }};
}

void WebDavService::Start(qint64 id, const Request::Any& request)
{
    if (Request::NeedsSignIn(request) && !session) {
        listener.reply(id, SignedOutReply("The request"));
        return;
    }
    std::visit([&](const auto& known) { Begin(id, known); }, request);
}

void WebDavService::Cancel(qint64 id)
{
    previews.Cancel(id);
    quotas.Cancel(id);
    if (session) {
        session->lookup.Forget(id);
    }
    const auto found = active.find(id);
    if (found == active.end()) {
        return;
    }
    found->second.isGivenUp = true;
    if (found->second.operation->GiveUp()) {
        OnFinished(id, {});
    }
}

std::shared_ptr<WebDavSession> WebDavService::NewSession(const QString& token)
{
    const Collection collection(authInfo.serviceUrl);
    HttpClient::Settings settings;
    settings.origin = collection.Origin();
    settings.userAgent = programName;
    settings.credentials = {user.toUtf8(), token.toUtf8()};
    settings.certificateFile = authInfo.certificateFile;
    settings.silenceTimeout = authInfo.silenceTimeout;
    Secrets secrets;
    secrets.Add(user, token);
    return std::make_shared<WebDavSession>(collection, settings, secrets, user, versions,
                                           [this] { cleanUpTimer.start(); });
}

void WebDavService::Retire(const std::shared_ptr<WebDavSession>& ended)
{
    if (ended && ended != session) {
        endedSessions.insert(ended);
        cleanUpTimer.start();
    }
}

void WebDavService::CleanUp()
{
    for (auto each = endedSessions.begin(); each != endedSessions.end();) {
        const bool isInUse = std::any_of(active.begin(), active.end(),
                                         [&](const auto& request) { return request.second.session == *each; });
        each = isInUse || !(*each)->IsIdle() ? std::next(each) : endedSessions.erase(each);
    }
    if (active.empty() && endedSessions.empty()) {
        CallOnce(onShutDown); // it may destroy this object
    }
}

void WebDavService::Begin(qint64 id, const Request::SignIn& request)
{
    const auto what = QStringLiteral("Sign-in");
    if (!IsOneLine(request.token)) { // an empty one is for a server that asks for none
        listener.reply(id, FailureReply(what, {}, "That is not a password or token",
                                        "Enter the one that you have for the server."));
        return;
    }
    const auto next = NewSession(request.token);
    const auto finish = [this, id, next, before = signOuts](Reply&& reply) {
        if (reply.result == Success && !active.at(id).isGivenUp && signOuts == before) {
            Retire(std::exchange(session, next));
            session->housekeeper.DeleteLeftovers();
        }
        OnFinished(id, std::move(reply));
    };
    active[id] = {next, std::make_unique<SignInOperation>(next, finish)};
    active[id].operation->Start();
}

void WebDavService::Begin(qint64 id, const Request::SignOut&)
{
    Retire(std::exchange(session, nullptr)); // its connections are closed when its last request has ended
    ++signOuts;
    listener.reply(id, {});
}

void WebDavService::Begin(qint64 id, const Request::UserName&)
{
    Run(id, std::make_unique<UserOperation>(UserOperation::Wanted::Name, session, Finisher(id)));
}

void WebDavService::Begin(qint64 id, const Request::UserPage&)
{
    listener.reply(id, {Success, QUrl::fromEncoded(session->collection.Url()), {}, false});
}

void WebDavService::Begin(qint64 id, const Request::UserPictureAddress&)
{
    Run(id, std::make_unique<UserOperation>(UserOperation::Wanted::PictureAddress, session, Finisher(id)));
}

void WebDavService::Begin(qint64 id, const Request::UserPicture&)
{
    Run(id, std::make_unique<UserOperation>(UserOperation::Wanted::Picture, session, Finisher(id)));
}

void WebDavService::Begin(qint64 id, const Request::Info& request)
{
    Run(id, std::make_unique<InfoOperation>(id, request.document, session, Finisher(id)));
}

void WebDavService::Begin(qint64 id, const Request::List&)
{
    Run(id, std::make_unique<ListOperation>(session, Finisher(id)));
}

void WebDavService::Begin(qint64 id, const Request::Change&)
{
    listener.reply(id, {Error, {}, {}, false}); // a server does not tell of changes by itself
}

void WebDavService::Begin(qint64 id, const Request::Download& request)
{
    const DownloadOperation::Tools tools{pool, disk, [this, id](int percent) { listener.progress(id, percent); },
                                         [this, id] { Settle(id); }};
    RunTransfer(id, std::make_unique<DownloadOperation>(id, request, session, tools, Finisher(id)));
}

void WebDavService::Begin(qint64 id, const Request::Upload& request)
{
    const UploadOperation::Tools tools{pool, [this, id](int percent) { listener.progress(id, percent); },
                                       [this](const DavDocument& made) { previews.Forget(made.id, made.Version()); },
                                       [this, id] { Settle(id); }};
    RunTransfer(id, std::make_unique<UploadOperation>(id, request, session, tools, Finisher(id)));
}

void WebDavService::Begin(qint64 id, const Request::Remove& request)
{
    Run(id, std::make_unique<RemoveOperation>(id, request.document, session, Finisher(id)));
}

void WebDavService::Begin(qint64 id, const Request::CopyMoved& request)
{
    versions.Move(request.document, request.from, request.to);
    listener.reply(id, {});
}

void WebDavService::Begin(qint64 id, const Request::AcceptVersion& request)
{
    const auto listed = session->documents.constFind(request.document);
    if (listed != session->documents.constEnd() &&
        (request.md5Hash.isEmpty() || request.md5Hash == QString::fromLatin1(listed->md5))) {
        versions.Remember(listed->id, request.localPath, {listed->Version(), QString::fromLatin1(listed->md5)});
    }
    listener.reply(id, {});
}

void WebDavService::Begin(qint64 id, const Request::Quota&)
{
    quotas.Add(id);
}

void WebDavService::FindQuota(const std::function<void(Reply)>& found)
{
    if (!session) { // signed out while it waited
        found(SignedOutReply("Fetching the storage usage"));
        return;
    }
    quota = std::make_unique<QuotaOperation>(session, [this, asked = session, found](Reply&& reply) {
        const auto ended = std::move(quota);
        reply.isSignedOut = reply.isSignedOut && EndSession(asked);
        Retire(asked);
        found(reply);
    });
    quota->Start();
}

void WebDavService::Begin(qint64 id, const Request::Capabilities&)
{
    Run(id, std::make_unique<ServerProbe>(session, Finisher(id)));
}

void WebDavService::Begin(qint64 id, const Request::Preview& request)
{
    const auto what = QStringLiteral("Fetching a preview");
    const auto found = [=, asked = std::weak_ptr<WebDavSession>(session)](const DavDocument* document,
                                                                          Reply&& failure) {
        if (!document) {
            failure.isSignedOut = failure.isSignedOut && EndSession(asked.lock());
            listener.reply(id, std::move(failure));
        } else {
            previews.Add(id, {document->id, document->Name(), document->Version(), request.page}, request.box);
        }
    };
    session->lookup.Find(id, request.document, what, found);
}

void WebDavService::Begin(qint64 id, const Request::LocalPreview& request)
{
    previews.AddLocal(id, request.localPath, request.page, request.box);
}

std::unique_ptr<PreviewSource::Fetch> WebDavService::FetchForPreview(const PreviewSubject& subject, const QSize& box,
                                                                     Done done)
{
    const QString reason = !session ? QStringLiteral("Nobody is signed in")
                           : !session->documents.contains(subject.document)
                               ? QStringLiteral("The document is no longer in the cloud")
                               : QString();
    if (!reason.isEmpty()) {
        return std::make_unique<CompletedFetch>(Result{{}, {}, reason}, std::move(done));
    }
    const auto whenFetched = [this, asked = std::weak_ptr<WebDavSession>(session),
                              done = std::move(done)](Result&& result) {
        result.isSignedOut = result.isSignedOut && EndSession(asked.lock());
        done(std::move(result));
    };
    // It may have been unused for so long that another program removed it.
    Files::MakePrivateFolder(previewFolder.path());
    return std::make_unique<PreviewFetch>(session, session->documents.value(subject.document), subject.page, box,
                                          previewFolder.path(), pool, whenFetched);
}

bool WebDavService::EndSession(const std::shared_ptr<WebDavSession>& refused)
{
    const bool isCurrent = refused && refused == session;
    if (isCurrent) {
        Retire(std::exchange(session, nullptr));
    }
    return isCurrent;
}

Operation::Finish WebDavService::Finisher(qint64 id)
{
    return [this, id](Reply&& reply) { OnFinished(id, std::move(reply)); };
}

void WebDavService::OnFinished(qint64 id, Reply&& reply)
{
    const auto found = active.find(id);
    Active ended = std::move(found->second);
    active.erase(found);
    ended.operation.reset(); // before its end is reported, so that its temporary files are gone by then
    runningTransfers -= ended.isTransfer ? 1 : 0;
    settlingTransfers -= ended.isSettling ? 1 : 0;
    reply.isSignedOut = reply.isSignedOut && EndSession(ended.session);
    if (!ended.isGivenUp) {
        listener.reply(id, std::move(reply));
    }
    Retire(ended.session);
    StartNextTransfers();
}

void WebDavService::Run(qint64 id, std::unique_ptr<Operation> operation)
{
    Operation& started = *operation;
    active[id] = {session, std::move(operation)};
    started.Start();
}

void WebDavService::RunTransfer(qint64 id, std::unique_ptr<Operation> operation)
{
    active[id] = {session, std::move(operation)};
    waitingTransfers.push_back(id);
    StartNextTransfers();
}

void WebDavService::Settle(qint64 id)
{
    Active& transfer = active.at(id);
    if (transfer.isTransfer && settlingTransfers < maxSettling) {
        transfer.isTransfer = false;
        transfer.isSettling = true;
        --runningTransfers;
        ++settlingTransfers;
        StartNextTransfers();
    }
}

void WebDavService::StartNextTransfers()
{
    while (!waitingTransfers.empty() && runningTransfers < maxTransfers) {
        const auto next = active.find(waitingTransfers.front());
        waitingTransfers.pop_front();
        if (next != active.end()) { // otherwise cancelled in the meantime
            ++runningTransfers;
            next->second.isTransfer = true;
            next->second.operation->Start();
        }
    }
}

} // namespace Norlis::Social
