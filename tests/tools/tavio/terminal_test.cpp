// The program on a terminal.

#include <algorithm>
#include <chrono>
#include <future>
#include <pty.h>
#include <sstream>
#include <unistd.h>

#include <gtest/gtest.h>

#include "tools/tavio/process.h"
#include "tools/tavio/sample_files.h"
#include "tools/tavio/socket_printer.h"

namespace tavio::test {
namespace {

using Terminal = ToolTest;

// Takes the stages, which come or do not come as the machine is fast or slow, out of the output.
std::string withoutStages(std::string shown) {
    const std::string wipe = "\r\x1B[K";
    for (auto at = shown.find(wipe); at != std::string::npos; at = shown.find(wipe)) {
        auto line = shown.rfind('\n', at);
        auto begin = line == std::string::npos ? 0 : line + 1;
        shown.erase(begin, at + wipe.size() - begin);
    }
    return shown;
}

bool terminalsAreToBeHad() {
    int terminal = -1;
    int program = -1;
    if (::openpty(&terminal, &program, nullptr, nullptr, nullptr) != 0) return false;
    ::close(terminal);
    ::close(program);
    return true;
}

TEST_F(Terminal, LeavesNoStageBehind) {
    if (!terminalsAreToBeHad()) GTEST_SKIP() << "no pseudo-terminals here";
    writeFile(at("black.bmp"), greyBmp(32, 7));
    std::string shown = onTerminal(folder.path(), {"print", "black.bmp", "--classic", "--trace",
                                                   "--cut", "--to", "file:job.bin"});
    EXPECT_EQ(withoutStages(shown),
              "tavio: warning: the picture is 32 x 7 dots: of fewer than 8 rows nothing prints\r\n"
              "tavio: trace: open\r\n"
              "tavio: trace: write 20 bytes\r\n"
              "tavio: trace: close\r\n");
}

// Something that happens once, waited for by another thread.
class Event {
  public:
    void set() {
        if (!set_) promise_.set_value();
        set_ = true;
    }
    bool isSet() const { return set_; }
    void wait() {
        EXPECT_EQ(promise_.get_future().wait_for(std::chrono::seconds(120)),
                  std::future_status::ready);
    }

  private:
    std::promise<void> promise_;
    bool set_ = false;  // for the thread on which it happens
};

const std::string kOutcome = "sent, unconfirmed: 300000 bytes\r\n";

// Widest line that was drawn and wiped again.
std::size_t widest(std::string shown) {
    std::replace(shown.begin(), shown.end(), '\r', '\n');
    std::istringstream lines(shown);
    std::size_t max = 0;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("\x1B[K")) line.erase(0, 3);
        if (line.starts_with("sending")) max = std::max(max, line.size());
    }
    return max;
}

TEST_F(Terminal, ShowsTheProgressOfAJobWithinItsWidth) {
    if (!terminalsAreToBeHad()) GTEST_SKIP() << "no pseudo-terminals here";
    writeFile(at("job.bin"), std::string(300'000, 'x'));
    for (const unsigned short columns : std::initializer_list<unsigned short>{0, 60, 30}) {
        SCOPED_TRACE(columns);
        Event barSeen;
        SocketPrinter printer([&](Client& client) {
            client.waitForBytes();
            barSeen.wait();
            client.read();
        });
        TerminalUse use;
        use.size.ws_col = columns;
        use.onShown = [&](const std::string& shown, int /*keyboard*/) {
            if (shown.find(columns == 30 ? "sending  " : "sending  [") != std::string::npos) {
                barSeen.set();
            }
        };
        std::string shown =
            onTerminal(folder.path(), {"raw", "job.bin", "--to", printer.target()}, use);
        EXPECT_EQ(printer.received().size(), 300'000U);
        EXPECT_EQ(withoutStages(shown), kOutcome) << shown;
        EXPECT_LT(widest(shown), columns == 0 ? 80U : columns) << shown;
        EXPECT_NE(shown.find(columns == 30 ? " of 300 kB  " : " of 300 kB"), std::string::npos)
            << shown;
    }
}

// Ctrl-S stops the output to the terminal, not the bytes to the printer.
TEST_F(Terminal, StopsNoJobWhenItIsStopped) {
    if (!terminalsAreToBeHad()) GTEST_SKIP() << "no pseudo-terminals here";
    writeFile(at("job.bin"), std::string(300'000, 'x'));
    Event stopped;
    Event printed;
    SocketPrinter printer([&](Client& client) {
        client.waitForBytes();
        stopped.wait();
        client.read();
        printed.set();
    });
    TerminalUse use;
    use.onShown = [&](const std::string& shown, int keyboard) {
        if (stopped.isSet() || shown.find("sending  [") == std::string::npos) return;
        EXPECT_EQ(::write(keyboard, "\x13", 1), 1);
        stopped.set();
        printed.wait();
        EXPECT_EQ(::write(keyboard, "\x11", 1), 1);
    };
    std::string shown =
        onTerminal(folder.path(), {"raw", "job.bin", "--to", printer.target()}, use);
    EXPECT_EQ(printer.received().size(), 300'000U);
    EXPECT_EQ(withoutStages(shown), kOutcome) << shown;
}

}  // namespace
}  // namespace tavio::test
