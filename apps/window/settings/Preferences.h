#pragma once

#include <QString>

#include <chrono>

class QSettings;

namespace Norlis::Window {

/// What the user has chosen in the settings.
class Preferences {
public:
    /// \param settings where they are kept; outlives this
    explicit Preferences(QSettings& settings);

    QString DownloadFolder() const;
    void SetDownloadFolder(const QString& folder);

    /// Where documents go that are only to be opened; empty for the session's own folder.
    QString OpenedFolder() const;
    void SetOpenedFolder(const QString& folder);

    /// Zero when the list is read only if the user asks for it.
    std::chrono::minutes RefreshInterval() const;
    void SetRefreshInterval(std::chrono::minutes interval);

    /// Whether the changes of an opened document are uploaded without asking.
    bool UploadsByItself() const;
    void SetUploadsByItself(bool uploads);

    /// Whether the desktop tells of the end of transfers that took longer than NoticeDelay.
    bool TellsOfTransfers() const;
    void SetTellsOfTransfers(bool tells);
    std::chrono::seconds NoticeDelay() const;
    void SetNoticeDelay(std::chrono::seconds delay);

private:
    QSettings* settings;
};

} // namespace Norlis::Window
