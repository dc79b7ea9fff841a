#include "FolderTurn.h"

#include <files/AtomicFile.h>
#include <files/DocumentNames.h>
#include <files/FilePlacing.h>
#include <files/FileReader.h>

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Norlis::Social {

namespace {

using Files::FileIdentity;

constexpr qint64 longestWait = 5000; // milliseconds

// Of one size always, so that a change can also be written down when the disk is full.
constexpr int journalSize = 4096; // bytes; the longest names fit

QString JournalPath(const QString& ownFolder)
{
    return ownFolder + "/journal";
}

bool HasNoLocks(int errorNumber)
{
    return errorNumber == ENOLCK || errorNumber == ENOSYS || errorNumber == EOPNOTSUPP || errorNumber == EINVAL;
}

bool IsSomething(const QString& path)
{
    struct stat status = {};
    return lstat(QFile::encodeName(path).constData(), &status) == 0;
}

/// Empty for a file that would take long to read.
QString Md5OfFile(const QString& path, qint64 size)
{
    constexpr qint64 maxSize = 64 * 1024 * 1024; // bytes
    Files::FileReader reader;
    if (size > maxSize || !reader.Open(path)) {
        return {};
    }
    while (!reader.Next().isEmpty()) {
    }
    return reader.Failed() || !reader.IsUnchanged() ? QString() : reader.Md5();
}

} // namespace

FolderTurn::FolderTurn(const QString& folder, const std::shared_ptr<OwnFolder>& ownFolder)
    : folder(folder),
      ownFolder(ownFolder)
{
}

FolderTurn::~FolderTurn()
{
    if (journal >= 0) {
        Recover();
        GiveBack();
    }
}

FolderTurn::Outcome FolderTurn::Take()
{
    if (const auto problem = ownFolder->Prepare()) {
        error = *problem;
        return Outcome::Failed;
    }
    const QByteArray path = QFile::encodeName(JournalPath(ownFolder->Path()));
    constexpr int flags = O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
    journal = open(path.constData(), flags | O_CREAT | O_EXCL, 0666);
    if (journal >= 0) {
        ownFolder->Share(journal);
    } else if (errno == EEXIST) {
        journal = open(path.constData(), flags);
    }
    if (journal < 0) {
        error = QString::fromLocal8Bit(std::strerror(errno));
        return Outcome::Failed;
    }
    const bool isLocked = flock(journal, LOCK_EX | LOCK_NB) == 0;
    const bool hasNoLocks = !isLocked && HasNoLocks(errno);
    if ((isLocked || hasNoLocks) && IsInPlace()) {
        waiting.invalidate();
        if ((isLocked || IsOld()) && !Recover()) {
            GiveBack();
            return Outcome::Failed;
        }
        return Outcome::Taken;
    }
    GiveBack(); // somebody has it, or has deleted it just now
    if (!waiting.isValid()) {
        waiting.start();
    }
    return waiting.hasExpired(longestWait) ? Outcome::TimedOut : Outcome::Waiting;
}

bool FolderTurn::IsWaiting() const
{
    return waiting.isValid();
}

bool FolderTurn::Begin(const Change& change)
{
    underWay = change;
    const QJsonObject line{{"document", change.document},
                           {"aside", change.aside},
                           {"fresh", change.fresh.ToString()},
                           {"old", change.old.ToString()},
                           {"md5", change.freshMd5}};
    return Write(QJsonDocument(line).toJson(QJsonDocument::Compact));
}

void FolderTurn::End()
{
    underWay.reset();
    Write({});
}

bool FolderTurn::Write(const QByteArray& text)
{
    const QByteArray whole = text.leftJustified(journalSize - 1, ' ') + '\n';
    const bool isWritten = pwrite(journal, whole.constData(), static_cast<size_t>(whole.size()), 0) == whole.size();
    if (isWritten && (text.isEmpty() || fdatasync(journal) == 0)) {
        return true;
    }
    error = QString::fromLocal8Bit(std::strerror(errno));
    return false;
}

std::optional<FolderTurn::Change> FolderTurn::Read() const
{
    std::array<char, journalSize> text{};
    const auto length = static_cast<int>(qMax<ssize_t>(pread(journal, text.data(), text.size(), 0), 0));
    const QJsonObject line = QJsonDocument::fromJson(QByteArray(text.data(), length)).object();
    const Change change{line["document"].toString(), line["aside"].toString(),
                        FileIdentity::FromString(line["fresh"].toString()),
                        FileIdentity::FromString(line["old"].toString()), line["md5"].toString()};
    // Whoever may write to the folder may write anything here: nothing outside it can be named.
    const bool isSound = !Files::ValidateName(change.document) && Files::AtomicFile::IsTemporaryName(change.aside);
    return isSound ? std::optional(change) : std::nullopt;
}

bool FolderTurn::Recover()
{
    const auto change = underWay ? underWay : Read();
    if (!change || !IsInPlace()) { // else the folder was taken away, and the change with it
        return true;
    }
    if (const auto failure = PutBack(*change)) {
        error = QStringLiteral("A document that another program was changing cannot be put back: %1")
                    .arg(QString::fromStdString(failure.message()));
        return false;
    }
    Files::AtomicFile::SyncFolderOf(folder + '/' + change->document);
    End();
    return true;
}

std::error_code FolderTurn::PutBack(const Change& change) const
{
    const QString aside = ownFolder->PathOf(change.aside);
    const QString path = folder + '/' + change.document;
    const auto mayGo = [&] {
        const auto found = FileIdentity::OfPath(aside);
        const bool isFresh = found.HasContentOf(change.fresh) &&
                             (change.freshMd5.isEmpty() || Md5OfFile(aside, found.size) == change.freshMd5);
        return isFresh || found.HasContentOf(change.old);
    };
    if (!IsSomething(aside)) {
        return {};
    }
    if (!mayGo() && change.fresh.IsFile() && FileIdentity::OfPath(path).HasContentOf(change.fresh)) {
        Files::Exchange(aside, path);
    }
    if (mayGo() && QFile::remove(aside)) {
        return {};
    }
    constexpr int maxNumber = 10'000;
    auto failure = Files::MoveUnlessTaken(aside, path);
    for (int number = 2; failure == std::errc::file_exists && number < maxNumber; ++number) {
        failure = Files::MoveUnlessTaken(aside, folder + '/' + Files::NumberedName(change.document, number));
    }
    return failure;
}

bool FolderTurn::IsOld() const
{
    constexpr auto age = std::chrono::minutes(1);
    const auto written = std::chrono::nanoseconds(FileIdentity::OfDescriptor(journal).modifiedNanoseconds);
    return written < std::chrono::system_clock::now().time_since_epoch() - age;
}

bool FolderTurn::IsInPlace() const
{
    const auto found = FileIdentity::OfPath(JournalPath(ownFolder->Path()));
    return FileIdentity::OfDescriptor(journal).inode == found.inode && ownFolder->IsInPlace();
}

void FolderTurn::GiveBack()
{
    close(journal);
    journal = -1;
}

QString FolderTurn::ErrorText() const
{
    return error;
}

bool FolderTurn::IsChangePending(const QString& ownFolder)
{
    QFile file(JournalPath(ownFolder));
    return FileIdentity::OfPath(file.fileName()).IsFile() && file.open(QIODevice::ReadOnly) && file.read(1) == "{";
}

} // namespace Norlis::Social
