// A link to a printer over TCP: WiFi, or any network.
#pragma once

#include "TavioIpadSDK/machine/export.h"
#include "tavio/links/stream_link.h"
#include "tavio/links/system_calls.h"

namespace tavio::links {

// open() takes "HOST", "HOST:PORT", "[IPV6]" or "[IPV6]:PORT" (tcp_address.h). The addresses of a
// name are tried one after the other and share the time to connect.
//
// drain() waits for the acknowledgements of the far end's system. close() drains, ends its side,
// reads until the printer ends the other, and closes; it does not wait for a printer that was sent
// nothing. After a failure it resets the connection, so that unsent bytes are dropped.
class TAVIO_API TcpLink : public StreamLink {
  public:
    explicit TcpLink(const Deadlines& deadlines, SystemCalls& calls = systemCalls());
};

}  // namespace tavio::links
