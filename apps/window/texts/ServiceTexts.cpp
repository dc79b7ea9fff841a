#include "ServiceTexts.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <vector>

namespace Norlis::Window {

namespace {

// Sentences, and parts of them that a colon divides; a status in brackets may follow. In the places of %1 and so on are
// words that are taken over, such as names and numbers, unless they are known here themselves.
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
    QT_TRANSLATE_NOOP("ServiceTexts", "The address is that of a document, not of a folder"),
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
    QT_TRANSLATE_NOOP("ServiceTexts", "Check that the address is that of a folder on a WebDAV server."),
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
    QT_TRANSLATE_NOOP("ServiceTexts", "The server gave no final answer"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The server answered before it had the whole document"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The server answered before it had the whole file"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The answer of the server does not end"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The server redirects without saying where"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The server redirects to a page instead of answering"),
    QT_TRANSLATE_NOOP("ServiceTexts", "not a web address"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The server redirects to something else"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The server redirects in circles"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The answer is not a WebDAV listing"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The listing is cut off"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The listing is damaged"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The listing is for another folder"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The listing is nested too deeply"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The listing is too long"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The name is longer than the server accepts"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The server does not accept documents of this kind"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The document is still being processed by the server"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The document has been changed by somebody else in the meantime"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The folder to write to is not on the server"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The server behind the gateway does not answer correctly"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The server behind the gateway does not answer in time"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The server does not understand the request"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The server answered in a way that was not expected"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The server asks for a sign-in, but does not say in which form"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The server does not answer as a WebDAV server does"),
    QT_TRANSLATE_NOOP("ServiceTexts", "That is not a password or token"),
    QT_TRANSLATE_NOOP("ServiceTexts", "Nobody is signed in"),
    QT_TRANSLATE_NOOP("ServiceTexts", "Nobody is signed in to the cloud"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The server sends a web page instead of the document"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The server sends another part of the document than the requested one"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The server sent something other than the document"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The server does not report the size of the document"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The document that arrived does not have the hash that the server gives for it"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The server received other bytes than were sent"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The server stored other bytes than were sent"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The server takes the name for that of another document"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The server says that it has given the file its name, but has not"),
    QT_TRANSLATE_NOOP("ServiceTexts", "What has that name in the cloud now is not what was sent"),
    QT_TRANSLATE_NOOP("ServiceTexts", "What was sent is not under that name in the cloud"),
    QT_TRANSLATE_NOOP("ServiceTexts", "There are too many documents of that name"),
    QT_TRANSLATE_NOOP("ServiceTexts", "There is still a document of that name in the cloud"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The document to replace is no longer in the cloud"),
    QT_TRANSLATE_NOOP("ServiceTexts", "Somebody has changed or removed the document in the cloud since"),
    QT_TRANSLATE_NOOP("ServiceTexts", "Somebody else is changing the document at this moment: it is locked"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The service did not report the id of the document"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The file could not be read"),
    QT_TRANSLATE_NOOP("ServiceTexts", "you do not have permission to read the file"),
    QT_TRANSLATE_NOOP("ServiceTexts", "no file was given"),
    QT_TRANSLATE_NOOP("ServiceTexts", "It is a folder"),
    QT_TRANSLATE_NOOP("ServiceTexts", "It is not a file"),
    QT_TRANSLATE_NOOP("ServiceTexts", "It is not a regular file"),
    QT_TRANSLATE_NOOP("ServiceTexts", "It is empty"),
    QT_TRANSLATE_NOOP("ServiceTexts", "It cannot be read"),
    QT_TRANSLATE_NOOP("ServiceTexts", "It cannot be read: %1"),
    QT_TRANSLATE_NOOP("ServiceTexts", "It has changed in the meantime"),
    QT_TRANSLATE_NOOP("ServiceTexts", "It has changed in the cloud since you removed it"),
    QT_TRANSLATE_NOOP("ServiceTexts", "It has no local copy"),
    QT_TRANSLATE_NOOP("ServiceTexts", "It is already being downloaded"),
    QT_TRANSLATE_NOOP("ServiceTexts", "It is already being uploaded"),
    QT_TRANSLATE_NOOP("ServiceTexts", "It is not in the list of documents"),
    QT_TRANSLATE_NOOP("ServiceTexts", "It is no longer in the list of documents"),
    QT_TRANSLATE_NOOP("ServiceTexts", "It is no longer the local copy of a document in the list"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The list of documents is not up to date"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The document is no longer in the list"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The document was not uploaded"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The document was not downloaded"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The document was not removed"),
    QT_TRANSLATE_NOOP("ServiceTexts", "its name in the cloud is not valid as a file name"),
    QT_TRANSLATE_NOOP("ServiceTexts", "the folder cannot be written to"),
    QT_TRANSLATE_NOOP("ServiceTexts", "the folder already contains something else with this name"),
    QT_TRANSLATE_NOOP("ServiceTexts", "another folder has taken the place of the one for the download"),
    QT_TRANSLATE_NOOP("ServiceTexts", "the local copy has changes that are not in the cloud"),
    QT_TRANSLATE_NOOP("ServiceTexts", "the downloaded file could not be read"),
    QT_TRANSLATE_NOOP("ServiceTexts", "the downloaded file does not match the list of documents"),
    QT_TRANSLATE_NOOP("ServiceTexts", "it could not be moved into the folder"),
    QT_TRANSLATE_NOOP("ServiceTexts", "Another program is changing documents of the folder"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The folder does not show the document"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The folder does not show the change"),
    QT_TRANSLATE_NOOP("ServiceTexts", "is empty"),
    QT_TRANSLATE_NOOP("ServiceTexts", "refers to a folder"),
    QT_TRANSLATE_NOOP("ServiceTexts", "contains a path separator"),
    QT_TRANSLATE_NOOP("ServiceTexts", "contains a control character"),
    QT_TRANSLATE_NOOP("ServiceTexts", "is a device name on some systems"),
    QT_TRANSLATE_NOOP("ServiceTexts", "is one that is kept for unfinished files"),
    QT_TRANSLATE_NOOP("ServiceTexts", "Only PDF documents have previews"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The document is too large to be downloaded for a preview"),
    QT_TRANSLATE_NOOP("ServiceTexts", "Too much of the document would have to be downloaded for a preview"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The document has changed meanwhile"),
    QT_TRANSLATE_NOOP("ServiceTexts", "Too many previews have been requested at once"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The requested size is empty"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The preview was not fetched"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The page cannot be shown"),
    QT_TRANSLATE_NOOP("ServiceTexts", "Documents are not opened, because this kernel cannot filter system calls"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The document crashed the preview renderer"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The preview renderer is not installed"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The preview renderer cannot be started"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The preview renderer answered with something other than a picture"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The preview renderer asked for something other than the document"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The address is not valid"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The address begins with two schemes"),
    QT_TRANSLATE_NOOP("ServiceTexts", "Leave the password out of the address; you will be asked for it"),
    QT_TRANSLATE_NOOP("ServiceTexts",
                      "The address of a service ends with its path. Write \"?\" as %3F and \"#\" as %23"),
    QT_TRANSLATE_NOOP("ServiceTexts", "A user name cannot contain colons or control characters"),
    QT_TRANSLATE_NOOP(
        "ServiceTexts",
        "The address is that of a folder on another machine. Give the path where it is mounted on this one"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The address has no path; it should look like file:///home/me/Cloud"),
    QT_TRANSLATE_NOOP("ServiceTexts", "\"%1\" cannot be used as a cloud service: %2"),
    QT_TRANSLATE_NOOP("ServiceTexts", "it is not the address of a folder"),
    QT_TRANSLATE_NOOP("ServiceTexts", "leave out what follows \"?\" or \"#\""),
    QT_TRANSLATE_NOOP("ServiceTexts", "a user name must not contain colons or control characters"),
    QT_TRANSLATE_NOOP("ServiceTexts", "http: would send the password and the documents unencrypted; use https:"),
    QT_TRANSLATE_NOOP("ServiceTexts", "Not signed in"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The path of a folder cannot contain null characters"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The address has no server name; it should look like https://user@host/path/"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The address and --user specify different users"),
    QT_TRANSLATE_NOOP("ServiceTexts",
                      "There is no address. Give the path of a folder, or the address of a WebDAV server"),
    QT_TRANSLATE_NOOP("ServiceTexts",
                      "The address has no scheme: write https:// before it, or http:// for a server on this computer "
                      "that uses no encryption. If it is the path of a folder, write ./ before it"),
    QT_TRANSLATE_NOOP("ServiceTexts", "cannot be created"),
    QT_TRANSLATE_NOOP("ServiceTexts", "cannot be made private"),
    QT_TRANSLATE_NOOP("ServiceTexts", "cannot be opened"),
    QT_TRANSLATE_NOOP("ServiceTexts", "it is not a document list"),
    QT_TRANSLATE_NOOP("ServiceTexts", "cannot be read or written"),
    QT_TRANSLATE_NOOP("ServiceTexts", "cannot be written"),
    QT_TRANSLATE_NOOP("ServiceTexts", "can be changed by other users"),
    QT_TRANSLATE_NOOP("ServiceTexts", "could not be saved"),
    QT_TRANSLATE_NOOP("ServiceTexts", "a text is too long"),
    QT_TRANSLATE_NOOP("ServiceTexts", "the disk is full"),
    QT_TRANSLATE_NOOP("ServiceTexts", "has no file name"),
    QT_TRANSLATE_NOOP("ServiceTexts", "is being written by another program"),
    QT_TRANSLATE_NOOP("ServiceTexts", "is not a folder"),
    QT_TRANSLATE_NOOP("ServiceTexts", "was written by a newer version of this program"),
    QT_TRANSLATE_NOOP("ServiceTexts", "a record is not whole"),
    QT_TRANSLATE_NOOP("ServiceTexts", "its last page is not whole"),
    QT_TRANSLATE_NOOP("ServiceTexts", "it is not a regular file"),
    QT_TRANSLATE_NOOP("ServiceTexts", "Sign in first."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Sign in and try again."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Sign in at that path. If only a proxy in front of the server knows the address "
                                      "that you gave, ask whoever runs it to let both use the same path."),
    QT_TRANSLATE_NOOP("ServiceTexts", "If you trust that address, sign in with it."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Enter the one that you have for the server."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Ask whoever runs the server whether it can take a password in another way."),
    QT_TRANSLATE_NOOP("ServiceTexts",
                      "Check the proxy, which the environment variables http_proxy and https_proxy name."),
    QT_TRANSLATE_NOOP("ServiceTexts",
                      "If the server is behind a proxy, the proxy has to rewrite the Destination field of requests. "
                      "Otherwise ask whoever runs the server for permission to rename files."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Try again in a minute."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Try again in a moment. If that does not help, end the other program."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Try again later. If this keeps happening, tell whoever runs the server."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Try again. If this happens again, tell whoever runs the server."),
    QT_TRANSLATE_NOOP("ServiceTexts",
                      "Refresh the list and try again. If this happens again, the document is damaged on the server."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Refresh the list, and check the address of the service."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Refresh the list, and look at the newer version first."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Refresh the list, and remove it again if you still want to."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Refresh the list, and remove it again."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Refresh the list, and upload it again."),
    QT_TRANSLATE_NOOP("ServiceTexts",
                      "Somebody may have put it there at the same moment. Refresh the list and look at it."),
    QT_TRANSLATE_NOOP(
        "ServiceTexts",
        "Somebody else may have changed it at the same moment. Refresh the list before you send it again."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Look at the newer version first."),
    QT_TRANSLATE_NOOP("ServiceTexts",
                      "Look at the version in the cloud first. To keep both, upload yours under another name."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Wait until that is done, or cancel it."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Upload it as a new document, or refresh the list."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Upload the changes, or choose another folder."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Upload the file as a new document."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Download the document."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Download the document first."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Rename it in the cloud."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Give the file a shorter name."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Give the file another name."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Choose a PDF file."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Choose the PDF files in it."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Choose another folder."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Choose another folder to download to."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Choose another folder, or move that file away."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Choose another folder, or move that file away first."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Create the folder, or make its drive available, and sign in again."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Make the folder available again, for instance by connecting its drive."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Check its permissions."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Check its permissions, and the disk that it is on."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Check that the address is that of the server itself, and try again."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Check that the file is there and that you may read it."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Check that the folder is there and that you may write to it."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Check that there is room in the cloud, and try again."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Check that you may write to the folder."),
    QT_TRANSLATE_NOOP("ServiceTexts", "Choose a file for it"),
    QT_TRANSLATE_NOOP("ServiceTexts", "Choose another folder"),
    QT_TRANSLATE_NOOP("ServiceTexts", "Check that its folder exists and that you may write to it"),
    QT_TRANSLATE_NOOP("ServiceTexts", "Check the disk and try again"),
    QT_TRANSLATE_NOOP("ServiceTexts", "Check the permissions of the file and its folder"),
    QT_TRANSLATE_NOOP("ServiceTexts", "Free some space and try again"),
    QT_TRANSLATE_NOOP("ServiceTexts", "Free some space or check the permissions of its folder"),
    QT_TRANSLATE_NOOP("ServiceTexts", "Make sure that only you can write to it or choose another folder"),
    QT_TRANSLATE_NOOP("ServiceTexts", "Move it away or choose another folder"),
    QT_TRANSLATE_NOOP("ServiceTexts", "Move it away; the documents will then be listed again from the cloud"),
    QT_TRANSLATE_NOOP("ServiceTexts", "Remove the document that it belongs to"),
    QT_TRANSLATE_NOOP("ServiceTexts", "Update this program"),
    QT_TRANSLATE_NOOP("ServiceTexts", "Wait until that is done and try again"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The server has been silent for %1 seconds"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The server has not finished its answer in %1 seconds"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The proxy %1 asks for a password (407)"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The proxy %1 cannot be used"),
    QT_TRANSLATE_NOOP("ServiceTexts", "it refuses (%1)"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The server redirects to another address: %1"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The server withholds the details of %1 documents"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The server asks for a form of sign-in that is not supported here: %1"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The addresses in the server's answer begin with %1 and not with %2"),
    QT_TRANSLATE_NOOP("ServiceTexts", "%1 of %2 bytes arrived"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The server answers with %1 instead of the document"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The server sends more than the %1 bytes of the document"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The server sends the document compressed (%1), although this was not requested"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The server kept %1 of %2 bytes"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The server has lost the old document. What was sent is there as %1."),
    QT_TRANSLATE_NOOP("ServiceTexts", "There is no folder \"%1\""),
    QT_TRANSLATE_NOOP("ServiceTexts", "you do not have permission to write to the folder \"%1\""),
    QT_TRANSLATE_NOOP("ServiceTexts", "The folder %1 does not exist"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The folder %1 is not the one that was used before"),
    QT_TRANSLATE_NOOP("ServiceTexts", "Another folder has taken the place of %1"),
    QT_TRANSLATE_NOOP("ServiceTexts", "You are not allowed to read the folder %1"),
    QT_TRANSLATE_NOOP("ServiceTexts", "A document that another program was changing cannot be put back: %1"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The storage limit of %1 MiB does not leave room for it"),
    QT_TRANSLATE_NOOP("ServiceTexts", "Nothing can be written to %1: %2"),
    QT_TRANSLATE_NOOP("ServiceTexts", "Nothing can be written to %1"),
    QT_TRANSLATE_NOOP("ServiceTexts", "%1 is in the place of a folder that is needed there"),
    QT_TRANSLATE_NOOP("ServiceTexts", "%1 cannot be read: %2"),
    QT_TRANSLATE_NOOP("ServiceTexts", "%1 cannot be written: %2"),
    QT_TRANSLATE_NOOP("ServiceTexts", "%1 has changed in the meantime"),
    QT_TRANSLATE_NOOP("ServiceTexts", "%1 is not a file"),
    QT_TRANSLATE_NOOP("ServiceTexts", "%1 is there already, and is not an unchanged copy of the document"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The name of the file to write %1"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The name %1"),
    QT_TRANSLATE_NOOP("ServiceTexts", "is longer than %1 bytes"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The folder for previews cannot be written to: %1"),
    QT_TRANSLATE_NOOP("ServiceTexts", "Rendering took longer than %1 seconds"),
    QT_TRANSLATE_NOOP(
        "ServiceTexts",
        "\"%1:\" is not a supported kind of service. Use https: for a WebDAV server, or the path of a folder"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The certificate file %1 cannot be read: %2"),
    QT_TRANSLATE_NOOP("ServiceTexts", "The file %1 contains no certificate in PEM format"),
    QT_TRANSLATE_NOOP(
        "ServiceTexts",
        "The folder \"%1\" cannot be created. Check that you have permission to write to its parent folder."),
    QT_TRANSLATE_NOOP("ServiceTexts",
                      "The folder \"%1\" has the documents of another service. Give each service a folder of its own."),
    QT_TRANSLATE_NOOP("ServiceTexts", "The document list \"%1\" %2. %3."),
    QT_TRANSLATE_NOOP("ServiceTexts", "\"%1\" %2. %3."),
    QT_TRANSLATE_NOOP("ServiceTexts", "is damaged (%1)"),
    QT_TRANSLATE_NOOP("ServiceTexts",
                      "What was sent may be in the cloud already, as %1. Refresh the list before you send it again."),
    QT_TRANSLATE_NOOP("ServiceTexts",
                      "Make its drive available and sign in again. If this is the right folder, delete %1 first."),
};
// NOLINTEND(bugprone-suspicious-missing-comma)

/// The places of words, such as %1, but no escapes, such as %3F.
const QRegularExpression& Places()
{
    static const QRegularExpression places("%([1-9])\\b");
    return places;
}

struct Sentence {
    const char* text;
    QRegularExpression pattern;
    int length; ///< without words
};

/// Those with the most text of their own come first: "The name %1" fits others too.
std::vector<Sentence> Sentences()
{
    std::vector<Sentence> sentences;
    for (const char* const text : known) {
        QStringList parts = QString::fromUtf8(text).split(Places());
        const int length = parts.join(QString()).size();
        std::transform(parts.begin(), parts.end(), parts.begin(),
                       [](const QString& part) { return QRegularExpression::escape(part); });
        const QString pattern = QRegularExpression::anchoredPattern(parts.join("(.*)"));
        sentences.push_back(
            {text, QRegularExpression(pattern, QRegularExpression::DotMatchesEverythingOption), length});
    }
    std::sort(sentences.begin(), sentences.end(),
              [](const Sentence& one, const Sentence& other) { return one.length > other.length; });
    return sentences;
}

/// A known sentence, with the words that the text has in its places.
QString Translated(const char* sentence, const QStringList& words)
{
    QString text = QCoreApplication::translate("ServiceTexts", sentence);
    for (auto found = Places().match(text); found.hasMatch();) {
        const QString word = InUsersLanguage(words.value(found.captured(1).toInt()));
        text.replace(found.capturedStart(), found.capturedLength(), word);
        found = Places().match(text, found.capturedStart() + word.size());
    }
    return text;
}

} // namespace

QString InUsersLanguage(const QString& text)
{
    static const std::vector<Sentence> sentences = Sentences();
    for (const Sentence& each : sentences) {
        if (const auto found = each.pattern.match(text); found.hasMatch()) {
            return Translated(each.text, found.capturedTexts());
        }
    }
    static const QRegularExpression status(" \\([0-9]{3}.*\\)$");
    if (const int end = text.indexOf(status); end >= 0) {
        return InUsersLanguage(text.left(end)) + text.mid(end);
    }
    const QString colon = QStringLiteral(": ");
    if (const int end = text.indexOf(colon); end >= 0) {
        return InUsersLanguage(text.left(end)) + colon + InUsersLanguage(text.mid(end + colon.size()));
    }
    return text;
}

} // namespace Norlis::Window
