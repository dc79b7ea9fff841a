#include "PictureFolder.h"

#include <files/AtomicFile.h>
#include <files/PrivateFolder.h>

#include <QBuffer>
#include <QFile>

namespace Norlis::Host {

namespace {

constexpr unsigned permissions = 0600;

} // namespace

PictureFolder::PictureFolder(const QString& folder) : folder(folder) {}

QString PictureFolder::PathOf(const QString& id, Size size) const
{
    QString name = id;
    name.replace('%', "%25").replace('/', "%2F");
    return folder + '/' + name + '_' + QString::fromStdString(PDF::FileInfo::previewSizetoString(size)) + ".png";
}

bool PictureFolder::Save(const QPixmap& picture, const QString& id, Size size) const
{
    QBuffer content;
    if (!content.open(QIODevice::WriteOnly) || !picture.save(&content, "PNG")) {
        return false;
    }
    Files::MakePrivateFolder(folder);
    Files::AtomicFile file;
    return file.Open(folder, permissions) && file.Write(content.data(), content.size()) &&
           file.CommitReplacing(PathOf(id, size));
}

void PictureFolder::Delete(const QString& id, Size size) const
{
    QFile::remove(PathOf(id, size));
}

} // namespace Norlis::Host
