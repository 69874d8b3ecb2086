// Jobs of many tickets: encoded while they are sent.

#include <gtest/gtest.h>

#include "tools/tavio/process.h"
#include "tools/tavio/sample_files.h"
#include "tools/tavio/socket_printer.h"

namespace tavio::test {
namespace {

constexpr int kPages = 40;

class ManyTickets : public ToolTest {
  protected:
    void SetUp() override { writeFile(at("agency.pdf"), pdf(36, 24, kPages)); }
};

TEST_F(ManyTickets, OfADocumentArriveAsOneJob) {
    const std::string whole = bytesOf({"print", "agency.pdf", "--pages", "all", "--cut"});
    SocketPrinter printer([](Client& client) { client.read(); });
    const Ran ran =
        tavio({"print", "agency.pdf", "--pages", "all", "--cut", "--to", printer.target()});
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(ran.err, "");
    EXPECT_EQ(ran.out, "sent, unconfirmed: " + std::to_string(whole.size()) + " bytes\n");
    EXPECT_TRUE(printer.received() == whole);
}

TEST_F(ManyTickets, AreToldOneByOneAsJson) {
    SocketPrinter printer([](Client& client) { client.read(); });
    const Ran ran = tavio(
        {"print", "agency.pdf", "--pages", "all", "--cut", "--json", "--to", printer.target()});
    EXPECT_EQ(ran.status, 0);
    EXPECT_NE(ran.out.find("\"sentTickets\":40"), std::string::npos) << ran.out;
    std::size_t arrived = 0;
    for (std::size_t at = 0; (at = ran.out.find("\"fate\":\"arrived\"", at)) != std::string::npos;
         ++at)
        ++arrived;
    EXPECT_EQ(arrived, 2U * kPages) << "a page and a cut each";
}

TEST_F(ManyTickets, EndBeforeAPageThatDoesNotExist) {
    SocketPrinter printer([](Client& client) { client.read(); });
    const Ran ran =
        tavio({"print", "agency.pdf", "--pages", "1-45", "--cut", "--to", printer.target()});
    EXPECT_EQ(ran.status, 3);
    EXPECT_EQ(ran.err, "tavio: agency.pdf has no page 41, its last one is page 40\n");
    EXPECT_NE(ran.out.find("40 of 45 tickets were sent as a whole"), std::string::npos) << ran.out;
    EXPECT_EQ(printer.received(), bytesOf({"print", "agency.pdf", "--pages", "all", "--cut"}));
}

TEST_F(ManyTickets, SendNothingIfTheFirstCannotBePrinted) {
    const Ran ran = tavio({"print", "agency.pdf", "--pages", "41-80", "--to", "tcp://127.0.0.1:1"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_EQ(ran.err, "tavio: agency.pdf has no page 41, its last one is page 40\n");
    EXPECT_NE(ran.out.find("nothing sent, safe to repeat"), std::string::npos) << ran.out;
}

TEST_F(ManyTickets, TellHowManyLeftBeforeThePrinterBrokeOff) {
    const std::string ticket = bytesOf({"print", "agency.pdf", "--cut", "--page", "1"});
    SocketPrinter printer([&](Client& client) {
        client.read(ticket.size());
        client.resetWhenClosed();
    });
    const Ran ran = tavio({"print", "agency.pdf", "--pages", "all", "--copies", "200", "--cut",
                           "--to", printer.target()});
    EXPECT_EQ(ran.status, 3);
    EXPECT_TRUE(ran.out.starts_with("partly sent, ")) << ran.out;
    EXPECT_NE(ran.out.find(" of 8000 tickets were sent as a whole"), std::string::npos) << ran.out;
}

TEST_F(ManyTickets, AreNotBegunIfAFileIsMissing) {
    std::vector<std::string> arguments{"print", "agency.pdf", "missing.pdf", "--copies", "20"};
    arguments.insert(arguments.end(), {"--cut", "--to", "tcp://127.0.0.1:1"});
    const Ran ran = tavio(arguments);
    EXPECT_EQ(ran.status, 1);
    EXPECT_EQ(ran.err, "tavio: missing.pdf does not exist\n");
}

TEST_F(ManyTickets, OfAScriptWithAMistakeAreNotBegun) {
    std::string script;
    for (int line = 0; line < 30; ++line) script += "print agency.pdf --cut\n";
    writeFile(at("tickets"), script + "print missing.pdf\n");
    const Ran ran = tavio({"run", "tickets", "--to", "tcp://127.0.0.1:1"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_NE(ran.err.find("line 31: "), std::string::npos) << ran.err;
}

}  // namespace
}  // namespace tavio::test
