#pragma once

#include <protocol/http/Secrets.h>

namespace Norlis::Social {

/// What the body of a WebDAV error (RFC 4918, 16) says to people: the server's own message, or else the name of the
/// condition that was not met, such as "quota-not-exceeded". One line of at most 300 characters, in which secrets are
/// blotted out. Empty for bodies that are anything else, HTML for instance. The words are the server's: show them as a
/// quotation, never as markup.
QString MessageOf(const QByteArray& body, const Secrets& secrets = {});

/// A text of a server's as one line, without what a terminal or a label could take for a command.
QString Tidied(QString text);

} // namespace Norlis::Social
