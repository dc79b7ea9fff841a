#pragma once

#include "Authentication.h"
#include "CurlExchange.h"
#include "Pace.h"
#include "Secrets.h"

#include <QElapsedTimer>
#include <QTimer>

#include <deque>
#include <map>
#include <memory>

namespace Norlis::Social {

/// Requests to one origin (scheme, host and port), each answered once.
///
/// Requests wait in lanes, so that documents, lists and previews do not wait for each other. When the server is busy or
/// the connection breaks, a repeatable request is repeated a few times, after a pause. A server that limits their rate
/// gets one at a time, as slowly as it wants. Redirects are followed within the origin only, with the same method and
/// body; the credentials never leave it, and go out only after the server has asked for them, in the form that it asked
/// for. There are no cookies.
///
/// Lives on one thread with an event loop. Destruction drops all requests without a response.
class HttpClient : public QObject {
public:
    struct Settings {
        QByteArray origin; ///< as OriginOfUrl gives it
        QByteArray userAgent;
        Credentials credentials;
        QString certificateFile;
        int silenceTimeout = 60'000; ///< milliseconds without any activity, after which a request has failed
    };
    using Done = std::function<void(HttpResponse)>;

    /// \param onIdle called whenever the last request is answered or cancelled; it must not destroy the client
    HttpClient(const Settings& settings, const Secrets& secrets, std::function<void()> onIdle);
    ~HttpClient() override;

    /// Returns the request's id. done is called from the event loop, unless the request is cancelled.
    qint64 Send(const HttpRequest& request, Done done);

    /// Unknown ids are ignored. A running request is aborted.
    void Cancel(qint64 id);

private:
    struct Pending {
        HttpRequest request;
        Done done;
        int attempts = 0;
        int redirects = 0;
        int refusals = 0;                       ///< by a server that limits the rate
        int signIns = 0;                        ///< how often the server asked for other credentials
        AuthScheme scheme = AuthScheme::None;   ///< of the last attempt
        std::unique_ptr<CurlExchange> exchange; ///< while it runs
        QElapsedTimer sinceStart;
    };

    void Erase(qint64 id);
    void StartNext();
    bool MayStart();
    void Start(qint64 id);
    void OnEnded(qint64 id, HttpResponse&& response);

    /// Whether the request continues elsewhere within the origin; if not, the response may say why.
    bool Follow(Pending& pending, HttpResponse& response);

    /// Whether the request is to be sent once more, since the server asks for credentials that we have.
    bool SignIn(Pending& pending, const HttpResponse& response);

    /// The pause before another attempt, in milliseconds; -1 when there is none.
    int PauseBeforeRepeating(Pending& pending, const HttpResponse& response);
    void Queue(qint64 id);
    void Log(qint64 id, const Pending& pending, const HttpResponse& response) const;

    const Settings settings;
    bool expectsContinue = true; ///< false once the server has taken the announcement of a body for the body
    const Secrets& secrets;
    const std::function<void()> onIdle;
    AuthScheme scheme = AuthScheme::None; ///< that the server asked for last
    Pace pace;
    QTimer paceTimer;
    CurlLoop loop;
    qint64 lastId = 0;
    std::map<qint64, Pending> requests;
    std::map<HttpRequest::Lane, std::deque<qint64>> waiting;
    std::map<HttpRequest::Lane, int> runningIn;
    QTimer silenceTimer;
};

} // namespace Norlis::Social
