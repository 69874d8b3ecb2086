// The kernel of error diffusion: one strip of rows.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::imaging {

// The number of finished columns, which only grows. One thread publishes it, another one reads it.
class ColumnsDone {
  public:
    void publish(std::int64_t count) { count_.store(count, std::memory_order_release); }
    std::int64_t count() const { return count_.load(std::memory_order_acquire); }

  private:
    std::atomic<std::int64_t> count_{0};
};

// The last row of a strip, with all errors added that came from above and from the left, as pixels
// of a picture (the alpha bits have no meaning). The next strip begins with it. A row of zeros
// passes no errors on, so a picture's first strip begins with that. Vectors may read kPast words
// past the last.
class LastRow {
  public:
    static constexpr std::size_t kPast = 16;

    explicit LastRow(std::int32_t width) : words_(static_cast<std::size_t>(width) + kPast) {}
    UInt32* words() { return words_.data(); }
    const UInt32* words() const { return words_.data(); }

  private:
    std::vector<UInt32> words_;
};

// The last row of the strip above: column c is finished when the count is base + c + 1.
struct RowAbove {
    const LastRow* row;
    const ColumnsDone* done;
    std::int64_t base;
};

// The strip's own last row: after column c, base + c + 1 is published.
struct OwnLastRow {
    LastRow* row;
    ColumnsDone* done;
    std::int64_t base;
};

struct DitherStrip {
    std::span<const UInt32> pixels;  // rows * width words, top row first
    std::int32_t width;              // 1 or more
    std::int32_t rows;               // 1 or more; for the kernel, at most maxStripRows()
    std::span<Byte> entries;         // rows * paddedWidth(width), bottom row first
    RowAbove above;
    OwnLastRow last;
};

// The maximum number of rows of a strip with the instruction set in use; 0 if there is no kernel
// for it.
std::int32_t maxStripRows();

// Fills entries and last of the strips, one after the other from top to bottom. Other threads may
// work on strips between them at the same time: a strip waits for the one above it.
void diffuseStrips(std::span<const DitherStrip> strips);

}  // namespace tavio::imaging
