#pragma once

#include "Authentication.h"
#include "CurlLoop.h"
#include "HttpMessage.h"
#include <base/Lifetime.h>

#include <QElapsedTimer>

#include <curl/curl.h>

namespace Norlis::Social {

/// One attempt at one request.
class CurlExchange {
public:
    struct Settings {
        QByteArray userAgent;
        QByteArray authorization; ///< value of the field; empty for none
        Credentials digest;       ///< for Digest authentication; otherwise empty
        QByteArray certificateFile;
        bool isProxied = true;
        bool expectsContinue = true; ///< a server may refuse a large body before it is sent
        int silenceTimeout = 60'000; ///< milliseconds
    };
    using Done = std::function<void(HttpResponse)>;

    CurlExchange(CurlLoop& loop, const HttpRequest& request, const Settings& settings);
    ~CurlExchange();

    CurlExchange(const CurlExchange&) = delete;
    CurlExchange& operator=(const CurlExchange&) = delete;

    /// done is called once, from the event loop, unless the exchange is destroyed before.
    void Start(Done done);

    /// Ends the exchange when the server has been silent for too long.
    void CheckSilence();

    /// Whether a sink has been given a part of the body.
    bool HasDelivered() const
    {
        return hasDelivered;
    }

    /// Whether the server reported success without having waited for the body, as some do that do not know
    /// `Expect: 100-continue`.
    bool IsAnsweredTooEarly() const
    {
        return isAnsweredTooEarly;
    }

    qint64 SentBytes() const;
    qint64 ReceivedBytes() const;

private:
    static int OnRequest(void* self, char* address, char* localAddress, int port, int localPort);
    static std::size_t OnHeader(char* data, std::size_t size, std::size_t count, void* self);
    static std::size_t OnBody(char* data, std::size_t size, std::size_t count, void* self);
    static std::size_t OnRead(char* buffer, std::size_t size, std::size_t count, void* self);
    static int OnSeek(void* self, curl_off_t offset, int origin);

    void SetUp(const Settings& settings);
    void SetUpBody();
    void AddHeader(const QByteArray& line);
    bool TakeHeader(QByteArray line);
    std::size_t TakeBody(const char* data, std::size_t size);
    std::size_t GiveBody(char* buffer, std::size_t size);
    bool OnHeadComplete();
    void EndAsSilent(const QString& text, int milliseconds);
    long ProxyStatus() const; ///< of its answer to CONNECT; 0 when there was none
    HttpResponse::Fault FaultOf(CURLcode code) const;
    bool BeginSink();
    std::function<void()> Resumer();
    void Finish(CURLcode code);
    /// What libcurl says of an error.
    QString DetailOf(CURLcode code) const;

    /// What is wrong with the server's certificate, for the user.
    QString CertificateText() const;
    void Fail(HttpResponse::Fault fault, const QString& text, const QString& detail = {});

    CurlLoop& loop;
    const HttpRequest request;
    const int silenceTimeout; ///< milliseconds
    const QString proxy;      ///< empty when there is none
    const bool asksFirst;     ///< whether the server wants the body
    int timesSent = 0;        ///< without an answer
    CURL* const handle;
    curl_slist* headers = nullptr;
    char errorText[CURL_ERROR_SIZE] = {};
    HttpResponse response;
    Done done;

    enum class SinkState { Unasked, Taking, Refusing };
    SinkState sinkState = SinkState::Unasked;
    bool hasDelivered = false;
    bool isHeadComplete = false;
    bool isPaused = false;
    bool isTooLong = false;
    bool isAnsweredTooEarly = false;
    QElapsedTimer sinceActivity; ///< of the connection
    QElapsedTimer sinceProgress; ///< more of the body is out, the answer's head complete, or its sink has got something
    qint64 seenBytes = 0;        ///< sent and received by the time of the last activity
    qint64 seenSent = 0;         ///< sent by the time of the last look

    Lifetime lifetime; ///< sources and sinks may call back after the exchange has ended
};

} // namespace Norlis::Social
