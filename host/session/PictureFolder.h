#pragma once

#include <contracts/FileInfo.h>

#include <QPixmap>
#include <QString>

namespace Norlis::Host {

/// The pictures of a session's documents on disk: PNG files in a folder that only the user can read.
class PictureFolder {
public:
    using Size = PDF::FileInfo::PreviewSize;

    /// \param folder created by the first picture
    explicit PictureFolder(const QString& folder);

    /// Where the picture of a document is, or would be. Inside the folder, whatever the id.
    QString PathOf(const QString& id, Size size) const;

    /// Replaces a picture by another one in one step. False when it cannot be saved; what was there stays then.
    bool Save(const QPixmap& picture, const QString& id, Size size) const;

    /// Nothing happens when there is none.
    void Delete(const QString& id, Size size) const;

private:
    const QString folder;
};

} // namespace Norlis::Host
