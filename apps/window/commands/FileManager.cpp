#include "FileManager.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QDesktopServices>
#include <QFileInfo>
#include <QUrl>

namespace Norlis::Window {

namespace {

void OpenFoldersOf(const QStringList& files)
{
    QStringList folders;
    for (const QString& file : files) {
        folders.append(QFileInfo(file).absolutePath());
    }
    folders.removeDuplicates();
    for (const QString& folder : qAsConst(folders)) {
        QDesktopServices::openUrl(QUrl::fromLocalFile(folder));
    }
}

} // namespace

void ShowInFolder(const QStringList& files)
{
    const auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        OpenFoldersOf(files);
        return;
    }
    QStringList addresses;
    for (const QString& file : files) {
        addresses.append(QUrl::fromLocalFile(file).toString(QUrl::FullyEncoded));
    }
    auto call = QDBusMessage::createMethodCall("org.freedesktop.FileManager1", "/org/freedesktop/FileManager1",
                                               "org.freedesktop.FileManager1", "ShowItems");
    call << addresses << QString();
    const auto answer = new QDBusPendingCallWatcher(bus.asyncCall(call));
    QObject::connect(answer, &QDBusPendingCallWatcher::finished, answer, [answer, files] {
        if (answer->isError()) { // most often there is no such file manager
            OpenFoldersOf(files);
        }
        answer->deleteLater();
    });
}

} // namespace Norlis::Window
