// Grey rows of a picture in memory.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "TavioIpadSDK/sharp/grey_rows.h"

namespace tavio::test {

class MemoryRows : public sharp::GreyRows {
  public:
    // greys: width * height bytes, top row first. Gives at most `limit` rows at a time.
    MemoryRows(std::int32_t width, std::int32_t height, Bytes greys, std::int32_t limit = 1 << 20)
        : width_(width), height_(height), limit_(limit), greys_(std::move(greys)) {}

    std::int32_t width() const override { return width_; }
    std::int32_t height() const override { return height_; }

    std::span<const Byte> next(std::int32_t maxRows) override {
        const auto width = static_cast<std::size_t>(width_);
        const std::size_t size = std::min(
            static_cast<std::size_t>(std::min(maxRows, limit_)) * width, greys_.size() - given_);
        const auto rows = std::span<const Byte>(greys_).subspan(given_, size);
        given_ += size;
        return rows;
    }

  private:
    std::int32_t width_;
    std::int32_t height_;
    std::int32_t limit_;
    Bytes greys_;
    std::size_t given_ = 0;
};

}  // namespace tavio::test
