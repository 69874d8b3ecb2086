#include "tavio/virtual-printer/decode_listing.h"

#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "virtual-printer/test_streams.h"

namespace tavio::virtual_printer::testing {
namespace {

std::string listing(const Stream& bytes) {
    std::ostringstream out;
    DecodeListing listing(out);
    listing.feed(bytes);
    listing.finish();
    return out.str();
}

TEST(DecodeListing, ShowsEachCommandWithItsOffsetAndMeaning) {
    EXPECT_EQ(listing(stream("<P1><LM><RE0><DI><RC10,20><G8>",
                             Stream{0xFF, 0xFF, 0xFF, 0xFF, 0x80, 0x80, 0x80, 0x80}, "Row A\r\n",
                             "<PM><SP1,-2><LD3><7>\x1B<G1>\x01\x1B\x1B", "c<q><p>")),
              "0000000  <P1>  path 1\n"
              "0000004  <LM>  landscape\n"
              "0000008  <RE0>  set-up, not visible\n"
              "0000013  <DI>  set-up, not visible\n"
              "0000017  <RC10,20>  position: row 10, column 20\n"
              "0000026  <G8>  graphics: 8 columns, 36 dots\n"
              "0000038  text: \"Row A\\r\\n\"\n"
              "0000045  <PM>  portrait\n"
              "0000049  <SP1,-2>  place of logos: row 1, column -2\n"
              "0000057  <LD3>  print logo 3\n"
              "0000062  <7>\\x1B  begin to store logo 7\n"
              "0000066  <G1>  graphics: 1 column, 1 dot\n"
              "0000071  \\x1B  end of the logo\n"
              "0000072  \\x1Bc  clear the memory\n"
              "0000074  <q>  eject without a cut\n"
              "0000077  <p>  cut\n");
}

TEST(DecodeListing, EndsWithTheProblems) {
    EXPECT_EQ(listing(stream("<X\"\xFF>a\t\\\"\x01<G40>", Stream(12, 0x03))),
              "0000000  <X\\\"\\xFF>  unknown command\n"
              "0000005  text: \"a\\t\\\\\\\"\\x01\"\n"
              "0000010  <G40>  graphics: 12 columns, 24 dots\n"
              "problems: 2\n"
              "0000000  unknown command \"<X\\\"\\xFF>\"\n"
              "0000010  graphics cut short: 12 of 40 bytes\n");
}

TEST(DecodeListing, IsEmptyForAnEmptyStream) {
    EXPECT_EQ(listing({}), "");
}

TEST(DecodeListing, WritesACommandAsSoonAsItIsComplete) {
    std::ostringstream out;
    DecodeListing listing(out);
    listing.feed(stream("<P1"));
    EXPECT_EQ(out.str(), "");
    listing.feed(stream(">"));
    EXPECT_EQ(out.str(), "0000000  <P1>  path 1\n");
}

TEST(DecodeListing, CountsTheProblemsItDoesNotShow) {
    std::ostringstream out;
    DecodeListing listing(out);
    for (int i = 0; i < 1001; ++i) listing.feed(stream("<X>"));
    listing.finish();
    EXPECT_EQ(listing.problems().count(), 1001U);
    EXPECT_TRUE(out.str().ends_with("0002997  unknown command \"<X>\"\nand 1 more\n"));
}

}  // namespace
}  // namespace tavio::virtual_printer::testing
