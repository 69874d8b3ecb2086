#include "TavioIpadSDK/stretch/resampled_rows.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <new>
#include <random>
#include <span>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "pictures/sample_pictures.h"
#include "pictures/some_rows.h"
#include "stretch/slow_resample.h"

namespace tavio::stretch {
namespace {

using pictures::DamagedPicture;
using pictures::Picture;
using pictures::PictureRows;
using pictures::rowsOf;
using pictures::someRows;

using pictures::samples::randomPicture;

constexpr std::uint32_t kSeed = 20240611;

std::size_t pixelsOf(const PictureRows& rows, std::int32_t count) {
    return static_cast<std::size_t>(rows.width()) * static_cast<std::size_t>(count);
}

// The rows of a picture, one to five at a time, in memory of their own that the next call
// overwrites. From `endsAt` on there are none, or `fail` is called.
class UnevenRows : public PictureRows {
  public:
    explicit UnevenRows(const Picture& picture) : picture_(picture), endsAt_(picture.height) {}

    void endAt(std::int32_t row, void (*fail)() = nullptr) {
        endsAt_ = row;
        fail_ = fail;
    }

    std::int32_t width() const override { return picture_.width; }
    std::int32_t height() const override { return picture_.height; }

    std::span<const UInt32> next(std::int32_t maxRows) override {
        if (row_ == endsAt_ && fail_ != nullptr) fail_();
        const auto atOnce = 1 + static_cast<std::int32_t>(random_() % kMaxAtOnce);
        const std::int32_t count = std::min({maxRows, atOnce, endsAt_ - row_});
        const auto first =
            picture_.pixels.begin() + static_cast<std::ptrdiff_t>(pixelsOf(*this, row_));
        std::fill(given_.begin(), given_.end(), 0xDEADBEEF);
        given_.assign(first, first + static_cast<std::ptrdiff_t>(pixelsOf(*this, count)));
        row_ += count;
        return given_;
    }

  private:
    static constexpr std::uint32_t kMaxAtOnce = 5;

