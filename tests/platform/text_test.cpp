#include "TavioIpadSDK/platform/text.h"

#include <string>

#include <gtest/gtest.h>

#include "support/bitmaps.h"

namespace tavio::platform {
namespace {

using test::bytesOf;
using test::readable;

Text decoded(std::string_view bytes) {
    return decodeUtf8(bytesOf(bytes));
}

// The UTF-8 form of any number up to 1FFFFF, well-formed or not, in `length` bytes.
std::string encoded(UInt32 codePoint, int length) {
    if (length == 1) return {static_cast<char>(codePoint)};
    std::string bytes;
    for (int i = 1; i < length; ++i) {
        bytes.insert(bytes.begin(), static_cast<char>(0x80 | (codePoint & 0x3F)));
        codePoint >>= 6;
    }
    const unsigned lead = (0xF00U >> length) & 0xFFU;
    return static_cast<char>(lead | codePoint) + bytes;
}

int shortestLength(UInt32 codePoint) {
    return codePoint < 0x80 ? 1 : codePoint < 0x800 ? 2 : codePoint < 0x10000 ? 3 : 4;
}

// ---- decodeUtf8 ---------------------------------------------------------------------------------

TEST(DecodeUtf8, GivesTheEmptyTextForNoBytes) {
    EXPECT_EQ(decodeUtf8({}), Text(""));
}

TEST(DecodeUtf8, AcceptsEveryCharacterInItsShortestFormButSurrogates) {
    for (UInt32 codePoint = 0; codePoint <= 0x10FFFF; ++codePoint) {
        const std::string bytes = encoded(codePoint, shortestLength(codePoint));
        const bool isSurrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
        ASSERT_EQ(decoded(bytes), isSurrogate ? std::nullopt : Text(bytes)) << codePoint;
    }
}

TEST(DecodeUtf8, RefusesEveryOverlongForm) {
    for (UInt32 codePoint = 0; codePoint < 0x10000; ++codePoint) {
        for (int length = shortestLength(codePoint) + 1; length <= 4; ++length)
            ASSERT_EQ(decoded(encoded(codePoint, length)), std::nullopt) << codePoint;
    }
}

TEST(DecodeUtf8, RefusesWhatLiesAboveTheLastCharacter) {
    EXPECT_TRUE(decoded("\xF4\x8F\xBF\xBF"));
    EXPECT_EQ(decoded("\xF4\x90\x80\x80"), std::nullopt);
    for (UInt32 codePoint = 0x110000; codePoint < 0x200000; codePoint += 0x3FF)
        ASSERT_EQ(decoded(encoded(codePoint, 4)), std::nullopt) << codePoint;
}

TEST(DecodeUtf8, RefusesBytesThatNeverOccur) {
    for (const char* bytes : {"\xC0\x80", "\xC1\xBF", "\xF5\x80\x80\x80", "\xF8\x88\x80\x80\x80",
                              "\xFC\x84\x80\x80\x80\x80", "\xFE", "\xFF"})
        EXPECT_EQ(decoded(bytes), std::nullopt) << readable(bytes);
}

TEST(DecodeUtf8, RefusesACharacterCutShortAtTheEndOrInTheMiddle) {
    for (const std::string whole : {"\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x98\x80"}) {
        for (std::size_t length = 1; length < whole.size(); ++length) {
            const std::string cut = whole.substr(0, length);
            EXPECT_EQ(decoded(cut), std::nullopt) << readable(cut);
            EXPECT_EQ(decoded("a" + cut + "b"), std::nullopt) << readable(cut);
            EXPECT_EQ(decoded(cut + whole), std::nullopt) << readable(cut);
        }
    }
}

TEST(DecodeUtf8, RefusesAContinuationWithoutALead) {
    for (const char* bytes : {"\x80", "\xBF", "a\x80", "\xC3\xA9\xA9", "\xE2\x82\xAC\x80"})
        EXPECT_EQ(decoded(bytes), std::nullopt) << readable(bytes);
}

TEST(DecodeUtf8, RefusesAWholeTextForOneBadByte) {
    const std::string good(100000, 'x');
    EXPECT_EQ(decoded(good), Text(good));
    EXPECT_EQ(decoded(good + "\xFF" + good), std::nullopt);
    EXPECT_EQ(decoded(good + "\xE9"), std::nullopt);
}

TEST(DecodeUtf8, KeepsAByteOrderMarkNulsAndNonCharacters) {
    const std::string text(
        "\xEF\xBB\xBF"
        "a\0b\xEF\xBF\xBF",
        9);
    EXPECT_EQ(decoded(text), Text(text));
}

// ---- lowBytesOfUtf16 ----------------------------------------------------------------------------

TEST(LowBytesOfUtf16, AreTheTextItselfWhereItIsAscii) {
    std::string ascii;
    for (char c = 0; c < 0x7F; ++c) ascii += c;
    EXPECT_EQ(lowBytesOfUtf16(ascii), bytesOf(ascii));
    EXPECT_EQ(lowBytesOfUtf16(""), Bytes());
}

TEST(LowBytesOfUtf16, AreOneForACharacterOfTheBasicPlane) {
    EXPECT_EQ(lowBytesOfUtf16("\xC3\xA9"), Bytes{0xE9});      // U+00E9
    EXPECT_EQ(lowBytesOfUtf16("\xE2\x82\xAC"), Bytes{0xAC});  // U+20AC
    EXPECT_EQ(lowBytesOfUtf16("\xEF\xBF\xBF"), Bytes{0xFF});  // U+FFFF
    EXPECT_EQ(lowBytesOfUtf16("\xC4\x80"), Bytes{0x00});      // U+0100
    EXPECT_EQ(lowBytesOfUtf16("\xEF\xBB\xBF"), Bytes{0xFF});  // U+FEFF
    EXPECT_EQ(lowBytesOfUtf16("a\xC3\xA9z"), (Bytes{'a', 0xE9, 'z'}));
}

TEST(LowBytesOfUtf16, AreTwoForACharacterAboveIt) {
    EXPECT_EQ(lowBytesOfUtf16("\xF0\x90\x80\x80"), (Bytes{0x00, 0x00}));  // D800 DC00
    EXPECT_EQ(lowBytesOfUtf16("\xF0\x9F\x98\x80"), (Bytes{0x3D, 0x00}));  // U+1F600: D83D DE00
    EXPECT_EQ(lowBytesOfUtf16("\xF4\x8F\xBF\xBF"), (Bytes{0xFF, 0xFF}));  // DBFF DFFF
}

TEST(LowBytesOfUtf16, AreTheBytesThemselvesWhereTheTextIsNotWellFormed) {
    EXPECT_EQ(lowBytesOfUtf16("\xE9"), Bytes{0xE9});
    EXPECT_EQ(lowBytesOfUtf16("\x80z"), (Bytes{0x80, 'z'}));
    EXPECT_EQ(lowBytesOfUtf16("\xC3"), Bytes{0xC3});
    EXPECT_EQ(lowBytesOfUtf16("\xE2\x82"), (Bytes{0xE2, 0x82}));
    EXPECT_EQ(lowBytesOfUtf16("\xED\xA0\x80"), (Bytes{0xED, 0xA0, 0x80}));
    EXPECT_EQ(lowBytesOfUtf16("\xE2\xC3\xA9"), (Bytes{0xE2, 0xE9}));
}

}  // namespace
}  // namespace tavio::platform
