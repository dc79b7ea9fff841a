#include "WebDavService.h"

#include "AccountOperation.h"
#include "DocumentOperations.h"
#include "DownloadOperation.h"
#include "Examination.h"
#include "PreviewFetch.h"
#include "SignInOperation.h"
#include "UploadOperation.h"

#include <QDir>
#include <QEventLoop>

#include <algorithm>

namespace Norlis::Social {

namespace {

constexpr int mostTransfers = 4;       // at once
constexpr int longestFarewell = 3'000; // milliseconds

QString UserOf(const OAuth2::AuthInfo& authInfo)
{
    return authInfo.userName.isEmpty() ? authInfo.serviceUrl.userName(QUrl::FullyDecoded) : authInfo.userName;
}

/// RFC 7617 with a user, RFC 6750 without one.
QByteArray AuthorizationOf(const QString& user, const QString& token)
{
    return user.isEmpty() ? "Bearer " + token.toUtf8() : "Basic " + (user.toUtf8() + ':' + token.toUtf8()).toBase64();
}

bool IsOneLine(const QString& text)
{
    return std::none_of(text.begin(), text.end(), [](QChar character) { return character.unicode() < 0x20; });
}

/// Where documents lie while they are rendered.
QString PreviewFolderTemplate(const QString& cacheFolder)
{
    const QString parent = cacheFolder.isEmpty() ? QDir::tempPath() : cacheFolder;
    QDir().mkpath(parent);
    return parent + "/norlis-preview-";
}

} // namespace

WebDavService::Session::Session(const std::shared_ptr<WebDavServer>& server)
    : server(server),
      directory(*server),
      sweeper(*server),
      hashKeeper(*server)
{
}

bool WebDavService::Session::IsIdle() const
{
    return directory.IsIdle() && sweeper.IsIdle() && hashKeeper.IsIdle();
}

WebDavService::WebDavService(const OAuth2::AuthInfo& authInfo, const std::string& programName, const Listener& listener)
    : authInfo(authInfo),
      user(UserOf(authInfo)),
      programName(QByteArray::fromStdString(programName)),
      listener(listener),
      previewFolder(PreviewFolderTemplate(authInfo.cacheFolder)),
      previews(authInfo.cacheFolder, listener.reply, FindRenderer(),
               [this](const PreviewQueue::Subject& subject, const QSize& box, auto done) {
                   return FetchForPreview(subject, box, std::move(done));
               })
{
    pool.setMaxThreadCount(mostTransfers);
    formerTimer.setInterval(20);
    QObject::connect(&formerTimer, &QTimer::timeout, &formerTimer, [this] { DropFormer(); });
}

WebDavService::~WebDavService()
{
    for (auto each = works.begin(); each != works.end();) {
        each->second.isGivenUp = true;
        const auto left = each->second.session;
        each = each->second.operation->GiveUp() ? works.erase(each) : std::next(each);
        LetGo(left);
    }
    waitingTransfers.clear();
    QEventLoop loop;
    QTimer poll; // what it waits for ends in many ways
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        if (IsAtRest()) {
            loop.quit();
        }
    });
    QTimer::singleShot(longestFarewell, &loop, [&] { loop.quit(); });
    poll.start(5);
    // An event that was posted before this one began to be dealt with does not wake an inner loop (GLib's dispatcher);
    // a new one does, for all of them.
    QMetaObject::invokeMethod(
        &loop, [] {}, Qt::QueuedConnection);
    if (!IsAtRest()) {
        loop.exec();
    }
    works.clear();
    pool.waitForDone();
}

bool WebDavService::IsAtRest() const
{
    const bool isSwept = !session || (session->sweeper.IsIdle() && session->hashKeeper.IsIdle());
    return works.empty() && former.empty() && isSwept;
}

QString WebDavService::WhyNoService(const OAuth2::AuthInfo& authInfo)
{
    const QUrl& url = authInfo.serviceUrl;
    const QByteArray address = url.toEncoded(QUrl::RemoveUserInfo);
    if (OriginOfUrl(address).isEmpty() || !SegmentsOfUrl(address)) {
        return QStringLiteral("it is no address of a collection");
    }
    if (url.hasQuery() || url.hasFragment()) {
        return QStringLiteral("leave out what follows \"?\" or \"#\"");
    }
    if (url.scheme() == "http" && !IsLoopback(address) && !authInfo.allowPlainHttp) {
        return QStringLiteral("http: would send the password and the documents unencrypted; use https:");
    }
    if (!IsOneLine(UserOf(authInfo)) || UserOf(authInfo).contains(':')) {
        return QStringLiteral("a user's name has no colon and no control characters");
    }
    return {};
}

