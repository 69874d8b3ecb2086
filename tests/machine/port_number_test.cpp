#include "TavioIpadSDK/machine/port_number.h"

#include <gtest/gtest.h>

namespace tavio::machine {
namespace {

TEST(PortNumber, IsADecimalNumberOf16Bits) {
    EXPECT_EQ(parsePort("0"), 0);
    EXPECT_EQ(parsePort("9100"), 9100);
    EXPECT_EQ(parsePort("65535"), 65535);
    EXPECT_EQ(parsePort("00080"), 80);
}

TEST(PortNumber, IsNothingElse) {
    for (const char* text :
         {"", "65536", "99999999999999999999", "-1", "+1", " 1", "1 ", "0x10", "1a", ":80"}) {
        EXPECT_EQ(parsePort(text), std::nullopt) << text;
    }
}

}  // namespace
}  // namespace tavio::machine
