// The targets of --to.
#include "tools/tavio/target.h"

#include <utility>
#include <variant>

#include <gtest/gtest.h>

namespace tavio::tool {
namespace {

template <typename Kind>
Kind targetOf(std::string_view text) {
    auto target = parseTarget(text);
    const Kind* kind = target ? std::get_if<Kind>(&*target) : nullptr;
    EXPECT_NE(kind, nullptr) << text;
    return kind != nullptr ? *kind : Kind{};
}

TEST(Target, IsAPictureOrAFile) {
    EXPECT_EQ(targetOf<PictureTarget>("ticket.png").path, "ticket.png");
    EXPECT_EQ(targetOf<PictureTarget>("a/b.PNG").path, "a/b.PNG");
    EXPECT_EQ(targetOf<FileTarget>("file:job.bin").path, "job.bin");
    EXPECT_EQ(targetOf<FileTarget>("file:ticket.png").path, "ticket.png");
    EXPECT_EQ(targetOf<FileTarget>("file:/dev/stdout").path, "/dev/stdout");
    EXPECT_EQ(targetOf<FileTarget>("file:tcp://x").path, "tcp://x");
}

TEST(Target, IsAPrinterOnANetwork) {
    using links::TcpAddress;
    EXPECT_EQ(targetOf<TcpAddress>("tcp://192.0.2.7"), (TcpAddress{"192.0.2.7", 9100}));
    EXPECT_EQ(targetOf<TcpAddress>("tcp://printer:515"), (TcpAddress{"printer", 515}));
    EXPECT_EQ(targetOf<TcpAddress>("tcp://[2001:db8::7]"), (TcpAddress{"2001:db8::7", 9100}));
    EXPECT_EQ(targetOf<TcpAddress>("tcp://[::1]:65535"), (TcpAddress{"::1", 65535}));
    EXPECT_EQ(targetOf<TcpAddress>("tcp://hall.png"), (TcpAddress{"hall.png", 9100}));
}

TEST(Target, IsABluetoothPrinter) {
    using links::RfcommAddress;
    const RfcommAddress first{{0x00, 0x11, 0x22, 0xAA, 0xBB, 0xCC}, 1};
    EXPECT_EQ(targetOf<RfcommAddress>("bt://00:11:22:AA:bb:CC"), first);
    EXPECT_EQ(targetOf<RfcommAddress>("bt://00:11:22:AA:BB:CC/30").channel, 30);
}

TEST(Target, IsASerialDevice) {
    using links::SerialAddress;
    EXPECT_EQ(targetOf<SerialAddress>("tty:/dev/rfcomm0"),
              (SerialAddress{"/dev/rfcomm0", std::nullopt}));
    EXPECT_EQ(targetOf<SerialAddress>("tty:/dev/ttyUSB0?baud=9600"),
              (SerialAddress{"/dev/ttyUSB0", 9600}));
}

TEST(Target, IsNothingElse) {
    for (std::string_view text : {"",
                                  "file:",
                                  "job.bin",
                                  "ticket.png ",
                                  "http://x",
                                  "file",
                                  "png",
                                  "TCP://x",
                                  "tcp:x",
                                  "tcp://",
                                  "tcp://:9100",
                                  "tcp://x:0",
                                  "tcp://x:65536",
                                  "tcp://x:",
                                  "tcp://x:80/",
                                  "tcp://[::1",
                                  "tcp://[]",
                                  "tcp://[::1]x",
                                  "tcp://a b",
                                  "bt://",
                                  "bt://00:11:22:33:44",
                                  "bt://00:11:22:33:44:55/0",
                                  "bt://00:11:22:33:44:55/31",
                                  "bt://00:11:22:33:44:55/",
                                  "bt://00:00:00:00:00:00",
                                  "bt://0:11:22:33:44:55",
                                  "tty:",
                                  "tty:?baud=9600",
                                  "tty:/dev/ttyS0?baud=9601",
                                  "tty:/dev/ttyS0?baud=",
                                  "tty:/dev/ttyS0?parity=even"}) {
        EXPECT_FALSE(parseTarget(text).has_value()) << text;
    }
}

TEST(Target, SaysWhatIsWantedInstead) {
    using Case = std::pair<std::string, std::string>;
    for (const auto& [text, wanted] :
         {Case{"job.bin",
               "a name ending in .png, or file:NAME, -, png:-, tcp://HOST, bt://ADDRESS or "
               "tty:DEVICE"},
          {"file:", "file:NAME"},
          {"tcp://x:0",
           "tcp://HOST or tcp://HOST:PORT with a port from 1 to 65535, an IPv6 address in "
           "brackets"},
          {"bt://x",
           "bt://AA:BB:CC:DD:EE:FF or bt://AA:BB:CC:DD:EE:FF/CHANNEL with a channel from 1 to 30"},
          {"tty:",
           "tty:DEVICE or tty:DEVICE?baud=RATE with one of the usual rates from 1200 to "
           "4000000"}}) {
        std::string sentence = "\"";
        sentence.append(text).append("\" is no place to print to: give ").append(wanted);
        EXPECT_EQ(whyNoTarget(text), sentence);
    }
}

TEST(Target, IsNamedInMessagesByItsAddress) {
    auto textOf = [](std::string_view text) { return toText(parseTarget(text).value()); };
    EXPECT_EQ(textOf("a/ticket.png"), "a/ticket.png");
    EXPECT_EQ(textOf("file:job.bin"), "job.bin");
    EXPECT_EQ(textOf("tcp://printer"), "printer:9100");
    EXPECT_EQ(textOf("tcp://[::1]:1"), "[::1]:1");
    EXPECT_EQ(textOf("bt://00:11:22:aa:bb:cc"), "00:11:22:AA:BB:CC/1");
    EXPECT_EQ(textOf("tty:/dev/ttyS0?baud=9600"), "/dev/ttyS0?baud=9600");
}

TEST(Target, ReplacesAFileOnlyWhereItIsOne) {
    auto replacedBy = [](std::string_view text) { return replacedFile(parseTarget(text).value()); };
    EXPECT_EQ(replacedBy("ticket.png"), "ticket.png");
    EXPECT_EQ(replacedBy("file:job.bin"), "job.bin");
    EXPECT_EQ(replacedBy("tcp://job.bin"), "");
    EXPECT_EQ(replacedBy("bt://00:11:22:33:44:55"), "");
    EXPECT_EQ(replacedBy("tty:/dev/ttyS0"), "");
}

TEST(Target, IsAPictureByItsLastLetters) {
    EXPECT_TRUE(isPictureName("a/ticket.png"));
    EXPECT_TRUE(isPictureName("TICKET.PNG"));
    for (std::string_view name : {"", "png", "ticket.jpg", "ticket.png ", "ticket.Png"}) {
        EXPECT_FALSE(isPictureName(name)) << name;
    }
}

}  // namespace
}  // namespace tavio::tool