void WebDavService::Start(qint64 id, const Request::Any& request)
{
    const bool needsSession =
        !std::holds_alternative<Request::SignIn>(request) && !std::holds_alternative<Request::SignOut>(request);
    if (needsSession && !session) {
        listener.reply(id, Failed("The request", {}, "Nobody is signed in", "Sign in first."));
        return;
    }
    std::visit([&](const auto& known) { Begin(id, known); }, request);
}

void WebDavService::Cancel(qint64 id)
{
    previews.Cancel(id);
    if (session) {
        session->directory.Forget(id);
    }
    const auto found = works.find(id);
    if (found == works.end()) {
        return;
    }
    Work& work = found->second;
    work.isGivenUp = true;
    if (work.operation->GiveUp()) {
        OnFinished(id, {});
    }
}

std::shared_ptr<WebDavService::Session> WebDavService::NewSession(const QString& token)
{
    const Collection collection(authInfo.serviceUrl);
    HttpClient::Settings settings;
    settings.origin = collection.Origin();
    settings.userAgent = programName;
    settings.authorization = AuthorizationOf(user, token);
    settings.certificateFile = authInfo.certificateFile;
    settings.patience = authInfo.silenceTimeout;
    Secrets secrets;
    secrets.Add(user, token);
    return std::make_shared<Session>(std::make_shared<WebDavServer>(collection, settings, secrets, user));
}

void WebDavService::LetGo(const std::shared_ptr<Session>& left)
{
    if (left && left != session) {
        former.insert(left);
        formerTimer.start();
    }
}

void WebDavService::DropFormer()
{
    for (auto each = former.begin(); each != former.end();) {
        const bool isUnused = each->use_count() == 1 && (*each)->IsIdle();
        each = isUnused ? former.erase(each) : std::next(each);
    }
    if (former.empty()) {
        formerTimer.stop();
    }
}

void WebDavService::Begin(qint64 id, const Request::SignIn& request)
{
    const auto what = QStringLiteral("Sign-in");
    if (request.token.isEmpty() || !IsOneLine(request.token)) {
        listener.reply(id,
                       Failed(what, {}, "That is no password or token", "Give the one that you have for the server."));
        return;
    }
    const auto next = NewSession(request.token);
    const auto finish = [this, id, next, before = signOuts](Reply&& reply) {
        if (reply.result == Success && !works.at(id).isGivenUp && signOuts == before) {
            LetGo(std::exchange(session, next));
        }
        OnFinished(id, std::move(reply));
    };
    works[id] = {next, std::make_unique<SignInOperation>(next->server, finish), false, false};
    works[id].operation->Start();
}

void WebDavService::Begin(qint64 id, const Request::SignOut&)
{
    LetGo(std::exchange(session, nullptr)); // connections go with the last request that uses them
    ++signOuts;
    listener.reply(id, {});
}

void WebDavService::Begin(qint64 id, const Request::UserName&)
{
    Run(id, std::make_unique<AccountOperation>(AccountOperation::Wanted::Name, session->server, Finisher(id)));
}

void WebDavService::Begin(qint64 id, const Request::UserPage&)
{
    listener.reply(id, {Success, QUrl::fromEncoded(session->server->collection.Url()), {}, false});
}

void WebDavService::Begin(qint64 id, const Request::UserPictureAddress&)
{
    Run(id,
        std::make_unique<AccountOperation>(AccountOperation::Wanted::PictureAddress, session->server, Finisher(id)));
}

void WebDavService::Begin(qint64 id, const Request::UserPicture&)
{
    Run(id, std::make_unique<AccountOperation>(AccountOperation::Wanted::Picture, session->server, Finisher(id)));
}

void WebDavService::Begin(qint64 id, const Request::Info& request)
{
    Run(id, std::make_unique<InfoOperation>(id, request.document, session->directory, session->server, Finisher(id)));
}

void WebDavService::Begin(qint64 id, const Request::List&)
{
    const auto onLeftovers = [this, current = session](const QList<QByteArray>& names) { Sweep(*current, names); };
    Run(id, std::make_unique<ListOperation>(session->server, onLeftovers, Finisher(id)));
}

void WebDavService::Begin(qint64 id, const Request::Download& request)
{
    const DownloadOperation::Tools tools{session->directory, pool,
                                         [this, id](int percent) { listener.progress(id, percent); }};
    RunTransfer(id, std::make_unique<DownloadOperation>(id, request, session->server, tools, Finisher(id)));
}

