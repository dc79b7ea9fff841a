#include "AtomicFile.h"

#include "FilePlacing.h"

#include <QFileInfo>
#include <QRandomGenerator>
#include <QRegularExpression>

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Norlis::Files {

AtomicFile::~AtomicFile()
{
    if (file.isOpen()) {
        file.remove();
    }
}

bool AtomicFile::Open(const QString& folder)
{
    for (int attempt = 0; attempt < 8; ++attempt) {
        file.setFileName(folder + '/' + NewTemporaryName());
        if (file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered)) {
            return true;
        }
        if (!file.exists()) {
            break;
        }
    }
    error = file.errorString();
    return false;
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
    }
    return true;
}

bool AtomicFile::Sync()
{
    return fsync(file.handle()) == 0 || Fail(errno);
}

bool AtomicFile::CommitReplacing(const QString& path)
{
    // Who may read the file stays as it was: a private one does not become public by a newer version.
    struct stat replaced = {};
    if (stat(QFile::encodeName(path).constData(), &replaced) == 0 && S_ISREG(replaced.st_mode) &&
        fchmod(file.handle(), replaced.st_mode & 0777) != 0) {
        return Fail(errno);
    }
    if (const auto failure = MoveReplacing(file.fileName(), path)) {
        return Fail(failure.value());
    }
    Close();
    return true;
}

AtomicFile::Outcome AtomicFile::CommitNew(const QString& path)
{
    const auto failure = MoveUnlessTaken(file.fileName(), path);
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

QString AtomicFile::Path() const
{
    return file.fileName();
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
