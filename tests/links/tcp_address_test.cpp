#include "tavio/links/tcp_address.h"

#include <vector>

#include <gtest/gtest.h>

namespace tavio::links {
namespace {

struct Written {
    const char* text;
    const char* host;
    std::uint16_t port;
    const char* asText;
};

TEST(TcpAddress, IsReadInAllItsForms) {
    const std::vector<Written> table = {
        {"printer", "printer", 9100, "printer:9100"},
        {"192.168.1.50", "192.168.1.50", 9100, "192.168.1.50:9100"},
        {"192.168.1.50:9101", "192.168.1.50", 9101, "192.168.1.50:9101"},
        {"till-3.shop.example:1", "till-3.shop.example", 1, "till-3.shop.example:1"},
        {"a_b:65535", "a_b", 65535, "a_b:65535"},
        {"printer:00080", "printer", 80, "printer:80"},
        {"\xC3\xA9t\xC3\xA9:80", "\xC3\xA9t\xC3\xA9", 80, "\xC3\xA9t\xC3\xA9:80"},
        {"::1", "::1", 9100, "[::1]:9100"},
        {"fe80::1%wlan0", "fe80::1%wlan0", 9100, "[fe80::1%wlan0]:9100"},
        {"[::1]", "::1", 9100, "[::1]:9100"},
        {"[2001:db8::7]:515", "2001:db8::7", 515, "[2001:db8::7]:515"},
        {"[fe80::1%wlan0]:515", "fe80::1%wlan0", 515, "[fe80::1%wlan0]:515"},
        {"::ffff:1.2.3.4", "::ffff:1.2.3.4", 9100, "[::ffff:1.2.3.4]:9100"},
    };
    for (const Written& each : table) {
        SCOPED_TRACE(each.text);
        const auto address = parseTcpAddress(each.text);
        ASSERT_TRUE(address);
        EXPECT_EQ(address->host, each.host);
        EXPECT_EQ(address->port, each.port);
        EXPECT_EQ(toText(*address), each.asText);
        EXPECT_EQ(parseTcpAddress(toText(*address)), address);
    }
}

TEST(TcpAddress, IsRefusedOtherwise) {
    const std::vector<std::string> table = {
        "",
        " ",
        ":",
        ":9100",
        "printer:",
        "printer:0",
        "printer:65536",
        "printer:99999999999999999999",
        "printer:-1",
        "printer:+1",
        "printer: 1",
        "printer:1 ",
        "printer:0x10",
        "printer:9100:9100",
        "pri nter",
        "printer\n",
        "printer\t:9100",
        std::string("printer\0", 8),
        std::string("::1\0", 4),
        std::string("fe80::1%wlan0\0", 14),
        "printer/path",
        "tcp://printer",
        "user@printer",
        "print\x7F",
        "[]",
        "[]:9100",
        "[",
        "[::1",
        "[::1]9100",
        "[::1]:",
        "[::1]:0",
        "[::1]:65536",
        "[::1]x",
        "[printer]",
        "[printer]:9100",
        "[192.168.1.50]",
        "[[::1]]",
        "::1]",
        "fe80::1%",
        "[fe80::1% ]",
        "1:2:3",
        ":::1",
        std::string(256, 'a'),
        std::string(256, 'a') + ":9100",
    };
    for (const std::string& text : table) EXPECT_EQ(parseTcpAddress(text), std::nullopt) << text;
    EXPECT_TRUE(parseTcpAddress(std::string(255, 'a')));
}

}  // namespace
}  // namespace tavio::links
