// Texts that people write: names with everything in them.

#include <gtest/gtest.h>

#include "tools/tavio/process.h"

namespace tavio::test {
namespace {

using Texts = ToolTest;

TEST_F(Texts, ArePrintedAtTheirPlace) {
    EXPECT_EQ(bytesOf({"text", "Row F, seat 12", "--row", "100", "--column", "50"}),
              "<P1><LM><RE0><DI><RC100,50>Row F, seat 12");
    EXPECT_EQ(bytesOf({"text", "a > b & c \"d\" \\ ~"}),
              "<P1><LM><RE0><DI><RC0,0>a > b & c \"d\" \\ ~");
}

TEST_F(Texts, NeverSendACommand) {
    for (const auto& [text, letter] :
         {std::pair<std::string, std::string>{"Jos\xC3\xA9", "\"\xC3\xA9\" (U+00E9)"},
          {"<VIP>", "\"<\" (U+003C)"},
          {"Ann <p> Lee", "\"<\" (U+003C)"},
          {"\x1B"
           "c",
           "U+001B"},
          {"tab\there", "U+0009"},
          {"\xC2\x9B"
           "2J",
           "U+009B"},
          {"party \xF0\x9F\x8E\x89", "\"\xF0\x9F\x8E\x89\" (U+1F389)"},
          {"\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D", "\"\xD7\xA9\" (U+05E9)"},
          {"a\xE2\x80\xAE"
           "b",
           "U+202E"}}) {
        SCOPED_TRACE(text);
        const Ran ran = tavio({"text", text, "--printer-face", "--json"});
        EXPECT_EQ(ran.status, 1);
        EXPECT_NE(ran.err.find(letter), std::string::npos) << ran.err;
        EXPECT_NE(ran.out.find(R"("kind":"unprintable-letter")"), std::string::npos) << ran.out;
        EXPECT_TRUE(folder.names().empty());
    }
}

TEST_F(Texts, MustBeUtf8) {
    const Ran ran = tavio({"text", "caf\xE9", "--json"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_NE(ran.out.find(R"("kind":"not-utf-8")"), std::string::npos) << ran.out;
}

// What is sent on purpose stays as it is.
TEST_F(Texts, AreSentAsTheyAreBySend) {
    EXPECT_EQ(bytesOf({"send", "Jos\xC3\xA9<p>"}), "Jos\xC3\xA9<p>");
}

TEST_F(Texts, InNamesOfFilesCannotSteerTheTerminal) {
    const Ran ran = tavio({"print", "a\x1B[2J.png", "--json"});
    EXPECT_EQ(ran.err, "tavio: a\\x1B[2J.png does not exist\n");
    EXPECT_NE(ran.out.find(R"(a\u001b[2J.png)"), std::string::npos) << ran.out;
    EXPECT_EQ(tavio({"print", "\xFF.png", "--json"}).status, 1) << "and no broken JSON";
}

}  // namespace
}  // namespace tavio::test
