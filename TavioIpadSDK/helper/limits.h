// The limits of a helper program.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>

namespace tavio::helper {

struct Limits {
    std::chrono::seconds cpu{10};
    std::chrono::milliseconds wall{15000};
    std::uint64_t memoryBytes = std::uint64_t{1} << 30;  // address space
};

// The time limits as the system can hold them: it counts processor time in whole seconds.
inline Limits clamped(Limits limits) {
    using std::chrono::hours;
    using std::chrono::milliseconds;
    using std::chrono::seconds;
    limits.cpu = std::clamp<seconds>(limits.cpu, seconds(1), hours(24));
    limits.wall = std::clamp<milliseconds>(limits.wall, milliseconds(0), hours(24));
    return limits;
}

}  // namespace tavio::helper
