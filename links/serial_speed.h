// Speeds of serial devices.
#pragma once

#include <cstdint>
#include <optional>
#include <termios.h>

namespace tavio::links {

// The termios constant of a speed in bits per second; none if it is not a standard speed from 1200
// to 4000000.
std::optional<speed_t> speedOf(std::uint32_t baud);

// The reverse; none for another constant.
std::optional<std::uint32_t> baudOf(speed_t speed);

}  // namespace tavio::links
