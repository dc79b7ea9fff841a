#include "OwnFolder.h"

#include <files/FilePlacing.h>

#include <QFile>

#include <cerrno>
#include <cstring>

#include <sys/stat.h>
#include <unistd.h>

namespace Norlis::Social {

namespace {

const auto ownName = QStringLiteral(".norlis-cloud");

/// Whoever may change documents may change them safely.
/// \param wanted which permissions of the folder something that is open gets, beside its group
void ShareWithUsersOf(const QString& folder, int descriptor, mode_t wanted)
{
    struct stat status = {};
    if (stat(QFile::encodeName(folder).constData(), &status) == 0) {
        Files::ChangeGroup(descriptor, status.st_gid); // first, since it may take permissions away
        fchmod(descriptor, status.st_mode & wanted);
    }
}

} // namespace

OwnFolder::OwnFolder(const QString& folder) : folder(folder) {}

bool OwnFolder::Open()
{
    opened.emplace(folder + '/' + ownName);
    if (!opened->IsOpen()) {
        opened.reset();
    }
    return opened.has_value();
}

std::optional<QString> OwnFolder::Prepare()
{
    const auto cannot = QStringLiteral("Nothing can be written to %1: %2");
    if (!opened) {
        const bool isNew = mkdir(QFile::encodeName(folder + '/' + ownName).constData(), 0777) == 0;
        if (!isNew && errno != EEXIST) {
            return cannot.arg(folder, QString::fromLocal8Bit(std::strerror(errno)));
        }
        if (!Open() && errno != ENOTDIR && errno != ELOOP) {
            return cannot.arg(folder, QString::fromLocal8Bit(std::strerror(errno)));
        }
        if (opened && isNew) {
            ShareWithUsersOf(folder, opened->Descriptor(), 0777 | S_ISGID);
        }
    }
    if (!opened || !IsInPlace()) {
        return cannot.arg(folder, QStringLiteral("%1 is in the place of a folder that is needed there").arg(ownName));
    }
    return std::nullopt;
}

bool OwnFolder::IsInPlace() const
{
    const Files::OpenFolder now(folder + '/' + ownName);
    return now.IsOpen() && now.Identity() == opened->Identity();
}

QString OwnFolder::Path() const
{
    return opened->Path();
}

QString OwnFolder::PathOf(const QString& name) const
{
    return Path() + '/' + name;
}

bool OwnFolder::Create(Files::AtomicFile& file) const
{
    if (!file.Open(Path())) {
        return false;
    }
    Share(file.Descriptor());
    return true;
}

void OwnFolder::Share(int descriptor) const
{
    ShareWithUsersOf(folder, descriptor, 0666);
}

} // namespace Norlis::Social
