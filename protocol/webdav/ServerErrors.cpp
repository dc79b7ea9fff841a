#include "ServerErrors.h"

#include <protocol/dav/ErrorBody.h>

namespace Norlis::Social {

namespace {

struct Meaning {
    int status;
    const char* reason;
    const char* advice;
};

constexpr Meaning meanings[] = {
    {400, "The server does not understand the request", "Check the address of the service."},
    {401, "The server does not accept the user name or the password", "Sign in again."},
    {403, "The server does not allow it", "Ask whoever runs the server for permission."},
    {404, "There is nothing at that address", "Refresh the list, and check the address of the service."},
    {405, "The server cannot do this at that address", "Check the address of the service."},
    {407, "The proxy asks for a password", "Check the proxy in the system's settings."},
    {409, "The collection to write to is not on the server", "Check the address of the service."},
    {410, "The document is no longer in the cloud", "Refresh the list."},
    {412, "The document has been changed by somebody else in the meantime", "Refresh the list and try again."},
    {413, "The document is larger than the server accepts", "Ask whoever runs the server to raise its limit."},
    {414, "The name is longer than the server accepts", "Give the file a shorter name."},
    {415, "The server does not accept documents of this kind", ""},
    {423, "The document is locked by somebody", "Try again later."},
    {425, "The document is still being processed by the server", "Try again later."},
    {429, "The server has received too many requests", "Try again in a few minutes."},
    {431, "The name is longer than the server accepts", "Give the file a shorter name."},
    {500, "The server has failed", "Try again later. If this keeps happening, tell whoever runs the server."},
    {501, "The server cannot do this", "Check that the address is that of a WebDAV server."},
    {502, "The server behind the gateway does not answer correctly", "Try again later."},
    {503, "The server is not available at the moment, perhaps for maintenance", "Try again later."},
    {504, "The server behind the gateway does not answer in time", "Try again later."},
    {507, "The server has no room left", "Free some space in the cloud and try again."},
};

Meaning MeaningOf(int status)
{
    for (const Meaning& meaning : meanings) {
        if (meaning.status == status) {
            return meaning;
        }
    }
    if (status >= 500) {
        return {status, "The server has failed", "Try again later."};
    }
    return {status, "The server answered in a way that was not expected",
            "Check that the address is that of a WebDAV server."};
}

QString AdviceFor(HttpResponse::Fault fault)
{
    switch (fault) {
    case HttpResponse::Fault::Unreachable:
        return QStringLiteral("Check the network and the address of the service, and try again.");
    case HttpResponse::Fault::Untrusted:
        return QStringLiteral(
            "Do not enter a password there unless you know why. If the server's certificate comes from an "
            "authority of your own, specify its file when you sign in.");
    case HttpResponse::Fault::Redirected:
        return QStringLiteral("If you trust that address, sign in with it.");
    case HttpResponse::Fault::Silent:
    case HttpResponse::Fault::Broken:
        return QStringLiteral("Try again.");
    case HttpResponse::Fault::None:
    case HttpResponse::Fault::SourceFailed:
    case HttpResponse::Fault::SinkRefused:
        break;
    }
    return {};
}

QString ReasonFor(const HttpResponse& response)
{
    switch (response.fault) {
    case HttpResponse::Fault::Unreachable:
        return QStringLiteral("The server cannot be reached: %1").arg(response.faultText);
    case HttpResponse::Fault::Untrusted:
        return QStringLiteral("The server's identity cannot be verified: %1").arg(response.faultText);
    case HttpResponse::Fault::Broken:
        return QStringLiteral("The connection broke: %1").arg(response.faultText);
    default:
        return response.faultText;
    }
}

} // namespace

OAuth2::Failure ExplainFailure(const HttpResponse& response, const Secrets& secrets)
{
    OAuth2::Failure failure;
    if (response.fault != HttpResponse::Fault::None) {
        failure.reason = secrets.Redact(ReasonFor(response));
        failure.advice = AdviceFor(response.fault);
        return failure;
    }
    const Meaning meaning = MeaningOf(response.head.status);
    const QString message = MessageOf(response.body, secrets);
    failure.reason = QStringLiteral("%1 (%2%3)")
                         .arg(meaning.reason)
                         .arg(response.head.status)
                         .arg(message.isEmpty() ? QString() : ": " + message);
    failure.advice = QString::fromUtf8(meaning.advice);
    return failure;
}

} // namespace Norlis::Social
