#pragma once

#include "DavDocument.h"
#include "DocumentLookup.h"
#include "GroupedLooks.h"
#include "Housekeeper.h"
#include <base/ChangeJournal.h>
#include <protocol/dav/Collection.h>
#include <protocol/dav/DavRequests.h>
#include <protocol/http/HttpClient.h>
#include <protocol/service/VersionMemory.h>

#include <QSet>

namespace Norlis::Social {

/// What the requests of one sign-in share: the way to the server, and what is known about it. Operations keep it alive
/// when somebody signs out or in again.
struct WebDavSession {
    /// \param user     empty when only the token is known
    /// \param versions outlives the session
    /// \param onIdle   see HttpClient
    WebDavSession(const Collection& collection, const HttpClient::Settings& settings, const Secrets& secrets,
                  const QString& user, VersionMemory& versions, std::function<void()> onIdle);

    /// The reply to a request whose exchange with the server failed.
    Reply FailureReplyTo(const QString& what, const QString& document, const HttpResponse& response) const;

    /// The entry of a document in the files list. Where the server does not know the hash, it is that of a copy of this
    /// version, or else a text that stands for the version.
    CloudFile EntryOf(const DavDocument& document);

    /// Remembers, also for the next run, what was sent as a new document and may have got that name, although no look
    /// could show it.
    void NoteUnconfirmed(const QByteArray& name, const QByteArray& md5);
    bool IsUnconfirmed(const QByteArray& name, const QByteArray& md5) const;
    void ForgetUnconfirmed(const QByteArray& name);

    /// Of a file in the collection.
    DavPath PathOf(const QByteArray& name) const;

    /// For a file that is not yet, or no more, a document. Hidden, unless the server is known to refuse such names.
    QByteArray NewTemporaryName() const;

    /// Whether neither a search nor housekeeping is under way.
    bool IsIdle() const;

    Collection collection;
    const Secrets secrets;
    const QString user;
    VersionMemory& versions;

    /// Nextcloud, ownCloud and their kin: they have file ids, checksums, previews and more, and replace documents
    /// safely by themselves.
    bool isNextcloudLike = false;
    std::optional<bool> storesProperties;           ///< nullopt until tested
    std::optional<bool> hasLocks;                   ///< nullopt until tried
    bool removesLocks = false;                      ///< with their document, as has been seen
    std::optional<bool> refusesToOverwrite;         ///< whether the server honours `Overwrite: F`; nullopt until tested
    std::optional<DestinationForm> destinationForm; ///< that the server understands; nullopt until tested
    std::optional<bool> takesHiddenNames;           ///< names with a leading dot; nullopt until tested

    DavDocuments documents; ///< as of the last list and what was done since
    ChangeJournal journal;

    /// Names that new documents are being given. Some servers let two of them have the same one at the same moment.
    QSet<QByteArray> reservedNames;

    HttpClient http;
    DocumentLookup lookup;
    Housekeeper housekeeper;
    GroupedLooks looks;
};

} // namespace Norlis::Social
