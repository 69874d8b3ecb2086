// A run of a band's graphics bytes, as the line map lists it.
#pragma once

#include <cstddef>
#include <cstdint>

namespace tavio::encoder {

inline constexpr std::int32_t DATA = 1;     // every byte of the run prints
inline constexpr std::int32_t ZEROS = 0;    // every byte of the run is blank
inline constexpr std::int32_t NO_RUN = -1;  // an entry of the line map that is not used

struct LineParser {
    std::int32_t start = 0;            // index of its first byte in the band stream
    std::int32_t count = 0;            // its length in bytes, which are columns of dots
    std::int32_t block_type = NO_RUN;  // DATA, ZEROS or NO_RUN

    bool operator==(const LineParser&) const = default;
};

// A line map has this many entries, or more where a band has more runs.
inline constexpr std::size_t LINEMAPMAX = 2500;

}  // namespace tavio::encoder
