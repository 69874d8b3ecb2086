#include "tavio/virtual-printer/logo_memory.h"

#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace tavio::virtual_printer {
namespace {

void store(LogoMemory& memory, std::int32_t number, std::size_t bytes) {
    memory.begin(number);
    memory.beginRun({1, 2}, Orientation::kPortrait);
    memory.extend(std::vector<Byte>(bytes, 0x55));
}

TEST(LogoMemory, KeepsRunsWithTheirPlaces) {
    LogoMemory memory(10000);
    memory.begin(5);
    memory.beginRun({1, 2}, Orientation::kPortrait);
    memory.extend(std::vector<Byte>{1, 2});
    memory.extend(std::vector<Byte>{3});
    memory.beginRun({9, 9}, Orientation::kLandscape);  // no bytes: no run
    memory.beginRun({-3, -4}, Orientation::kLandscape);
    memory.extend(std::vector<Byte>{4});
    EXPECT_EQ(memory.find(5), nullptr);
    EXPECT_TRUE(memory.isStoring());
    EXPECT_TRUE(memory.end());
    EXPECT_FALSE(memory.isStoring());

    const Logo* logo = memory.find(5);
    ASSERT_NE(logo, nullptr);
    EXPECT_EQ(logo->bytes, (std::vector<Byte>{1, 2, 3, 4}));
    ASSERT_EQ(logo->runs.size(), 2U);
    EXPECT_EQ(logo->runs[0].place.row, 1);
    EXPECT_EQ(logo->runs[0].place.column, 2);
    EXPECT_EQ(logo->runs[0].orientation, Orientation::kPortrait);
    EXPECT_EQ(logo->runs[0].count, 3U);
    EXPECT_EQ(logo->runs[1].begin, 3U);
    EXPECT_EQ(logo->runs[1].place.row, -3);
}

TEST(LogoMemory, IsFullToTheLastByte) {
    constexpr std::size_t kPrice = LogoMemory::kLogoPrice + LogoMemory::kRunPrice + 100;
    LogoMemory memory(kPrice);
    store(memory, 1, 100);
    EXPECT_TRUE(memory.end());
    EXPECT_EQ(memory.used(), kPrice);

    LogoMemory smaller(kPrice - 1);
    store(smaller, 1, 100);
    EXPECT_FALSE(smaller.end());
    EXPECT_EQ(smaller.used(), 0U);
    EXPECT_EQ(smaller.find(1), nullptr);
}

TEST(LogoMemory, DropsALogoThatDoesNotFitAsSoonAsItIsKnown) {
    LogoMemory memory(1000);
    store(memory, 1, 600);
    memory.extend(std::vector<Byte>(600, 1));
    EXPECT_EQ(memory.used(), 0U);
    memory.extend(std::vector<Byte>(1, 1));  // what still comes of it changes nothing
    EXPECT_EQ(memory.used(), 0U);
    EXPECT_FALSE(memory.end());
}

TEST(LogoMemory, TakesMemoryForLogosWithoutBytes) {
    LogoMemory memory(10 * LogoMemory::kLogoPrice);
    int kept = 0;
    for (std::int32_t number = 0; number < 100; ++number) {
        memory.begin(number);
        if (memory.end()) ++kept;
    }
    EXPECT_EQ(kept, 10);
}

TEST(LogoMemory, ForgetsTheOlderLogoAtOnce) {
    LogoMemory memory(10000);
    store(memory, 1, 100);
    EXPECT_TRUE(memory.end());
    memory.begin(1);
    EXPECT_EQ(memory.find(1), nullptr);
    memory.abandon();
    EXPECT_EQ(memory.used(), 0U);
}

TEST(LogoMemory, EndsOnlyWhatWasBegun) {
    LogoMemory memory(10000);
    EXPECT_FALSE(memory.end());
    memory.extend(std::vector<Byte>{});
    EXPECT_EQ(memory.used(), 0U);
}

TEST(LogoMemory, AccountsForEveryByteThroughoutALongLife) {
    constexpr unsigned kSeed = 20240303;
    SCOPED_TRACE(::testing::Message() << "seed " << kSeed);
    std::mt19937 random(kSeed);
    LogoMemory memory(5000);
    for (int step = 0; step < 20000; ++step) {
        const auto number = static_cast<std::int32_t>(random() % 6);
        switch (random() % 8) {
            case 0:
                memory.abandon();
                break;
            case 1:
                memory.end();
                break;
            case 2:
                if (random() % 20 == 0) memory.clear();
                break;
            case 3:
                memory.begin(number);
                break;
            default:
                store(memory, number, random() % 3000);
                break;
        }
        ASSERT_LE(memory.used(), 5000U);
        if (memory.isStoring()) continue;
        std::size_t expected = 0;
        for (std::int32_t i = 0; i < 6; ++i) {
            const Logo* logo = memory.find(i);
            if (logo == nullptr) continue;
            expected += LogoMemory::kLogoPrice + logo->bytes.size() +
                        logo->runs.size() * LogoMemory::kRunPrice;
        }
        ASSERT_EQ(memory.used(), expected) << "step " << step;
    }
}

}  // namespace
}  // namespace tavio::virtual_printer
