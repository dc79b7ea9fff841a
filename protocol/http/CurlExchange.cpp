#include "CurlExchange.h"

#include "Proxy.h"

#include <algorithm>

namespace Norlis::Social {

namespace {

constexpr int maxKeptBody = 1024 * 1024;        // bytes; of responses that are read as a whole
constexpr int answerPatience = 5;               // times as long as usual may an answer to a whole body take
constexpr int slowPatience = 6;                 // times as long as usual may one take that comes slowly, but no longer
constexpr int longestAnswer = 60'000;           // than so many milliseconds
constexpr long connectTimeout = 20'000;         // milliseconds
constexpr long largeBuffer = 512 * 1024;        // bytes; so that large transfers take fewer steps
constexpr long smallBuffer = 64 * 1024;         // bytes; made for every request
constexpr qint64 expectThreshold = 1024 * 1024; // bytes; from this size on, the server is asked before the body is sent
constexpr int proxyAsks = 407;                  // a status, RFC 9110, 15.5.8
constexpr long expectTimeout = 500;             // milliseconds; some servers never answer `Expect`

HttpResponse::Fault UsualFaultOf(CURLcode code)
{
    using Fault = HttpResponse::Fault;
    switch (code) {
    case CURLE_OK:
        return Fault::None;
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_CONNECT:
    case CURLE_OPERATION_TIMEDOUT:
    case CURLE_SSL_CONNECT_ERROR:
        return Fault::Unreachable;
    case CURLE_COULDNT_RESOLVE_PROXY:
    case CURLE_PROXY:
        return Fault::NoProxy;
    case CURLE_PEER_FAILED_VERIFICATION:
    case CURLE_SSL_CACERT_BADFILE:
    case CURLE_SSL_CERTPROBLEM:
    case CURLE_SSL_ISSUER_ERROR:
    case CURLE_SSL_INVALIDCERTSTATUS:
        return Fault::Untrusted;
    case CURLE_ABORTED_BY_CALLBACK:
        return Fault::SourceFailed;
    case CURLE_WRITE_ERROR:
        return Fault::SinkRefused;
    default:
        return Fault::Broken;
    }
}

/// For the user: what the kind of the fault does not say.
QString TextOf(CURLcode code)
{
    switch (code) {
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_RESOLVE_PROXY:
        return QStringLiteral("no address is known for its name");
    case CURLE_COULDNT_CONNECT:
        return QStringLiteral("it does not accept connections, or no network leads there");
    case CURLE_OPERATION_TIMEDOUT:
        return QStringLiteral("it does not answer");
    case CURLE_SSL_CONNECT_ERROR:
        return QStringLiteral("no secure connection could be established");
    case CURLE_UNSUPPORTED_PROTOCOL:
    case CURLE_WEIRD_SERVER_REPLY:
        return QStringLiteral("the answer is not HTTP");
    case CURLE_SSL_CACERT_BADFILE:
        return QStringLiteral("the certificate file cannot be read");
    default:
        return {};
    }
}

CurlExchange* Self(void* self)
{
    return static_cast<CurlExchange*>(self);
}

} // namespace

CurlExchange::CurlExchange(CurlLoop& loop, const HttpRequest& request, const Settings& settings)
    : loop(loop),
      request(request),
      silenceTimeout(settings.silenceTimeout),
      proxy(settings.isProxied ? ProxyFor(request.url) : QString()),
      asksFirst(settings.expectsContinue && request.source && request.source->Size() >= expectThreshold),
      handle(curl_easy_init())
{
    response.url = request.url;
    SetUp(settings);
    SetUpBody();
}

CurlExchange::~CurlExchange()
{
    loop.Remove(handle);
    curl_easy_cleanup(handle);
    curl_slist_free_all(headers);
}

void CurlExchange::SetUp(const Settings& settings)
{
    curl_easy_setopt(handle, CURLOPT_URL, request.url.constData());
    curl_easy_setopt(handle, CURLOPT_PATH_AS_IS, 1L);
    curl_easy_setopt(handle, CURLOPT_CUSTOMREQUEST, request.method.constData());
    curl_easy_setopt(handle, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(handle, CURLOPT_HTTP_VERSION, CURL_HTTP_VERSION_1_1);
    curl_easy_setopt(handle, CURLOPT_FOLLOWLOCATION, 0L);
    curl_easy_setopt(handle, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(handle, CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
    curl_easy_setopt(handle, CURLOPT_ERRORBUFFER, errorText);
    curl_easy_setopt(handle, CURLOPT_BUFFERSIZE, request.sink ? largeBuffer : smallBuffer);
    curl_easy_setopt(handle, CURLOPT_CONNECTTIMEOUT_MS, std::min<long>(connectTimeout, silenceTimeout));
    curl_easy_setopt(handle, CURLOPT_USERAGENT, settings.userAgent.constData());
    curl_easy_setopt(handle, CURLOPT_PREREQFUNCTION, &CurlExchange::OnRequest);
    curl_easy_setopt(handle, CURLOPT_PREREQDATA, this);
    curl_easy_setopt(handle, CURLOPT_HEADERFUNCTION, &CurlExchange::OnHeader);
    curl_easy_setopt(handle, CURLOPT_HEADERDATA, this);
    curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, &CurlExchange::OnBody);
    curl_easy_setopt(handle, CURLOPT_WRITEDATA, this);
    if (!settings.isProxied) {
        curl_easy_setopt(handle, CURLOPT_PROXY, "");
    } else if (!proxy.isEmpty() && !request.isRepeatable && request.url.startsWith("http:")) {
        // Simple proxies close each connection after its answer, and not always say so: a request that happens to go
        // out on one that is about to be closed cannot be told from one that was carried out.
        curl_easy_setopt(handle, CURLOPT_FRESH_CONNECT, 1L);
    }
    if (!settings.certificateFile.isEmpty()) {
        curl_easy_setopt(handle, CURLOPT_CAINFO, settings.certificateFile.constData());
        curl_easy_setopt(handle, CURLOPT_CAPATH, nullptr);
    }
    if (request.method == "HEAD") {
        curl_easy_setopt(handle, CURLOPT_NOBODY, 1L);
    }
    if (!settings.authorization.isEmpty()) {
        AddHeader("Authorization: " + settings.authorization);
    }
    if (!settings.digest.token.isEmpty()) {
        curl_easy_setopt(handle, CURLOPT_HTTPAUTH, CURLAUTH_DIGEST);
        curl_easy_setopt(handle, CURLOPT_USERNAME, settings.digest.user.constData());
        curl_easy_setopt(handle, CURLOPT_PASSWORD, settings.digest.token.constData());
    }
    for (const auto& [name, value] : request.fields) {
        AddHeader(name + ": " + value);
    }
}

void CurlExchange::SetUpBody()
{
    const qint64 size = request.source ? request.source->Size() : request.body.size();
    if (request.source) {
        curl_easy_setopt(handle, CURLOPT_UPLOAD, 1L);
        curl_easy_setopt(handle, CURLOPT_UPLOAD_BUFFERSIZE, size > smallBuffer ? largeBuffer : smallBuffer);
        curl_easy_setopt(handle, CURLOPT_INFILESIZE_LARGE, static_cast<curl_off_t>(size));
        curl_easy_setopt(handle, CURLOPT_READFUNCTION, &CurlExchange::OnRead);
        curl_easy_setopt(handle, CURLOPT_READDATA, this);
        curl_easy_setopt(handle, CURLOPT_SEEKFUNCTION, &CurlExchange::OnSeek);
        curl_easy_setopt(handle, CURLOPT_SEEKDATA, this);
        curl_easy_setopt(handle, CURLOPT_EXPECT_100_TIMEOUT_MS, expectTimeout);
    } else if (!request.body.isEmpty()) {
        curl_easy_setopt(handle, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(size));
        curl_easy_setopt(handle, CURLOPT_POSTFIELDS, request.body.constData());
    }
    AddHeader(asksFirst ? "Expect: 100-continue" : "Expect:");
    curl_easy_setopt(handle, CURLOPT_HTTPHEADER, headers);
    curl_easy_setopt(handle, CURLOPT_HEADEROPT, static_cast<long>(CURLHEADER_SEPARATE)); // proxies do not get them
}

void CurlExchange::AddHeader(const QByteArray& line)
{
    headers = curl_slist_append(headers, line.constData());
}

void CurlExchange::Start(Done whenDone)
{
    done = std::move(whenDone);
    if (request.source) {
        request.source->Begin(Resumer());
    }
    sinceActivity.start();
    sinceProgress.start();
    loop.Add(handle, [this](CURLcode code) { Finish(code); });
}

std::function<void()> CurlExchange::Resumer()
{
    return [this, guard = lifetime.Watch()] {
        if (guard) {
            isPaused = false;
            sinceActivity.start();
            sinceProgress.start();
            loop.Resume(handle);
        }
    };
}

qint64 CurlExchange::SentBytes() const
{
    curl_off_t bytes = 0;
    curl_easy_getinfo(handle, CURLINFO_SIZE_UPLOAD_T, &bytes);
    return bytes;
}

qint64 CurlExchange::ReceivedBytes() const
{
    curl_off_t bytes = 0;
    curl_easy_getinfo(handle, CURLINFO_SIZE_DOWNLOAD_T, &bytes);
    return bytes;
}

void CurlExchange::CheckSilence()
{
    const qint64 sent = SentBytes();
    const qint64 bytes = sent + ReceivedBytes();
    if (bytes != seenBytes || isPaused) { // the server is not to blame for a pause
        seenBytes = bytes;
        sinceActivity.start();
    }
    if (isPaused || sent != seenSent) { // a body that goes out is progress, but no header is
        seenSent = sent;
        sinceProgress.start();
    }
    // Much of a body may still be on its way when all of it has been sent, and the server has work to do with it.
    const bool isBodyOut = request.source && sent == request.source->Size() && !isHeadComplete;
    const int patience = isBodyOut ? silenceTimeout * answerPatience : silenceTimeout;
    const int longest = std::max(patience, std::min(silenceTimeout * slowPatience, longestAnswer));
    if (sinceActivity.elapsed() >= patience) {
        EndAsSilent(QStringLiteral("The server has been silent for %1 seconds"), patience);
    } else if (sinceProgress.elapsed() >= longest) {
        EndAsSilent(QStringLiteral("The server has not finished its answer in %1 seconds"), longest);
    }
}

void CurlExchange::EndAsSilent(const QString& text, int milliseconds)
{
    loop.Remove(handle);
    Fail(HttpResponse::Fault::Silent, text.arg(QString::number(milliseconds / 1000.0, 'g', 3)));
}

int CurlExchange::OnRequest(void* self, char*, char*, int, int)
{
    // libcurl repeats every request, whatever it is, when a kept connection is closed instead of answered.
    Self(self)->isHeadComplete = false;
    const bool isAgain = ++Self(self)->timesSent > 1;
    return isAgain && !Self(self)->request.isRepeatable ? CURL_PREREQFUNC_ABORT : CURL_PREREQFUNC_OK;
}

std::size_t CurlExchange::OnHeader(char* data, std::size_t size, std::size_t count, void* self)
{
    return Self(self)->TakeHeader(QByteArray(data, static_cast<int>(size * count))) ? size * count : 0;
}

bool CurlExchange::TakeHeader(QByteArray line)
{
    sinceActivity.start();
    line = line.trimmed();
    if (line.startsWith("HTTP/")) {
        response.head = {}; // others come before the real one: interim ones, and one that asks for a password
        response.body.clear();
        response.head.status = line.mid(line.indexOf(' ') + 1, 3).toInt();
        return true;
    }
    const int colon = line.indexOf(':');
    if (colon > 0) {
        response.head.fields.append({line.left(colon).toLower(), line.mid(colon + 1).trimmed()});
    }
    return !line.isEmpty() || response.head.status < 200 || OnHeadComplete();
}

bool CurlExchange::OnHeadComplete()
{
    isHeadComplete = true;
    timesSent = 0;
    sinceProgress.start();
    isAnsweredTooEarly = asksFirst && response.head.HasSucceeded() && SentBytes() == 0;
    return !isAnsweredTooEarly; // and the connection is closed, since the server may still wait for the body there
}

std::size_t CurlExchange::OnBody(char* data, std::size_t size, std::size_t count, void* self)
{
    return Self(self)->TakeBody(data, size * count);
}

bool CurlExchange::BeginSink()
{
    if (sinkState == SinkState::Unasked) {
        sinkState = request.sink->Begin(response.head, Resumer()) ? SinkState::Taking : SinkState::Refusing;
    }
    return sinkState == SinkState::Taking;
}

std::size_t CurlExchange::TakeBody(const char* data, std::size_t size)
{
    if (!request.sink || !response.head.HasSucceeded()) {
        const auto room = static_cast<std::size_t>(maxKeptBody - response.body.size());
        response.body.append(data, static_cast<int>(std::min(room, size)));
        isTooLong = size > room;
        return isTooLong ? 0 : size;
    }
    if (!BeginSink()) {
        return 0;
    }
    switch (request.sink->Add(data, static_cast<qint64>(size))) {
    case HttpSink::Taken::Yes:
        sinceProgress.start();
        [[fallthrough]];
    case HttpSink::Taken::Idle:
        hasDelivered = true;
        return size;
    case HttpSink::Taken::Later:
        isPaused = true;
        return CURL_WRITEFUNC_PAUSE;
    case HttpSink::Taken::Refused:
        break;
    }
    return 0;
}

std::size_t CurlExchange::OnRead(char* buffer, std::size_t size, std::size_t count, void* self)
{
    return Self(self)->GiveBody(buffer, size * count);
}

std::size_t CurlExchange::GiveBody(char* buffer, std::size_t size)
{
    const qint64 given = request.source->Read(buffer, static_cast<qint64>(size));
    if (given == HttpSource::later) {
        isPaused = true;
        return CURL_READFUNC_PAUSE;
    }
    return given == HttpSource::failed ? CURL_READFUNC_ABORT : static_cast<std::size_t>(given);
}

int CurlExchange::OnSeek(void* self, curl_off_t offset, int origin)
{
    // libcurl starts again when a kept connection turns out to be closed.
    if (offset != 0 || origin != SEEK_SET) {
        return CURL_SEEKFUNC_CANTSEEK;
    }
    Self(self)->request.source->Begin(Self(self)->Resumer());
    return CURL_SEEKFUNC_OK;
}

void CurlExchange::Finish(CURLcode code)
{
    if (code == CURLE_ABORTED_BY_CALLBACK && !request.isRepeatable && timesSent > 1) {
        code = CURLE_GOT_NOTHING; // which is what happened to the first attempt
        errorText[0] = '\0';
    }
    // A sink also learns of a response without a body.
    if (code == CURLE_OK && request.sink && response.head.HasSucceeded() && !BeginSink()) {
        code = CURLE_WRITE_ERROR;
    }
    using Fault = HttpResponse::Fault;
    const bool isUnsent = request.source && SentBytes() < request.source->Size();
    if (code == CURLE_OK && response.head.status < 200) {
        Fail(Fault::Broken, QStringLiteral("The server gave no final answer"));
    } else if (isAnsweredTooEarly || (code == CURLE_OK && response.head.HasSucceeded() && isUnsent)) {
        Fail(Fault::Broken, QStringLiteral("The server answered before it had the whole document"));
    } else if (isTooLong && response.head.HasSucceeded()) {
        Fail(Fault::Endless, QStringLiteral("The answer of the server does not end"));
    } else if (response.head.status == proxyAsks || ProxyStatus() == proxyAsks) {
        Fail(Fault::NoProxy, QStringLiteral("The proxy %1 asks for a password (407)").arg(proxy).simplified());
    } else if (const Fault fault = FaultOf(code); fault == Fault::NoProxy) {
        const QString why = ProxyStatus() >= 300 ? QStringLiteral("it refuses (%1)").arg(ProxyStatus()) : TextOf(code);
        Fail(fault, QStringLiteral("The proxy %1 cannot be used").arg(proxy) + (why.isEmpty() ? why : ": " + why),
             DetailOf(code));
    } else if (fault == Fault::Silent) {
        Fail(fault, QStringLiteral("The server has stopped answering"), DetailOf(code));
    } else if (fault == Fault::Untrusted) {
        Fail(fault, code == CURLE_SSL_CACERT_BADFILE ? TextOf(code) : CertificateText(), DetailOf(code));
    } else if ((fault == Fault::Broken || isTooLong) && response.head.status >= 300) {
        Fail(Fault::None, {}); // a response that comes while the body is still being sent counts, however it ends
    } else {
        Fail(fault, TextOf(code), DetailOf(code));
    }
}

QString CurlExchange::DetailOf(CURLcode code) const
{
    return code == CURLE_OK ? QString()
                            : QString::fromUtf8(errorText[0] != '\0' ? errorText : curl_easy_strerror(code));
}

QString CurlExchange::CertificateText() const
{
    // As OpenSSL numbers them, X509_verify_cert_error.
    constexpr long notYetValid = 9;
    constexpr long expired = 10;
    constexpr long selfSigned = 18;
    constexpr long selfSignedAuthority = 19;
    constexpr long noIssuer = 20;
    constexpr long noIssuerOfTheOnlyOne = 21;
    long problem = 0;
    curl_easy_getinfo(handle, CURLINFO_SSL_VERIFYRESULT, &problem);
    switch (problem) {
    case notYetValid:
        return QStringLiteral("its certificate is not valid yet, or the clock of this computer is wrong");
    case expired:
        return QStringLiteral("its certificate has expired");
    case selfSigned:
    case selfSignedAuthority:
    case noIssuer:
    case noIssuerOfTheOnlyOne:
        return QStringLiteral("its certificate comes from an authority that this computer does not know");
    default:
        return DetailOf(CURLE_PEER_FAILED_VERIFICATION).contains("subject name")
                   ? QStringLiteral("its certificate is that of another server")
                   : QStringLiteral("its certificate is not accepted");
    }
}

long CurlExchange::ProxyStatus() const
{
    long status = 0;
    curl_easy_getinfo(handle, CURLINFO_HTTP_CONNECTCODE, &status);
    return status;
}

HttpResponse::Fault CurlExchange::FaultOf(CURLcode code) const
{
    using Fault = HttpResponse::Fault;
    if (code == CURLE_OPERATION_TIMEDOUT && response.head.status != 0) {
        return Fault::Silent;
    }
    // libcurl does not say in any other way whether it went by the proxy.
    const bool isProxyDead = (code == CURLE_COULDNT_CONNECT || code == CURLE_OPERATION_TIMEDOUT) && !proxy.isEmpty() &&
                             QString::fromUtf8(errorText).contains(proxy.section(':', 0, 0) + " port ");
    return isProxyDead || (code != CURLE_OK && ProxyStatus() >= 300) ? Fault::NoProxy : UsualFaultOf(code);
}

void CurlExchange::Fail(HttpResponse::Fault fault, const QString& text, const QString& detail)
{
    response.fault = fault;
    response.faultText = WithoutProxyPasswords(text);
    response.faultDetail = WithoutProxyPasswords(detail);
    CallOnce(done, std::move(response)); // it destroys this object
}

} // namespace Norlis::Social
