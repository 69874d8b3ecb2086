// Both programs: what one prints comes out of the other.

#include <array>
#include <fcntl.h>
#include <memory>
#include <unistd.h>

#include <gtest/gtest.h>

#include "tools/tavio/process.h"
#include "tools/tavio/sample_files.h"

namespace tavio::test {
namespace {

// A virtual printer without a page, which ends by itself after one ticket.
class VirtualPrinter {
  public:
    VirtualPrinter(const std::string& folder, std::vector<std::string> arguments) {
        arguments.insert(arguments.end(), {"--listen", "127.0.0.1:0", "--no-page", "--out",
                                           "tickets", "--tickets", "1"});
        std::array<int, 2> ends{};
        EXPECT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
        output_ = ends[0];
        program_ = std::make_unique<Running>(folder, arguments, ends[1], "tavio-printer");
        const std::string line = nextLine();
        const std::size_t at = line.find("tcp://");
        EXPECT_NE(at, std::string::npos) << line;
        if (at != std::string::npos) target_ = line.substr(at);
    }
    VirtualPrinter(const VirtualPrinter&) = delete;
    VirtualPrinter& operator=(const VirtualPrinter&) = delete;
    ~VirtualPrinter() { ::close(output_); }

    const std::string& target() const { return target_; }
    Ran finish() { return program_->finish(); }

  private:
    std::string nextLine() const {
        std::string line;
        for (char c = 0; ::read(output_, &c, 1) == 1 && c != '\n';) line += c;
        return line;
    }

    int output_ = -1;
    std::unique_ptr<Running> program_;
    std::string target_;
};

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
    EXPECT_EQ(ran.err, "");
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
