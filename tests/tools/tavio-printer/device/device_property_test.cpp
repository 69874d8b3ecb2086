// Properties of every stream, in whatever pieces it arrives.
#include <random>

#include <gtest/gtest.h>

#include "tools/tavio-printer/device/slow_device.h"
#include "tools/tavio-printer/device/test_device.h"

namespace tavio::virtual_printer::testing {
namespace {

using Random = std::mt19937_64;

std::size_t below(Random& random, std::size_t limit) {
    return static_cast<std::size_t>(random() % limit);
}

bool oneIn(Random& random, std::size_t count) {
    return below(random, count) == 0;
}

std::string randomStream(Random& random, std::size_t size) {
    static const std::string kPieces[] = {"<p>",
                                          "<q>",
                                          "<p",
                                          "<RC1,2>",
                                          "<G9>",
                                          "<G",
                                          "<LD7>",
                                          "<LM>",
                                          "<PM>",
                                          "<X>",
                                          "text",
                                          "\r\n",
                                          "<7>\x1B",
                                          "\x1B",
                                          "\x1B"
                                          "c",
                                          "<G3><p>",
                                          ">",
                                          "<"};
    std::string stream;
    while (stream.size() < size) {
        if (oneIn(random, 6)) {
            stream += static_cast<char>(random());
        } else {
            stream += kPieces[below(random, std::size(kPieces))];
        }
    }
    return stream;
}

struct Case {
    DeviceSettings settings;
    int passing = 0;
    int rate = 0;
};

Case randomCase(Random& random) {
    Case result;
    DeviceSettings& settings = result.settings;
    settings = smallDevice();
    settings.printer.logoMemory = 600;
    settings.physics.receiveBuffer = 1 + below(random, oneIn(random, 2) ? 10 : 300);
    settings.physics.dropWhenFull = oneIn(random, 2);
    if (oneIn(random, 2)) {
        result.passing = static_cast<int>(1 + below(random, 40));
        settings.physics.millimetresPerSecond = 2000.0 / result.passing;
    }
    if (oneIn(random, 2)) {
        result.rate = static_cast<int>(1 + below(random, 30));
        settings.physics.bytesPerSecond = 1000.0 * result.rate;
    }
    Faults& faults = settings.faults;
    faults.neverRead = oneIn(random, 20);
    if (oneIn(random, 5)) faults.resetAfter = below(random, 300);
    if (oneIn(random, 5)) faults.closeAfter = below(random, 300);
    if (oneIn(random, 3)) faults.paperOutAfter = below(random, 6);
    if (oneIn(random, 2)) settings.reply.text = "ok";
    if (oneIn(random, 2)) settings.reply.delay = milliseconds(below(random, 300));
    return result;
}

// The device is told the time only when something is done to it, and bytes in any chunks; its twin
// lives through every millisecond and takes byte after byte.
class Twins {
  public:
    Twins(const Case& its, Random& random)
        : random_(random), quick_(its.settings), slow_(its.settings, its.passing, its.rate) {}

    void run() {
        for (int i = 0; i < 300; ++i) {
            const std::size_t time = oneIn(random_, 3) ? below(random_, 100) : 0;
            for (std::size_t n = 0; n < time; ++n) slow_.tick();
            quick_.now += milliseconds(time);
            act();
            if (::testing::Test::HasFatalFailure()) return;
            if (oneIn(random_, 2)) compare();
        }
        compare();
    }

    std::size_t tickets() const { return compared_; }

  private:
    void act() {
        switch (below(random_, 12)) {
            case 0:
                quick_.connect();
                slow_.connect();
                break;
            case 1:
                if (oneIn(random_, 2)) break;
                quick_.end();
                slow_.endOfStream();
                break;
            case 2:
                if (oneIn(random_, 2)) break;
                quick_.disconnect();
                slow_.disconnect();
                break;
            case 3:
                quick_.loadPaper();
                slow_.loadPaper();
                break;
            case 4:
                EXPECT_EQ(quick_.reply(), slow_.takeReply());
                break;
            default:
                send();
                break;
        }
    }

    void send() {
        const std::string stream = randomStream(random_, below(random_, 200));
        std::string_view rest = stream;
        quick_.device.advance(quick_.now);
        while (!rest.empty()) {
            const std::size_t room = quick_.room();
            ASSERT_EQ(room, slow_.room());
            if (room == 0) return;
            const std::size_t count = 1 + below(random_, std::min(room, rest.size()));
            quick_.device.receive(bytesOf(rest.substr(0, count)), quick_.now);
            for (const Byte byte : bytesOf(rest.substr(0, count))) slow_.receive(byte);
            rest.remove_prefix(count);
        }
    }

    void compare() {
        quick_.device.advance(quick_.now);
        ASSERT_EQ(quick_.tickets.size(), slow_.tickets.size());
        for (; compared_ < slow_.tickets.size(); ++compared_) {
            ASSERT_EQ(describe(quick_.tickets[compared_]), slow_.tickets[compared_]);
        }
        ASSERT_EQ(quick_.device.state(), slow_.state());
        ASSERT_EQ(quick_.device.wish(), slow_.wish());
        ASSERT_EQ(quick_.device.isDone(), slow_.isDone());
        ASSERT_EQ(quick_.device.isFree(), slow_.isFree());
        ASSERT_EQ(quick_.room(), slow_.room());
    }

    Random& random_;
    TestDevice quick_;
    SlowDevice slow_;
    std::size_t compared_ = 0;
};

TEST(DeviceProperty, ItDoesWhatItsSlowTwinDoes) {
    std::size_t tickets = 0;
    for (std::uint64_t seed = 1; seed <= 300; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Random random(seed);
        const Case its = randomCase(random);
        Twins twins(its, random);
        ASSERT_NO_FATAL_FAILURE(twins.run());
        tickets += twins.tickets();
    }
    EXPECT_GT(tickets, 1000U);
}

// All that one does within a moment has the same result however it is cut.
TEST(DeviceProperty, BrokenStreamsDoNoHarmHoweverTheyAreCut) {
    const std::uint64_t seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    Random random(seed);
    for (int i = 0; i < 200; ++i) {
        std::string stream = randomStream(random, 1 + below(random, 3000));
        if (oneIn(random, 2)) {
            for (char& c : stream) c = static_cast<char>(random());
        }
        TestDevice whole;
        whole.print(stream);
        TestDevice cut;
        cut.connect();
        for (std::size_t at = 0; at < stream.size();) {
            const std::size_t count = std::min(1 + below(random, 400), stream.size() - at);
            ASSERT_EQ(cut.offer(std::string_view(stream).substr(at, count)), count);
            at += count;
        }
        cut.disconnect();
        ASSERT_FALSE(whole.tickets.empty());
        ASSERT_EQ(whole.tickets.size(), cut.tickets.size());
        std::size_t bytes = 0;
        for (std::size_t n = 0; n < whole.tickets.size(); ++n) {
            ASSERT_EQ(describe(whole.tickets[n]), describe(cut.tickets[n]));
            bytes += whole.tickets[n].bytes.size();
        }
        ASSERT_LE(bytes, stream.size());
    }
}

}  // namespace
}  // namespace tavio::virtual_printer::testing
