// A rectangle of a picture, read in words of 64 dots.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

#include "TavioIpadSDK/sharp/dots.h"

namespace tavio::sharp {

// Columns [left, right) of rows [top, bottom).
struct Rectangle {
    std::int32_t left = 0;
    std::int32_t top = 0;
    std::int32_t right = 0;
    std::int32_t bottom = 0;

    bool operator==(const Rectangle&) const = default;
};

// The 64 dots that these 8 bytes hold, the leftmost in the top bit.
inline std::uint64_t dotWord(const Byte* bytes) {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes, sizeof word);
    if constexpr (std::endian::native == std::endian::little) word = __builtin_bswap64(word);
    return word;
}

// The other way round: 64 dots as 8 bytes.
inline void storeDotWord(std::uint64_t word, Byte* bytes) {
    if constexpr (std::endian::native == std::endian::little) word = __builtin_bswap64(word);
    std::memcpy(bytes, &word, sizeof word);
}

// The columns of a rectangle as words of the picture's rows. Dots outside the columns are blank.
class DotWindow {
  public:
    // The rectangle lies in the picture and is not empty. The dots must outlive the window.
    DotWindow(const Dots& dots, const Rectangle& rectangle)
        : dots_(dots),
          first_(static_cast<std::size_t>(rectangle.left) / 64),
          words_((static_cast<std::size_t>(rectangle.right) + 63) / 64 - first_),
          firstMask_(~std::uint64_t{0} >> (rectangle.left % 64)),
          lastMask_(~std::uint64_t{0} << ((64 - rectangle.right % 64) % 64)) {
        if (words_ == 1) firstMask_ &= lastMask_;
    }

    // The number of words of a row.
    std::size_t words() const { return words_; }

    // The picture's column that is the first dot of the first word.
    std::int32_t firstColumn() const { return static_cast<std::int32_t>(64 * first_); }

    // Calls use(index, word) for each word of the picture's row, from the left.
    template <typename Use>
    void forEachWord(std::int32_t row, Use use) const {
        const Byte* const at = dots_.row(row).data() + 8 * first_;
        use(std::size_t{0}, dotWord(at) & firstMask_);
        if (words_ == 1) return;
        for (std::size_t i = 1; i + 1 < words_; ++i) use(i, dotWord(at + 8 * i));
        use(words_ - 1, dotWord(at + 8 * (words_ - 1)) & lastMask_);
    }

    bool isBlank(std::int32_t row) const {
        const Byte* const at = dots_.row(row).data() + 8 * first_;
        if ((dotWord(at) & firstMask_) != 0) return false;
        for (std::size_t i = 1; i + 1 < words_; ++i)
            if (dotWord(at + 8 * i) != 0) return false;
        return words_ == 1 || (dotWord(at + 8 * (words_ - 1)) & lastMask_) == 0;
    }

  private:
    const Dots& dots_;
    std::size_t first_;
    std::size_t words_;
    std::uint64_t firstMask_;
    std::uint64_t lastMask_;
};

// Successive dots that are black: [start, end).
struct DotRun {
    std::int32_t start = 0;
    std::int32_t end = 0;

    bool operator==(const DotRun&) const = default;
};

// Calls use(run) for each run of 1 bits, from the top bit of the first word on.
template <typename Use>
void forEachRun(std::span<const std::uint64_t> words, Use use) {
    std::int32_t start = 0;
    std::uint64_t isInRun = 0;  // 0 or 1
    for (std::size_t i = 0; i < words.size(); ++i) {
        // A 1 bit for each dot that differs from the one before it.
        std::uint64_t changes = words[i] ^ (words[i] >> 1 | isInRun << 63);
        for (; changes != 0; isInRun ^= 1) {
            const int bit = std::countl_zero(changes);
            changes ^= std::uint64_t{1} << 63 >> bit;
            const auto at = static_cast<std::int32_t>(64 * i) + bit;
            if (isInRun == 0) {
                start = at;
            } else {
                use(DotRun{start, at});
            }
        }
    }
    if (isInRun != 0) use(DotRun{start, static_cast<std::int32_t>(64 * words.size())});
}

}  // namespace tavio::sharp
