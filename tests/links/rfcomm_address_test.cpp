#include "tavio/links/rfcomm_address.h"

#include <cstring>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tavio/links/rfcomm_socket.h"

namespace tavio::links {
namespace {

const std::array<std::uint8_t, 6> kDevice{0x00, 0x1A, 0x7D, 0xDA, 0x71, 0xF3};

TEST(RfcommAddress, IsReadWithAndWithoutAChannel) {
    const std::vector<std::pair<std::string, RfcommAddress>> table{
        {"00:1A:7D:DA:71:F3", {kDevice, 1}},
        {"00:1a:7d:da:71:f3", {kDevice, 1}},
        {"00:1A:7d:DA:71:f3/1", {kDevice, 1}},
        {"00:1A:7D:DA:71:F3/9", {kDevice, 9}},
        {"00:1A:7D:DA:71:F3/30", {kDevice, 30}},
        {"FF:FF:FF:FF:FF:FE", {{0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFE}, 1}},
        {"00:00:00:00:00:01/2", {{0, 0, 0, 0, 0, 1}, 2}},
    };
    for (const auto& [text, address] : table) EXPECT_EQ(parseRfcommAddress(text), address) << text;
}

TEST(RfcommAddress, IsNothingElse) {
    using namespace std::string_literals;
    const std::string device = "00:1A:7D:DA:71:F3";
    const std::vector<std::string> table{
        "",
        "/",
        "/1",
        ":",
        "printer",
        "192.168.1.50:9100",
        "00:1A:7D:DA:71",
        "00:1A:7D:DA:71:F",
        "00:1A:7D:DA:71:F3:",
        "00:1A:7D:DA:71:F3:00",
        "00:1A:7D:DA:71:G3",
        "0:1A:7D:DA:71:F3:",
        "001A7DDA71F3",
        "00-1A-7D-DA-71-F3",
        "00:1A:7D:DA:71-F3",
        "00:1A:7D:DA:71:-3",
        "00:1A:7D:DA:71: 3",
        "00:1A:7D:DA:71:+3",
        "0x:1A:7D:DA:71:F3",
        " " + device,
        device + " ",
        device + "/",
        device + "/0",
        device + "/31",
        device + "/255",
        device + "/256",
        device + "/257",
        device + "/4294967297",
        device + "/99999999999999999999",
        device + "/-1",
        device + "/+1",
        device + "/ 1",
        device + "/1 ",
        device + "/1/",
        device + "/A",
        device + "/1\0"s,
        device + "\0"s,
        device + "//1",
        device + "1",
        device + ":1",
        "00:00:00:00:00:00",
        "FF:FF:FF:FF:FF:FF",
        "ff:ff:ff:ff:ff:ff/3",
        "00:00:00:00:00:00/1",
    };
    for (const auto& text : table) EXPECT_EQ(parseRfcommAddress(text), std::nullopt) << text;
}

TEST(RfcommAddress, IsWrittenAsItIsRead) {
    EXPECT_EQ(toText({kDevice, 1}), "00:1A:7D:DA:71:F3/1");
    EXPECT_EQ(toText({kDevice, 30}), "00:1A:7D:DA:71:F3/30");
    for (unsigned channel = 1; channel <= 30; ++channel) {
        const RfcommAddress address{kDevice, static_cast<std::uint8_t>(channel)};
        EXPECT_EQ(parseRfcommAddress(toText(address)), address);
    }
}

// The bytes that the kernel reads.
TEST(RfcommAddress, GoesToTheKernelBackwards) {
    const auto address = toSocketAddress({kDevice, 30});
    std::array<std::uint8_t, 10> bytes{};
    static_assert(sizeof bytes == sizeof address);
    std::memcpy(bytes.data(), &address, sizeof address);
    const std::uint16_t family = 31;
    std::array<std::uint8_t, 10> expected{0, 0, 0xF3, 0x71, 0xDA, 0x7D, 0x1A, 0x00, 30, 0};
    std::memcpy(expected.data(), &family, sizeof family);
    EXPECT_EQ(bytes, expected);
}

}  // namespace
}  // namespace tavio::links
