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
    std::optional<printing::Stock> stock;
    std::optional<printing::Orientation> orientation;

    // How pages and pictures are made into dots: see printing::DrawOptions.
    std::optional<bool> classic;
    std::optional<bool> scaled;  // Fit::kStretch, or Classic::scaled
    std::optional<printing::Fit> fit;
    std::optional<printing::Turn> turn;
    std::optional<printing::Align> align;
    std::optional<std::int32_t> margin;
    std::optional<printing::BlackAndWhite> blackAndWhite;
    std::optional<Byte> threshold;
    std::optional<double> brightness;
    std::optional<double> contrast;
    std::optional<double> gamma;
    std::optional<std::int32_t> dotGain;

    // The face of words: a family, or a file.
    std::optional<std::string> face;
    std::optional<std::string> font;

    bool operator==(const Settings&) const = default;

    // These, and for each that was not given the one below.
    Settings over(const Settings& below) const;
};

// What was not given is as the library has it.
printing::TicketSettings ticketSettings(const Settings& settings);
printing::DrawOptions drawOptions(const Settings& settings, std::int32_t page = 1);

}  // namespace tavio::tool
