// Texts and fonts that are made to break what draws them.

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "TavioIpadSDK/words/draw_words.h"
#include "support/random_picture.h"
#include "words/words_fixture.h"

namespace tavio::test {
namespace {

using words::DrawnWords;
using words::drawWords;
using words::Outcome;
using words::WordsOrder;

const helper::Limits kBrief{.cpu = std::chrono::seconds(1)};

bool isRefusal(Outcome outcome) {
    const std::set<Outcome> refusals = {Outcome::kSmallBox, Outcome::kCpuLimit, Outcome::kWallLimit,
                                        Outcome::kMemoryLimit};
    return refusals.contains(outcome);
}

std::string repeated(const std::string& text, std::size_t times) {
    std::string all;
    while (times-- > 0) all += text;
    return all;
}

TEST(HostileWords, OfAMegabyteAreRefused) {
    for (const char* text : {"x ", "\u05d0\n"}) {
        SCOPED_TRACE(text);
        const std::string all = repeated(text, (1U << 20U) / std::string(text).size());
        WordsOrder order = orderOf(all);
        order.setting.minSize = 1;
        const Outcome outcome = drawWords(order, kBrief).outcome;
        EXPECT_TRUE(isRefusal(outcome)) << static_cast<int>(outcome);
    }
}

TEST(HostileWords, WithThousandsOfMarksOnALetterAreDrawnOrRefused) {
    const Outcome outcome = drawWords(orderOf("e" + repeated("\u0301", 5000)), kBrief).outcome;
    EXPECT_TRUE(outcome == Outcome::kDrawn || isRefusal(outcome)) << static_cast<int>(outcome);
}

TEST(HostileWords, OfAThousandDirectionsAreDrawn) {
    const std::string text = repeated("\u202Ba\u202Ab", 1000) + repeated("\u202C", 2000);
    WordsOrder order = orderOf(text);
    order.setting.size = order.setting.minSize = 1;
    EXPECT_EQ(drawWords(order, kBrief).outcome, Outcome::kDrawn);
}

TEST(HostileWords, ThatAreNotUtf8CrashNothing) {
    for (const std::string text : {"\xFF", "a\xC3", "\xED\xA0\x80", "\xF4\x90\x80\x80"}) {
        const Outcome outcome = drawWords(orderOf(text), kBrief).outcome;
        EXPECT_TRUE(outcome == Outcome::kDrawn || outcome == Outcome::kMissingLetters)
            << static_cast<int>(outcome);
    }
}

TEST(HostileWords, MayBeLargerThanAHand) {
    WordsOrder order = orderOf("W");
    order.setting.resolution = 600;
    order.setting.size = order.setting.minSize = 1000;
    order.setting.width = order.setting.height = 16'200;
    const DrawnWords drawn = drawWords(order);
    ASSERT_EQ(drawn.outcome, Outcome::kDrawn);
    EXPECT_GT(drawn.width, 8000);
}

TEST(HostileWords, OfOneLongParagraphAreToldToFitNowhere) {
    const std::string text(40'000, 'x');
    const DrawnWords drawn = drawWords(orderOf(text), kBrief);
    EXPECT_EQ(drawn.outcome, Outcome::kSmallBox);
    EXPECT_GT(drawn.height, words::kMaxSide);
}

TEST(HostileWords, EndAtTheProcessorTime) {
    const std::string text = repeated("Row F, seat 12\n", 60'000);
    WordsOrder order = orderOf(text);
    order.setting.size = 1000;
    order.setting.minSize = 1;
    const Outcome outcome = drawWords(order, {.cpu = std::chrono::seconds(1)}).outcome;
    EXPECT_EQ(outcome, Outcome::kCpuLimit);
}

// However little memory there is: words are whole or they are none.
TEST(HostileWords, MayFindMemoryEndAnywhere) {
    const DrawnWords whole = drawWords(orderOf("Caf\u00e9 26"));
    ASSERT_EQ(whole.outcome, Outcome::kDrawn);
    int refused = 0;
    for (std::uint64_t megabytes = 1; megabytes <= 160; megabytes += 3) {
        const DrawnWords drawn =
            drawWords(orderOf("Caf\u00e9 26"), {.memoryBytes = megabytes << 20U});
        if (drawn.outcome == Outcome::kDrawn) {
            EXPECT_EQ(drawn.bits, whole.bits);
            continue;
        }
        ++refused;
        EXPECT_EQ(drawn.outcome, Outcome::kMemoryLimit) << megabytes << " MiB";
    }
    EXPECT_GT(refused, 0);
}

// Damages a few bytes, half of them in the tables' list and the tables that come first.
void damage(Bytes& font, Random& random) {
    for (std::uint64_t count = random() % 200; count > 0 && !font.empty(); --count) {
        const std::size_t end =
            random() % 2 == 0 ? font.size() : std::min<std::size_t>(font.size(), 20'000);
        font[random() % end] = static_cast<Byte>(random() % 256);
    }
}

// Every outcome but a crash of this process and a hang is right: a letter may be lost with its bytes.
TEST(HostileFonts, AreDrawnOrRefused) {
    constexpr std::uint64_t kSeed = 20260;
    SCOPED_TRACE("seed " + std::to_string(kSeed));
    Random random(kSeed);
    std::set<Outcome> seen;
    for (int i = 0; i < 60; ++i) {
        Bytes font = exampleFont();
        if (random() % 4 == 0) font.resize(random() % font.size());
        damage(font, random);
        WordsOrder order = orderOf("Caf\u00e9, 26 \u20ac");
        order.font = font;
        seen.insert(drawWords(order, kBrief).outcome);
    }
    EXPECT_TRUE(seen.contains(Outcome::kDrawn));
    EXPECT_TRUE(seen.contains(Outcome::kNoFont));
}

}  // namespace
}  // namespace tavio::test
