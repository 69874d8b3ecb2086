// A link to a Bluetooth printer: its serial port, over RFCOMM.
#pragma once

#include <string>

#include "TavioIpadSDK/machine/export.h"
#include "tavio/links/stream_link.h"
#include "tavio/links/system_calls.h"

namespace tavio::links {

// Connects to one printer: "AA:BB:CC:DD:EE:FF" or "AA:BB:CC:DD:EE:FF/CHANNEL" (rfcomm_address.h);
// open() ignores its argument. A printer that requires pairing must be paired already.
//
// Nothing is acknowledged on this kind of link: drain() only knows that bytes have left the sending
// queue, and only a deadline notices that a printer is out of range. There is no half-closing
// either: close() drains and then ends both directions.
class TAVIO_API RfcommLink : public StreamLink {
  public:
    RfcommLink(std::string printer, const Deadlines& deadlines, SystemCalls& calls = systemCalls());
};

}  // namespace tavio::links
