// Both programs: what one prints comes out of the other.

#include "tools/tavio/virtual_printer.h"

#include <gtest/gtest.h>

#include "tools/tavio/process.h"
#include "tools/tavio/sample_files.h"

namespace tavio::test {
namespace {

using BothPrograms = ToolTest;

TEST_F(BothPrograms, PrintTheTicketThatThePreviewShows) {
    writeFile(at("photo.bmp"), greyBmp(500, 400, 100));
    const std::vector<std::string> job{"print", "photo.bmp", "--row",   "8",     "--column",
                                       "16",    "--cut",     "--stock", "cinema"};
    const std::string bytes = bytesOf(job);
    tavio(job);

    VirtualPrinter printer(folder.path(), {"--stock", "cinema"});
    std::vector<std::string> toPrinter = job;
    toPrinter.insert(toPrinter.end(), {"--to", printer.target()});
    Ran ran = tavio(toPrinter);
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(ran.out, "sent, unconfirmed: " + std::to_string(bytes.size()) + " bytes\n");
    EXPECT_EQ(withoutLosses(ran.err), "");
    EXPECT_EQ(printer.finish().status, 0);
    EXPECT_TRUE(readFile(at("tickets/ticket-000001.bin")) == bytes);
    EXPECT_TRUE(readFile(at("tickets/ticket-000001.png")) == readFile(at("ticket.png")));
}

TEST_F(BothPrograms, AskAndAnswer) {
    VirtualPrinter printer(folder.path(), {"--reply", "READY\\r"});
    Ran status = tavio({"status", "--to", printer.target()});
    EXPECT_EQ(status.status, 0);
    EXPECT_EQ(status.out, "READY\\x0D\n");
    EXPECT_EQ(status.err, "");
    Ran cut = tavio({"cut", "--to", printer.target()});
    EXPECT_EQ(cut.status, 0);
    EXPECT_EQ(cut.out,
              "answered by the printer: 3 bytes sent\n"
              "the printer says: READY\\x0D\n");
    EXPECT_EQ(printer.finish().status, 0);
}

}  // namespace
}  // namespace tavio::test
