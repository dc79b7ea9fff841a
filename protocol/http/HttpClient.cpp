#include "HttpClient.h"

#include "HttpDate.h"
#include "Origin.h"

#include <QDateTime>
#include <QFile>
#include <QLoggingCategory>
#include <QRandomGenerator>
#include <QUrl>

#include <algorithm>
#include <utility>
#include <vector>

namespace Norlis::Social {

namespace {

Q_LOGGING_CATEGORY(httpLog, "norlis.http", QtInfoMsg)

constexpr int maxAttempts = 3;
constexpr int maxRefusals = 8; // by a server that limits the rate of requests; more than a minute in all
constexpr int maxRedirects = 5;
constexpr int maxSignIns = 2;
constexpr int firstPause = 400;   // milliseconds; doubled each time
constexpr int maxPause = 30'000;  // milliseconds; a server that asks for more is reported instead
constexpr int silenceCheck = 500; // milliseconds
constexpr int busyPace = 1'000;   // milliseconds between requests that a busy server gets at most

int MaxRunning(HttpRequest::Lane lane)
{
    switch (lane) {
    case HttpRequest::Lane::Listing: // answered in the order in which they were sent
    case HttpRequest::Lane::Background:
    case HttpRequest::Lane::Lock: // several at once corrupt the table of Apache's locks, and every request fails then
        return 1;
    case HttpRequest::Lane::Preview:
        return 2;
    case HttpRequest::Lane::Control:
    case HttpRequest::Lane::Transfer:
        break;
    }
    return 4;
}

/// The part of an address that may be logged.
QString LoggedUrl(const QByteArray& url)
{
    return QString::fromLatin1(url.split('?').constFirst());
}

/// The seconds or the date of Retry-After (RFC 9110 10.2.3) as milliseconds from now; -1 when there is none.
qint64 RetryAfter(const HttpHead& head)
{
    const QByteArray value = head.Field("retry-after");
    bool isNumber = false;
    const qint64 seconds = value.toLongLong(&isNumber);
    if (isNumber) {
        return seconds < 0 ? -1 : std::min<qint64>(seconds, 24 * 60 * 60) * 1000;
    }
    const QDateTime time = ParseHttpDate(value);
    return time.isValid() ? qMax<qint64>(0, QDateTime::currentDateTimeUtc().msecsTo(time)) : -1;
}

/// Some servers lock a resource while they handle another request of ours for it.
bool IsBusy(int status)
{
    return status == 423 || status == 502 || status == 503 || status == 504;
}

/// A server that answers so has done nothing. RFC 6585.
bool IsRateLimited(int status)
{
    return status == 429;
}

/// Whether a method only asks (RFC 9110, 9.2.1; RFC 4918, 9.1).
bool IsSafe(const QByteArray& method)
{
    return method == "GET" || method == "HEAD" || method == "OPTIONS" || method == "PROPFIND";
}

/// What changes a file is meant for that file, and for none of the same name in another folder. Portals redirect
/// whatever they are asked to a page of theirs, or to the collection, and that must not be deleted in the place of a
/// file.
bool IsOfSamePath(const QByteArray& url, const QByteArray& otherUrl)
{
    const auto pathIn = [](const QByteArray& each) { return QUrl::fromEncoded(each).path(QUrl::FullyDecoded); };
    return pathIn(url) == pathIn(otherUrl);
}

bool IsRedirect(int status)
{
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

} // namespace

HttpClient::HttpClient(const Settings& settings, const Secrets& secrets, std::function<void()> onIdle)
    : settings(settings),
      secrets(secrets),
      onIdle(std::move(onIdle))
{
    paceTimer.setSingleShot(true);
    connect(&paceTimer, &QTimer::timeout, this, [this] { StartNext(); });
    silenceTimer.setInterval(std::min(silenceCheck, std::max(settings.silenceTimeout / 4, 1)));
    connect(&silenceTimer, &QTimer::timeout, this, [this] {
        std::vector<qint64> running;
        for (const auto& [id, pending] : requests) {
            if (pending.exchange) {
                running.push_back(id);
            }
        }
        if (running.empty()) {
            silenceTimer.stop();
        }
        for (const qint64 id : running) {
            const auto found = requests.find(id); // the end of an earlier one may have cancelled it
            if (found != requests.end() && found->second.exchange) {
                found->second.exchange->CheckSilence();
            }
        }
    });
}

HttpClient::~HttpClient() = default;

qint64 HttpClient::Send(const HttpRequest& request, Done done)
{
    const qint64 id = ++lastId;
    Pending& pending = requests[id];
    pending.request = request;
    pending.done = std::move(done);
    Queue(id);
    return id;
}

void HttpClient::Queue(qint64 id)
{
    const HttpRequest& request = requests.at(id).request;
    auto& queue = waiting[request.lane];
    queue.insert(request.isFirst ? queue.begin() : queue.end(), id);
    // Not at once: the caller may be inside a callback of libcurl.
    QMetaObject::invokeMethod(
        this, [this] { StartNext(); }, Qt::QueuedConnection);
}

void HttpClient::Cancel(qint64 id)
{
    const auto found = requests.find(id);
    if (found == requests.end()) {
        return;
    }
    const auto lane = found->second.request.lane;
    const bool wasRunning = found->second.exchange != nullptr;
    Erase(id); // what waits in the lane is skipped when its turn comes
    if (wasRunning) {
        --runningIn[lane];
        StartNext();
    }
}

void HttpClient::Erase(qint64 id)
{
    requests.erase(id);
    if (requests.empty()) {
        onIdle();
    }
}

void HttpClient::StartNext()
{
    for (auto& [lane, queue] : waiting) {
        while (!queue.empty() && runningIn[lane] < MaxRunning(lane)) {
            const qint64 id = queue.front();
            const bool isWanted = requests.count(id) != 0;
            if (isWanted && !MayStart()) {
                return;
            }
            queue.pop_front();
            if (isWanted) {
                ++runningIn[lane];
                Start(id);
            }
        }
    }
}

bool HttpClient::MayStart()
{
    if (!pace.IsLimited()) {
        return true;
    }
    const bool isFree =
        std::all_of(runningIn.begin(), runningIn.end(), [](const auto& lane) { return lane.second == 0; });
    const int wait = pace.Wait();
    if (isFree && wait > 0) {
        paceTimer.start(wait);
    }
    return isFree && wait == 0;
}

void HttpClient::Start(qint64 id)
{
    Pending& pending = requests.at(id);
    CurlExchange::Settings exchangeSettings;
    exchangeSettings.userAgent = settings.userAgent;
    exchangeSettings.certificateFile = QFile::encodeName(settings.certificateFile);
    exchangeSettings.isProxied = !IsLoopback(pending.request.url);
    exchangeSettings.silenceTimeout = settings.silenceTimeout;
    exchangeSettings.expectsContinue = expectsContinue;
    pending.scheme = OriginOfUrl(pending.request.url) == settings.origin ? scheme : AuthScheme::None;
    exchangeSettings.authorization = AuthorizationField(pending.scheme, settings.credentials);
    if (pending.scheme == AuthScheme::Digest) {
        exchangeSettings.digest = settings.credentials;
    }
    ++pending.attempts;
    pace.Started();
    pending.sinceStart.start();
    pending.exchange = std::make_unique<CurlExchange>(loop, pending.request, exchangeSettings);
    pending.exchange->Start([this, id](HttpResponse&& response) { OnEnded(id, std::move(response)); });
    if (!silenceTimer.isActive()) {
        silenceTimer.start();
    }
}

void HttpClient::OnEnded(qint64 id, HttpResponse&& response)
{
    const auto found = requests.find(id);
    if (found == requests.end()) {
        return; // cancelled in the same turn
    }
    Pending& pending = found->second;
    const auto lane = pending.request.lane;
    Log(id, pending, response);
    response.hadCredentials = pending.scheme != AuthScheme::None;
    const int pause = PauseBeforeRepeating(pending, response);
    const bool isAnsweredTooEarly = pending.exchange->IsAnsweredTooEarly();
    pending.exchange.reset();
    --runningIn[lane];
    if (isAnsweredTooEarly) {
        expectsContinue = false;
        --pending.attempts;
        Queue(id);
    } else if (SignIn(pending, response) || Follow(pending, response)) {
        Queue(id);
    } else if (pause >= 0) {
        QTimer::singleShot(pause, this, [this, id] {
            if (requests.count(id) != 0) {
                Queue(id);
            }
        });
    } else {
        const auto done = std::move(pending.done);
        Erase(id);
        StartNext();
        done(std::move(response)); // it may destroy the client
        return;
    }
    StartNext();
}

bool HttpClient::SignIn(Pending& pending, const HttpResponse& response)
{
    if (response.Status() != 401 || OriginOfUrl(pending.request.url) != settings.origin) {
        return false;
    }
    const AuthScheme asked = SchemeFor(settings.credentials, OfferedSchemes(response.head));
    if (asked == AuthScheme::None || asked == pending.scheme || ++pending.signIns > maxSignIns) {
        return false;
    }
    scheme = asked;
    --pending.attempts;
    return true;
}

bool HttpClient::Follow(Pending& pending, HttpResponse& response)
{
    const int status = response.Status();
    if (!IsRedirect(status)) {
        return false;
    }
    const bool isRead = pending.request.method == "GET" || pending.request.method == "HEAD";
    const QByteArray target = QUrl::fromEncoded(pending.request.url)
                                  .resolved(QUrl::fromEncoded(response.head.Field("location")))
                                  .toEncoded(QUrl::RemoveUserInfo); // libcurl would sign in with it
    response.fault = HttpResponse::Fault::Redirected;
    if (response.head.Field("location").isEmpty()) {
        response.faultText = QStringLiteral("The server redirects without saying where");
    } else if (status == 303 && !isRead) { // the target answers another question, RFC 9110, 15.4.4
        response.faultText = QStringLiteral("The server redirects to a page instead of answering");
    } else if (OriginOfUrl(target) != settings.origin) {
        const QByteArray origin = OriginOfUrl(target);
        response.faultText = QStringLiteral("The server redirects to another address: %1")
                                 .arg(QString::fromUtf8(origin.isEmpty() ? "not a web address" : origin));
    } else if (!IsSafe(pending.request.method) && !IsOfSamePath(target, pending.request.url)) {
        response.faultText = QStringLiteral("The server redirects to something else");
    } else if (++pending.redirects > maxRedirects) {
        response.faultText = QStringLiteral("The server redirects in circles");
    } else {
        pending.request.url = target;
        --pending.attempts;
        return true;
    }
    return false;
}

int HttpClient::PauseBeforeRepeating(Pending& pending, const HttpResponse& response)
{
    using Fault = HttpResponse::Fault;
    const qint64 asked = response.fault == Fault::None ? RetryAfter(response.head) : -1;
    if (IsRateLimited(response.Status())) {
        if (asked > maxPause || ++pending.refusals > maxRefusals) {
            return -1;
        }
        --pending.attempts;
        pace.Slow(static_cast<int>(asked));
        return 0;
    }
    if (response.Status() == 503 && asked < 0) {
        pace.Slow(-1, busyPace); // which is also how some servers limit the rate
    }
    const bool isPassing = response.fault == Fault::Unreachable || response.fault == Fault::Broken ||
                           (response.fault == Fault::None && IsBusy(response.head.status));
    if (!isPassing || !pending.request.isRepeatable || pending.attempts >= maxAttempts ||
        pending.exchange->HasDelivered()) {
        return -1;
    }
    if (asked >= 0) {
        return asked <= maxPause ? static_cast<int>(asked) : -1;
    }
    // Random, so that not all clients return at the same moment.
    const int pause = firstPause << (pending.attempts - 1);
    return pause / 2 + static_cast<int>(QRandomGenerator::global()->bounded(pause));
}

void HttpClient::Log(qint64 id, const Pending& pending, const HttpResponse& response) const
{
    const QString fault = response.faultDetail.isEmpty() ? response.faultText : response.faultDetail;
    qCDebug(httpLog).noquote() << secrets.Redact(
        QStringLiteral("#%1.%2 %3 %4 -> %5%6, %7 sent, %8 received, %9 ms")
            .arg(id)
            .arg(pending.attempts)
            .arg(QString::fromLatin1(pending.request.method), LoggedUrl(pending.request.url))
            .arg(response.head.status)
            .arg(fault.isEmpty() ? QString() : " (" + fault + ')')
            .arg(pending.exchange->SentBytes())
            .arg(pending.exchange->ReceivedBytes())
            .arg(pending.sinceStart.elapsed()));
}

} // namespace Norlis::Social
