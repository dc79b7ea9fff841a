#pragma once

#include <QString>

#include <chrono>
#include <limits>
#include <string>

namespace Norlis::Files {

/// By which a file is known to be the same, with the same content, without reading it. The values of POSIX stat(2).
struct FileIdentity {
    /// For a time beyond what the fields below hold: before 1678 or after 2262.
    static constexpr qint64 unknownTime = std::numeric_limits<qint64>::min();

    quint64 device = 0;
    quint64 inode = 0;
    qint64 size = -1;               ///< bytes; -1 when there is no regular file
    qint64 modifiedNanoseconds = 0; ///< since 1970; programs can set it
    qint64 changedNanoseconds = 0;  ///< since 1970; the system sets it at every write, and no program can

    bool IsFile() const
    {
        return size >= 0;
    }

    /// How long until a write would give the file another time stamp than it has now; at most 0 when one made now
    /// does. Until then what was read may be written over without a trace. Beyond any time when the stamp is unknown.
    std::chrono::nanoseconds TimeUntilSettled() const;

    /// As equality, for a file that may have been renamed since: that sets changedNanoseconds, like a write.
    bool HasContentOf(const FileIdentity& other) const;

    /// Text form; equal for equal identities only.
    QString ToString() const;

    /// Of such a text; of no file for any other.
    static FileIdentity FromString(const QString& text);

    /// Of what is at the path itself: a link is no regular file.
    static FileIdentity OfPath(const QString& path);

    /// Of what the path leads to, past links.
    /// \param nativePath bytes as the system takes them
    static FileIdentity OfTarget(const std::string& nativePath);

    /// Of an open file, whatever its name is now.
    static FileIdentity OfDescriptor(int descriptor);
};

bool operator==(const FileIdentity& left, const FileIdentity& right);
bool operator!=(const FileIdentity& left, const FileIdentity& right);

/// As FileIdentity::TimeUntilSettled, of any time stamp that the file system has given.
/// \param timeStamp since 1970
std::chrono::nanoseconds TimeUntilSettled(std::chrono::nanoseconds timeStamp);

} // namespace Norlis::Files
