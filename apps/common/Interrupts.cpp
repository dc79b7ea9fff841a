#include "Interrupts.h"

#include <QSocketNotifier>

#include <cerrno>
#include <csignal>

#include <sys/socket.h>
#include <unistd.h>

namespace Norlis::Apps {

namespace {

constexpr int stopSignals[] = {SIGINT, SIGTERM, SIGHUP};

volatile std::sig_atomic_t wasInterrupted = 0;
volatile std::sig_atomic_t wakingDescriptor = -1;

void OnSignal(int)
{
    if (wasInterrupted) {
        _exit(Interrupts::exitStatus);
    }
    wasInterrupted = 1;
    const int error = errno;
    const char byte = 0;
    [[maybe_unused]] const auto written = write(wakingDescriptor, &byte, 1);
    errno = error;
}

} // namespace

Interrupts::Interrupts()
{
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, descriptors) != 0) {
        qFatal("cannot create a socket pair: error %d", errno);
    }
    wakingDescriptor = descriptors[1];
    const auto notifier = new QSocketNotifier(descriptors[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this, notifier] {
        notifier->setEnabled(false);
        emit Interrupted();
    });

    for (const int signal : stopSignals) {
        struct sigaction action = {};
        // A signal that the parent process ignores, as nohup does, stays ignored.
        if (sigaction(signal, nullptr, &action) == 0 && action.sa_handler != SIG_IGN) {
            action = {};
            action.sa_handler = OnSignal;
            action.sa_flags = SA_RESTART;
            sigaction(signal, &action, nullptr);
        }
    }
}

Interrupts::~Interrupts()
{
    for (const int signal : stopSignals) {
        struct sigaction action = {};
        if (sigaction(signal, nullptr, &action) == 0 && action.sa_handler == OnSignal) {
            std::signal(signal, SIG_DFL);
        }
    }
    wakingDescriptor = -1;
    close(descriptors[0]);
    close(descriptors[1]);
}

int Interrupts::Descriptor() const
{
    return descriptors[0];
}

} // namespace Norlis::Apps
