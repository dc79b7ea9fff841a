#pragma once

#include <protocol/http/Secrets.h>

namespace Norlis::Social {

/// What the body of a WebDAV error (RFC 4918, 16) says to the user: the server's own message, or else the name of the
/// condition that was not met, such as "quota-not-exceeded". One line of at most 300 characters, in which secrets are
/// replaced. Empty for all other bodies, such as HTML. The words are the server's: show them as a quotation, never as
/// markup.
QString MessageOf(const QByteArray& body, const Secrets& secrets = {});

/// A text from a server as one line, without characters that a terminal or a label could interpret.
QString Tidied(QString text);

} // namespace Norlis::Social
