#include "worker/message.h"

#include <cstring>
#include <sys/socket.h>
#include <unistd.h>

namespace quill::worker {
namespace {

/// Room for one descriptor beside a message.
union Control {
    cmsghdr header;
    std::array<char, CMSG_SPACE(sizeof(int))> bytes;
};

}  // namespace

bool send_message(int socket, const void* bytes, std::size_t size, int file) {
    iovec part{const_cast<void*>(bytes), size};
    msghdr message = {};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    Control control = {};
    if (file >= 0) {
        message.msg_control = control.bytes.data();
        message.msg_controllen = control.bytes.size();
        cmsghdr* header = CMSG_FIRSTHDR(&message);
        header->cmsg_level = SOL_SOCKET;
        header->cmsg_type = SCM_RIGHTS;
        header->cmsg_len = CMSG_LEN(sizeof file);
        std::memcpy(CMSG_DATA(header), &file, sizeof file);
    }
    return sendmsg(socket, &message, MSG_NOSIGNAL) == static_cast<ssize_t>(size);
}

Received receive_message(int socket, void* bytes, std::size_t size) {
    iovec part{bytes, size};
    msghdr message = {};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    Control control = {};
    message.msg_control = control.bytes.data();
    message.msg_controllen = control.bytes.size();
    Received received;
    received.size = recvmsg(socket, &message, MSG_CMSG_CLOEXEC);
    const cmsghdr* header = received.size < 0 ? nullptr : CMSG_FIRSTHDR(&message);
    if (header != nullptr && header->cmsg_type == SCM_RIGHTS && header->cmsg_len == CMSG_LEN(sizeof(int))) {
        std::memcpy(&received.file, CMSG_DATA(header), sizeof(int));
    }
    return received;
}

}  // namespace quill::worker
