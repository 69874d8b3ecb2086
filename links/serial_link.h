// A link to a printer on a serial device.
#pragma once

#include <string>

#include "TavioIpadSDK/machine/export.h"
#include "tavio/links/stream_link.h"
#include "tavio/links/system_calls.h"

namespace tavio::links {

// Opens one device in raw mode: "/dev/rfcomm0" or "/dev/ttyUSB0?baud=115200" (serial_address.h);
// open() ignores its argument. Hardware flow control keeps the device's setting.
//
// Nothing is acknowledged on this kind of link; drain() waits until the device's queue is empty.
class TAVIO_API SerialLink : public StreamLink {
  public:
    SerialLink(std::string device, const Deadlines& deadlines, SystemCalls& calls = systemCalls());
};

}  // namespace tavio::links
