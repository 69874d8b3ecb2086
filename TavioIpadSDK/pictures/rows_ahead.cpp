#include "TavioIpadSDK/pictures/rows_ahead.h"

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <span>
#include <system_error>
#include <utility>

#include "TavioIpadSDK/pictures/strips_ahead.h"

namespace tavio::pictures {
namespace {

// Limits the memory of a strip of very wide rows.
constexpr std::int32_t kMaxStripPixels = 1 << 21;

class RowsAhead : public PictureRows {
  public:
    // Takes `source` only after the thread has been started.
    RowsAhead(std::unique_ptr<PictureRows>& source, std::int32_t strip)
        : width_(source->width()),
          height_(source->height()),
          strips_(stripSize(strip),
                  [&rows = *source](std::span<UInt32> target) { return rows.nextInto(target); }) {
        source_ = std::move(source);
    }

    std::int32_t width() const override { return width_; }
    std::int32_t height() const override { return height_; }

    std::span<const UInt32> next(std::int32_t maxRows) override {
        assert(maxRows >= 1);
        return strips_.next(static_cast<std::size_t>(maxRows) * static_cast<std::size_t>(width_));
    }

  private:
    std::size_t stripSize(std::int32_t strip) const {
        const std::int32_t rows = std::min({strip, height_, std::max(kMaxStripPixels / width_, 1)});
        return static_cast<std::size_t>(rows) * static_cast<std::size_t>(width_);
    }

    const std::int32_t width_;
    const std::int32_t height_;
    std::unique_ptr<PictureRows> source_;  // used by the thread only, which ends before it
    StripsAhead<UInt32> strips_;
};

}  // namespace

std::unique_ptr<PictureRows> rowsAhead(std::unique_ptr<PictureRows> source, std::int32_t strip) {
    if (std::int64_t{source->width()} * source->height() < kMinPixelsAhead) return source;
    try {
        return std::make_unique<RowsAhead>(source, strip);
    } catch (const std::system_error&) {  // no thread can be started
        return source;
    }
}

}  // namespace tavio::pictures
