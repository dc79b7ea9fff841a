#pragma once

#include <base/ChangeJournal.h>
#include <files/FileIdentity.h>
#include <protocol/service/VersionMemory.h>

#include <QHash>
#include <QString>

#include <optional>

namespace Norlis::Social {

/// A version of a document of a folder as it was when somebody saw it.
struct SeenVersion {
    Files::FileIdentity identity;
    QString md5Hash;        ///< empty when it was not known
    bool isSettled = false; ///< a write after that look gives the file another identity

    /// Text form, to be kept beyond the life of the service.
    QString ToText() const;

    /// Nothing for what is no such text.
    static std::optional<SeenVersion> FromText(const QString& text);

    enum class Match { Same, Other, Undecided };

    /// Whether a file still has the content that was seen. Undecided when only its hash can tell: it may have got other
    /// permissions, or its file system other numbers.
    Match Compare(const Files::FileIdentity& now) const;
};

/// The versions of documents that this service has shown or passed on. Whoever replaces or removes a document does it
/// to one of these, and to no other that has taken its place meanwhile.
class SeenVersions {
public:
    /// \param copies outlives this object
    explicit SeenVersions(VersionMemory& copies);

    /// An entry has shown it.
    void Show(const QString& id, const SeenVersion& version);

    /// A list has shown it that was begun at some time.
    void ShowInList(const QString& id, const SeenVersion& version, ChangeJournal::Time begin);

    /// It was made from a local file.
    void Upload(const QString& id, const QString& localPath, const SeenVersion& version);

    /// A local file was made from it. Whether somebody gets to see that is not known.
    void Deliver(const QString& id, const QString& localPath, const SeenVersion& version);

    ChangeJournal::Time Now() const;

    /// The version that was last shown is the one that a local file may replace.
    /// \param md5Hash of the version that is meant; empty for whichever it is
    void Accept(const QString& id, const QString& localPath, const QString& md5Hash);

    /// The version that a local file comes from; else the last one that was shown. Nothing when there is neither.
    std::optional<QString> ForUpload(const QString& id, const QString& localPath);

    /// The version that was last shown or uploaded; nothing when there is none.
    std::optional<QString> ForRemoval(const QString& id) const;

    /// What was shown. Where copies come from stays known.
    void Forget();

private:
    VersionMemory& copies;
    QHash<QString, SeenVersion> shown; ///< by id
    ChangeJournal journal;
};

} // namespace Norlis::Social
