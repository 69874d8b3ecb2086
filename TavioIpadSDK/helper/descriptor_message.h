// Messages with file descriptors, over a socket of whole messages (SOCK_SEQPACKET).
#pragma once

#include <cstddef>
#include <initializer_list>
#include <span>
#include <vector>

#include "TavioIpadSDK/machine/descriptor.h"

namespace tavio::helper {

inline constexpr std::size_t kMaxDescriptorsPerMessage = 3;

struct SocketPair {
    machine::Descriptor ours;
    machine::Descriptor theirs;

    bool isOpen() const { return ours.isOpen() && theirs.isOpen(); }
};

// Not inherited by programs; numbers as with makePipe(). Closed if there is no free descriptor.
SocketPair makeSocketPair();

// Sends the bytes, 1 or more, and copies of the descriptors, at most kMaxDescriptorsPerMessage. Does
// not wait: false if the other end is closed, or takes no more for the moment.
bool sendMessage(const machine::Descriptor& socket, std::span<const std::byte> bytes,
                 std::initializer_list<const machine::Descriptor*> descriptors = {});

struct Message {
    std::vector<std::byte> bytes;  // none if there is no message
    std::vector<machine::Descriptor> descriptors;
    bool isWhole = false;  // false if bytes or descriptors were cut off
    bool isEnd = false;    // no message will come any more
};

// Receives a message of at most this many bytes. Does not wait.
Message receiveMessage(const machine::Descriptor& socket, std::size_t maxBytes);

}  // namespace tavio::helper
