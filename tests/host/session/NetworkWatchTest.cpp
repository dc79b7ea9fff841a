#include <host/session/NetworkWatch.h>

#include <QEventLoop>
#include <QThread>
#include <QTimer>

#include <gtest/gtest.h>

#include <chrono>
#include <memory>

#include <net/if.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace Norlis::Test {

namespace {

/// Switches the loopback device of the calling thread's network on.
bool SwitchOn()
{
    const int socket = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    ifreq request = {};
    request.ifr_name[0] = 'l';
    request.ifr_name[1] = 'o';
    request.ifr_flags = IFF_UP;
    const bool isOn = ioctl(socket, SIOCSIFFLAGS, &request) == 0;
    close(socket);
    return isOn;
}

TEST(NetworkWatchTest, TellsOnceOfANetworkThatComesUp)
{
    bool hasNetwork = false;
    int told = 0;
    const std::unique_ptr<QThread> thread(QThread::create([&] {
        if (unshare(CLONE_NEWNET) != 0) { // a network of its own, for this thread
            return;
        }
        hasNetwork = true;
        Host::NetworkWatch watch;
        QEventLoop loop;
        QObject::connect(&watch, &Host::NetworkWatch::Changed, &watch, [&] {
            ++told;
            QTimer::singleShot(std::chrono::seconds(1), &loop, &QEventLoop::quit); // for a second time
        });
        QTimer::singleShot(std::chrono::seconds(30), &loop, &QEventLoop::quit);
        EXPECT_TRUE(SwitchOn());
        loop.exec();
    }));
    thread->start();
    ASSERT_TRUE(thread->wait());
    if (!hasNetwork) {
        GTEST_SKIP() << "needs the permission to make a network of its own";
    }
    EXPECT_EQ(told, 1);
}

} // namespace

} // namespace Norlis::Test
