#include "tavio/virtual-printer/font.h"

#include <algorithm>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace tavio::virtual_printer {
namespace {

std::string picture(const Glyph& glyph) {
    std::string text;
    for (const std::uint8_t row : glyph) {
        for (int bit = kGlyphColumns - 1; bit >= 0; --bit) text += ((row >> bit) & 1) ? 'X' : ' ';
        text += '\n';
    }
    return text;
}

DecodedCharacter decode(std::string_view bytes) {
    return decodeCharacter({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
}

TEST(Font, DrawsEachPrintableCharacterDifferently) {
    std::set<Glyph> seen;
    for (char32_t c = U' '; c <= U'~'; ++c) {
        EXPECT_TRUE(seen.insert(glyphOf(c)).second) << "U+" << std::hex << +c;
        const bool blank = glyphOf(c) == Glyph{};
        EXPECT_EQ(blank, c == U' ') << "U+" << std::hex << +c;
    }
    EXPECT_FALSE(seen.contains(glyphOf(0xFFFD)));
}

TEST(Font, DrawsTheLettersItIsAskedFor) {
    EXPECT_EQ(picture(glyphOf(U'E')),
              "XXXXX\n"
              "X    \n"
              "X    \n"
              "XXXX \n"
              "X    \n"
              "X    \n"
              "XXXXX\n");
    EXPECT_EQ(picture(glyphOf(U'~')),
              "     \n"
              "     \n"
              " X   \n"
              "X X X\n"
              "   X \n"
              "     \n"
              "     \n");
}

TEST(Font, DrawsAHollowBoxForTheRest) {
    for (const char32_t c : {U'\t', char32_t{0x1F}, char32_t{0x7F}, char32_t{0xE9},
                             char32_t{0x20AC}, char32_t{0x10FFFF}, char32_t{0xFFFFFFFF}}) {
        EXPECT_EQ(picture(glyphOf(c)), "XXXXX\nX   X\nX   X\nX   X\nX   X\nX   X\nXXXXX\n");
    }
}

TEST(Utf8, DecodesCharactersOfEachLength) {
    const struct {
        const char* bytes;
        char32_t character;
        std::size_t length;
    } kCases[] = {{"A", U'A', 1},
                  {"\x7F", 0x7F, 1},
                  {"\xC2\x80", 0x80, 2},
                  {"\xC3\xA9z", 0xE9, 2},
                  {"\xDF\xBF", 0x7FF, 2},
                  {"\xE0\xA0\x80", 0x800, 3},
                  {"\xE2\x82\xAC", 0x20AC, 3},
                  {"\xEF\xBF\xBF", 0xFFFF, 3},
                  {"\xF0\x90\x80\x80", 0x10000, 4},
                  {"\xF4\x8F\xBF\xBF", 0x10FFFF, 4}};
    for (const auto& one : kCases) {
        EXPECT_EQ(decode(one.bytes).character, one.character);
        EXPECT_EQ(decode(one.bytes).length, one.length);
    }
}

TEST(Utf8, TakesIllFormedBytesOneByOne) {
    for (const std::string_view bytes :
         {"\x80", "\xBF", "\xC0\x80", "\xC1\xBF", "\xC3", "\xC3z", "\xE0\x80\x80", "\xE2\x82",
          "\xE2\x82z", "\xED\xA0\x80", "\xF0\x80\x80\x80", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80",
          "\xFF"}) {
        EXPECT_EQ(decode(bytes).character, char32_t{0xFFFD});
        EXPECT_EQ(decode(bytes).length, 1U);
    }
}

}  // namespace
}  // namespace tavio::virtual_printer
