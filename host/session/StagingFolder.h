#pragma once

#include <files/OpenFolder.h>

#include <QString>

#include <memory>

namespace Norlis::Host {

/// A hidden folder, for the user alone, in which a download arrives next to its target. It is noted in a list from
/// before it is made until it is gone, so that the next start finds what a crash leaves behind: this folder, and none
/// that has got its name.
class StagingFolder {
public:
    /// \param parent made in this folder
    /// \param list   folder with one entry for each staging folder; created when missing
    StagingFolder(const QString& parent, const QString& list);
    ~StagingFolder();

    StagingFolder(const StagingFolder&) = delete;
    StagingFolder& operator=(const StagingFolder&) = delete;

    /// False when it could not be made; ErrorText says why.
    bool IsValid() const;
    QString ErrorText() const;

    /// Leads to it, whatever name somebody else who may write to the parent gives to the folder, or to a link to
    /// another one: by the open folder, where the system has /proc.
    QString Path() const;

    /// Removes the folder and what is in it. False when that fails; it is tried again on destruction.
    bool Remove();

    /// Removes what programs that were killed have left behind, once it is a day old. May block on a slow disk.
    static void Sweep(const QString& list);

private:
    bool RemoveFiles() const;

    const QString path;
    QString entry; ///< of the list: a link to the path, with the identity behind its name once the folder is there
    QString error;
    bool isThere = false;
    std::unique_ptr<Files::OpenFolder> folder; ///< null if it could not be made
};

} // namespace Norlis::Host
