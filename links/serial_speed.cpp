#include "tavio/links/serial_speed.h"

#include <array>

namespace tavio::links {

namespace {

struct Speed {
    std::uint32_t baud;
    speed_t code;
};

constexpr std::array<Speed, 22> kSpeeds{{
    {1'200, B1200},        {1'800, B1800},        {2'400, B2400},        {4'800, B4800},
    {9'600, B9600},        {19'200, B19200},      {38'400, B38400},      {57'600, B57600},
    {115'200, B115200},    {230'400, B230400},    {460'800, B460800},    {500'000, B500000},
    {576'000, B576000},    {921'600, B921600},    {1'000'000, B1000000}, {1'152'000, B1152000},
    {1'500'000, B1500000}, {2'000'000, B2000000}, {2'500'000, B2500000}, {3'000'000, B3000000},
    {3'500'000, B3500000}, {4'000'000, B4000000},
}};

}  // namespace

std::optional<speed_t> speedOf(std::uint32_t baud) {
    for (const Speed& speed : kSpeeds) {
        if (speed.baud == baud) return speed.code;
    }
    return std::nullopt;
}

std::optional<std::uint32_t> baudOf(speed_t speed) {
    for (const Speed& known : kSpeeds) {
        if (known.code == speed) return known.baud;
    }
    return std::nullopt;
}

}  // namespace tavio::links
