#include "ServerErrors.h"

#include <protocol/dav/ErrorBody.h>
#include <protocol/http/Authentication.h>

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
    {409, "The folder to write to is not on the server", "Check the address of the service."},
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

/// Of a 401 to somebody whose password, if there is one, was not sent.
OAuth2::Failure MeaningOfChallenge(const HttpHead& head)
{
    constexpr int maxShown = 100; // characters
    const QByteArrayList offered = OfferedSchemes(head);
    OAuth2::Failure failure;
    if (offered.isEmpty()) {
        failure.reason = QStringLiteral("The server asks for a sign-in, but does not say in which form");
        failure.advice = QStringLiteral("Check the address of the service.");
    } else if (offered.contains("basic") || offered.contains("digest")) {
        failure.reason = QStringLiteral("The server asks for a user name and a password");
        failure.advice = QStringLiteral("Sign in with both.");
    } else if (offered.contains("bearer")) {
        failure.reason = QStringLiteral("The server asks for a token");
        failure.advice = QStringLiteral("Sign in with a token, and leave out the user name.");
    } else {
        failure.reason = QStringLiteral("The server asks for a form of sign-in that is not supported here: %1")
                             .arg(QString::fromLatin1(offered.join(", ")).left(maxShown));
        failure.advice = QStringLiteral("Ask whoever runs the server whether it can take a password in another way.");
    }
    return failure;
}

/// Whether the same request may succeed later, without anybody doing anything about it.
bool IsTemporary(const HttpResponse& response)
{
    switch (response.fault) {
    case HttpResponse::Fault::Unreachable:
    case HttpResponse::Fault::NoProxy:
    case HttpResponse::Fault::Silent:
    case HttpResponse::Fault::Broken:
        return true;
    case HttpResponse::Fault::None:
        break;
    default:
        return false;
    }
    const int status = response.head.status;
    return status == 429 || (status >= 502 && status <= 504);
}

OAuth2::FailureKind KindOf(const HttpResponse& response)
{
    if (IsTemporary(response)) {
        return OAuth2::FailureKind::Unavailable;
    }
    if (response.fault != HttpResponse::Fault::None) {
        return OAuth2::FailureKind::Other;
    }
    switch (response.head.status) {
    case 401:
        return OAuth2::FailureKind::NotSignedIn;
    case 412:
        return OAuth2::FailureKind::Conflict;
    default:
        return OAuth2::FailureKind::Other;
    }
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
    case HttpResponse::Fault::NoProxy:
        return QStringLiteral("Check the proxy, which the environment variables http_proxy and https_proxy name.");
    case HttpResponse::Fault::Endless:
        return QStringLiteral("Check that the address is that of a WebDAV server.");
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

QString WhatWentWrong(HttpResponse::Fault fault)
{
    switch (fault) {
    case HttpResponse::Fault::Unreachable:
        return QStringLiteral("The server cannot be reached");
    case HttpResponse::Fault::Untrusted:
        return QStringLiteral("The server's identity cannot be verified");
    case HttpResponse::Fault::Broken:
        return QStringLiteral("The connection broke");
    default:
        return {};
    }
}

QString ReasonFor(const HttpResponse& response)
{
    QStringList parts = {WhatWentWrong(response.fault), response.faultText};
    parts.removeAll(QString());
    return parts.join(": ");
}

} // namespace

OAuth2::Failure ExplainFailure(const HttpResponse& response, const Secrets& secrets)
{
    OAuth2::Failure failure;
    failure.kind = KindOf(response);
    if (response.fault != HttpResponse::Fault::None) {
        failure.reason = secrets.Redact(ReasonFor(response));
        failure.advice = AdviceFor(response.fault);
        failure.details = secrets.Redact(response.faultDetail);
        return failure;
    }
    if (response.head.status == 401 && !response.hadCredentials) {
        failure = MeaningOfChallenge(response.head);
        failure.kind = KindOf(response);
    } else {
        const Meaning meaning = MeaningOf(response.head.status);
        failure.reason = QString::fromUtf8(meaning.reason);
        failure.advice = QString::fromUtf8(meaning.advice);
    }
    const QString message = MessageOf(response.body, secrets);
    failure.reason = QStringLiteral("%1 (%2%3)")
                         .arg(secrets.Redact(failure.reason))
                         .arg(response.head.status)
                         .arg(message.isEmpty() ? QString() : ": " + message);
    return failure;
}

} // namespace Norlis::Social
