// Listening sockets.
#pragma once

#include <cstddef>
#include <optional>

#include "TavioIpadSDK/machine/descriptor.h"
#include "tools/tavio-printer/doors/listen_address.h"

namespace tavio::virtual_printer {

// A non-blocking socket that listens on the first free one of the host's addresses, which no other
// program shares. If the port is 0, `address` gets the chosen one. `receiveBuffer`: the size of
// each connection's receive buffer; none: the system's default. Throws std::runtime_error, with one
// sentence, if it cannot listen on the address.
machine::Descriptor listenOn(ListenAddress& address, int backlog,
                             std::optional<std::size_t> receiveBuffer = std::nullopt);

}  // namespace tavio::virtual_printer
