#include "FileIdentity.h"

#include <QFile>
#include <QStringList>
#include <QVector>

#include <algorithm>
#include <tuple>

#include <sys/stat.h>

namespace Norlis::Files {

namespace {

using namespace std::chrono_literals;
using std::chrono::nanoseconds;

qint64 Nanoseconds(const timespec& time)
{
    qint64 count = 0;
    const bool isTooFar = __builtin_mul_overflow(static_cast<qint64>(time.tv_sec), 1'000'000'000, &count) ||
                          __builtin_add_overflow(count, static_cast<qint64>(time.tv_nsec), &count);
    return isTooFar ? FileIdentity::unknownTime : count;
}

FileIdentity IdentityOf(int result, const struct stat& status)
{
    FileIdentity identity;
    if (result == 0 && S_ISREG(status.st_mode)) {
        identity.device = status.st_dev;
        identity.inode = status.st_ino;
        identity.size = status.st_size;
        identity.modifiedNanoseconds = Nanoseconds(status.st_mtim);
        identity.changedNanoseconds = Nanoseconds(status.st_ctim);
    }
    return identity;
}

auto Fields(const FileIdentity& identity)
{
    return std::tie(identity.device, identity.inode, identity.size, identity.modifiedNanoseconds,
                    identity.changedNanoseconds);
}

} // namespace

nanoseconds FileIdentity::TimeUntilSettled() const
{
    return Files::TimeUntilSettled(nanoseconds(changedNanoseconds));
}

bool FileIdentity::HasContentOf(const FileIdentity& other) const
{
    return IsFile() && other.IsFile() && device == other.device && inode == other.inode && size == other.size &&
           modifiedNanoseconds == other.modifiedNanoseconds;
}

QString FileIdentity::ToString() const
{
    const auto hexadecimal = [](auto number) { return QString::number(static_cast<quint64>(number), 16); };
    return QStringList{hexadecimal(device), hexadecimal(inode), hexadecimal(size), hexadecimal(modifiedNanoseconds),
                       hexadecimal(changedNanoseconds)}
        .join('-');
}

FileIdentity FileIdentity::FromString(const QString& text)
{
    const QStringList fields = text.split('-');
    QVector<quint64> numbers;
    for (const QString& field : fields) {
        bool isNumber = false;
        numbers.append(field.toULongLong(&isNumber, 16));
        if (!isNumber) {
            return {};
        }
    }
    if (numbers.size() != 5) {
        return {};
    }
    return {numbers[0], numbers[1], static_cast<qint64>(numbers[2]), static_cast<qint64>(numbers[3]),
            static_cast<qint64>(numbers[4])};
}

FileIdentity FileIdentity::OfPath(const QString& path)
{
    struct stat status = {};
    return IdentityOf(lstat(QFile::encodeName(path).constData(), &status), status);
}

FileIdentity FileIdentity::OfTarget(const std::string& nativePath)
{
    struct stat status = {};
    return IdentityOf(stat(nativePath.c_str(), &status), status);
}

FileIdentity FileIdentity::OfDescriptor(int descriptor)
{
    struct stat status = {};
    return IdentityOf(fstat(descriptor, &status), status);
}

bool operator==(const FileIdentity& left, const FileIdentity& right)
{
    return Fields(left) == Fields(right);
}

bool operator!=(const FileIdentity& left, const FileIdentity& right)
{
    return !(left == right);
}

nanoseconds TimeUntilSettled(nanoseconds timeStamp)
{
    if (timeStamp.count() == FileIdentity::unknownTime) {
        return nanoseconds::max();
    }
    // File systems round the time: most to a tick of the kernel's clock, old ones to one or two seconds.
    const nanoseconds margin = timeStamp % 1s == nanoseconds::zero() ? nanoseconds(3s) : nanoseconds(50ms);
    const nanoseconds within = std::clamp(timeStamp, nanoseconds::zero(), nanoseconds::max() - margin);
    return within + margin - std::chrono::system_clock::now().time_since_epoch();
}

} // namespace Norlis::Files
