// Commands that are sent as they are.
#pragma once

namespace tavio {

inline constexpr const char* CUT = "<p>";    // print and cut
inline constexpr const char* EJECT = "<q>";  // print and eject without cutting

}  // namespace tavio

namespace tavio::session {

inline constexpr const char* kClearMemory =
    "\x1B"
    "c";  // ESC "c": clears the printer's memory

}  // namespace tavio::session
