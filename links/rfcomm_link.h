// A link to a Bluetooth printer: its serial port, over RFCOMM.
#pragma once

#include <string>

#include "tavio/links/stream_link.h"
#include "tavio/links/system_calls.h"

namespace tavio::links {

// Connects to one printer: "AA:BB:CC:DD:EE:FF" or "AA:BB:CC:DD:EE:FF/CHANNEL" (rfcomm_address.h);
// what open() is given is ignored. The printer must be paired already if it asks for that.
//
// Nothing is acknowledged on this kind of link: that bytes have left the sending queue is all that
// drain() can know, and a printer that is out of reach is noticed by the deadline only. There is no
// half-closing either: close() drains, and closing then ends both directions.
class RfcommLink : public StreamLink {
  public:
    RfcommLink(std::string printer, const Deadlines& deadlines, SystemCalls& calls = systemCalls());
};

}  // namespace tavio::links
