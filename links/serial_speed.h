// Speeds of serial devices.
#pragma once

#include <cstdint>
#include <optional>
#include <termios.h>

namespace tavio::links {

// What termios calls the speed of so many bits per second; none for a speed that is not one of the
// usual ones from 1200 to 4000000.
std::optional<speed_t> speedOf(std::uint32_t baud);

// The other way round; none for a speed that is not one of those.
std::optional<std::uint32_t> baudOf(speed_t speed);

}  // namespace tavio::links
