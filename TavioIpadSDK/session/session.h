// The printer session: the library's only door to the printer.
//
//   if (!OpenSessionWiFi("192.0.2.7")) return tellTheUser("printer not reached");
//   SendString("<RC10,10>Row B, seat 12");
//   PrintCut();
//   CloseSessionWiFi();
//
// One session at a time, over Bluetooth or WiFi. Nothing here locks: do not open, close or switch
// while a job is running.
#pragma once

#include <cstdint>
#include <string>

#include "TavioIpadSDK/machine/export.h"
#include "TavioIpadSDK/platform/text.h"
#include "TavioIpadSDK/session/commands.h"

namespace tavio {

// ---- State, from program start to program end ---------------------------------------------------

// The active transport: "BT", "WF", or "" when no session is open. Any other text behaves like ""
// for texts and reads and like Bluetooth for raw data. The open and close operations write it;
// every sending and reading operation reads it.
// Written by: session.cpp, the application
// Read by: session.cpp
extern TAVIO_API std::string Mode;  // initially ""

// The result of the last attempt to open a session: true if the transport was opened.
// CloseSessionWiFi sets it to false; CloseSessionBT does not change it. No sending operation reads
// it.
// Written by: session.cpp
// Read by: session.cpp, the application
extern TAVIO_API bool connectionStatus;  // initially false

// For the application's own use, any value.
// Written by: the application
// Read by: the application
extern TAVIO_API std::int32_t connectedBTdevices;  // initially 0
extern TAVIO_API std::int32_t selectedBTindex;     // initially 0
extern TAVIO_API std::string s;                    // initially ""

// ---- Opening and closing ------------------------------------------------------------------------

// Fills the dot-width table, opens Bluetooth and makes it the active transport, even when the open
// fails: the next SendString then still goes to Write_BT. Returns the new connectionStatus.
TAVIO_API bool OpenSessionBT();

// Closes Bluetooth, opened or not, and ends the session. connectionStatus keeps its value.
TAVIO_API void CloseSessionBT();

// Fills the dot-width table and opens WiFi to `ip`, passed on unchanged. If that succeeds, WiFi
// becomes the active transport; after a failure the active transport does not change. Returns the
// new connectionStatus.
TAVIO_API bool OpenSessionWiFi(const std::string& ip);

// Closes WiFi, opened or not, ends the session and sets connectionStatus to false.
TAVIO_API void CloseSessionWiFi();

// ---- Direct access ------------------------------------------------------------------------------

// Hands the text, whole and unchanged, to the active transport; drops it if no session is open. No
// text (std::nullopt) is handed on as no text.
TAVIO_API void SendString(const Text& string);

// Hands `size` bytes at `buf` to WiFi if it is active, and to Bluetooth in every other case, even
// if no session is open.
TAVIO_API void SendData(const Byte* buf, std::int32_t size);

// Reads the printer's reply from the active transport, whose status is then cleared. "" without a
// session; no text if the transport has none.
TAVIO_API Text ReadPrinter();

TAVIO_API void PrintCut();     // SendString(CUT)
TAVIO_API void PrintNoCut();   // SendString(EJECT)
TAVIO_API void ClearMemory();  // SendString of ESC (27) and "c": clears the printer's memory

}  // namespace tavio
