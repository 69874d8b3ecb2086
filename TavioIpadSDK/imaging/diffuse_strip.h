// The kernel of error diffusion: one strip of rows.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::imaging {

// How far somebody got, as a number that only grows. One thread publishes, another looks.
class Progress {
  public:
    void publish(std::int64_t done) { done_.store(done, std::memory_order_release); }
    std::int64_t done() const { return done_.load(std::memory_order_acquire); }

  private:
    std::atomic<std::int64_t> done_{0};
};

// The last row of a strip, with all errors added that came from above and from the left, as words
// like those of a picture (the alpha bits mean nothing): what the next strip begins with. A row of
// zeros passes no errors on, so a picture's first strip begins with that. Vectors may read a little
// before the first and behind the last word.
class LastRow {
  public:
    explicit LastRow(std::int32_t width)
        : words_(static_cast<std::size_t>(width) + kBefore + kBehind) {}
    UInt32* words() { return words_.data() + kBefore; }
    const UInt32* words() const { return words_.data() + kBefore; }

  private:
    static constexpr std::size_t kBefore = 16;
    static constexpr std::size_t kBehind = 32;
    std::vector<UInt32> words_;
};

struct RowAbove {
    const LastRow* row;
    const Progress* progress;
    std::int64_t first;  // column c is done when the progress is first + c + 1
};

struct RowBelow {
    LastRow* row;
    Progress* progress;
    std::int64_t first;  // to be published when column c is done: first + c + 1
};

struct Strip {
    std::span<const UInt32> pixels;  // rows * width words, top row first
    std::int32_t width;              // 1 or more
    std::int32_t rows;               // 1 to rowsOfStrip()
    std::span<Byte> entries;         // rows * paddedWidth(width), bottom row first
    RowAbove above;
    RowBelow last;
};

// The most rows of a strip with the instruction set in use; 0 if there is no kernel for it.
std::int32_t rowsOfStrip();

// Fills entries and last of the strips, one after the other from top to bottom. Others may lie
// between them, on which other threads work at the same time: a strip waits for the one above it.
void diffuseStrips(std::span<const Strip> strips);

}  // namespace tavio::imaging
