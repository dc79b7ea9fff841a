#include "OpenedFiles.h"
#include "WindowTest.h"

#include <apps/window/settings/Preferences.h>

#include <QDBusConnection>
#include <QListView>
#include <QSettings>
#include <QUrl>
#include <QVariantMap>

namespace Norlis::Test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// The service of a desktop that shows messages.
class MessageService : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    QStringList titles;
    QStringList texts;
    QStringList actions;
    QList<uint> replaced;

    void Click()
    {
        emit ActionInvoked(number, "default");
    }

public slots:
    // Named as the desktop's interface has them: clazy:skip
    uint Notify(const QString&, uint replaces, const QString&, const QString& title, const QString& text,
                const QStringList& offered, const QVariantMap&, int)
    {
        replaced.append(replaces);
        titles.append(title);
        texts.append(text);
        actions = offered;
        return number;
    }

signals:
    void ActionInvoked(uint id, const QString& action);

private:
    static constexpr uint number = 7;
};

/// A desktop's file manager.
class FolderService : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")

public:
    QStringList shown;

public slots:
    void ShowItems(const QStringList& addresses, const QString&)
    {
        shown += addresses;
    }
};

/// A service on the desktop's message bus, for as long as this exists.
class OnBus {
public:
    OnBus(const QString& name, const QString& path, QObject& service)
        : name(name),
          bus(QDBusConnection::connectToBus(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"), name))
    {
        EXPECT_TRUE(
            bus.registerObject(path, &service, QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals));
        EXPECT_TRUE(bus.registerService(name));
    }

    ~OnBus()
    {
        bus.unregisterService(name);
        QDBusConnection::disconnectFromBus(name);
    }

    OnBus(const OnBus&) = delete;
    OnBus& operator=(const OnBus&) = delete;

private:
    const QString name;
    QDBusConnection bus;
};

/// The window among the services of a desktop.
class DesktopTest : public WindowTest {
protected:
    void SetNoticeDelay(int seconds)
    {
        QSettings settings(Local("data/window.ini"), QSettings::IniFormat);
        Window::Preferences(settings).SetNoticeDelay(std::chrono::seconds(seconds));
    }

    void UploadToTheEnd(const QString& name)
    {
        Drop({LocalFile(name, PdfOfColor(Qt::red))});
        ASSERT_TRUE(WaitUntil([&] { return Transfers().value(0) == name + " finished"; }));
    }

    /// The user does something else.
    void LeaveWindow()
    {
        other.show();
        other.activateWindow();
        ASSERT_TRUE(WaitUntil([&] { return !window->isActiveWindow(); }));
    }

    QWidget other;
    MessageService messages;
};

TEST_F(DesktopTest, TheEndOfLongTransfersIsToldWhenTheUserIsElsewhereAndAClickBringsTheWindow)
{
    const OnBus bus("org.freedesktop.Notifications", "/org/freedesktop/Notifications", messages);
    SetNoticeDelay(0);
    OpenCloud();
    ASSERT_TRUE(WaitUntil([&] { return Action("Upload…")->isEnabled(); }));
    LeaveWindow();
    UploadToTheEnd("a.pdf");
    ASSERT_TRUE(WaitUntil([&] { return !messages.titles.isEmpty(); }));
    EXPECT_EQ(messages.titles, QStringList("All transfers have finished"));
    EXPECT_EQ(messages.texts, QStringList("1 document uploaded"));
    EXPECT_EQ(messages.actions, QStringList({"default", "Show"}));
    EXPECT_THAT(messages.replaced, ElementsAre(0));
    UploadToTheEnd("b.pdf");
    ASSERT_TRUE(WaitUntil([&] { return messages.titles.size() == 2; }));
    EXPECT_THAT(messages.replaced, ElementsAre(0, 7)) << "there is only one at a time";
    messages.Click();
    EXPECT_TRUE(WaitUntil([&] { return window->isActiveWindow(); }));
}

TEST_F(DesktopTest, NothingIsToldOfShortTransfersNorToWhoSeesThemNorToWhoDoesNotWantIt)
{
    const OnBus bus("org.freedesktop.Notifications", "/org/freedesktop/Notifications", messages);
    OpenCloud();
    ASSERT_TRUE(WaitUntil([&] { return Action("Upload…")->isEnabled(); }));
    LeaveWindow();
    UploadToTheEnd("short.pdf");
    SetNoticeDelay(0);
    window->activateWindow();
    ASSERT_TRUE(WaitUntil([&] { return window->isActiveWindow(); }));
    UploadToTheEnd("seen.pdf");
    {
        QSettings settings(Local("data/window.ini"), QSettings::IniFormat);
        Window::Preferences(settings).SetTellsOfTransfers(false);
    }
    Close();
    Open();
    ASSERT_TRUE(WaitUntil([&] { return Action("Upload…")->isEnabled(); }));
    LeaveWindow();
    UploadToTheEnd("unwanted.pdf");
    {
        QSettings settings(Local("data/window.ini"), QSettings::IniFormat);
        Window::Preferences(settings).SetTellsOfTransfers(true);
    }
    Close();
    Open();
    ASSERT_TRUE(WaitUntil([&] { return Action("Upload…")->isEnabled(); }));
    LeaveWindow();
    UploadToTheEnd("wanted.pdf");
    ASSERT_TRUE(WaitUntil([&] { return !messages.titles.isEmpty(); }));
    EXPECT_EQ(messages.titles.size(), 1);
}

TEST_F(DesktopTest, ADesktopWithoutMessagesIsNoProblem)
{
    SetNoticeDelay(0);
    OpenCloud();
    ASSERT_TRUE(WaitUntil([&] { return Action("Upload…")->isEnabled(); }));
    LeaveWindow();
    UploadToTheEnd("a.pdf");
    UploadToTheEnd("b.pdf");
    EXPECT_THAT(messages.titles, IsEmpty());
    EXPECT_EQ(Message(), "");
}

TEST_F(DesktopTest, TheFileManagerShowsTheLocalCopy)
{
    FolderService folders;
    const OnBus bus("org.freedesktop.FileManager1", "/org/freedesktop/FileManager1", folders);
    PutIntoCloud(QStringLiteral("ä b.pdf"), PdfOfColor(Qt::blue));
    OpenCloud();
    ASSERT_TRUE(Shows({QStringLiteral("ä b.pdf")}));
    Select({QStringLiteral("ä b.pdf")});
    EXPECT_FALSE(Action("Show in Folder")->isEnabled()) << "there is no copy";
    Action("Download")->trigger();
    ASSERT_TRUE(IsUpToDate(QStringLiteral("ä b.pdf")));
    ASSERT_TRUE(WaitUntil([&] { return Action("Show in Folder")->isEnabled(); }));
    Action("Show in Folder")->trigger();
    ASSERT_TRUE(WaitUntil([&] { return !folders.shown.isEmpty(); }));
    EXPECT_EQ(QUrl(folders.shown.first()).toLocalFile(), Local(QStringLiteral("downloads/ä b.pdf")));
}

TEST_F(DesktopTest, WithoutAFileManagerOnTheBusTheFolderIsOpened)
{
    const OpenedFiles folders;
    OpenWithLocalCopy();
    ASSERT_TRUE(WaitUntil([&] { return Action("Show in Folder")->isEnabled(); }));
    Action("Show in Folder")->trigger();
    ASSERT_TRUE(WaitUntil([&] { return !folders.paths.isEmpty(); }));
    EXPECT_EQ(folders.paths, QStringList(Local("downloads")));
}

} // namespace

} // namespace Norlis::Test

#include "DesktopTest.moc"
