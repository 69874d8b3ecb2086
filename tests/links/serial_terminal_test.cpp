// Jobs through a serial line to a printer that runs by itself.

#include <random>
#include <thread>

#include <gtest/gtest.h>

#include "links/job_bytes.h"
#include "support/pseudo_terminal.h"
#include "tavio/links/reply_text.h"
#include "tavio/links/serial_link.h"

namespace tavio::links {
namespace {

using test::bytesOf;
using test::PseudoTerminal;

std::string everyValue() {
    std::string bytes;
    for (int value = 0; value < 256; ++value) bytes += static_cast<char>(value);
    return bytes;
}

Deadlines generous() {
    Deadlines deadlines;
    deadlines.progress = std::chrono::minutes(2);
    deadlines.reply = std::chrono::minutes(2);
    return deadlines;
}

class SerialLine : public testing::Test {
  protected:
    void SetUp() override {
        if (!terminal.exists()) GTEST_SKIP() << "no pseudo-terminals here";
    }

    PseudoTerminal terminal;
};

TEST_F(SerialLine, PassesEveryByteOn) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    std::string job = everyValue();
    while (job.size() < 100'000) job += static_cast<char>(random());
    SerialLink link(terminal.path() + "?baud=115200", generous());
    ASSERT_TRUE(link.open("")) << link.failure();
    std::string received;
    std::thread printer([&] { received = terminal.takeAll(job.size()); });
    const bool written = link.write(bytesOf(job)) && link.drain();
    printer.join();
    EXPECT_TRUE(written) << link.failure();
    EXPECT_TRUE(received == job) << received.size() << " bytes";
    EXPECT_EQ(link.report().accepted, job.size());
    link.close();
    EXPECT_TRUE(terminal.hasNothing());
}

TEST_F(SerialLine, ReadsEveryByteThatThePrinterSends) {
    const std::string said = everyValue();
    SerialLink link(terminal.path(), generous());
    ASSERT_TRUE(link.open("")) << link.failure();
    ASSERT_TRUE(link.write(bytesOf("<S1>"))) << link.failure();
    ASSERT_EQ(terminal.takeAll(4), "<S1>");
    ASSERT_EQ(terminal.say(said), said.size());
    const std::string expected = replyText(bytesOf(said));
    std::string received;
    while (received.size() < expected.size()) {
        const Text reply = link.read();
        ASSERT_TRUE(reply) << link.failure();
        received += *reply;
    }
    EXPECT_TRUE(received == expected) << received.size() << " bytes";
}

// A printer that first sends several times as many bytes as the line holds.
TEST_F(SerialLine, IsNotStuckOnAPrinterThatTalks) {
    constexpr std::size_t kTalk = 40'000;
    const std::string job(100'000, 'j');
    SerialLink link(terminal.path(), generous());
    ASSERT_TRUE(link.open("")) << link.failure();
    std::size_t said = 0;
    std::string received;
    std::thread printer([&] {
        const std::string talk(1'000, 't');
        for (std::size_t more = 1; more > 0 && said < kTalk; said += more) {
            more = terminal.say(talk);
        }
        received = terminal.takeAll(job.size());
    });
    const bool written = link.write(bytesOf(job));
    printer.join();
    EXPECT_TRUE(written) << link.failure();
    EXPECT_GE(said, kTalk);
    EXPECT_TRUE(received == job) << received.size() << " bytes";
}

TEST_F(SerialLine, PrintsTheNextJobOnTheSameLine) {
    SerialLink link(terminal.path(), generous());
    for (const std::string job : {"<P1><p>", "<P2><q>"}) {
        ASSERT_TRUE(link.open("")) << link.failure();
        ASSERT_TRUE(link.write(bytesOf(job))) << link.failure();
        link.close();
        EXPECT_EQ(link.failure(), "");
        EXPECT_EQ(terminal.takeAll(job.size()), job);
    }
}

}  // namespace
}  // namespace tavio::links
