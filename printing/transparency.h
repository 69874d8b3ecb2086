// Noticing transparent parts of a picture while its rows pass.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "TavioIpadSDK/pictures/picture_rows.h"

namespace tavio::printing {

// Passes the rows on unchanged.
class TransparencyWatch : public pictures::PictureRows {
  public:
    // found: set to true if a pixel is not opaque; outlives the rows. Rows may be made on another
    // thread, so read it after they have been destroyed.
    TransparencyWatch(std::unique_ptr<pictures::PictureRows> rows, bool& found)
        : rows_(std::move(rows)), found_(found) {}

    std::int32_t width() const override { return rows_->width(); }
    std::int32_t height() const override { return rows_->height(); }

    std::span<const UInt32> next(std::int32_t maxRows) override {
        const std::span<const UInt32> pixels = rows_->next(maxRows);
        look(pixels);
        return pixels;
    }

    std::size_t nextInto(std::span<UInt32> target) override {
        const std::size_t count = rows_->nextInto(target);
        look(target.first(count));
        return count;
    }

  private:
    void look(std::span<const UInt32> pixels) {
        UInt32 common = ~UInt32{0};  // the bits that all pixels have
        for (const UInt32 pixel : pixels) common &= pixel;
        if (common >> 24U != 0xFF) found_ = true;
    }

    std::unique_ptr<pictures::PictureRows> rows_;
    bool& found_;
};

}  // namespace tavio::printing
