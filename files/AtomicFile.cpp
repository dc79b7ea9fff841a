#include "AtomicFile.h"

#include "FilePlacing.h"

#include <QFileInfo>
#include <QRandomGenerator>
#include <QRegularExpression>

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

namespace Norlis::Files {

AtomicFile::~AtomicFile()
{
    if (file.isOpen()) {
        QFile::remove(temporaryPath);
    }
}

bool AtomicFile::Open(const QString& folder, unsigned permissions)
{
    for (int attempt = 0; attempt < 8; ++attempt) {
        temporaryPath = folder + '/' + NewTemporaryName();
        const int descriptor =
            open(QFile::encodeName(temporaryPath).constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, permissions);
        if (descriptor >= 0) {
            return file.open(descriptor, QIODevice::WriteOnly | QIODevice::Unbuffered, QFileDevice::AutoCloseHandle);
        }
        if (errno != EEXIST) {
            break;
        }
    }
    return Fail(errno);
}

bool AtomicFile::Write(const char* data, qint64 size)
{
    // A disk that becomes full takes a part first; only the next attempt says why it takes no more.
    while (size > 0) {
        const qint64 count = file.write(data, size);
        if (count <= 0) {
            error = file.errorString();
            return false;
        }
        data += count;
        size -= count;
        written += count;
    }
    constexpr qint64 sentAtOnce = 8 * 1024 * 1024; // bytes
    if (written - sent >= sentAtOnce) {
        sync_file_range(file.handle(), sent, written - sent, SYNC_FILE_RANGE_WRITE); // only a start
        sent = written;
    }
    return true;
}

bool AtomicFile::Sync()
{
    return fsync(file.handle()) == 0 || Fail(errno);
}

bool AtomicFile::IsInPlace() const
{
    const FileIdentity found = FileIdentity::OfPath(temporaryPath);
    const FileIdentity own = Version();
    return found.device == own.device && found.inode == own.inode;
}

bool AtomicFile::CommitReplacing(const QString& path)
{
    if (!IsInPlace()) {
        return Fail(ENOENT);
    }
    if (const auto failure = MoveReplacing(temporaryPath, path)) {
        return Fail(failure.value());
    }
    Close();
    return true;
}

std::error_code AtomicFile::CommitExchanging(const QString& path)
{
    auto failure =
        IsInPlace() ? CopyPermissions(path, file.handle()) : std::make_error_code(std::errc::no_such_file_or_directory);
    if (!failure) {
        failure = Exchange(temporaryPath, path);
    }
    if (failure) {
        Fail(failure.value());
    } else {
        Close();
    }
    return failure;
}

AtomicFile::Outcome AtomicFile::CommitReplacing(const QString& path, const FileIdentity& known)
{
    return Commit([&] { return MoveReplacing(temporaryPath, path, known); });
}

AtomicFile::Outcome AtomicFile::CommitNew(const QString& path)
{
    return Commit([&] { return MoveUnlessTaken(temporaryPath, path); });
}

AtomicFile::Outcome AtomicFile::Commit(const std::function<std::error_code()>& move)
{
    const auto failure = IsInPlace() ? move() : std::make_error_code(std::errc::no_such_file_or_directory);
    if (failure == std::errc::file_exists) {
        return Outcome::NameTaken;
    }
    if (failure) {
        Fail(failure.value());
        return Outcome::Failed;
    }
    Close();
    return Outcome::Done;
}

void AtomicFile::Close()
{
    committed = FileIdentity::OfDescriptor(file.handle());
    file.close();
}

const FileIdentity& AtomicFile::CommittedVersion() const
{
    return committed;
}

FileIdentity AtomicFile::Version() const
{
    return FileIdentity::OfDescriptor(file.handle());
}

QString AtomicFile::Path() const
{
    return temporaryPath;
}

int AtomicFile::Descriptor() const
{
    return file.handle();
}

QString AtomicFile::ErrorText() const
{
    return error;
}

QString AtomicFile::NewTemporaryName(bool isHidden)
{
    const auto number = QRandomGenerator::system()->generate64();
    return QStringLiteral("%1norlis-%2.part")
        .arg(isHidden ? QStringLiteral(".") : QString())
        .arg(number, 16, 16, QLatin1Char('0'));
}

bool AtomicFile::IsTemporaryName(const QString& name)
{
    static const QRegularExpression form(QStringLiteral("\\A\\.?norlis-[0-9a-f]{16}\\.part\\z"));
    return name.endsWith(".part") && form.match(name).hasMatch();
}

bool AtomicFile::Fail(int errorNumber)
{
    error = QString::fromLocal8Bit(std::strerror(errorNumber));
    return false;
}

void AtomicFile::SyncFolderOf(const QString& path)
{
    const QByteArray folder = QFile::encodeName(QFileInfo(path).path());
    const int descriptor = open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor >= 0) {
        fsync(descriptor);
        close(descriptor);
    }
}

} // namespace Norlis::Files
