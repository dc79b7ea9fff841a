#pragma once

#include <NorlisTestKit/ServerMessages.h>

#include <functional>
#include <limits>

// What a server may do to a request instead of answering it well.
namespace Norlis::TestKit {

/// A server's end of one request. Used on the server's thread.
///
/// Without one of Finish, Close and Reset at the end, the connection stays as it is: open, silent, and with what the
/// client sends left unread.
class Wire {
public:
    virtual ~Wire() = default;

    /// What has come of it so far: all of it, unless the misbehaviour acts before that.
    virtual const ServerRequest& Request() const = 0;

    /// Does what the request asks for, well, and returns the answer.
    virtual ServerAnswer Do(const ServerRequest& request) = 0;

    /// Sends bytes that need not be an answer.
    virtual void Send(const QByteArray& bytes) = 0;

    /// Sends pieces of so many bytes with pauses between, and finishes then.
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

/// Something that a server does instead of answering a request well: one of the catalogue below, or a function of the
/// test's own. The function runs on the server's thread.
struct Misbehaviour {
    /// More than any body has.
    static constexpr qint64 wholeBody = std::numeric_limits<qint64>::max();

    std::function<void(Wire&)> act;    ///< what is done
    qint64 afterBodyBytes = wholeBody; ///< how much of the request's body comes before that; 0 acts upon its head
};

// Answers.

Misbehaviour AnswersWith(int status, const ServerHeaders& headers = {}, const QByteArray& body = {});

/// Before the body has come, and closes the connection then or reads the rest of the body.
enum class Rest { IsRead, IsCutOff };
Misbehaviour AnswersEarly(int status, qint64 afterBodyBytes, Rest rest);

/// With an error body as SabreDAV writes it.
Misbehaviour Refuses(int status, const QByteArray& exception, const QByteArray& message);
Misbehaviour IsInMaintenance(int retryAfterSeconds);
Misbehaviour HasTooManyRequests(int retryAfterSeconds);
Misbehaviour HasNoRoom();
Misbehaviour ShowsAPage(int status); ///< HTML, as a gateway or a login does
Misbehaviour RedirectsTo(const QByteArray& address, int status = 302);
Misbehaviour RedirectsToItself(int status = 302); ///< without end, when it is repeated

/// Interim answers before the ordinary one; and one in place of it, after which nothing comes.
Misbehaviour AnswersAfter(int interimStatus, int times = 1);
Misbehaviour StopsAfter(int interimStatus);

/// Bytes that need not be HTTP; then closes.
Misbehaviour Says(const QByteArray& bytes);

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

/// Runs something on the server's thread, before the request is dealt with; for instance what another client does.
Misbehaviour HappensAfter(std::function<void()> event);

/// Keeps only so many bytes of an upload and says that all is well.
Misbehaviour KeepsOnly(int bytesOfBody);

/// Does what is asked and closes the connection, or gives another answer.
Misbehaviour DoesItAndCloses();
Misbehaviour DoesItAndAnswers(int status);

/// Does nothing of it and says that all is well.
Misbehaviour OnlyClaimsToDoIt(int status);

// Listings.

/// 207 with entries of these hrefs, as they are, the first of them a collection.
Misbehaviour Lists(const QByteArrayList& hrefs);
Misbehaviour ListsWithoutEnd();
Misbehaviour SendsXml(const QByteArray& xml);
Misbehaviour SendsAnXmlBomb();
Misbehaviour NestsElements(int depth);

/// 207 in which the request's address has a status of its own.
Misbehaviour HasInnerStatus(int status);

// Secrets.

/// Repeats the credentials of the request wherever an answer has room for them: in headers, in an address to go to, and
/// in an XML body.
Misbehaviour RepeatsTheSecret(int status);

} // namespace Norlis::TestKit
