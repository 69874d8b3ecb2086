#include "TavioIpadSDK/pictures/picture_rows.h"

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <vector>

#include "TavioIpadSDK/pictures/upright.h"

namespace tavio::pictures {
namespace {

class RowsInMemory : public PictureRows {
  public:
    explicit RowsInMemory(const UprightView& view) : view_(view) {}

    std::int32_t width() const override { return view_.width; }
    std::int32_t height() const override { return view_.height; }

    std::span<const UInt32> next(std::int32_t maxRows) override {
        assert(maxRows >= 1);
        const std::int32_t count = std::min(maxRows, view_.height - row_);
        const std::ptrdiff_t first = row_;
        row_ += count;
        if (isStoredUpright()) {
            return {view_.origin + first * view_.rowStep,
                    static_cast<std::size_t>(count) * static_cast<std::size_t>(view_.width)};
        }
        return turned(first, count);
    }

  private:
    bool isStoredUpright() const { return view_.columnStep == 1 && view_.rowStep == view_.width; }

    std::span<const UInt32> turned(std::ptrdiff_t first, std::ptrdiff_t count) {
        turned_.clear();
        for (std::ptrdiff_t row = first; row < first + count; ++row) {
            const UInt32* line = view_.origin + row * view_.rowStep;
            for (std::ptrdiff_t column = 0; column < view_.width; ++column)
                turned_.push_back(line[column * view_.columnStep]);
        }
        return turned_;
    }

    UprightView view_;
    std::int32_t row_ = 0;        // the next one
    std::vector<UInt32> turned_;  // the rows delivered last, of a turned picture
};

}  // namespace

std::size_t PictureRows::nextInto(std::span<UInt32> target) {
    const std::size_t rows = target.size() / static_cast<std::size_t>(width());
    const std::span<const UInt32> pixels = next(static_cast<std::int32_t>(rows));
    std::ranges::copy(pixels, target.begin());
    return pixels.size();
}

void readToEnd(PictureRows& rows) {
    while (!rows.next(1).empty()) continue;
}

std::unique_ptr<PictureRows> rowsOf(const Picture& picture) {
    return std::make_unique<RowsInMemory>(uprightView(picture));
}

}  // namespace tavio::pictures
