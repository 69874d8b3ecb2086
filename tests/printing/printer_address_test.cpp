#include <gtest/gtest.h>

#include "support/loopback_peer.h"
#include "tavio/links/rfcomm_link.h"
#include "tavio/links/serial_link.h"
#include "tavio/links/tcp_link.h"
#include "tavio/printing/printer.h"

namespace tavio::printing {
namespace {

template <typename Kind>
bool leadsTo(const char* address) {
    EXPECT_TRUE(isPrinterAddress(address)) << address;
    const LinkMaker maker = linkTo(address);
    return maker && std::dynamic_pointer_cast<Kind>(maker()) != nullptr;
}

TEST(PrinterAddress, NamesTheKindOfLink) {
    EXPECT_TRUE(leadsTo<links::TcpLink>("tcp://192.0.2.7"));
    EXPECT_TRUE(leadsTo<links::TcpLink>("tcp://printer.example:515"));
    EXPECT_TRUE(leadsTo<links::TcpLink>("tcp://[2001:db8::7]:515"));
    EXPECT_TRUE(leadsTo<links::RfcommLink>("bt://00:11:22:33:44:55"));
    EXPECT_TRUE(leadsTo<links::RfcommLink>("bt://00:11:22:33:44:55/3"));
    EXPECT_TRUE(leadsTo<links::SerialLink>("tty:/dev/ttyUSB0"));
    EXPECT_TRUE(leadsTo<links::SerialLink>("tty:/dev/ttyUSB0?baud=9600"));
}

TEST(PrinterAddress, IsRefusedWithTheFormToGive) {
    const std::string tcp =
        "tcp://HOST or tcp://HOST:PORT with a port from 1 to 65535, an IPv6 address in brackets";
    const std::string bluetooth =
        "bt://AA:BB:CC:DD:EE:FF or bt://AA:BB:CC:DD:EE:FF/CHANNEL with a channel from 1 to 30";
    const std::string serial =
        "tty:DEVICE or tty:DEVICE?baud=RATE with one of the usual rates from 1200 to 4000000";
    const std::string any = "tcp://HOST, bt://ADDRESS or tty:DEVICE";
    for (const auto& [text, form] : {std::pair<std::string, std::string>{"tcp://", tcp},
                                     {"tcp://a b", tcp},
                                     {"tcp://printer:0", tcp},
                                     {"bt://printer", bluetooth},
                                     {"bt://00:11:22:33:44:55/31", bluetooth},
                                     {"tty:", serial},
                                     {"tty:/dev/ttyUSB0?baud=1", serial},
                                     {"", any},
                                     {"192.0.2.7", any},
                                     {"TCP://192.0.2.7", any},
                                     {"file:job.bin", any},
                                     {std::string("tty:a\0b", 7), serial}}) {
        EXPECT_FALSE(isPrinterAddress(text)) << text;
        EXPECT_EQ(linkTo(text), nullptr) << text;
        EXPECT_EQ(whyNoPrinterAddress(text),
                  "\"" + text + "\" is no address of a printer: give " + form);
    }
}

TEST(PrinterAddress, LeadsALinkToItsPrinterWhateverItIsOpenedWith) {
    links::test::Port port;
    port.listen();
    links::test::Peer peer(
        port, [](int connection) { EXPECT_EQ(links::test::receiveAll(connection), "x"); });
    const auto link = linkTo("tcp://" + port.address())();
    ASSERT_TRUE(link->open("192.0.2.7")) << link->failure();
    const Byte byte = 'x';
    EXPECT_TRUE(link->write({&byte, 1}));
    link->close();
    EXPECT_EQ(link->failure(), "");
}

TEST(PrinterAddress, TakesTheDeadlines) {
    // Nothing is ever acknowledged to a link that has no time for it.
    links::test::Port port;
    port.listen();
    links::test::Peer peer(
        port, [](int connection) { EXPECT_EQ(links::test::receiveAll(connection), ""); });
    const auto link = linkTo("tcp://" + port.address(), {.reply = std::chrono::milliseconds(1)})();
    ASSERT_TRUE(link->open("")) << link->failure();
    EXPECT_EQ(link->read(), std::nullopt) << "the default is 5 s";
    link->close();
}

}  // namespace
}  // namespace tavio::printing
