#include "Authentication.h"

#include <algorithm>

namespace Norlis::Social {

namespace {

constexpr auto marks = "!#$%&'*+-.^_`|~"; // of a token, RFC 9110, 5.6.2

bool IsOfToken(char character)
{
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           (character >= '0' && character <= '9') || QByteArray::fromRawData(marks, qstrlen(marks)).contains(character);
}

/// The parts between commas that no quoted text holds.
QByteArrayList PartsOf(const QByteArray& field)
{
    QByteArrayList parts;
    parts.append(QByteArray());
    bool isQuoted = false;
    bool isEscaped = false;
    for (const char character : field) {
        if (character == ',' && !isQuoted) {
            parts.append(QByteArray());
            continue;
        }
        parts.last().append(character);
        isQuoted = isQuoted != (character == '"' && !isEscaped);
        isEscaped = isQuoted && character == '\\' && !isEscaped;
    }
    return parts;
}

/// The scheme that a part begins with; empty when it goes on with the parameters of the one before.
QByteArray SchemeIn(const QByteArray& part)
{
    const QByteArray text = part.trimmed();
    const auto end = std::find_if_not(text.begin(), text.end(), IsOfToken);
    const QByteArray rest = text.mid(static_cast<int>(end - text.begin())).trimmed();
    return rest.startsWith('=') ? QByteArray() : text.left(static_cast<int>(end - text.begin())).toLower();
}

} // namespace

QByteArrayList OfferedSchemes(const HttpHead& head)
{
    QByteArrayList schemes;
    for (const auto& [name, value] : head.fields) {
        if (name != "www-authenticate") {
            continue;
        }
        const auto parts = PartsOf(value);
        for (const QByteArray& part : parts) {
            const QByteArray scheme = SchemeIn(part);
            if (!scheme.isEmpty() && !schemes.contains(scheme)) {
                schemes.append(scheme);
            }
        }
    }
    return schemes;
}

AuthScheme SchemeFor(const Credentials& credentials, const QByteArrayList& offered)
{
    if (credentials.token.isEmpty()) {
        return AuthScheme::None;
    }
    if (credentials.user.isEmpty()) {
        // Servers that take tokens announce no more than Basic, often.
        return offered.contains("bearer") || offered.contains("basic") ? AuthScheme::Bearer : AuthScheme::None;
    }
    if (offered.contains("digest")) {
        return AuthScheme::Digest;
    }
    return offered.contains("basic") ? AuthScheme::Basic : AuthScheme::None;
}

QByteArray AuthorizationField(AuthScheme scheme, const Credentials& credentials)
{
    switch (scheme) {
    case AuthScheme::Basic:
        return "Basic " + (credentials.user + ':' + credentials.token).toBase64();
    case AuthScheme::Bearer:
        return "Bearer " + credentials.token;
    case AuthScheme::None:
    case AuthScheme::Digest:
        break;
    }
    return {};
}

} // namespace Norlis::Social
