// The printer's commands for a monochrome bitmap file.
//
//   print := opening { stretch }
//   logo  := begin [ position ] { stretch } ESC      position: that of a band after the last one
//
//   opening := path orientation "<RE0><DI>"
//   begin   := "<RE0><DI><RC0,0><" number ">" ESC
//
// stretches.h shows the stretches.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "TavioIpadSDK/encoder/band_stream.h"
#include "TavioIpadSDK/encoder/bitmap_headers.h"
#include "TavioIpadSDK/encoder/runs.h"
#include "TavioIpadSDK/encoder/stream_bytes.h"

namespace tavio::encoder {

// The commands before the graphics of a print.
std::string openingCommands(std::string_view path, std::string_view orientation);

// The commands that begin to store a logo.
std::string beginLogo(std::string_view number);

// Prints a stored logo: "<SP" row "," column "><LD" number ">".
std::string printLogoCommands(std::int32_t number, std::int32_t row, std::int32_t column);

// file: accepted by judge() with the header `info` (bitmap_reader.h). lineMap: see writeStretches().
// Throws StreamTooLong past 2^31 - 1 bytes and std::bad_alloc.
StreamBytes encodePrint(std::span<const Byte> file, const InfoHeader& info,
                        const std::string& opening, const Placement& placement,
                        std::vector<LineParser>& lineMap);

// The bytes after beginLogo(). placement: of row 0, column 0.
StreamBytes encodeLogo(std::span<const Byte> file, const InfoHeader& info,
                       const Placement& placement, std::vector<LineParser>& lineMap);

}  // namespace tavio::encoder
