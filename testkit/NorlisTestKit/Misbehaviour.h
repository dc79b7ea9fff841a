#pragma once

#include <NorlisTestKit/ServerMessages.h>

#include <functional>
#include <limits>

// What a server can do with a request instead of answering it properly.
namespace Norlis::TestKit {

/// A server's end of one request. Used on the server's thread.
///
/// Unless Finish, Close or Reset is called at the end, the connection stays open and silent, and leaves unread what the
/// client sends.
class Wire {
public:
    virtual ~Wire() = default;

    /// What has arrived of it: all of it, unless the misbehaviour acts earlier.
    virtual const ServerRequest& Request() const = 0;

    /// Does what the request asks for and returns the ordinary answer.
    virtual ServerResponse Do(const ServerRequest& request) = 0;

    /// Sends bytes that need not be an answer.
    virtual void Send(const QByteArray& bytes) = 0;

    /// Sends pieces of that many bytes with pauses, in milliseconds, between them, then finishes.
    virtual void SendSlowly(const QByteArray& bytes, int pieceSize, int pause) = 0;

    /// Sends what a function returns as long as the client takes it. The function is given the number of the call.
    virtual void SendWithoutEnd(std::function<QByteArray(int)> next) = 0;

    /// Goes on with the next request on the connection, once the rest of this one's body has come; closes the
    /// connection if the client wants that.
    virtual void Finish() = 0;

    /// Closes the connection once everything has been sent.
    virtual void Close() = 0;

    /// Breaks the connection at once.
    virtual void Reset() = 0;
};

/// Something that a server does instead of answering a request properly: one of the catalogue below, or a function of
/// the test's own. The function runs on the server's thread.
struct Misbehaviour {
    /// More than any body has.
    static constexpr qint64 wholeBody = std::numeric_limits<qint64>::max();

    std::function<void(Wire&)> act;    ///< what is done
    qint64 afterBodyBytes = wholeBody; ///< how much of the request's body arrives first; 0 acts upon its head
};

// Answers.

Misbehaviour AnswersWith(int status, const ServerHeaders& headers = {}, const QByteArray& body = {});

/// Before the body has arrived; then reads the rest of the body or closes the connection.
enum class Rest { IsRead, IsCutOff };
Misbehaviour AnswersEarly(int status, qint64 afterBodyBytes, Rest rest);

/// With an error body as SabreDAV writes it.
Misbehaviour Refuses(int status, const QByteArray& exception, const QByteArray& message);
Misbehaviour IsInMaintenance(int retryAfterSeconds);
Misbehaviour HasTooManyRequests(int retryAfterSeconds);
Misbehaviour IsOutOfSpace();
Misbehaviour ShowsAPage(int status); ///< HTML, as from a gateway or a login page
Misbehaviour RedirectsTo(const QByteArray& address, int status = 302);
Misbehaviour RedirectsToItself(int status = 302); ///< endless, if the client follows

/// Interim answers before the ordinary one; and one in place of it, after which the connection is closed.
Misbehaviour AnswersAfter(int interimStatus, int times = 1);
Misbehaviour StopsAfter(int interimStatus);

/// Bytes that need not be HTTP; then closes.
Misbehaviour SendsRawBytes(const QByteArray& bytes);

// Connections.

Misbehaviour Hangs();
Misbehaviour HangsInTheAnswer(int bytesOfBody);
Misbehaviour HangsInTheRequest(qint64 bytesOfBody); ///< reads no more of an upload
Misbehaviour ClosesWithoutAnswer();
Misbehaviour ClosesInTheRequest(qint64 bytesOfBody);
Misbehaviour ResetsTheConnection();
Misbehaviour Drips(int pieceSize, int pauseMilliseconds);

// Bodies of answers. The rest of the answer is the ordinary one.

Misbehaviour CutsAfterBytes(int bytesOfBody);    ///< short of the Content-Length
Misbehaviour CutsWithoutLength(int bytesOfBody); ///< the end of the connection is the end of the body
Misbehaviour CutsInChunks(int bytesOfBody);      ///< the last chunk is missing
Misbehaviour SendsInChunks(int chunkSize);       ///< which is fine
Misbehaviour SendsUntilClose();                  ///< which is fine too
Misbehaviour ClaimsLength(qint64 contentLength); ///< then closes
Misbehaviour SendsGzip();                        ///< asked for or not
Misbehaviour Adds(const QByteArray& header, const QByteArray& value, int times = 1);
Misbehaviour SetsACookie();

// Ranges.

Misbehaviour ClaimsRange(const QByteArray& contentRange);
Misbehaviour StartsElsewhere(int offset); ///< sends another part than asked for, and says so
Misbehaviour IgnoresTheRange();

// What is done.

/// Runs something on the server's thread before the request is handled, for instance what another client does.
Misbehaviour RunsFirst(std::function<void()> action);

/// Keeps only that many bytes of an upload and reports success.
Misbehaviour KeepsOnly(int bytesOfBody);

/// Does what is asked and closes the connection, or sends another answer.
Misbehaviour DoesItAndCloses();
Misbehaviour DoesItAndAnswers(int status);

/// Does nothing and reports success.
Misbehaviour OnlyClaimsToDoIt(int status);

// Listings.

/// 207 with entries of these hrefs, as they are, the first of them a collection.
Misbehaviour Lists(const QByteArrayList& hrefs);
Misbehaviour ListsWithoutEnd();
Misbehaviour SendsXml(const QByteArray& xml);
Misbehaviour SendsAnXmlBomb();
Misbehaviour NestsElements(int depth);

/// 207 with this status for the request's address.
Misbehaviour HasInnerStatus(int status);

// Secrets.

/// Repeats the credentials of the request wherever an answer can hold them: in headers, in a redirect address, and in
/// an XML body.
Misbehaviour EchoesTheCredentials(int status);

} // namespace Norlis::TestKit
