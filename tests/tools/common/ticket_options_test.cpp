#include "tools/common/ticket_options.h"

#include <string_view>

#include <gtest/gtest.h>

namespace tavio::command_line {
namespace {

TEST(Stocks, AreNamedByIndexOrName) {
    EXPECT_EQ(parseStock("0"), 0);
    EXPECT_EQ(parseStock("8"), 8);
    EXPECT_EQ(parseStock("Concert"), 0);
    EXPECT_EQ(parseStock("CINEMA"), 1);
    EXPECT_EQ(parseStock("creditcard"), 2);
    EXPECT_EQ(parseStock("receipt"), 3);
    for (std::string_view text : {"", "9", "-1", "00", "cine"}) {
        EXPECT_FALSE(parseStock(text).has_value()) << text;
    }
}

TEST(Stocks, AreOfferedInWords) {
    EXPECT_EQ(stockChoices(), "0 to 8, concert, cinema, creditcard or receipt");
}

TEST(Stocks, BecomeTheirIndexAsOptionValues) {
    std::string text = "Cinema";
    EXPECT_EQ(asStock(text), "");
    EXPECT_EQ(text, "1");
    text = "opera";
    EXPECT_EQ(asStock(text),
              "\"opera\" is no stock: give 0 to 8, concert, cinema, creditcard or receipt");
}

TEST(Resolutions, AreTheThreeThatPrintersHave) {
    for (std::string text : {"200", "300", "600"}) EXPECT_EQ(asResolution(text), "") << text;
    for (std::string text : {"", "203", "300dpi", "0300"}) {
        EXPECT_EQ(asResolution(text),
                  "\"" + text + "\" is none of the resolutions 200, 300 and 600");
    }
}

TEST(Orientations, AreTwo) {
    for (std::string text : {"landscape", "portrait"}) EXPECT_EQ(asOrientation(text), "") << text;
    for (std::string text : {"", "Portrait", "upright"}) {
        EXPECT_EQ(asOrientation(text),
                  "\"" + text + "\" is no orientation: give landscape or portrait");
    }
}

}  // namespace
}  // namespace tavio::command_line
