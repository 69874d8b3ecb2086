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

#include "TavioIpadSDK/platform/text.h"

namespace tavio {

// Bluetooth.
bool Open_BT();                                            // true when the printer is connected
void Close_BT();                                           // also called when nothing is open
void Write_BT(const Text& text);                           // a whole text, or no text
void Write_BT_Data(const Byte* bytes, std::int32_t size);  // also called with no session open
Text Read_BT();                                            // the printer's reply, if any
void ClearStatus_BT();                                     // right after every Read_BT

// WiFi.
bool Open_WF(const std::string& ip);  // `ip` as the application gave it
void Close_WF();
void Write_WF(const Text& text);
void Write_WF_Data(const Byte* bytes, std::int32_t size);
Text Read_WF();
void ClearStatus_WF();

}  // namespace tavio