void WebDavService::Begin(qint64 id, const Request::Upload& request)
{
    const UploadOperation::Tools tools{session->directory,
                                       session->sweeper,
                                       session->hashKeeper,
                                       pool,
                                       [this, id](int percent) { listener.progress(id, percent); },
                                       [this](const DavDocument& made) { previews.Forget(made.id, made.Version()); }};
    RunTransfer(id, std::make_unique<UploadOperation>(id, request, session->server, tools, Finisher(id)));
}

void WebDavService::Begin(qint64 id, const Request::Remove& request)
{
    Run(id, std::make_unique<RemoveOperation>(id, request.document, session->directory, session->server, Finisher(id)));
}

void WebDavService::Begin(qint64 id, const Request::Quota&)
{
    Run(id, std::make_unique<QuotaOperation>(session->server, Finisher(id)));
}

void WebDavService::Begin(qint64 id, const Request::Examination&)
{
    Run(id, std::make_unique<Examination>(session->server, session->sweeper, Finisher(id)));
}

void WebDavService::Begin(qint64 id, const Request::Preview& request)
{
    const auto what = QStringLiteral("Fetching a preview");
    const auto found = [=, asked = std::weak_ptr<Session>(session)](const DavDocument* document, Reply&& failure) {
        if (!document) {
            failure.isSignedOut = failure.isSignedOut && EndSession(asked.lock());
            listener.reply(id, std::move(failure));
        } else if (request.box.isEmpty()) {
            listener.reply(id, Failed(what, document->Name(), "A picture without a size was asked for"));
        } else {
            previews.Add(id, {document->id, document->Name(), {}, document->Version()}, request.box);
        }
    };
    session->directory.Find(id, request.document, what, found);
}

std::shared_ptr<void> WebDavService::FetchForPreview(const PreviewQueue::Subject& subject, const QSize& box,
                                                     std::function<void(PreviewQueue::Fetched)> done)
{
    const QString reason = !session ? QStringLiteral("Nobody is signed in any more")
                           : !session->server->documents.contains(subject.document)
                               ? QStringLiteral("The document is not in the cloud any more")
                               : QString();
    if (!reason.isEmpty()) {
        auto timer = std::make_shared<QTimer>();
        QObject::connect(timer.get(), &QTimer::timeout, [=] { done({{}, {}, reason, {}}); });
        timer->setSingleShot(true);
        timer->start(0);
        return timer;
    }
    const auto whenFetched = [this, asked = std::weak_ptr<Session>(session),
                              done = std::move(done)](PreviewQueue::Fetched&& fetched) {
        fetched.isSignedOut = fetched.isSignedOut && EndSession(asked.lock());
        done(std::move(fetched));
    };
    return std::make_shared<PreviewFetch>(session->server, session->server->documents.value(subject.document), box,
                                          previewFolder.path(), pool, whenFetched);
}

bool WebDavService::EndSession(const std::shared_ptr<Session>& refused)
{
    const bool isPresent = refused && refused == session;
    if (isPresent) {
        LetGo(std::exchange(session, nullptr));
    }
    return isPresent;
}

Operation::Finish WebDavService::Finisher(qint64 id)
{
    return [this, id](Reply&& reply) { OnFinished(id, std::move(reply)); };
}

void WebDavService::OnFinished(qint64 id, Reply&& reply)
{
    const auto found = works.find(id);
    Work work = std::move(found->second); // its session goes at the end of this
    works.erase(found);
    work.operation.reset(); // before anybody hears of its end: no temporary file of it is there any more
    runningTransfers -= work.isTransfer ? 1 : 0;
    reply.isSignedOut = reply.isSignedOut && EndSession(work.session);
    if (!work.isGivenUp) {
        listener.reply(id, std::move(reply));
    }
    LetGo(work.session);
    StartNextTransfers();
}

void WebDavService::Run(qint64 id, std::unique_ptr<Operation> operation)
{
    Operation& started = *operation;
    works[id] = {session, std::move(operation), false, false};
    started.Start();
}

void WebDavService::RunTransfer(qint64 id, std::unique_ptr<Operation> operation)
{
    works[id] = {session, std::move(operation), false, false};
    waitingTransfers.push_back(id);
    StartNextTransfers();
}

void WebDavService::StartNextTransfers()
{
    while (!waitingTransfers.empty() && runningTransfers < mostTransfers) {
        const auto next = works.find(waitingTransfers.front());
        waitingTransfers.pop_front();
        if (next != works.end()) { // else cancelled meanwhile
            ++runningTransfers;
            next->second.isTransfer = true;
            next->second.operation->Start();
        }
    }
}

void WebDavService::Sweep(Session& swept, const QList<QByteArray>& names)
{
    for (const QByteArray& name : names) {
        swept.sweeper.Remove(swept.server->collection.UrlOf(name), false);
    }
}

} // namespace Norlis::Social
