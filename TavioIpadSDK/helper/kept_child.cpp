#include "TavioIpadSDK/helper/kept_child.h"

#include <chrono>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

#include "TavioIpadSDK/helper/ending_of.h"
#include "TavioIpadSDK/helper/keeper_protocol.h"

namespace tavio::helper {

KeptChild::KeptChild(Descriptor leash) : leash_(std::move(leash)), owner_(::getpid()) {}

// Forks of this process may hold the socket, so closing it would not be enough.
KeptChild::~KeptChild() {
    if (::getpid() == owner_) ::shutdown(leash_.get(), SHUT_RDWR);
}

// The message stays in the socket, for the next time.
std::optional<Ending> KeptChild::waitForEnd(Deadline deadline) {
    if (!readableBefore(leash_.get(), deadline)) return std::nullopt;
    EndingMessage message;
    const ssize_t count = ::recv(leash_.get(), &message, sizeof(message), MSG_PEEK | MSG_DONTWAIT);
    if (count != sizeof(message)) return Ending{};
    return endingOf(message.status, std::chrono::microseconds(message.processorMicroseconds));
}

}  // namespace tavio::helper
