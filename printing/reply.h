// What a printer's reply means. The command language defines no replies, so the application tells.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "TavioIpadSDK/machine/export.h"

namespace tavio::printing {

enum class PrinterState : std::uint8_t {
    kUnknown,  // no reply, or one that no row of the table matches
    kReady,
    kOutOfPaper,
    kCoverOpen,
    kError,
    kOther,
};

// "unknown", "ready", "out-of-paper", "cover-open", "error", "other"
TAVIO_API const char* nameOf(PrinterState state) noexcept;

enum class Match : std::uint8_t { kExact, kPrefix, kContains };

struct TAVIO_API ReplyPattern {
    PrinterState state = PrinterState::kOther;
    Match match = Match::kExact;
    std::string text;  // compared byte by byte

    bool operator==(const ReplyPattern&) const = default;
};

// The first row that matches counts. A prefix or a part of no characters matches every reply.
//
//   ReplyTable table{{PrinterState::kReady, Match::kExact, "OK"},
//                    {PrinterState::kOutOfPaper, Match::kContains, "PAPER"}};
using ReplyTable = std::vector<ReplyPattern>;

// An exact pattern is compared with the reply without the blanks and line ends around it.
[[nodiscard]] TAVIO_API PrinterState stateOf(std::string_view reply,
                                             const ReplyTable& table) noexcept;

}  // namespace tavio::printing
