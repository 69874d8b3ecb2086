// The Bluetooth link over the kernel's own RFCOMM.

#include <csignal>
#include <random>
#include <thread>

#include <gtest/gtest.h>

#include "links/bluetooth/two_radios.h"
#include "tavio/links/rfcomm_link.h"

namespace tavio::links {
namespace {

using std::chrono::seconds;
using test::RfcommPrinter;

std::span<const Byte> bytesOf(const std::string& text) {
    return {reinterpret_cast<const Byte*>(text.data()), text.size()};
}

// An emulated machine on a busy one is slow.
Deadlines patient() {
    Deadlines deadlines;
    deadlines.connect = seconds(60);
    deadlines.progress = seconds(60);
    deadlines.reply = seconds(60);
    return deadlines;
}

Deadlines hasty() {
    Deadlines deadlines = patient();
    deadlines.connect = seconds(5);
    deadlines.progress = seconds(5);
    return deadlines;
}

class RfcommRadio : public testing::Test {
  protected:
    void SetUp() override {
        if (!test::emulator()) GTEST_SKIP() << "no emulated controllers here";
        const auto found = test::switchRadiosOn();
        ASSERT_TRUE(found);
        address = *found;
        address.channel = nextChannel++;
    }

    // The kernel takes its time to end a connection; each test has a channel for itself.
    static inline std::uint8_t nextChannel = 3;

    RfcommAddress address;
};

TEST_F(RfcommRadio, PassesEveryByteOn) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    std::string job(100'000, '\0');
    for (char& byte : job) byte = static_cast<char>(random());
    RfcommPrinter printer(address);
    std::string received;
    std::string beyond;
    std::thread running([&] {
        if (!printer.accept()) return;
        received = printer.take(job.size());
        beyond = printer.take();
    });
    RfcommLink link(toText(address), patient());
    const bool opened = link.open("");
    const bool sent = opened && link.write(bytesOf(job)) && link.drain();
    link.close();
    if (opened) running.join();
    ASSERT_TRUE(opened) << link.failure();
    EXPECT_TRUE(sent) << link.failure();
    EXPECT_TRUE(received == job) << received.size() << " bytes";
    EXPECT_EQ(beyond, "");
    EXPECT_EQ(link.failure(), "");
    EXPECT_EQ(link.report().accepted, job.size());
    EXPECT_EQ(link.report().acknowledged, std::nullopt);
    EXPECT_EQ(outcomeOf(link.report()), Outcome::kSentUnconfirmed);
}

TEST_F(RfcommRadio, ReadsWhatThePrinterAnswers) {
    RfcommPrinter printer(address);
    RfcommLink link(toText(address), patient());
    ASSERT_TRUE(link.open("")) << link.failure();
    ASSERT_TRUE(printer.accept());
    ASSERT_TRUE(link.write(bytesOf("<S1>"))) << link.failure();
    EXPECT_EQ(printer.take(4), "<S1>");
    ASSERT_TRUE(printer.say("ready"));
    EXPECT_EQ(link.read(), "ready");
    link.close();
    EXPECT_EQ(outcomeOf(link.report()), Outcome::kAnswered);
}

TEST_F(RfcommRadio, TellsThatNobodyListensOnTheChannel) {
    RfcommLink link(toText(address), patient());
    EXPECT_FALSE(link.open(""));
    EXPECT_NE(link.failure().find("it refuses"), std::string::npos) << link.failure();
    EXPECT_EQ(outcomeOf(link.report()), Outcome::kNothingSent);
}

TEST_F(RfcommRadio, GivesUpOnAPrinterThatReadsNothing) {
    RfcommPrinter printer(address);
    RfcommLink link(toText(address), hasty());
    ASSERT_TRUE(link.open("")) << link.failure();
    ASSERT_TRUE(printer.accept());
    EXPECT_FALSE(link.write(bytesOf(std::string(1'000'000, 'x'))));
    EXPECT_NE(link.failure().find("took no byte for 5 s"), std::string::npos) << link.failure();
    link.close();
    EXPECT_EQ(outcomeOf(link.report()), Outcome::kPartlySent);
    EXPECT_LT(link.report().accepted, 1'000'000U);
}

TEST_F(RfcommRadio, NoticesAPrinterThatHangsUp) {
    RfcommPrinter printer(address);
    RfcommLink link(toText(address), patient());
    ASSERT_TRUE(link.open("")) << link.failure();
    ASSERT_TRUE(printer.accept());
    std::thread running([&] {
        printer.take(10'000);
        printer.hangUp();
    });
    EXPECT_FALSE(link.write(bytesOf(std::string(1'000'000, 'x'))));
    running.join();
    EXPECT_EQ(link.failure().find("took no byte"), std::string::npos) << link.failure();
    link.close();
    EXPECT_EQ(outcomeOf(link.report()), Outcome::kPartlySent);
}

// The radio falls silent: no error comes, and only the deadline tells. The kernel, which waits for
// more than a minute, blocks close() and connect() that long, but not the link.
TEST_F(RfcommRadio, GivesUpOnAPrinterThatIsOutOfReach) {
    RfcommPrinter printer(address);
    RfcommLink link(toText(address), hasty());
    ASSERT_TRUE(link.open("")) << link.failure();
    ASSERT_TRUE(printer.accept());
    ASSERT_TRUE(link.write(bytesOf("<P1>"))) << link.failure();
    EXPECT_EQ(printer.take(4), "<P1>");
    ASSERT_EQ(::kill(*test::emulator(), SIGSTOP), 0);
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_FALSE(link.write(bytesOf(std::string(1'000'000, 'x'))));
    EXPECT_NE(link.failure().find("took no byte for 5 s"), std::string::npos) << link.failure();
    link.close();
    EXPECT_EQ(outcomeOf(link.report()), Outcome::kPartlySent);

    RfcommLink next(toText(address), hasty());
    EXPECT_FALSE(next.open(""));
    EXPECT_NE(next.failure().find("an earlier connection that fell silent"), std::string::npos)
        << next.failure();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, seconds(40));
    EXPECT_EQ(::kill(*test::emulator(), SIGCONT), 0);
}

}  // namespace
}  // namespace tavio::links
