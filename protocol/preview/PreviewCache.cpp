#include "PreviewCache.h"

#include <files/PrivateFolder.h>

#include <QBuffer>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>

namespace Norlis::Social {

namespace {

// The box is not the preview's size, which also depends on the page's proportions.
const auto boxKey = QStringLiteral("Box");
const auto pagesKey = QStringLiteral("Pages");

QString BoxText(const QSize& box)
{
    return QStringLiteral("%1x%2").arg(box.width()).arg(box.height());
}

bool Covers(const QString& boxText, const QSize& wanted)
{
    return boxText.section('x', 0, 0).toInt() >= wanted.width() && boxText.section('x', 1).toInt() >= wanted.height();
}

QFileInfoList Entries(const QString& folder)
{
    return QDir(folder).entryInfoList({"*.png"}, QDir::Files | QDir::NoSymLinks, QDir::Time | QDir::Reversed);
}

} // namespace

PreviewCache::PreviewCache(const QString& folder, qint64 limit) : folder(folder), limit(limit)
{
    if (folder.isEmpty()) {
        return;
    }
    Files::MakePrivateFolder(folder);
    const auto entries = Entries(folder);
    for (const QFileInfo& entry : entries) {
        used += entry.size();
    }
}

std::optional<RenderedPage> PreviewCache::Find(const QString& document, const QString& version, const QSize& box)
{
    QImage image;
    if (folder.isEmpty() || !image.load(PathOf(document, version), "PNG") || !Covers(image.text(boxKey), box)) {
        return std::nullopt;
    }
    return RenderedPage{image, image.text(pagesKey).toInt()};
}

void PreviewCache::Store(const QString& document, const QString& version, const QSize& box, const RenderedPage& page)
{
    if (folder.isEmpty()) {
        return;
    }
    QImage image = page.image;
    image.setText(boxKey, BoxText(box));
    image.setText(pagesKey, QString::number(page.pageCount));
    const QString path = PathOf(document, version);
    used -= QFileInfo(path).size();
    QBuffer png; // where there is always room: Qt's PNG writer leaks when there is none
    image.save(&png, "PNG");
    // A preview that a crash cut off does not load, and is simply made again.
    QFile file(path);
    if (!file.open(QFile::WriteOnly | QFile::Unbuffered) || file.write(png.data()) != png.size()) {
        QFile::remove(path);
    }
    used += QFileInfo(path).size();
    if (used > limit) {
        MakeRoom();
    }
}

void PreviewCache::Remove(const QString& document, const QString& version)
{
    if (folder.isEmpty()) {
        return;
    }
    const QString path = PathOf(document, version);
    const qint64 size = QFileInfo(path).size();
    if (QFile::remove(path)) {
        used -= size;
    }
}

QString PreviewCache::PathOf(const QString& document, const QString& version) const
{
    const auto versionHash = QCryptographicHash::hash(version.toUtf8(), QCryptographicHash::Sha1).toHex().left(16);
    return folder + '/' + document + '-' + QString::fromLatin1(versionHash) + ".png";
}

void PreviewCache::MakeRoom()
{
    used = 0;
    const auto entries = Entries(folder);
    for (const QFileInfo& entry : entries) {
        used += entry.size();
    }
    for (const QFileInfo& entry : entries) {
        if (used <= limit / 10 * 9) {
            break; // some room to spare, so that the folder is not read again for every preview
        }
        if (QFile::remove(entry.filePath())) {
            used -= entry.size();
        }
    }
}

} // namespace Norlis::Social
