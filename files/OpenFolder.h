#pragma once

#include <QString>

namespace Norlis::Files {

/// A folder that stays the same one for as long as this lives: where others may write to its parent, they can put
/// another folder, or a link to one, in its place at any moment.
class OpenFolder {
public:
    /// Not through a link at the path itself. After a failure IsOpen is false, and errno says why.
    explicit OpenFolder(const QString& path);
    ~OpenFolder();

    OpenFolder(const OpenFolder&) = delete;
    OpenFolder& operator=(const OpenFolder&) = delete;

    bool IsOpen() const;
    int Descriptor() const;

    /// Leads to the folder, whatever its name is by now.
    QString Path() const;

    /// By which the folder is known again, also by another program.
    QString Identity() const;

private:
    const int descriptor;
};

} // namespace Norlis::Files
