#include "tools/tavio/progress_line.h"

#include <gtest/gtest.h>

namespace tavio::tool {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr std::size_t kWide = 80;

ProgressLine::Time at(milliseconds time) {
    return ProgressLine::Time(seconds(1000) + time);
}

TEST(ProgressLine, TellsBytesPercentAndRate) {
    ProgressLine line(at(seconds(0)));
    line.update(at(seconds(1)), 9'800, 39'335);
    EXPECT_EQ(line.text(at(seconds(1)), kWide),
              "sending  [####----------------]  9.8 kB of 39 kB  24%  9.8 kB/s");
    line.update(at(seconds(2)), 21'000, 39'335);
    EXPECT_EQ(line.text(at(seconds(2)), kWide),
              "sending  [##########----------]  21 kB of 39 kB  53%  10 kB/s");
    line.update(at(seconds(3)), 39'335, 39'335);
    EXPECT_EQ(line.text(at(seconds(3)), kWide),
              "sending  [####################]  39 kB of 39 kB  100%  13 kB/s");
}

TEST(ProgressLine, TellsTicketsPercentAndTheTimeThatIsLeft) {
    ProgressLine line(at(seconds(0)), ProgressLine::Unit::kTickets);
    line.update(at(seconds(1)), 0, 500);
    EXPECT_EQ(line.text(at(seconds(1)), kWide),
              "printing  [--------------------]  0 of 500 tickets  0%");
    line.update(at(seconds(2)), 75, 500);
    EXPECT_EQ(line.text(at(seconds(2)), kWide),
              "printing  [###-----------------]  75 of 500 tickets  15%  0:11 left");
    line.update(at(seconds(3)), 500, 500);
    EXPECT_EQ(line.text(at(seconds(3)), kWide),
              "printing  [####################]  500 of 500 tickets  100%");
}

TEST(ProgressLine, WritesTimesAsClocksDo) {
    EXPECT_EQ(timeText(0), "0:00");
    EXPECT_EQ(timeText(7.4), "0:07");
    EXPECT_EQ(timeText(125), "2:05");
    EXPECT_EQ(timeText(3725), "1:02:05");
    EXPECT_EQ(timeText(1e300), "99:59:59");
    EXPECT_EQ(timeText(-1), "0:00");
}

TEST(ProgressLine, IsEmptyAsLongAsThereIsNothingToSend) {
    ProgressLine line(at(seconds(0)));
    EXPECT_EQ(line.text(at(seconds(1)), kWide), "");
    line.update(at(seconds(1)), 0, 0);
    EXPECT_EQ(line.text(at(seconds(1)), kWide), "");
    line.update(at(seconds(1)), 0, 10);
    EXPECT_EQ(line.text(at(seconds(1)), kWide),
              "sending  [--------------------]  0 B of 10 B  0%  0 B/s");
}

TEST(ProgressLine, SaysAllOnlyWhenAllHasGone) {
    ProgressLine line(at(seconds(0)));
    line.update(at(seconds(1)), UINT64_MAX - 1, UINT64_MAX);
    EXPECT_EQ(line.text(at(seconds(1)), kWide),
              "sending  [####################]  18 EB of 18 EB  99%  18 EB/s");
    line.update(at(seconds(1)), 11, 10);
    EXPECT_NE(line.text(at(seconds(1)), kWide).find("10 B of 10 B  100%"), std::string::npos)
        << "never more than all";
}

TEST(ProgressLine, HasTheRateOfTheTimeJustPassed) {
    ProgressLine line(at(seconds(0)));
    auto rateAt = [&line](milliseconds time) {
        const std::string text = line.text(at(time), kWide);
        return text.substr(text.rfind("  ") + 2);
    };
    for (int tick = 1; tick <= 100; ++tick) {
        line.update(at(milliseconds(100 * tick)), 1000U * static_cast<unsigned>(tick), 1'000'000);
    }
    EXPECT_EQ(rateAt(seconds(10)), "10 kB/s");
    for (int tick = 1; tick <= 31; ++tick) {
        line.update(at(milliseconds(10'000 + 100 * tick)),
                    100'000U + 100U * static_cast<unsigned>(tick), 1'000'000);
    }
    EXPECT_EQ(rateAt(milliseconds(13'100)), "1.0 kB/s") << "the fast time is forgotten";
    EXPECT_EQ(rateAt(milliseconds(14'550)), "525 B/s") << "half of the window, and a half idle";
    EXPECT_EQ(rateAt(seconds(60)), "0 B/s") << "the printer has stopped";
}

TEST(ProgressLine, CountsUpdatesThatComeInQuickSuccession) {
    ProgressLine line(at(seconds(0)));
    for (int tick = 1; tick <= 2'000; ++tick) {
        line.update(at(milliseconds(tick)), static_cast<unsigned>(tick), 10'000);
    }
    EXPECT_EQ(line.text(at(seconds(2)), kWide),
              "sending  [####----------------]  2.0 kB of 10 kB  20%  1.0 kB/s");
}

TEST(ProgressLine, LeavesOutWhatThereIsNoRoomFor) {
    ProgressLine line(at(seconds(0)));
    line.update(at(seconds(1)), 21'000, 39'335);
    EXPECT_EQ(line.text(at(seconds(1)), 63),
              "sending  [##########----------]  21 kB of 39 kB  53%  21 kB/s");
    EXPECT_EQ(line.text(at(seconds(1)), 61),
              "sending  [##########---------]  21 kB of 39 kB  53%  21 kB/s");
    EXPECT_EQ(line.text(at(seconds(1)), 47), "sending  [##---]  21 kB of 39 kB  53%  21 kB/s");
    EXPECT_EQ(line.text(at(seconds(1)), 46), "sending  21 kB of 39 kB  53%  21 kB/s");
    EXPECT_EQ(line.text(at(seconds(1)), 38), "sending  21 kB of 39 kB  53%  21 kB/s");
    EXPECT_EQ(line.text(at(seconds(1)), 37), "sending  21 kB of 39 kB  53%");
    EXPECT_EQ(line.text(at(seconds(1)), 29), "sending  21 kB of 39 kB  53%");
    EXPECT_EQ(line.text(at(seconds(1)), 28), "sending  53%");
    EXPECT_EQ(line.text(at(seconds(1)), 13), "sending  53%");
    EXPECT_EQ(line.text(at(seconds(1)), 12), "");
    for (std::size_t columns = 0; columns < 200; ++columns) {
        EXPECT_LE(line.text(at(seconds(1)), columns).size(), columns == 0 ? 0 : columns - 1);
    }
}

TEST(Sizes, HaveAtMostThreeDigits) {
    EXPECT_EQ(sizeText(0), "0 B");
    EXPECT_EQ(sizeText(999), "999 B");
    EXPECT_EQ(sizeText(1000), "1.0 kB");
    EXPECT_EQ(sizeText(9'949), "9.9 kB");
    EXPECT_EQ(sizeText(9'950), "10 kB");
    EXPECT_EQ(sizeText(999'499), "999 kB");
    EXPECT_EQ(sizeText(999'500), "1.0 MB");
    EXPECT_EQ(sizeText(2.5e9), "2.5 GB");
    EXPECT_EQ(sizeText(18'446'744'073'709'551'615.0), "18 EB");
}

}  // namespace
}  // namespace tavio::tool
