#include "FileReader.h"

#include <cerrno>
#include <cstring>

#include <fcntl.h>

namespace Norlis::Files {

bool FileReader::Open(const QString& path)
{
    return Open(QFile::encodeName(path).toStdString());
}

bool FileReader::Open(const std::string& nativePath)
{
    // Without O_NONBLOCK a named pipe would hold up the thread until somebody writes into it.
    const int descriptor = open(nativePath.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) {
        error = QString::fromLocal8Bit(std::strerror(errno));
        return false;
    }
    file.open(descriptor, QIODevice::ReadOnly | QIODevice::Unbuffered, QFileDevice::AutoCloseHandle);
    version = FileIdentity::OfDescriptor(descriptor);
    wasSettled = version.TimeUntilSettled().count() <= 0;
    if (!version.IsFile()) {
        error = QStringLiteral("It is not a regular file");
        return false;
    }
    return true;
}

const QByteArray& FileReader::Next()
{
    if (!piece.isDetached()) {
        piece = {}; // somebody still holds the last one
    }
    piece.resize(pieceSize);
    const qint64 count = file.read(piece.data(), piece.size());
    if (count < 0) {
        error = file.errorString();
    }
    piece.resize(static_cast<int>(qMax<qint64>(count, 0)));
    hash.addData(piece);
    return piece;
}

bool FileReader::Failed() const
{
    return !error.isEmpty();
}

QString FileReader::ErrorText() const
{
    return error;
}

qint64 FileReader::Position() const
{
    return file.pos();
}

const FileIdentity& FileReader::Version() const
{
    return version;
}

bool FileReader::IsUnchanged() const
{
    return FileIdentity::OfDescriptor(file.handle()) == version && file.pos() == version.size;
}

bool FileReader::IsLasting() const
{
    return wasSettled && IsUnchanged();
}

QString FileReader::Md5() const
{
    return QString::fromLatin1(hash.result().toHex());
}

} // namespace Norlis::Files
