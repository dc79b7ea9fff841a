#include "Notifications.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QGuiApplication>
#include <QVariantMap>

namespace Norlis::Window {

namespace {

const auto service = QStringLiteral("org.freedesktop.Notifications");
const auto path = QStringLiteral("/org/freedesktop/Notifications");
const auto clicked = QStringLiteral("default");

} // namespace

Notifications::Notifications(QObject* parent) : QObject(parent)
{
    // Whoever sends it: to name the service would be to wait until its owner is found.
    // clang-format off
    QDBusConnection::sessionBus().connect({}, path, service, "ActionInvoked", this, SLOT(OnAction(uint,QString)));
    // clang-format on
}

void Notifications::Show(const QString& title, const QString& text)
{
    const auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        return;
    }
    constexpr int usualTime = -1; // after which it vanishes
    const QString icon = QGuiApplication::desktopFileName();
    auto call = QDBusMessage::createMethodCall(service, path, service, "Notify");
    call << QCoreApplication::applicationName() << shown << icon << title << text << QStringList{clicked, tr("Show")}
         << QVariantMap{{"desktop-entry", icon}} << usualTime;
    const auto answer = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        const QDBusPendingReply<uint> number = *answer;
        shown = number.isError() ? 0 : number.value();
        answer->deleteLater();
    });
}

void Notifications::OnAction(uint number, const QString& action)
{
    if (number == shown && action == clicked) {
        emit Activated();
    }
}

} // namespace Norlis::Window
