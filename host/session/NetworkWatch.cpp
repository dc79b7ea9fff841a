#include "NetworkWatch.h"

#include <QSocketNotifier>

#include <unistd.h>

#if __has_include(<linux/rtnetlink.h>)
#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>
#define NORLIS_HAS_NETLINK
#endif

namespace Norlis::Host {

namespace {

constexpr int quietMilliseconds = 500; // a network that comes up sends some ten notices

} // namespace

NetworkWatch::NetworkWatch(QObject* parent) : QObject(parent)
{
    quiet.setSingleShot(true);
    quiet.setInterval(quietMilliseconds);
    connect(&quiet, &QTimer::timeout, this, &NetworkWatch::Changed);
    Open();
    if (socket >= 0) {
        const auto notifier = new QSocketNotifier(socket, QSocketNotifier::Read, this);
        connect(notifier, &QSocketNotifier::activated, this, &NetworkWatch::Read);
    }
}

NetworkWatch::~NetworkWatch()
{
    if (socket >= 0) {
        close(socket);
    }
}

#ifdef NORLIS_HAS_NETLINK

void NetworkWatch::Open()
{
    socket = ::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC | SOCK_NONBLOCK, NETLINK_ROUTE);
    if (socket < 0) {
        return;
    }
    sockaddr_nl address = {};
    address.nl_family = AF_NETLINK;
    address.nl_groups = RTMGRP_LINK | RTMGRP_IPV4_IFADDR | RTMGRP_IPV4_ROUTE | RTMGRP_IPV6_IFADDR | RTMGRP_IPV6_ROUTE;
    if (bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0) {
        close(socket);
        socket = -1;
    }
}

void NetworkWatch::Read()
{
    char notices[8192]; // which ones they are does not matter, nor that some are lost when there are too many
    while (recv(socket, notices, sizeof(notices), 0) > 0) {
        quiet.start();
    }
}

#else

void NetworkWatch::Open() {}

void NetworkWatch::Read() {}

#endif

} // namespace Norlis::Host
