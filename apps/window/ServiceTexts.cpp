#include "ServiceTexts.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <iterator>

namespace Norlis::Window {

namespace {

// Sentences, and parts of them that a colon divides; a status in brackets may follow.
// NOLINTBEGIN(bugprone-suspicious-missing-comma): literals of several lines are meant
constexpr const char* known[] = {
    QT_TRANSLATE_NOOP("ServiceTexts", "The server cannot be reached"),
    QT_TRANSLATE_NOOP("ServiceTexts", "no address is known for its name"),
    QT_TRANSLATE_NOOP("ServiceTexts", "it does not accept connections, or no network leads there"),
    QT_TRANSLATE_NOOP("ServiceTexts", "it does not answer"),
    QT_TRANSLATE_NOOP("ServiceTexts", "no secure connection could be established"),
    QT_TRANSLATE_NOOP("ServiceTexts", "the answer is not HTTP"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The server's identity cannot be verified"),
    QT_TRANSLATE_NOOP("ServiceTexts", "its certificate has expired"),
    QT_TRANSLATE_NOOP("ServiceTexts", "its certificate is not valid yet, or the clock of this computer is wrong"),
    QT_TRANSLATE_NOOP("ServiceTexts", "its certificate comes from an authority that this computer does not know"),
    QT_TRANSLATE_NOOP("ServiceTexts", "its certificate is that of another server"),
    QT_TRANSLATE_NOOP("ServiceTexts", "its certificate is not accepted"),
    QT_TRANSLATE_NOOP("ServiceTexts", "the certificate file cannot be read"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The connection broke"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The server has stopped answering"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The server does not accept the user name or the password"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The server asks for a user name and a password"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The server asks for a token"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The server does not allow it"),
    QT_TRANSLATE_NOOP("ServiceTexts", "There is nothing at that address"),
    QT_TRANSLATE_NOOP("ServiceTexts", "There is no folder at that address"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The server cannot do this at that address"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The server cannot do this"),
    QT_TRANSLATE_NOOP("ServiceTexts", "What is at that address does not speak WebDAV"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The address is that of a document, not of a collection"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The document is larger than the server accepts"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The document is locked by somebody"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The document is no longer in the cloud"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The document in the cloud has changed since you last saw it"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The server has failed"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The server has no room left"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The server is not available at the moment, perhaps for maintenance"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The server has received too many requests"),
    QT_TRANSLATE_NOOP("ServiceTexts", "There is no such file"),
    QT_TRANSLATE_NOOP("ServiceTexts", "There is no such page"),
    QT_TRANSLATE_NOOP("ServiceTexts", "It is protected by a password"),
    QT_TRANSLATE_NOOP("ServiceTexts", "It is encrypted in a way that cannot be read"),
    QT_TRANSLATE_NOOP("ServiceTexts", "It is not a PDF document, or is damaged"),
    QT_TRANSLATE_NOOP("ServiceTexts", "It has no page that can be shown"),
    QT_TRANSLATE_NOOP("ServiceTexts", "Check the network and the address of the service, and try again."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Check the address of the service."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Check the address: without encryption it begins with http://."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Check that the address is that of a WebDAV server."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Check that the address is that of a WebDAV collection."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Do not enter a password there unless you know why. If the server's certificate "
                                      "comes from an authority of your own, specify its file when you sign in."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Sign in again."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Sign in with both."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Sign in with a token, and leave out the user name."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Ask whoever runs the server for permission."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Ask whoever runs the server to raise its limit."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Refresh the list."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Refresh the list and try again."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Try again."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Try again later."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Try again in a few minutes."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Free some space in the cloud and try again."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Free some space on the drive and try again."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Check the name, or whether the file was moved."),
};
// NOLINTEND(bugprone-suspicious-missing-comma)

QString Translated(const QString& text)
{
    const auto found = std::find_if(std::begin(known), std::end(known), [&](const char* each) { return text == each; });
    return found == std::end(known) ? text : QCoreApplication::translate("ServiceTexts", *found);
}

} // namespace

QString InUsersLanguage(const QString& text)
{
    static const QRegularExpression status("( \\([0-9]{3}.*\\))?$");
    const int end = text.indexOf(status);
    QStringList parts = text.left(end).split(": ");
    std::transform(parts.begin(), parts.end(), parts.begin(), Translated);
    return parts.join(": ") + text.mid(end);
}

} // namespace Norlis::Window
