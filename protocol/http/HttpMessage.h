#pragma once

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QString>

#include <functional>
#include <memory>

namespace Norlis::Social {

/// A body that is sent while it is produced. Used on the thread of the HttpClient.
class HttpSource {
public:
    static constexpr qint64 later = -1;  ///< nothing is available yet; onReady follows
    static constexpr qint64 failed = -2; ///< the request fails

    virtual ~HttpSource() = default;

    /// In bytes.
    virtual qint64 Size() const = 0;

    /// Starts at the beginning, also for another attempt. onReady is called, from the event loop, when there is more to
    /// read after a `later`.
    virtual void Begin(std::function<void()> onReady) = 0;

    /// Returns the number of bytes written to the buffer, 0 at the end, or one of the constants above.
    virtual qint64 Read(char* buffer, qint64 size) = 0;
};

/// Names and values.
using HttpFields = QList<QPair<QByteArray, QByteArray>>;

/// The status line and the fields of a response. RFC 9110.
struct HttpHead {
    int status = 0;    ///< 0 when no response came
    HttpFields fields; ///< names in lower case

    /// The value of a field, without blanks around it; empty when there is none.
    QByteArray Field(const char* lowerCaseName) const;

    bool HasSucceeded() const
    {
        return status >= 200 && status < 300;
    }
};

/// Takes the body of a successful response while it arrives. Used on the thread of the HttpClient, which it must
/// not call.
class HttpSink {
public:
    enum class Taken {
        Yes,
        Idle, ///< taken, but it brought nothing on: a server that sends only such pieces counts as silent
        Later,
        Refused
    };

    virtual ~HttpSink() = default;

    /// Before the first piece of every attempt. False refuses the response.
    virtual bool Begin(const HttpHead& head, std::function<void()> onReady) = 0;

    /// After `Later` the same piece is offered again when onReady, given to Begin, has been called.
    virtual Taken Add(const char* data, qint64 size) = 0;
};

struct HttpRequest {
    /// Requests wait only for others in the same lane.
    enum class Lane {
        Listing,
        Control,
        Transfer,
        Preview,
        Background,
        Lock, ///< what makes, uses or ends a lock
    };

    QByteArray method;
    QByteArray url; ///< absolute, percent-encoded, without user and fragment; of the client's origin
    HttpFields fields;
    QByteArray body;
    std::shared_ptr<HttpSource> source; ///< in place of the body
    std::shared_ptr<HttpSink> sink;     ///< without one, the response's body is kept, up to a limit
    Lane lane = Lane::Control;
    bool isFirst = false;     ///< overtakes the others of its lane
    bool isRepeatable = true; ///< carrying it out twice does no harm
};

inline HttpRequest OnLane(HttpRequest::Lane lane, HttpRequest request)
{
    request.lane = lane;
    return request;
}

struct HttpResponse {
    enum class Fault {
        None,
        Unreachable, ///< no connection
        NoProxy,     ///< no connection to the proxy, or none through it
        Untrusted,   ///< TLS: the server's certificate cannot be verified
        Silent,      ///< no activity for too long
        Broken,      ///< the connection ended too early, or the response was not HTTP
        Endless,     ///< a response that is longer than any that makes sense
        Redirected,  ///< to where the request must not go
        SourceFailed,
        SinkRefused,
    };

    HttpHead head; ///< with a status of 0 unless a response began
    QByteArray body;
    QByteArray url;              ///< that answered, after redirects
    bool hadCredentials = false; ///< the request went out with a password or token
    Fault fault = Fault::None;
    QString faultText;   ///< the fault in plain words, where there are more of them than its kind says
    QString faultDetail; ///< what libcurl says of it

    bool HasSucceeded() const
    {
        return fault == Fault::None && head.HasSucceeded();
    }

    /// The status of a response that is complete; otherwise 0.
    int Status() const
    {
        return fault == Fault::None ? head.status : 0;
    }
};

} // namespace Norlis::Social
