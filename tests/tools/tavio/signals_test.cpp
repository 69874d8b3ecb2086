// Ctrl-C and SIGTERM.

#include <csignal>
#include <cstdlib>
#include <future>
#include <memory>
#include <utility>

#include <gtest/gtest.h>

#include "tavio/links/recording_link.h"
#include "tools/tavio/interrupts.h"
#include "tools/tavio/process.h"
#include "tools/tavio/socket_printer.h"

namespace tavio::test {
namespace {

class Signals : public ToolTest {
  protected:
    void SetUp() override {
        // Enough to outlast every buffer between here and a peer that does not read.
        writeFile(at("large.bin"), std::string(std::size_t{8} << 20U, 'x'));
    }

    // Runs a job to a printer that takes nothing of it; `when` is done while it is being sent.
    template <typename Action>
    Ran whileSending(Action when) const {
        std::promise<void> sending;
        SocketPrinter printer([&](Client& client) {
            client.waitForBytes();
            sending.set_value();
            client.waitForBreak();
        });
        Running running(folder.path(),
                        {"raw", "large.bin", "--to", printer.target(), "--timeout", "3600"});
        sending.get_future().wait();
        when(running);
        return running.finish();
    }
};

TEST_F(Signals, CancelAJobAndTellWhatBecameOfIt) {
    for (const auto& [number, status] : {std::pair{SIGINT, 130}, {SIGTERM, 143}}) {
        SCOPED_TRACE(number);
        Ran ran = whileSending([number = number](Running& job) { job.signal(number); });
        EXPECT_EQ(ran.status, status);
        EXPECT_TRUE(ran.out.starts_with("partly sent, ")) << ran.out;
        EXPECT_NE(ran.out.find(" of 8388608 bytes"), std::string::npos) << ran.out;
        EXPECT_EQ(ran.err, "tavio: interrupted\n");
    }
}

TEST_F(Signals, CancelTheWaitingForAReply) {
    std::promise<void> connected;
    SocketPrinter printer([&](Client& client) {
        connected.set_value();
        client.read();
    });
    Running running(folder.path(), {"status", "--to", printer.target()});
    connected.get_future().wait();
    running.signal(SIGINT);
    Ran ran = running.finish();
    // Before it has come to waiting the signal ends it at once.
    if (ran.signal == 0) {
        EXPECT_EQ(ran.status, 130);
        EXPECT_EQ(ran.err, "tavio: interrupted\n");
    }
    EXPECT_EQ(ran.out, "");
}

class CancelOnSignalDeathTest : public testing::Test {
  protected:
    void SetUp() override { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

// One signal by hand: the handlers are the same on any thread of this very program.
TEST_F(CancelOnSignalDeathTest, CancelsOnceAndRestoresTheDefault) {
    EXPECT_EXIT(
        {
            auto link = std::make_shared<links::RecordingLink>();
            {
                tool::CancelOnSignal guard(link);
                std::raise(SIGINT);
                if (link->open("") || tool::CancelOnSignal::caught() != SIGINT) std::_Exit(1);
                std::raise(SIGTERM);
            }
            std::_Exit(2);
        },
        testing::KilledBySignal(SIGTERM), "");
}

TEST_F(CancelOnSignalDeathTest, LeavesTheDefaultBehind) {
    EXPECT_EXIT(
        {
            { tool::CancelOnSignal guard(std::make_shared<links::RecordingLink>()); }
            std::raise(SIGINT);
            std::_Exit(1);
        },
        testing::KilledBySignal(SIGINT), "");
}

TEST_F(CancelOnSignalDeathTest, LeavesASignalIgnoredThatWasIgnored) {
    EXPECT_EXIT(
        {
            std::signal(SIGINT, SIG_IGN);
            auto link = std::make_shared<links::RecordingLink>();
            {
                tool::CancelOnSignal guard(link);
                std::raise(SIGINT);
            }
            std::raise(SIGINT);
            std::_Exit(link->open("") && tool::CancelOnSignal::caught() == 0 ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace tavio::test
