#include "RendererProtocol.h"

#include <cstring>

#include <sys/socket.h>

namespace Norlis::Social::RendererProtocol {

namespace {

/// A box, and room for one descriptor beside it.
struct Message {
    qint32 box[2] = {};
    alignas(cmsghdr) char control[CMSG_SPACE(sizeof(int))] = {};
    iovec content = {box, sizeof box};
    msghdr head = {};

    Message()
    {
        head.msg_iov = &content;
        head.msg_iovlen = 1;
        head.msg_control = control;
        head.msg_controllen = sizeof control;
    }
    Message(const Message&) = delete;
    Message& operator=(const Message&) = delete;
};

} // namespace

bool SendRequest(int socket, const QSize& box, int document)
{
    Message message;
    message.box[0] = box.width();
    message.box[1] = box.height();
    cmsghdr* const rights = CMSG_FIRSTHDR(&message.head);
    rights->cmsg_level = SOL_SOCKET;
    rights->cmsg_type = SCM_RIGHTS;
    rights->cmsg_len = CMSG_LEN(sizeof document);
    std::memcpy(CMSG_DATA(rights), &document, sizeof document);
    return sendmsg(socket, &message.head, MSG_NOSIGNAL | MSG_DONTWAIT) == sizeof message.box;
}

std::optional<QSize> ReceiveRequest(int socket, QFile& document)
{
    Message message;
    if (recvmsg(socket, &message.head, MSG_CMSG_CLOEXEC) != sizeof message.box) {
        return std::nullopt;
    }
    const cmsghdr* const rights = CMSG_FIRSTHDR(&message.head);
    if (!rights || rights->cmsg_type != SCM_RIGHTS || rights->cmsg_len != CMSG_LEN(sizeof(int))) {
        return std::nullopt;
    }
    int descriptor = -1;
    std::memcpy(&descriptor, CMSG_DATA(rights), sizeof descriptor);
    if (!document.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle) || !document.seek(0)) {
        return std::nullopt;
    }
    return QSize(message.box[0], message.box[1]);
}

} // namespace Norlis::Social::RendererProtocol
