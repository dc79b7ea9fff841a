#pragma once

#include <files/AtomicFile.h>
#include <files/OpenFolder.h>

#include <QString>

#include <optional>

namespace Norlis::Social {

/// The sub-folder of a folder of documents for files of the service's own, and for files that are being written.
/// Whoever may change documents may put a link in its place: that is never followed, and once it is open, everything
/// goes to the very folder that was opened.
class OwnFolder {
public:
    explicit OwnFolder(const QString& folder);

    /// False when there is none, or a link.
    bool Open();

    /// Opens it, and makes it first where it is missing. Returns the reason when it cannot be, or something else has
    /// taken its place since it was opened.
    std::optional<QString> Prepare();

    /// Once it is open.
    bool IsInPlace() const;

    /// Of the open folder, as long as this lives.
    QString Path() const;
    QString PathOf(const QString& name) const;

    /// Opens a file in it that those who may change documents may change, too.
    bool Create(Files::AtomicFile& file) const;

    /// Lets those who may change documents change an open file of it, too.
    void Share(int descriptor) const;

private:
    const QString folder;
    std::optional<Files::OpenFolder> opened;
};

} // namespace Norlis::Social
