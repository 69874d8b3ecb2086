// Looking up the addresses of a host.
#pragma once

#include <string>
#include <vector>

#include "tavio/links/stream_link.h"
#include "tavio/links/system_calls.h"
#include "tavio/links/tcp_address.h"

namespace tavio::links {

// The addresses to try, in order; on failure none, and one sentence in `failure`. A numeric address
// needs no lookup. A name is looked up on a thread of its own, because a lookup cannot be
// cancelled: at the deadline, or when the link is cancelled, this function returns and the thread
// ends by itself.
std::vector<SocketAddress> findAddresses(const TcpAddress& address, Waiter& waiter,
                                         std::string& failure);

}  // namespace tavio::links
