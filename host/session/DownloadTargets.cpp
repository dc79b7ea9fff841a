#include "DownloadTargets.h"

#include "Records.h"

#include <base/Utf8.h>
#include <files/DocumentNames.h>

#include <QDir>
#include <QFileInfo>

namespace Norlis::Host {

bool DownloadTargets::IsFileName(const QString& name)
{
    return !name.isEmpty() && name != "." && name != ".." && !name.contains('/') && !name.contains(QChar(0)) &&
           name == QFileInfo(name).fileName();
}

bool DownloadTargets::IsTaken(const QString& path)
{
    const QFileInfo file(path);
    return file.exists() || file.isSymLink();
}

QString DownloadTargets::In(const QString& folder, const QString& id, const QString& name) const
{
    const QString named = QDir::cleanPath(QDir(folder).absoluteFilePath(name));
    if (!IsTaken(named) || SyncHashOf(id, named)) {
        return named;
    }
    const QString copy = context.documents.LocalPath(id); // which got another name, or whose document did
    const bool isInFolder = QFileInfo(copy).path() == QFileInfo(folder).canonicalFilePath();
    return isInFolder && IsTaken(copy) && SyncHashOf(id, copy) ? copy : named;
}

QString DownloadTargets::BesideIn(const QString& folder, const QString& id, const QString& name) const
{
    const QString target = In(folder, id, name);
    if (!IsTaken(target) || SyncHashOf(id, target)) {
        return target;
    }
    QString numbered = target;
    for (int number = 2; IsTaken(numbered); ++number) {
        numbered = QFileInfo(target).dir().filePath(Files::NumberedName(name, number));
    }
    return numbered;
}

std::optional<std::string> DownloadTargets::SyncHashOf(const QString& id, const QString& path) const
{
    return QFileInfo(path).isSymLink() ? std::nullopt : context.documents.SyncHashAt(id, Normalized(path));
}

QString DownloadTargets::Normalized(const QString& path) const
{
    return ToText(context.fileSystem.NormalizePath(ToPath(path)));
}

} // namespace Norlis::Host
