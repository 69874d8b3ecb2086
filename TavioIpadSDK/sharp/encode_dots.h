// Dots as the printer's graphics: each at its place, none lost, doubled or moved.
//
//   picture := opening { stretch }
//   logo    := opening "<RC0,0>" "<" number ">" ESC { stretch } ESC
//   stretch := position graphics            (encoder/command_text.h)
//
// A stretch is 8 rows high and begins at any row of the picture. Blank columns and rows are left out
// where that saves bytes.
#pragma once

#include <cstdint>
#include <string_view>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/sharp/dots.h"
#include "TavioIpadSDK/sharp/dots_place.h"

namespace tavio::sharp {

// True if commands can name the places of all the picture's dots: rows and columns from 0 to
// kMaxPosition.
bool canBePlaced(std::int32_t width, std::int32_t height, const DotsPlace& place);

// Appends the opening commands and the stretches. A picture without black dots has only the opening.
// The picture must be one that can be placed. Throws std::bad_alloc, and std::length_error above
// encoder::kMaxStreamBytes.
void appendPicture(const Dots& dots, const DotsPlace& place, std::string_view opening,
                   Bytes& bytes);

// Appends the commands that store the dots as a logo, all rows of them. place: relative to the place
// where the logo will be printed.
void appendLogo(const Dots& dots, const DotsPlace& place, std::string_view opening,
                std::int32_t number, Bytes& bytes);

}  // namespace tavio::sharp
