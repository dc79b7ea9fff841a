#include "SignInOperation.h"

namespace Norlis::Social {

namespace {

const auto what = QStringLiteral("Sign-in");
const auto checkAddress = QStringLiteral("Check that the address is that of a WebDAV collection.");

} // namespace

void SignInOperation::Start()
{
    requests.Send(PropFind(server->collection.Url()), [this](HttpResponse&& response) { OnResponse(response); });
}

void SignInOperation::OnResponse(const HttpResponse& response)
{
    if (!response.HasSucceeded()) {
        Reply failure = server->Failure(what, {}, response);
        failure.isSignedOut = false; // nobody was in
        if (IsMissing(response.Status())) {
            failure.failure.reason = QStringLiteral("There is no collection at that address (404)");
            failure.failure.advice = checkAddress;
        }
        End(std::move(failure));
        return;
    }
    if (response.url != server->collection.Url()) {
        server->collection = Collection(QUrl::fromEncoded(response.url)); // redirected within the server
    }
    const auto entry = EntryOfDepth0(response, server->collection.Path());
    if (!entry) {
        End(Failed(what, {}, "What is at that address does not speak WebDAV", checkAddress));
    } else if (!entry->isCollection) {
        End(Failed(what, {}, "The address is that of a document, not of a collection", checkAddress));
    } else {
        server->isFamily = !entry->fileId.isEmpty();
        End({});
    }
}

} // namespace Norlis::Social
