#include "SignInOperations.h"

#include <protocol/dav/ErrorBody.h>
#include <protocol/http/Origin.h>
#include <protocol/preview/DecodeImage.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <QXmlStreamReader>

namespace Norlis::Social {

namespace {

constexpr auto pictureSize = "64"; // pixels
constexpr int maxNameLength = 100; // characters

const auto signIn = QStringLiteral("Sign-in");
const auto checkAddress = QStringLiteral("Check that the address is that of a folder on a WebDAV server.");

/// The path that a listing begins with, decoded; empty when the response is no listing.
QString ListedPath(const HttpResponse& response)
{
    QXmlStreamReader reader(response.Status() == 207 ? response.body : QByteArray());
    while (!reader.atEnd() && reader.readNext() != QXmlStreamReader::DTD) {
        if (reader.isStartElement() && reader.namespaceUri() == QLatin1String("DAV:") &&
            reader.name() == QLatin1String("href")) {
            return QUrl::fromEncoded(reader.readElementText().trimmed().toUtf8()).path(QUrl::FullyDecoded);
        }
    }
    return {};
}

/// Whether the address is one that could do without encryption: servers on this computer mostly have none.
bool IsEncryptedHere(const QByteArray& url)
{
    return IsLoopback(url) && url.startsWith("https:");
}

} // namespace

void SignInOperation::Start()
{
    requests.Send(PropFind(session->collection.Url()), [this](HttpResponse&& response) { OnResponse(response); });
}

void SignInOperation::OnResponse(const HttpResponse& response)
{
    if (!response.HasSucceeded()) {
        Reply failure = session->FailureReplyTo(signIn, {}, response);
        failure.isSignedOut = false; // nobody was signed in
        if (failure.failure.kind == OAuth2::FailureKind::Unavailable && IsEncryptedHere(session->collection.Url())) {
            failure.failure.advice = QStringLiteral("Check the address: without encryption it begins with http://.");
        }
        if (response.Status() == 405 || response.Status() == 501) { // a web server's folder, say
            failure.failure.reason =
                "What is at that address does not speak WebDAV" + QStringLiteral(" (%1)").arg(response.Status());
            failure.failure.advice = checkAddress;
        }
        if (IsMissing(response.Status())) {
            failure.failure.reason = QStringLiteral("There is no folder at that address (404)");
            failure.failure.advice = checkAddress;
        }
        End(std::move(failure));
        return;
    }
    if (response.url != session->collection.Url()) {
        session->collection = Collection(QUrl::fromEncoded(response.url)); // redirected within the server
    }
    const auto entry = EntryOfDepth0(response, session->collection.Path());
    if (!entry) {
        End(NoCollection(response));
    } else if (!entry->isCollection) {
        End(FailureReply(signIn, {}, "The address is that of a document, not of a folder", checkAddress));
    } else {
        session->isNextcloudLike = !entry->fileId.isEmpty();
        End({});
    }
}

Reply SignInOperation::NoCollection(const HttpResponse& response) const
{
    constexpr int maxShown = 100; // characters
    const QString wanted = QUrl::fromEncoded(session->collection.Url()).path(QUrl::FullyDecoded);
    const QString listed = ListedPath(response);
    if (listed.isEmpty() || SegmentsOfHref(QUrl::toPercentEncoding(listed, "/")) == session->collection.Path()) {
        return FailureReply(signIn, {}, "What is at that address does not speak WebDAV", checkAddress);
    }
    return FailureReply(
        signIn, {},
        QStringLiteral("The addresses in the server's answer begin with %1 and not with %2")
            .arg(Tidied(session->secrets.Redact(listed)).left(maxShown), session->secrets.Redact(wanted)),
        "Sign in at that path. If only a proxy in front of the server knows the address that you gave, ask whoever "
        "runs it "
        "to let both use the same path.");
}

UserOperation::UserOperation(Wanted wanted, const std::shared_ptr<WebDavSession>& session, Finish finish)
    : Operation(session, std::move(finish)),
      wanted(wanted)
{
}

void UserOperation::Start()
{
    if (!session->isNextcloudLike) {
        OnUser({});
        return;
    }
    requests.Send(GetUser(session->collection.InstanceUrl()), [this](HttpResponse&& response) { OnUser(response); });
}

void UserOperation::OnUser(const HttpResponse& response)
{
    if (response.Status() == 401) {
        End(session->FailureReplyTo("Fetching the user's name", {}, response));
        return;
    }
    const QJsonObject user = response.HasSucceeded()
                                 ? QJsonDocument::fromJson(response.body).object()["ocs"].toObject()["data"].toObject()
                                 : QJsonObject();
    const QString id = user["id"].toString(session->user);
    if (wanted == Wanted::Name) {
        const QString signedIn = session->user.isEmpty() ? session->collection.Host() : session->user;
        const QString reported = user["display-name"].toString(user["displayname"].toString());
        const QString name = Tidied(session->secrets.Redact(reported)).left(maxNameLength);
        End({Success, name.isEmpty() ? signedIn : name, {}, false});
        return;
    }
    const bool hasPicture = session->isNextcloudLike && !id.isEmpty();
    const QByteArray url =
        session->collection.InstanceUrl() + "index.php/avatar/" + EncodeSegment(id.toUtf8()) + '/' + pictureSize;
    if (wanted == Wanted::PictureAddress) {
        End({Success, hasPicture ? QString::fromUtf8(url) : QString(), {}, false});
    } else if (hasPicture) {
        FetchPicture(url);
    } else {
        End({Success, QImage(), {}, false});
    }
}

void UserOperation::FetchPicture(const QByteArray& url)
{
    requests.Send(Get(url), [this](HttpResponse&& response) {
        if (response.HasSucceeded()) {
            End({Success, DecodeImage(response.body), {}, false});
        } else if (IsMissing(response.Status())) {
            End({Success, QImage(), {}, false}); // not everybody has one
        } else {
            End(session->FailureReplyTo("Fetching the user's picture", {}, response));
        }
    });
}

} // namespace Norlis::Social
