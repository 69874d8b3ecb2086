// From a host to the addresses of its machine.
#pragma once

#include <string>
#include <vector>

#include "tavio/links/stream_link.h"
#include "tavio/links/system_calls.h"
#include "tavio/links/tcp_address.h"

namespace tavio::links {

// The addresses to try, in order; none with one sentence in `failure`. An address in numbers is
// there at once. A name is looked up on a thread of its own, because that cannot be broken off: at
// the deadline, or when the link is cancelled, the thread is left behind, and ends by itself.
std::vector<SocketAddress> findAddresses(const TcpAddress& address, Waiter& waiter,
                                         std::string& failure);

}  // namespace tavio::links
