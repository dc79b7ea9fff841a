#include "AccountOperation.h"

#include <protocol/dav/ErrorBody.h>

#include <QBuffer>
#include <QImageReader>
#include <QJsonDocument>
#include <QJsonObject>

namespace Norlis::Social {

namespace {

constexpr int largestEdge = 4096; // pixels
constexpr auto pictureSize = "64";
constexpr int longestName = 100; // characters

} // namespace

QImage PictureOf(const QByteArray& bytes)
{
    QBuffer buffer;
    buffer.setData(bytes);
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    // Other formats, for which plugins may be there, can do more than show pixels.
    if (!QByteArrayList({"png", "jpeg", "webp"}).contains(reader.format())) {
        return {};
    }
    const QSize size = reader.size();
    if (!size.isValid() || size.width() > largestEdge || size.height() > largestEdge) {
        return {};
    }
    return reader.read();
}

AccountOperation::AccountOperation(Wanted wanted, const std::shared_ptr<WebDavServer>& server, Finish finish)
    : Operation(server, std::move(finish)),
      wanted(wanted)
{
}

void AccountOperation::Start()
{
    if (!server->isFamily) {
        OnUser({});
        return;
    }
    requests.Send(GetUser(server->collection.InstanceUrl()), [this](HttpResponse&& response) { OnUser(response); });
}

void AccountOperation::OnUser(const HttpResponse& response)
{
    if (response.Status() == 401) {
        End(server->Failure("Fetching the user's name", {}, response));
        return;
    }
    const QJsonObject user = response.HasSucceeded()
                                 ? QJsonDocument::fromJson(response.body).object()["ocs"].toObject()["data"].toObject()
                                 : QJsonObject();
    const QString id = user["id"].toString(server->user);
    if (wanted == Wanted::Name) {
        const QString signedIn = server->user.isEmpty() ? server->collection.Host() : server->user;
        const QString told = user["display-name"].toString(user["displayname"].toString());
        const QString name = Tidied(server->secrets.Redact(told)).left(longestName);
        End({Success, name.isEmpty() ? signedIn : name, {}, false});
        return;
    }
    const bool hasPicture = server->isFamily && !id.isEmpty();
    const QByteArray url =
        server->collection.InstanceUrl() + "index.php/avatar/" + EncodeSegment(id.toUtf8()) + '/' + pictureSize;
    if (wanted == Wanted::PictureAddress) {
        End({Success, hasPicture ? QString::fromUtf8(url) : QString(), {}, false});
    } else if (hasPicture) {
        FetchPicture(url);
    } else {
        End({Success, QImage(), {}, false});
    }
}

void AccountOperation::FetchPicture(const QByteArray& url)
{
    requests.Send(Get(url), [this](HttpResponse&& response) {
        if (response.HasSucceeded()) {
            End({Success, PictureOf(response.body), {}, false});
        } else if (IsMissing(response.Status())) {
            End({Success, QImage(), {}, false}); // not everybody has one
        } else {
            End(server->Failure("Fetching the user's picture", {}, response));
        }
    });
}

} // namespace Norlis::Social
