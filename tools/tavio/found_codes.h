// Codes on a ticket, found by the program tavio-scan.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "TavioIpadSDK/platform/picture.h"

namespace tavio::tool {

struct FoundCode {
    std::string kind;  // "qr", "code128"
    std::string data;  // UTF-8
    std::int32_t left = 0;
    std::int32_t top = 0;
    std::int32_t width = 0;  // without its quiet zone
    std::int32_t height = 0;
    double module = 0;  // its width in dots

    // Scanners want 3 dots or more, and the measure is good to a hundredth.
    bool isSafe() const { return module > 2.99; }
};

struct CodeSearch {
    std::optional<std::vector<FoundCode>> codes;  // in the order from top to bottom
    std::string whyNot;                           // if there are none: a clause without a full stop
};

// Looks for codes on a ticket. scanner: the path of the program, "" to look for it where it is
// installed.
CodeSearch findCodes(const platform::Picture& ticket, const std::string& scanner = "");

// Reads the text of the program's answer (tools/common/scan_answer.h); none if it is malformed.
std::optional<std::vector<FoundCode>> parseCodes(std::string_view answer);

}  // namespace tavio::tool
