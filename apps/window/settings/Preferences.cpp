#include "Preferences.h"

#include <QSettings>
#include <QStandardPaths>

namespace Norlis::Window {

namespace {

namespace Key {
const auto downloadFolder = QStringLiteral("downloadFolder");
const auto openedFolder = QStringLiteral("openedFolder");
const auto refreshMinutes = QStringLiteral("refreshMinutes");
const auto uploadsByItself = QStringLiteral("uploadsByItself");
const auto tellsOfTransfers = QStringLiteral("notices/transfers");
const auto noticeSeconds = QStringLiteral("notices/seconds");
} // namespace Key

constexpr int usualRefreshMinutes = 1;
constexpr int usualNoticeSeconds = 10;

} // namespace

Preferences::Preferences(QSettings& settings) : settings(&settings) {}

QString Preferences::DownloadFolder() const
{
    const auto usual = QStandardPaths::writableLocation(QStandardPaths::DownloadLocation);
    return settings->value(Key::downloadFolder, usual).toString();
}

void Preferences::SetDownloadFolder(const QString& folder)
{
    settings->setValue(Key::downloadFolder, folder);
}

QString Preferences::OpenedFolder() const
{
    return settings->value(Key::openedFolder).toString();
}

void Preferences::SetOpenedFolder(const QString& folder)
{
    settings->setValue(Key::openedFolder, folder);
}

std::chrono::minutes Preferences::RefreshInterval() const
{
    return std::chrono::minutes(settings->value(Key::refreshMinutes, usualRefreshMinutes).toInt());
}

void Preferences::SetRefreshInterval(std::chrono::minutes interval)
{
    settings->setValue(Key::refreshMinutes, static_cast<int>(interval.count()));
}

bool Preferences::UploadsByItself() const
{
    return settings->value(Key::uploadsByItself, false).toBool();
}

void Preferences::SetUploadsByItself(bool uploads)
{
    settings->setValue(Key::uploadsByItself, uploads);
}

bool Preferences::TellsOfTransfers() const
{
    return settings->value(Key::tellsOfTransfers, true).toBool();
}

void Preferences::SetTellsOfTransfers(bool tells)
{
    settings->setValue(Key::tellsOfTransfers, tells);
}

std::chrono::seconds Preferences::NoticeDelay() const
{
    return std::chrono::seconds(settings->value(Key::noticeSeconds, usualNoticeSeconds).toInt());
}

void Preferences::SetNoticeDelay(std::chrono::seconds delay)
{
    settings->setValue(Key::noticeSeconds, static_cast<int>(delay.count()));
}

} // namespace Norlis::Window
