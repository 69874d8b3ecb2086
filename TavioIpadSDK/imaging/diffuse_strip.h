// The kernel of error diffusion: one strip of rows.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::imaging {

// How many columns are done, as a number that only grows. One thread publishes, another looks.
class ColumnsDone {
  public:
    void publish(std::int64_t count) { count_.store(count, std::memory_order_release); }
    std::int64_t count() const { return count_.load(std::memory_order_acquire); }

  private:
    std::atomic<std::int64_t> count_{0};
};

// The last row of a strip, with all errors added that came from above and from the left, as words
// like those of a picture (the alpha bits mean nothing): what the next strip begins with. A row of
// zeros passes no errors on, so a picture's first strip begins with that. Vectors may read kPast
// words past the last.
class LastRow {
  public:
    static constexpr std::size_t kPast = 16;

    explicit LastRow(std::int32_t width) : words_(static_cast<std::size_t>(width) + kPast) {}
    UInt32* words() { return words_.data(); }
    const UInt32* words() const { return words_.data(); }

  private:
    std::vector<UInt32> words_;
};

// The last row of the strip above: column c is done when the count is base + c + 1.
struct RowAbove {
    const LastRow* row;
    const ColumnsDone* done;
    std::int64_t base;
};

// The strip's own last row: when column c is done, base + c + 1 is to be published.
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

// The most rows that a strip may have with the instruction set in use; 0 if there is no kernel for
// it.
std::int32_t maxStripRows();

// Fills entries and last of the strips, one after the other from top to bottom. Others may lie
// between them, on which other threads work at the same time: a strip waits for the one above it.
void diffuseStrips(std::span<const DitherStrip> strips);

}  // namespace tavio::imaging
