// The twelve transport operations. The library calls them but does not define them. The application
// defines them, or links Tavio::links, which defines them for files and printers.
//
// The library passes no port, device name, timeout or length limit. The transport chooses the
// device, turns text into bytes, buffers and retries. No operation may throw. Writes, closes and
// clears return nothing.
//
// They are called on the thread of the library operation, and for a photo on the thread that
// delivers it; never on two threads at once.
#pragma once

#include <cstdint>
#include <string>

#include "TavioIpadSDK/machine/export.h"
#include "TavioIpadSDK/platform/text.h"

namespace tavio {

// Bluetooth.
TAVIO_API bool Open_BT();                   // true when the printer is connected
TAVIO_API void Close_BT();                  // also called when nothing is open
TAVIO_API void Write_BT(const Text& text);  // a whole text, or no text
TAVIO_API void Write_BT_Data(const Byte* bytes, std::int32_t size);  // also with no session open
TAVIO_API Text Read_BT();                                            // the printer's reply, if any
TAVIO_API void ClearStatus_BT();                                     // right after every Read_BT

// WiFi.
TAVIO_API bool Open_WF(const std::string& ip);  // `ip` as the application gave it
TAVIO_API void Close_WF();
TAVIO_API void Write_WF(const Text& text);
TAVIO_API void Write_WF_Data(const Byte* bytes, std::int32_t size);
TAVIO_API Text Read_WF();
TAVIO_API void ClearStatus_WF();

}  // namespace tavio
