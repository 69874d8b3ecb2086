// The settings of a command line, a script line or a named printer.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "tavio/printing/ticket.h"

namespace tavio::tool {

// Those that were given.
struct Settings {
    std::optional<std::string> path;
    std::optional<std::int32_t> resolution;  // 200, 300 or 600 dots per inch
    std::optional<bool> scaled;
    std::optional<bool> threshold;  // else dithered
    std::optional<printing::Stock> stock;
    std::optional<printing::Orientation> orientation;

    bool operator==(const Settings&) const = default;

    // These, and for each that was not given the one below.
    Settings over(const Settings& below) const;
};

// What was not given is as the library has it.
printing::TicketSettings ticketSettings(const Settings& settings);
printing::DrawOptions drawOptions(const Settings& settings, std::int32_t page = 1);

}  // namespace tavio::tool
