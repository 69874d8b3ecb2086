// Sockets that listen.
#pragma once

#include <cstddef>
#include <optional>

#include "TavioIpadSDK/machine/descriptor.h"
#include "tools/tavio-printer/doors/listen_address.h"

namespace tavio::virtual_printer {

// A non-blocking socket that listens on the first of the host's addresses that can be had, which no
// other program shares. `address` gets the port that was found where any was asked for.
// `receiveBuffer`: bytes that the system is asked to hold for each connection; none: as it likes.
// Throws std::runtime_error, with one sentence, where the address cannot be listened on.
machine::Descriptor listenOn(ListenAddress& address, int backlog,
                             std::optional<std::size_t> receiveBuffer = std::nullopt);

}  // namespace tavio::virtual_printer
