// What was read from a printer's calibration page.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "tavio/printing/calibration.h"

namespace tavio::tool {

struct PrinterOffset {
    std::int32_t right = 0;
    std::int32_t down = 0;

    bool operator==(const PrinterOffset&) const = default;
};

// Those that were given.
struct Readings {
    std::optional<std::int32_t> tone;
    std::optional<PrinterOffset> offset;
    std::optional<printing::Size> size;

    bool operator==(const Readings&) const = default;

    bool areGiven() const { return tone || offset || size; }

    // These, and for each that was not given the one below.
    Readings over(const Readings& below) const;
};

// What was not given is as the library has it.
printing::Calibration calibrationOf(const Readings& readings);

// "tone 4, offset 3,-2, size 1648x598"
std::string toText(const Readings& readings);

// The largest offset and side, in dots.
inline constexpr std::int32_t kMaxReading = 99'999;

}  // namespace tavio::tool
