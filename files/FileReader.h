#pragma once

#include "FileIdentity.h"

#include <QCryptographicHash>
#include <QFile>
#include <QString>

#include <string>

namespace Norlis::Files {

/// Reads a regular file from beginning to end, in pieces, and hashes what passes.
class FileReader {
public:
    /// Bytes of a piece. Large enough for full speed, small enough that other requests of the same thread need not
    /// wait.
    static constexpr qint64 pieceSize = 1024 * 1024;

    /// False for anything but a regular file; ErrorText says why.
    bool Open(const QString& path);

    /// As above.
    /// \param nativePath bytes as the system takes them
    bool Open(const std::string& nativePath);

    /// The next piece, valid until the next call. Empty at the end of the file and after an error.
    const QByteArray& Next();

    bool Failed() const;
    QString ErrorText() const;
    qint64 Position() const;

    /// As of opening.
    const FileIdentity& Version() const;

    /// Whether the opened file has been read to its end and has not changed since it was opened.
    bool IsUnchanged() const;

    /// Whether a file that still has this version still has what was read: it is unchanged, and it had settled before
    /// it was opened.
    bool IsLasting() const;

    /// Hexadecimal MD5 of what has been read.
    QString Md5() const;

private:
    QFile file;
    QString error;
    QByteArray piece;
    FileIdentity version;
    bool wasSettled = false;
    QCryptographicHash hash{QCryptographicHash::Md5};
};

} // namespace Norlis::Files
