#pragma once

#include <contracts/FileInfo.h>

#include <QDir>
#include <QString>

#include <utility>

namespace Norlis::PDF::Cloud {

/// The sizes in which the cloud manager asks for a document's picture, ascending, each with the edge in pixels of the
/// square that the picture fits into.
inline constexpr std::pair<FileInfo::PreviewSize, int> previewPixelSizes[] = {
    {static_cast<FileInfo::PreviewSize>(0), 40},
    {static_cast<FileInfo::PreviewSize>(1), 100},
    {static_cast<FileInfo::PreviewSize>(2), 191},
};

/// The file in which the cloud manager stores a document's picture.
inline QString PreviewPath(const QString& documentId, FileInfo::PreviewSize size)
{
    return QDir::tempPath() + '/' + documentId + '_' + QString::fromStdString(FileInfo::previewSizetoString(size)) +
           ".png";
}

} // namespace Norlis::PDF::Cloud
