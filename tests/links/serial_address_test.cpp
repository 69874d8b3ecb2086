#include "tavio/links/serial_address.h"

#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tavio/links/serial_speed.h"

namespace tavio::links {
namespace {

TEST(SerialAddress, IsReadWithAndWithoutASpeed) {
    const std::vector<std::pair<std::string, SerialAddress>> table{
        {"/dev/rfcomm0", {"/dev/rfcomm0", std::nullopt}},
        {"/dev/ttyUSB0?baud=9600", {"/dev/ttyUSB0", 9600}},
        {"/dev/ttyS1?baud=1200", {"/dev/ttyS1", 1200}},
        {"tty?baud=4000000", {"tty", 4000000}},
        {"/dev/serial/by-id/usb-a b:c=d", {"/dev/serial/by-id/usb-a b:c=d", std::nullopt}},
    };
    for (const auto& [text, address] : table) EXPECT_EQ(parseSerialAddress(text), address) << text;
}

TEST(SerialAddress, IsNothingElse) {
    using namespace std::string_literals;
    const std::string device = "/dev/ttyUSB0";
    const std::vector<std::string> table{
        "",
        "?",
        "?baud=9600",
        device + "?",
        device + "??baud=9600",
        device + "?baud",
        device + "?baud=",
        device + "?baud=0",
        device + "?baud=9601",
        device + "?baud=600",
        device + "?baud=4000001",
        device + "?baud=4294976896",
        device + "?baud=-9600",
        device + "?baud=+9600",
        device + "?baud= 9600",
        device + "?baud=9600 ",
        device + "?baud=9600&x",
        device + "?baud=9600?baud=9600",
        device + "?Baud=9600",
        device + "?speed=9600",
        device + "?9600",
        device + "?baud=9k6",
        device + "?baud=0x2580",
        "/dev/tty\0USB0"s,
        "\0"s,
        device + "?baud=9600\0"s,
    };
    for (const auto& text : table) EXPECT_EQ(parseSerialAddress(text), std::nullopt) << text;
}

TEST(SerialAddress, IsWrittenAsItIsRead) {
    for (const std::string text : {"/dev/rfcomm0", "/dev/ttyUSB0?baud=115200"}) {
        const auto address = parseSerialAddress(text);
        ASSERT_TRUE(address);
        EXPECT_EQ(toText(*address), text);
    }
}

TEST(SerialSpeed, HasACodeOfItsOwnForEachUsualSpeed) {
    const std::vector<std::pair<std::uint32_t, speed_t>> table{
        {1200, B1200},       {1800, B1800},       {2400, B2400},       {4800, B4800},
        {9600, B9600},       {19200, B19200},     {38400, B38400},     {57600, B57600},
        {115200, B115200},   {230400, B230400},   {460800, B460800},   {500000, B500000},
        {576000, B576000},   {921600, B921600},   {1000000, B1000000}, {1152000, B1152000},
        {1500000, B1500000}, {2000000, B2000000}, {2500000, B2500000}, {3000000, B3000000},
        {3500000, B3500000}, {4000000, B4000000},
    };
    for (const auto& [baud, code] : table) {
        EXPECT_EQ(speedOf(baud), code) << baud;
        EXPECT_EQ(baudOf(code), baud) << baud;
    }
}

TEST(SerialSpeed, IsNoneForOthers) {
    for (std::uint32_t baud : {0U, 1U, 50U, 1199U, 9601U, 4000001U, 0xFFFFFFFFU}) {
        EXPECT_EQ(speedOf(baud), std::nullopt) << baud;
    }
    EXPECT_EQ(baudOf(B0), std::nullopt);
    EXPECT_EQ(baudOf(B300), std::nullopt);
}

}  // namespace
}  // namespace tavio::links
