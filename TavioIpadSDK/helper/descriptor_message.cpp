#include "TavioIpadSDK/helper/descriptor_message.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <sys/socket.h>
#include <sys/uio.h>
#include <utility>

#include "TavioIpadSDK/helper/pipe.h"

namespace tavio::helper {

using machine::Descriptor;

namespace {

// Room for the descriptors of a message.
struct Control {
    alignas(
        cmsghdr) std::array<std::byte, CMSG_SPACE(sizeof(int) * kMaxDescriptorsPerMessage)> bytes{};
};

void attach(msghdr& message, Control& control,
            std::initializer_list<const Descriptor*> descriptors) {
    const std::size_t size = sizeof(int) * descriptors.size();
    message.msg_control = control.bytes.data();
    message.msg_controllen = CMSG_SPACE(size);
    cmsghdr* const header = CMSG_FIRSTHDR(&message);
    header->cmsg_level = SOL_SOCKET;
    header->cmsg_type = SCM_RIGHTS;
    header->cmsg_len = CMSG_LEN(size);
    std::array<int, kMaxDescriptorsPerMessage> numbers{};
    std::ranges::transform(descriptors, numbers.begin(),
                           [](const Descriptor* d) { return d->get(); });
    std::memcpy(CMSG_DATA(header), numbers.data(), size);
}

std::vector<Descriptor> descriptorsOf(msghdr& message) {
    std::vector<Descriptor> descriptors;
    for (cmsghdr* part = CMSG_FIRSTHDR(&message); part != nullptr;
         part = CMSG_NXTHDR(&message, part)) {
        if (part->cmsg_level != SOL_SOCKET || part->cmsg_type != SCM_RIGHTS) continue;
        std::array<int, kMaxDescriptorsPerMessage> numbers{};
        const std::size_t size = std::min(part->cmsg_len - CMSG_LEN(0), sizeof(numbers));
        std::memcpy(numbers.data(), CMSG_DATA(part), size);
        for (std::size_t i = 0; i < size / sizeof(int); ++i)
            descriptors.emplace_back(numbers.at(i));
    }
    return descriptors;
}

}  // namespace

SocketPair makeSocketPair() {
    std::array<int, 2> ends{-1, -1};
    if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0) return {};
    return {aboveStandardStreams(Descriptor(ends[0])), aboveStandardStreams(Descriptor(ends[1]))};
}

bool sendMessage(const Descriptor& socket, std::span<const std::byte> bytes,
                 std::initializer_list<const Descriptor*> descriptors) {
    // The system does not write to it.
    iovec content{const_cast<std::byte*>(bytes.data()), bytes.size()};
    msghdr message{};
    message.msg_iov = &content;
    message.msg_iovlen = 1;
    Control control;
    if (descriptors.size() > 0) attach(message, control, descriptors);
    ssize_t sent = 0;
    do {
        sent = ::sendmsg(socket.get(), &message, MSG_DONTWAIT | MSG_NOSIGNAL);
    } while (sent < 0 && errno == EINTR);
    return sent == static_cast<ssize_t>(bytes.size());
}

Message receiveMessage(const Descriptor& socket, std::size_t maxBytes) {
    Message received;
    received.bytes.resize(maxBytes);
    iovec content{received.bytes.data(), maxBytes};
    Control control;
    msghdr message{};
    message.msg_iov = &content;
    message.msg_iovlen = 1;
    message.msg_control = control.bytes.data();
    message.msg_controllen = control.bytes.size();
    ssize_t count = 0;
    do {
        count = ::recvmsg(socket.get(), &message, MSG_DONTWAIT | MSG_CMSG_CLOEXEC);
    } while (count < 0 && errno == EINTR);
    received.bytes.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    received.isEnd = count == 0 || (count < 0 && errno != EAGAIN);
    if (count <= 0) return received;
    received.descriptors = descriptorsOf(message);
    received.isWhole = (message.msg_flags & (MSG_TRUNC | MSG_CTRUNC)) == 0;
    return received;
}

}  // namespace tavio::helper
