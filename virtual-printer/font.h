// A plain face of 5 by 7 dots for the text between commands.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace tavio::virtual_printer {

inline constexpr int kGlyphColumns = 5;
inline constexpr int kGlyphRows = 7;

// From one character to the next, and from one line to the next, in dots of the face.
inline constexpr int kGlyphAdvance = 6;
inline constexpr int kLineAdvance = 9;

// Row by row from the top; bit 4 is the leftmost dot, bit 0 the rightmost.
using Glyph = std::array<std::uint8_t, kGlyphRows>;

// U+0020 to U+007E; a hollow box for everything else.
const Glyph& glyphOf(char32_t character);

struct DecodedCharacter {
    char32_t character = 0;  // U+FFFD for a byte that is not UTF-8
    std::size_t length = 0;  // bytes taken, 1 to 4
};

// The first character of UTF-8 text, which must not be empty. A byte that begins no well-formed
// character is taken alone.
DecodedCharacter decodeCharacter(std::span<const std::uint8_t> text);

}  // namespace tavio::virtual_printer
