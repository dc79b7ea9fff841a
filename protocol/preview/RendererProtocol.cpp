#include "RendererProtocol.h"

#include "DocumentPieces.h"

#include <algorithm>
#include <cstring>

#include <sys/socket.h>

namespace Norlis::Social::RendererProtocol {

namespace {

/// Page, width, height and size, and room for one descriptor beside them.
struct Message {
    qint64 numbers[4] = {};
    alignas(cmsghdr) char control[CMSG_SPACE(sizeof(int))] = {};
    iovec content = {numbers, sizeof numbers};
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

bool SendRequest(int socket, const Request& request, int document)
{
    Message message;
    message.numbers[0] = request.page;
    message.numbers[1] = request.box.width();
    message.numbers[2] = request.box.height();
    message.numbers[3] = request.size;
    if (document < 0) {
        message.head.msg_controllen = 0;
    } else {
        cmsghdr* const rights = CMSG_FIRSTHDR(&message.head);
        rights->cmsg_level = SOL_SOCKET;
        rights->cmsg_type = SCM_RIGHTS;
        rights->cmsg_len = CMSG_LEN(sizeof document);
        std::memcpy(CMSG_DATA(rights), &document, sizeof document);
    }
    return sendmsg(socket, &message.head, MSG_NOSIGNAL | MSG_DONTWAIT) == sizeof message.numbers;
}

std::optional<Request> ReceiveRequest(int socket, QFile& document)
{
    Message message;
    if (recvmsg(socket, &message.head, MSG_CMSG_CLOEXEC) != sizeof message.numbers) {
        return std::nullopt;
    }
    const Request request{static_cast<int>(message.numbers[0]),
                          QSize(static_cast<int>(message.numbers[1]), static_cast<int>(message.numbers[2])),
                          message.numbers[3]};
    if (request.size > 0) {
        return request;
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
    return request;
}

bool SendPiece(int socket, const QByteArray& piece)
{
    return send(socket, piece.constData(), static_cast<std::size_t>(piece.size()), MSG_NOSIGNAL | MSG_DONTWAIT) ==
           piece.size();
}

QByteArray ReceivePiece(int socket)
{
    QByteArray piece(static_cast<int>(DocumentPieces::pieceSize), Qt::Uninitialized);
    iovec content = {piece.data(), static_cast<std::size_t>(piece.size())};
    msghdr head = {};
    head.msg_iov = &content;
    head.msg_iovlen = 1;
    const ssize_t length = recvmsg(socket, &head, 0); // recv is another system call, which the sandbox does not allow
    piece.truncate(static_cast<int>(std::max<ssize_t>(length, 0)));
    return piece;
}

} // namespace Norlis::Social::RendererProtocol
