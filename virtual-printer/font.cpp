#include "tavio/virtual-printer/font.h"

#include <cassert>
#include <string_view>

namespace tavio::virtual_printer {
namespace {

constexpr std::size_t kGlyphsPerBlock = 12;
constexpr std::size_t kCellColumns = kGlyphColumns + 1;  // in the table below
constexpr std::size_t kGlyphCount = 96;                  // U+0020 to U+007E, and the box

// clang-format off
constexpr std::array<std::string_view, kGlyphCount / kGlyphsPerBlock * std::size_t{kGlyphRows}> kFace{
    // blank !     "     #     $     %     &     '     (     )     *     +
    "        X    X X   X X    X   XX     XX     X      X   X               ",
    "        X    X X   X X   XXXX XX  X X  X    X     X     X     X     X  ",
    "        X         XXXXX X X      X  X X          X       X  X X X   X  ",
    "        X          X X   XXX    X    X           X       X   XXX  XXXXX",
    "        X         XXXXX   X X  X    X X X        X       X  X X X   X  ",
    "                   X X  XXXX  X  XX X  X          X     X     X     X  ",
    "        X          X X    X      XX  XX X          X   X               ",
    // ,     -     .     /     0     1     2     3     4     5     6     7
    "                         XXX    X    XXX  XXXXX    X  XXXXX   XX  XXXXX",
    "                      X X   X  XX   X   X    X    XX  X      X        X",
    "                     X  X  XX   X       X   X    X X  XXXX  X        X ",
    "      XXXXX         X   X X X   X      X     X  X  X      X XXXX    X  ",
    "  XX               X    XX  X   X     X       X XXXXX     X X   X  X   ",
    "  X          XX   X     X   X   X    X    X   X    X  X   X X   X  X   ",
    " X           XX          XXX   XXX  XXXXX  XXX     X   XXX   XXX   X   ",
    // 8     9     :     ;     <     =     >     ?     @     A     B     C
    " XXX   XXX                 X         X     XXX   XXX   XXX  XXXX   XXX ",
    "X   X X   X  XX    XX     X           X   X   X X   X X   X X   X X   X",
    "X   X X   X  XX    XX    X    XXXXX    X      X X XXX X   X X   X X    ",
    " XXX   XXXX             X               X    X  X X X XXXXX XXXX  X    ",
    "X   X     X  XX    XX    X    XXXXX    X    X   X XXX X   X X   X X    ",
    "X   X    X   XX     X     X           X         X     X   X X   X X   X",
    " XXX   XX          X       X         X      X    XXXX X   X XXXX   XXX ",
    // D     E     F     G     H     I     J     K     L     M     N     O
    "XXX   XXXXX XXXXX  XXX  X   X  XXX    XXX X   X X     X   X X   X  XXX ",
    "X  X  X     X     X   X X   X   X      X  X  X  X     XX XX X   X X   X",
    "X   X X     X     X     X   X   X      X  X X   X     X X X XX  X X   X",
    "X   X XXXX  XXXX  X XXX XXXXX   X      X  XX    X     X X X X X X X   X",
    "X   X X     X     X   X X   X   X      X  X X   X     X   X X  XX X   X",
    "X  X  X     X     X   X X   X   X   X  X  X  X  X     X   X X   X X   X",
    "XXX   XXXXX X      XXXX X   X  XXX   XX   X   X XXXXX X   X X   X  XXX ",
    // P     Q     R     S     T     U     V     W     X     Y     Z     [
    "XXXX   XXX  XXXX   XXXX XXXXX X   X X   X X   X X   X X   X XXXXX  XXX ",
    "X   X X   X X   X X       X   X   X X   X X   X X   X X   X     X  X   ",
    "X   X X   X X   X X       X   X   X X   X X   X  X X  X   X    X   X   ",
    "XXXX  X   X XXXX   XXX    X   X   X X   X X X X   X    X X    X    X   ",
    "X     X X X X X       X   X   X   X X   X X X X  X X    X    X     X   ",
    "X     X  X  X  X      X   X   X   X  X X  XX XX X   X   X   X      X   ",
    "X      XX X X   X XXXX    X    XXX    X   X   X X   X   X   XXXXX  XXX ",
    // back  ]     ^     _     `     a     b     c     d     e     f     g
    "       XXX    X          X          X               X         XX       ",
    "X        X   X X          X         X               X        X  X      ",
    " X       X  X   X          X   XXX  XXXX   XXX   XXXX  XXX   X     XXXX",
    "  X      X                        X X   X X     X   X X   X XXX   X   X",
    "   X     X                     XXXX X   X X     X   X XXXXX  X     XXXX",
    "    X    X                    X   X X   X X   X X   X X      X        X",
    "       XXX        XXXXX        XXXX XXXX   XXX   XXXX  XXX   X     XXX ",
    // h     i     j     k     l     m     n     o     p     q     r     s
    "X       X      X  X      XX                                            ",
    "X                 X       X                                            ",
    "X XX   XX     XX  X  X    X   XX X  X XX   XXX  XXXX   XX X X XX   XXXX",
    "XX  X   X      X  X X     X   X X X XX  X X   X X   X X  XX XX  X X    ",
    "X   X   X      X  XX      X   X X X X   X X   X XXXX   XXXX X      XXX ",
    "X   X   X   X  X  X X     X   X   X X   X X   X X         X X         X",
    "X   X  XXX   XX   X  X   XXX  X   X X   X  XXX  X         X X     XXXX ",
    // t     u     v     w     x     y     z     {     |     }     ~     box
    " X                                           X    X    X          XXXXX",
    " X                                          X     X     X         X   X",
    "XXX   X   X X   X X   X X   X X   X XXXXX   X     X     X    X    X   X",
    " X    X   X X   X X   X  X X  X   X    X   X      X      X  X X X X   X",
    " X    X   X X   X X X X   X    XXXX   X     X     X     X      X  X   X",
    " X  X X  XX  X X  X X X  X X      X  X      X     X     X         X   X",
    "  XX   XX X   X    X X  X   X  XXX  XXXXX    X    X    X          XXXXX",
};
// clang-format on

constexpr Glyph cutOut(std::size_t index) {
    const std::size_t block = index / kGlyphsPerBlock;
    const std::size_t left = index % kGlyphsPerBlock * kCellColumns;
    Glyph glyph{};
    for (std::size_t row = 0; row < kGlyphRows; ++row) {
        for (std::size_t column = 0; column < kGlyphColumns; ++column) {
            const bool black = kFace[block * kGlyphRows + row][left + column] == 'X';
            glyph[row] = static_cast<std::uint8_t>((glyph[row] << 1) | (black ? 1 : 0));
        }
    }
    return glyph;
}

constexpr std::array<Glyph, kGlyphCount> cutOutAll() {
    std::array<Glyph, kGlyphCount> glyphs{};
    for (std::size_t i = 0; i < kGlyphCount; ++i) glyphs[i] = cutOut(i);
    return glyphs;
}

constexpr std::array<Glyph, kGlyphCount> kGlyphs = cutOutAll();

constexpr char32_t kReplacement = 0xFFFD;

// The character's length by its first byte, 0 if no character begins with it.
std::size_t lengthOf(std::uint8_t lead) {
    if (lead < 0x80) return 1;
    if (lead >= 0xC2 && lead < 0xE0) return 2;
    if (lead >= 0xE0 && lead < 0xF0) return 3;
    if (lead >= 0xF0 && lead < 0xF5) return 4;
    return 0;
}

bool isWellFormed(char32_t character, std::size_t length) {
    constexpr std::array<char32_t, 5> kMinCodePoint{0, 0, 0x80, 0x800, 0x10000};
    const bool surrogate = character >= 0xD800 && character <= 0xDFFF;
    return character >= kMinCodePoint[length] && character <= 0x10FFFF && !surrogate;
}

}  // namespace

const Glyph& glyphOf(char32_t character) {
    const bool known = character >= U' ' && character <= U'~';
    return kGlyphs[known ? character - U' ' : kGlyphCount - 1];
}

DecodedCharacter decodeCharacter(std::span<const std::uint8_t> text) {
    assert(!text.empty());
    constexpr DecodedCharacter kIllFormed{kReplacement, 1};
    const std::size_t length = lengthOf(text[0]);
    if (length == 1) return {text[0], 1};
    if (length == 0 || length > text.size()) return kIllFormed;

    // The first byte keeps 7 - length bits, each of the others 6.
    char32_t character = text[0] & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((text[i] & 0xC0U) != 0x80U) return kIllFormed;
        character = (character << 6U) | (text[i] & 0x3FU);
    }
    return isWellFormed(character, length) ? DecodedCharacter{character, length} : kIllFormed;
}

}  // namespace tavio::virtual_printer
