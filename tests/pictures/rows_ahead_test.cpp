#include "TavioIpadSDK/pictures/rows_ahead.h"

#include <algorithm>
#include <memory>
#include <new>
#include <optional>
#include <random>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace tavio::pictures {
namespace {

Picture numberedPicture(std::int32_t width, std::int32_t height) {
    Picture picture{width, height, {}, 1};
    const auto count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    for (std::size_t i = 0; i < count; ++i) picture.pixels.push_back(static_cast<UInt32>(i));
    return picture;
}

// A picture that delivers rows in portions of its own, on whatever thread asks for them, and may
// end in damage.
class Source : public PictureRows {
  public:
    struct Seen {
        std::thread::id thread;
        bool isDestroyed = false;
    };

    Source(const Picture& picture, std::optional<std::int32_t> damagedRow, Seen& seen)
        : picture_(picture), damagedRow_(damagedRow), seen_(seen) {}
    ~Source() override { seen_.isDestroyed = true; }

    std::int32_t width() const override { return picture_.width; }
    std::int32_t height() const override { return picture_.height; }

    std::span<const UInt32> next(std::int32_t maxRows) override {
        seen_.thread = std::this_thread::get_id();
        if (damagedRow_ && row_ >= *damagedRow_) throw DamagedPicture("damaged");
        const std::int32_t count = std::min({maxRows, 1 + row_ % 7, picture_.height - row_});
        const auto line = static_cast<std::size_t>(picture_.width);
        const std::span<const UInt32> rows(picture_.pixels);
        const auto first = static_cast<std::size_t>(row_) * line;
        row_ += count;
        return rows.subspan(first, static_cast<std::size_t>(count) * line);
    }

  private:
    const Picture& picture_;
    std::optional<std::int32_t> damagedRow_;
    Seen& seen_;
    std::int32_t row_ = 0;
};

std::vector<UInt32> allOf(PictureRows& rows, std::mt19937& random) {
    std::vector<UInt32> pixels;
    for (;;) {
        const auto maxRows = static_cast<std::int32_t>(1 + random() % 90);
        const auto some = rows.next(maxRows);
        EXPECT_LE(some.size(),
                  static_cast<std::size_t>(maxRows) * static_cast<std::size_t>(rows.width()));
        if (some.empty()) return pixels;
        pixels.insert(pixels.end(), some.begin(), some.end());
    }
}

TEST(RowsAhead, DeliversTheRowsOfItsSourceInPortionsOfAnySize) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    for (const auto& [width, height] :
         {std::pair(700, 500), std::pair(1, 300000), std::pair(300000, 1)}) {
        for (const std::int32_t strip : {1, 16, 63, 1000000}) {
            if (strip == 1 && width == 1) continue;  // a strip a pixel
            const Picture picture = numberedPicture(width, height);
            Source::Seen seen;
            const auto rows =
                rowsAhead(std::make_unique<Source>(picture, std::nullopt, seen), strip);
            EXPECT_EQ(rows->width(), width);
            EXPECT_EQ(rows->height(), height);
            EXPECT_TRUE(allOf(*rows, random) == picture.pixels);
            EXPECT_TRUE(rows->next(5).empty());
            EXPECT_NE(seen.thread, std::this_thread::get_id());
        }
    }
}

TEST(RowsAhead, GivesASmallPictureBackAsItIs) {
    const Picture picture = numberedPicture(20, 10);
    Source::Seen seen;
    auto source = std::make_unique<Source>(picture, std::nullopt, seen);
    const PictureRows* const given = source.get();
    EXPECT_EQ(rowsAhead(std::move(source), 16).get(), given);
}

TEST(RowsAhead, PassesDamageOnWhenItsTurnComesAndEndsThere) {
    const Picture picture = numberedPicture(1000, 400);
    Source::Seen seen;
    const auto rows = rowsAhead(std::make_unique<Source>(picture, 396, seen), 16);
    std::size_t delivered = 0;
    try {
        for (;;) delivered += rows->next(16).size();
    } catch (const DamagedPicture& damage) {
        EXPECT_STREQ(damage.what(), "damaged");
    }
    EXPECT_EQ(delivered, 384U * 1000U);  // the strips before the one that is not whole
    EXPECT_TRUE(rows->next(16).empty());
}

TEST(RowsAhead, EndsItsThreadAndItsSourceWhenNobodyWantsTheRest) {
    const Picture picture = numberedPicture(1000, 400);
    for (const int portions : {0, 1, 2, 7}) {
        Source::Seen seen;
        auto rows = rowsAhead(std::make_unique<Source>(picture, std::nullopt, seen), 4);
        for (int i = 0; i < portions; ++i) EXPECT_EQ(rows->next(4).size(), 4000U);
        rows.reset();
        EXPECT_TRUE(seen.isDestroyed);
    }
}

}  // namespace
}  // namespace tavio::pictures
