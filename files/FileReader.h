#pragma once

#include <QCryptographicHash>
#include <QFile>
#include <QString>

namespace Norlis::Files {

/// By which a file is known to be the same, with the same content. POSIX stat(2).
struct FileIdentity {
    quint64 device = 0;
    quint64 inode = 0;
    qint64 size = -1; ///< bytes; -1 when there is no regular file
    qint64 modifiedNanoseconds = 0;
    qint64 changedNanoseconds = 0;

    bool IsFile() const
    {
        return size >= 0;
    }

    /// Text form; equal for equal versions only.
    QString ToString() const;

    /// Of what is at the path itself: a link is no regular file.
    static FileIdentity OfPath(const QString& path);

    /// Of an open file, whatever its name is now.
    static FileIdentity OfDescriptor(int descriptor);
};

bool operator==(const FileIdentity& left, const FileIdentity& right);

/// Reads a regular file from begin to end, in pieces, and hashes what passes.
class FileReader {
public:
    /// Bytes of a piece. Large enough for full speed, small enough that other requests of the same thread need not
    /// wait.
    static constexpr qint64 pieceSize = 1024 * 1024;

    /// False for anything but a regular file; ErrorText says why.
    bool Open(const QString& path);

    /// The next piece, valid until the next call. Empty at the end of the file and after an error.
    const QByteArray& Next();

    bool Failed() const;
    QString ErrorText() const;
    qint64 Position() const;

    /// As of opening.
    const FileIdentity& Version() const;

    /// Whether the file at the path is still the one, unchanged, that was opened.
    bool IsUnchanged() const;

    /// Hexadecimal MD5 of what has been read.
    QString Md5() const;

private:
    QFile file;
    QString error;
    QByteArray piece;
    FileIdentity version;
    QCryptographicHash hash{QCryptographicHash::Md5};
};

} // namespace Norlis::Files
