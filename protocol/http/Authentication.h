#pragma once

#include "HttpMessage.h"

#include <QByteArrayList>

namespace Norlis::Social {

/// How a password or a token can be given to a server: RFC 7617, 7616 and 6750.
enum class AuthScheme { None, Basic, Digest, Bearer };

/// Who signs in. Without a user the token is a bearer token, otherwise a password; without a token nobody signs in.
struct Credentials {
    QByteArray user;  ///< UTF-8
    QByteArray token; ///< UTF-8
};

/// The schemes that a response asks for (RFC 9110, 11.6.1), in lower case and the server's order.
QByteArrayList OfferedSchemes(const HttpHead& head);

/// The scheme in which credentials go to a server that offers these: Digest rather than Basic, which lets everybody on
/// the way read the password. None when they must not be sent at all.
AuthScheme SchemeFor(const Credentials& credentials, const QByteArrayList& offered);

/// Value of the Authorization field; empty for Digest, which needs an answer of the server for each.
QByteArray AuthorizationField(AuthScheme scheme, const Credentials& credentials);

} // namespace Norlis::Social
