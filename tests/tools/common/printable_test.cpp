#include "tools/common/printable.h"

#include <gtest/gtest.h>

namespace tavio::command_line {
namespace {

TEST(Printable, ShowsControlCharacters) {
    EXPECT_EQ(printable(std::string("a\x1B[2J\n\0\x7F", 8)), "a\\x1B[2J\\x0A\\x00\\x7F");
    EXPECT_EQ(printable("caf\xC3\xA9 \\"), "caf\xC3\xA9 \\");
}

// U+009B begins a control sequence as ESC [ does.
TEST(Printable, ShowsControlCharactersOfTwoBytes) {
    EXPECT_EQ(printable("a\xC2\x9B"
                        "2J"),
              "a\\xC2\\x9B2J");
    EXPECT_EQ(printable("\xC2\x80\xC2\x9F"), "\\xC2\\x80\\xC2\\x9F");
    EXPECT_EQ(printable("\xC2\xA0\xC2\xBF"), "\xC2\xA0\xC2\xBF") << "printing characters";
    EXPECT_EQ(printable("\xC3\x9B\xE2\x82\x9B"), "\xC3\x9B\xE2\x82\x9B");
    EXPECT_EQ(printable("\xC2"), "\xC2") << "cut short";
}

}  // namespace
}  // namespace tavio::command_line