    const Picture& picture_;
    std::int32_t endsAt_;
    void (*fail_)() = nullptr;
    std::int32_t row_ = 0;
    std::mt19937 random_{kSeed};
    std::vector<UInt32> given_;
};

// All that is left, in strips of random heights; each has as many rows as were asked for.
std::vector<UInt32> read(PictureRows& rows, std::mt19937& random) {
    std::vector<UInt32> pixels;
    std::int32_t left = rows.height();
    while (left > 0) {
        const auto maxRows = 1 + static_cast<std::int32_t>(random() % 40);
        const std::vector<UInt32> strip = someRows(rows, maxRows, random);
        EXPECT_EQ(strip.size(), pixelsOf(rows, std::min(maxRows, left)));
        if (strip.empty()) break;
        pixels.insert(pixels.end(), strip.begin(), strip.end());
        left -= maxRows;
    }
    EXPECT_TRUE(rows.next(1).empty());
    return pixels;
}

TEST(StretchedRows, GivesAsManyRowsAsAskedForHoweverTheSourceGivesItsRows) {
    std::mt19937 random(kSeed);
    std::uniform_int_distribution<std::int32_t> side(1, 130);
    for (int round = 0; round < 300; ++round) {
        SCOPED_TRACE("seed " + std::to_string(kSeed) + ", round " + std::to_string(round));
        const Picture picture = randomPicture(random, side(random), side(random), round % 2 == 0);
        const std::int32_t width = round % 4 == 0 ? picture.width : side(random);
        const std::int32_t height = round % 4 <= 1 ? picture.height : side(random);
        const auto rows = resampledRows(std::make_unique<UnevenRows>(picture), width, height);
        ASSERT_EQ(rows->width(), width);
        ASSERT_EQ(rows->height(), height);
        ASSERT_TRUE(read(*rows, random) == slowStretch(picture, width, height).pixels);
    }
}

TEST(StretchedRows, GivesAllRowsAtOnceToWhoeverAsksForNoEndOfThem) {
    std::mt19937 random(kSeed);
    const Picture picture = randomPicture(random, 7, 9, true);
    for (const auto& [width, height] : {std::pair{7, 9}, {20, 30}, {3, 2}}) {
        const auto rows = resampledRows(std::make_unique<UnevenRows>(picture), width, height);
        const auto all = rows->next(std::numeric_limits<std::int32_t>::max());
        EXPECT_TRUE(
            std::equal(all.begin(), all.end(), slowStretch(picture, width, height).pixels.begin()));
        EXPECT_EQ(all.size(), static_cast<std::size_t>(width * height));
        EXPECT_TRUE(rows->next(1).empty());
    }
}

TEST(StretchedRows, HandsRowsOfThatSizeOnWithoutCopyingThem) {
    std::mt19937 random(kSeed);
    const Picture picture = randomPicture(random, 20, 50, false);
    const auto rows = resampledRows(rowsOf(picture), 20, 50);
    EXPECT_EQ(rows->next(31).data(), picture.pixels.data());
    const auto rest = rows->next(31);
    EXPECT_EQ(rest.data(), picture.pixels.data() + std::ptrdiff_t{20} * 31);
    EXPECT_EQ(rest.size(), 20U * 19U);
    EXPECT_TRUE(rows->next(31).empty());
}

TEST(StretchedRows, HasNoRowsWithoutASizeOrAPicture) {
    const Picture dot{1, 1, {5}, 1};
    const Picture none;
    for (const auto& [width, height] : {std::pair{0, 7}, {7, 0}, {0, 0}, {7, -1}, {-1, 7}}) {
        const auto rows = resampledRows(rowsOf(dot), width, height);
        EXPECT_EQ(rows->width(), 0);
        EXPECT_EQ(rows->height(), 0);
        EXPECT_TRUE(rows->next(1).empty());
    }
    const auto rows = resampledRows(rowsOf(none), 7, 7);
    EXPECT_EQ(rows->width(), 0);
    EXPECT_EQ(rows->height(), 0);
    EXPECT_TRUE(rows->next(1).empty());
}

TEST(StretchedRows, RefusesATargetOfTooManyPixels) {
    const Picture dot{1, 1, {5}, 1};
    EXPECT_THROW(resampledRows(rowsOf(dot), 1 << 15, (1 << 13) + 1), std::length_error);
}

// Growing, shrinking and as it is.
const std::vector<std::pair<std::int32_t, std::int32_t>> kTargets = {{30, 90}, {30, 10}, {20, 40}};

TEST(StretchedRows, PassesOnThatThePictureIsDamaged) {
    std::mt19937 random(kSeed);
    const Picture picture = randomPicture(random, 20, 40, false);
    for (const auto& [width, height] : kTargets) {
        SCOPED_TRACE(height);
        auto source = std::make_unique<UnevenRows>(picture);
        source->endAt(25, [] { throw DamagedPicture("cut short"); });
        const auto rows = resampledRows(std::move(source), width, height);
        EXPECT_EQ(rows->next(4).size(), pixelsOf(*rows, 4));
        try {
            rows->next(height);
            ADD_FAILURE() << "nothing was thrown";
        } catch (const DamagedPicture& damage) {
            EXPECT_STREQ(damage.what(), "cut short");
        }
        EXPECT_TRUE(rows->next(4).empty());
    }
}

TEST(StretchedRows, PassesOnThatThereIsNoMemory) {
    std::mt19937 random(kSeed);
    const Picture picture = randomPicture(random, 20, 40, false);
    for (const auto& [width, height] : kTargets) {
        SCOPED_TRACE(height);
        auto source = std::make_unique<UnevenRows>(picture);
        source->endAt(0, [] { throw std::bad_alloc(); });
        const auto rows = resampledRows(std::move(source), width, height);
        EXPECT_THROW(rows->next(4), std::bad_alloc);
        EXPECT_TRUE(rows->next(4).empty());
    }
}

TEST(StretchedRows, CallsAPictureDamagedThatEndsBeforeItsLastRow) {
    std::mt19937 random(kSeed);
    const Picture picture = randomPicture(random, 20, 40, false);
    for (const auto& [width, height] : kTargets) {
        SCOPED_TRACE(height);
        auto source = std::make_unique<UnevenRows>(picture);
        source->endAt(39);
        const auto rows = resampledRows(std::move(source), width, height);
        EXPECT_THROW(rows->next(height), DamagedPicture);
        EXPECT_TRUE(rows->next(4).empty());
    }
}

}  // namespace
}  // namespace tavio::stretch
