// The commands of the printer's language.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::virtual_printer {

enum class CommandKind : std::uint8_t {
    kPath,  // arguments: path number
    kLandscape,
    kPortrait,
    kRe,  // arguments: n
    kDi,
    kPosition,   // arguments: row, column
    kGraphics,   // arguments: count; graphicsBytes() and graphicsEnd() follow
    kLogoPlace,  // arguments: row, column
    kPrintLogo,  // arguments: logo number
    kBeginLogo,  // arguments: logo number
    kEndLogo,
    kClearMemory,
    kCut,
    kEject,
    kUnknown,  // an unknown "<...>", or an ESC without a meaning
};

// The maximum length of a command, "<" and ">" included.
inline constexpr std::size_t kMaxCommandBytes = 64;

struct Command {
    std::uint64_t offset = 0;  // of its first byte, from the start of the stream
    CommandKind kind = CommandKind::kUnknown;
    std::string_view text;                    // its bytes as received; valid during the call
    std::array<std::int32_t, 2> arguments{};  // depends on the kind; 0 if it has none
};

}  // namespace tavio::virtual_printer
