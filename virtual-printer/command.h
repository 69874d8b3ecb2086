// The commands of the printer's language.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::virtual_printer {

// Each kind with its form in the stream. Numbers are decimal with an optional minus sign, and
// saturate to 32 bits. They are the command's arguments, in this order.
enum class CommandKind : std::uint8_t {
    kPath,         // "<P" n ">"                print path n
    kLandscape,    // "<LM>"                    landscape
    kPortrait,     // "<PM>"                    portrait
    kRe,           // "<RE" n ">"               set-up, without a visible effect
    kDi,           // "<DI>"                    set-up, without a visible effect
    kPosition,     // "<RC" row "," column ">"  position of what follows
    kGraphics,     // "<G" count ">"            count graphics bytes of any value follow
    kLogoPlace,    // "<SP" row "," column ">"  place of the next logo
    kPrintLogo,    // "<LD" n ">"               print logo n
    kBeginLogo,    // "<" n ">" ESC             begin to store logo n
    kEndLogo,      // ESC                       end of the logo, while one is being stored
    kClearMemory,  // ESC "c"                   clear the memory, while no logo is being stored
    kCut,          // "<p>"                     cut the ticket
    kEject,        // "<q>"                     eject the ticket without a cut
    kUnknown,      // an unknown "<...>", or an ESC without a meaning; the last kind
};

// The maximum length of a command, "<" and ">" included.
inline constexpr std::size_t kMaxCommandBytes = 64;

struct Command {
    std::uint64_t offset = 0;  // of its first byte, from the start of the stream
    CommandKind kind = CommandKind::kUnknown;
    std::string_view text;                    // its bytes as received; valid during the call
    std::array<std::int32_t, 2> arguments{};  // as the form says; 0 if it has none
};

}  // namespace tavio::virtual_printer
