// The command line of tavio-printer.
#include "tools/tavio-printer/options.h"

#include <gtest/gtest.h>

namespace tavio::virtual_printer::testing {
namespace {

std::variant<Options, int> parse(std::vector<const char*> arguments) {
    arguments.insert(arguments.begin(), "tavio-printer");
    return parseCommandLine(static_cast<int>(arguments.size()), arguments.data());
}

Options read(const std::vector<const char*>& arguments) {
    const auto parsed = parse(arguments);
    EXPECT_TRUE(std::holds_alternative<Options>(parsed)) << arguments.back();
    return std::holds_alternative<Options>(parsed) ? std::get<Options>(parsed) : Options{};
}

// The message about bad usage.
std::string refusal(const std::vector<const char*>& arguments) {
    ::testing::internal::CaptureStderr();
    const auto parsed = parse(arguments);
    const std::string said = ::testing::internal::GetCapturedStderr();
    const int* status = std::get_if<int>(&parsed);
    EXPECT_NE(status, nullptr) << arguments.back();
    if (status != nullptr) {
        EXPECT_EQ(*status, 2);
    }
    return said;
}

TEST(PrinterOptions, AreThoseOfAnOrdinaryPrinterIfNotGiven) {
    const Options options = read({});
    EXPECT_EQ(options.stock, 0);
    EXPECT_EQ(options.server.device.printer.size, (TicketSize{600, 1650, 300}));
    EXPECT_EQ(options.server.device.printer.orientation, Orientation::kLandscape);
    EXPECT_EQ(options.server.listen, (ListenAddress{"127.0.0.1", 9100}));
    EXPECT_EQ(options.page, (ListenAddress{"127.0.0.1", 9180}));
    EXPECT_EQ(options.server.tty, std::nullopt);
    EXPECT_EQ(options.server.device.reply.text, "");
    EXPECT_EQ(options.server.device.physics.receiveBuffer, 65536U);
    EXPECT_EQ(options.server.device.physics.bytesPerSecond, 0);
    EXPECT_EQ(options.store.folder, "");
    EXPECT_EQ(options.store.tickets, 200U);
    EXPECT_EQ(options.tickets, 0U);
    EXPECT_FALSE(options.quiet);
    EXPECT_FALSE(options.server.oneClient);
}

// The default values in the help are the real ones.
TEST(PrinterOptions, UsualValuesAreWhatTheHelpSays) {
    EXPECT_EQ(Physics{}.receiveBuffer, 65536U);
    EXPECT_EQ(PrintServerSettings{}.socketBuffer, 16384U);
    EXPECT_EQ(PrinterSettings{}.logoMemory, 16777216U);
    EXPECT_EQ(StoreLimits{}.tickets, 200U);
    EXPECT_EQ(StoreLimits{}.bytes, 268435456U);
}

TEST(PrinterOptions, Places) {
    EXPECT_EQ(read({"--listen", "0.0.0.0"}).server.listen, (ListenAddress{"0.0.0.0", 9100}));
    EXPECT_EQ(read({"--listen", "[::1]:0"}).server.listen, (ListenAddress{"::1", 0}));
    EXPECT_EQ(read({"--page", "0.0.0.0"}).page, (ListenAddress{"0.0.0.0", 9180}));
    EXPECT_EQ(read({"--no-page"}).page, std::nullopt);
    EXPECT_EQ(read({"--tty"}).server.tty, "");
    EXPECT_EQ(read({"--tty", "--quiet"}).server.tty, "");
    EXPECT_EQ(read({"--tty", "printer"}).server.tty, "printer");
    EXPECT_EQ(read({"--tty", "--no-listen"}).server.listen, std::nullopt);
}

TEST(PrinterOptions, TheTicketInThePrinter) {
    const Options options =
        read({"--stock", "CINEMA", "--resolution", "200", "--orientation", "portrait"});
    EXPECT_EQ(options.stock, 1);
    EXPECT_EQ(options.server.device.printer.size, (TicketSize{650, 400, 200}));
    EXPECT_EQ(options.server.device.printer.orientation, Orientation::kPortrait);
    EXPECT_EQ(read({"--stock", "8"}).stock, 8);
    EXPECT_EQ(read({"--orientation", "landscape"}).server.device.printer.orientation,
              Orientation::kLandscape);
}

TEST(PrinterOptions, Keeping) {
    const Options options = read(
        {"--out", "folder", "--keep", "7", "--keep-bytes", "1000", "--tickets", "3", "--quiet"});
    EXPECT_EQ(options.store.folder, "folder");
    EXPECT_EQ(options.store.tickets, 7U);
    EXPECT_EQ(options.store.bytes, 1000U);
    EXPECT_EQ(options.tickets, 3U);
    EXPECT_TRUE(options.quiet);
}

TEST(PrinterOptions, Answers) {
    const Reply reply =
        read({"--reply", "ok\\r\\n\\x01\\\\", "--reply-delay", "1.25"}).server.device.reply;
    EXPECT_EQ(reply.text, "ok\r\n\x01\\");
    EXPECT_EQ(reply.delay, std::chrono::milliseconds(1250));
}

TEST(PrinterOptions, PhysicsAndFaults) {
    const Options options =
        read({"--buffer", "16777216", "--drop", "--rate", "11520.5", "--speed", "100", "--paper",
              "4", "--logo-memory", "0", "--socket-buffer", "4096", "--one-client", "--never-read",
              "--reset-after", "0", "--close-after", "9223372036854775807"});
    const DeviceSettings& device = options.server.device;
    EXPECT_EQ(device.physics.receiveBuffer, kMaxReceiveBuffer);
    EXPECT_TRUE(device.physics.dropWhenFull);
    EXPECT_EQ(device.physics.bytesPerSecond, 11520.5);
    EXPECT_EQ(device.physics.millimetresPerSecond, 100);
    EXPECT_EQ(device.faults.paperOutAfter, 4U);
    EXPECT_EQ(device.printer.logoMemory, 0U);
    EXPECT_EQ(options.server.socketBuffer, 4096U);
    EXPECT_TRUE(options.server.oneClient);
    EXPECT_TRUE(device.faults.neverRead);
    EXPECT_EQ(device.faults.resetAfter, 0U);
    EXPECT_EQ(device.faults.closeAfter, 9223372036854775807U);
}

TEST(PrinterOptions, BadValuesAreNamed) {
    const std::string end = " (tavio-printer --help tells more)\n";
    EXPECT_EQ(refusal({"--buffer", "0"}),
              "tavio-printer: --buffer: \"0\" is not a whole number from 1 to 16777216" + end);
    EXPECT_EQ(refusal({"--rate", "fast"}),
              "tavio-printer: --rate: \"fast\" is not a number from 0.001 to 100000000" + end);
    EXPECT_EQ(refusal({"--stock", "9"}),
              "tavio-printer: --stock: \"9\" is no stock: give 0 to 8, concert, cinema, creditcard "
              "or receipt" +
                  end);
    EXPECT_EQ(
        refusal({"--resolution", "301"}),
        "tavio-printer: --resolution: \"301\" is none of the resolutions 200, 300 and 600" + end);
    EXPECT_EQ(
        refusal({"--orientation", "up"}),
        "tavio-printer: --orientation: \"up\" is no orientation: give landscape or portrait" + end);
    EXPECT_EQ(refusal({"--listen", "a:b"}),
              "tavio-printer: --listen: \"a:b\" is no address to listen on: give ADDRESS, "
              "ADDRESS:PORT or [IPV6]:PORT" +
                  end);
    EXPECT_EQ(
        refusal({"--reply", "\\q"}),
        "tavio-printer: --reply: a backslash in a reply begins \\r, \\n, \\t, \\\\ or \\x and "
        "two digits" +
            end);
}

TEST(PrinterOptions, BadUsageIsRefused) {
    const std::vector<std::vector<const char*>> bad{
        {"--bogus"},
        {"word"},
        {"--no-listen"},
        {"--no-listen", "--tty", "--listen", "127.0.0.1"},
        {"--page", "a:1", "--no-page"},
        {"--speed", "0"},
        {"--speed", "nan"},
        {"--speed", "inf"},
        {"--rate", "-5"},
        {"--rate", "1e9"},
        {"--reply-delay", "86401"},
        {"--reply-delay", ""},
        {"--paper", "0"},
        {"--paper", "-1"},
        {"--tickets", "1.5"},
        {"--keep", "0"},
        {"--buffer", "16777217"},
        {"--buffer", " 5"},
        {"--reset-after", "x"},
        {"--close-after", "18446744073709551616"},
        {"--out", ""},
        {"--out"},
        {"--logo-memory", "1073741825"}};
    for (const auto& arguments : bad) {
        SCOPED_TRACE(::testing::PrintToString(arguments));
        const std::string said = refusal(arguments);
        EXPECT_TRUE(said.starts_with("tavio-printer: ")) << said;
        EXPECT_EQ(said.find('\n'), said.size() - 1) << said;
    }
    const std::string tooLong(kMaxReplyTextBytes + 1, 'x');
    EXPECT_NE(refusal({"--reply", tooLong.c_str()}), "");
}

TEST(PrinterOptions, EscapesInReplies) {
    EXPECT_EQ(unescaped("a\\tb"), "a\tb");
    EXPECT_EQ(unescaped("\\x41\\x0a"), "A\n");
    EXPECT_EQ(unescaped(""), "");
    for (const char* wrong : {"\\", "\\x", "\\x4", "\\xg1", "\\x4g", "\\x+1", "\\a", "x\\"}) {
        EXPECT_EQ(unescaped(wrong), std::nullopt) << wrong;
    }
}

}  // namespace
}  // namespace tavio::virtual_printer::testing
