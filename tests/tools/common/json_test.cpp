#include "tools/common/json.h"

#include <array>

#include <gtest/gtest.h>

namespace tavio::command_line {
namespace {

TEST(Json, TextsAreQuotedAndEscaped) {
    EXPECT_EQ(jsonText(""), R"("")");
    EXPECT_EQ(jsonText("plain"), R"("plain")");
    EXPECT_EQ(jsonText("a\"b\\c"), R"("a\"b\\c")");
    EXPECT_EQ(jsonText(std::string_view("\0\n\x1F\x7F", 4)), R"("\u0000\u000a\u001f\u007f")");
}

TEST(Json, TextsCannotEndAScriptOrBeginAnElement) {
    EXPECT_EQ(jsonText("</script>&"), R"("\u003c/script\u003e\u0026")");
}

TEST(Json, WhatIsUtf8Stays) {
    EXPECT_EQ(jsonText("\u00D7 \u20AC \U0001F600"), "\"\u00D7 \u20AC \U0001F600\"");
    EXPECT_EQ(jsonText("\xED\x9F\xBF\xEE\x80\x80\xF4\x8F\xBF\xBF"),
              "\"\xED\x9F\xBF\xEE\x80\x80\xF4\x8F\xBF\xBF\"");
}

TEST(Json, WhatIsNotUtf8IsReplacedByteByByte) {
    const std::string bad = "\xEF\xBF\xBD";
    EXPECT_EQ(jsonText("a\xFFz"), '"' + std::string("a") + bad + "z\"");
    EXPECT_EQ(jsonText("\xC3"), '"' + bad + '"');                                // cut short
    EXPECT_EQ(jsonText("\xC1\x81"), '"' + bad + bad + '"');                      // too long a form
    EXPECT_EQ(jsonText("\xE0\x9F\xBF"), '"' + bad + bad + bad + '"');            // too long a form
    EXPECT_EQ(jsonText("\xED\xA0\x80"), '"' + bad + bad + bad + '"');            // half a pair
    EXPECT_EQ(jsonText("\xF4\x90\x80\x80"), '"' + bad + bad + bad + bad + '"');  // past the last
    EXPECT_EQ(jsonText("\xF0\x8F\x80\x80"), '"' + bad + bad + bad + bad + '"');
    EXPECT_EQ(jsonText("\xE2\x82z"), '"' + bad + bad + "z\"");
}

TEST(Json, ObjectsAndArraysAreSeparatedByCommas) {
    EXPECT_EQ(JsonObject().str(), "{}");
    EXPECT_EQ(JsonObject().number("a", -1).flag("b", true).flag("c", false).text("d", "x").str(),
              R"({"a":-1,"b":true,"c":false,"d":"x"})");
    EXPECT_EQ(JsonObject().json("list", jsonArray({})).str(), R"({"list":[]})");
    const std::array<std::string, 2> values{"1", "{}"};
    EXPECT_EQ(jsonArray(values), "[1,{}]");
}

TEST(Json, NumbersOf64BitsAreWholeNumbers) {
    EXPECT_EQ(JsonObject().number("n", UINT64_MAX).str(), R"({"n":18446744073709551615})");
}

}  // namespace
}  // namespace tavio::command_line
