// The source pixels of each target pixel along one direction of a picture, and exact division by
// the sum of their weights.
#pragma once

#include <algorithm>
#include <bit>
#include <cassert>
#include <cstdint>

namespace tavio::stretch {

// A target pixel of a direction that grows: the blend of source pixels `first` and `first` + 1. The
// second one has weight `beyond`, the first one the rest of Axis::total(). With `beyond` 0 the second
// is not needed, and may not exist.
struct BlendOfTwo {
    std::uint64_t first = 0;
    std::uint64_t beyond = 0;
};

// The beginning of a target pixel in a direction that shrinks: in source pixel `pixel`, `part` /
// target of it lie before.
struct Edge {
    std::uint64_t pixel = 0;
    std::uint64_t part = 0;
};

// One direction of the picture. Both sizes are 1 to 2^28, so that positions stay below 2^58.
class Axis {
  public:
    Axis(std::int32_t source, std::int32_t target)
        : source_(static_cast<std::uint64_t>(source)), target_(static_cast<std::uint64_t>(target)) {
        assert(source >= 1 && source <= 1 << 28 && target >= 1 && target <= 1 << 28);
    }

    std::uint64_t source() const { return source_; }
    std::uint64_t target() const { return target_; }

    // Grows, or stays as it is.
    bool grows() const { return target_ >= source_; }

    // The sum of the weights of any target pixel; at most 2^29.
    std::uint64_t total() const { return grows() ? 2 * target_ : source_; }

    // For a direction that grows, and target pixels 0 to target() - 1. In units of 1 / total() of a
    // source pixel, counted from the centre of the first one, the centre of target pixel i lies at
    // (2 * i + 1) * source - target. It is clamped to the centres of the outermost source pixels.
    BlendOfTwo blend(std::uint64_t index) const {
        assert(grows() && index < target_);
        const std::uint64_t centre = (2 * index + 1) * source_;
        if (centre <= target_) return {0, 0};
        const BlendOfTwo found{(centre - target_) / total(), (centre - target_) % total()};
        return found.first + 1 < source_ ? found : BlendOfTwo{source_ - 1, 0};
    }

    // For a direction that shrinks, and target pixels 0 to target(): each begins where the one
    // before it ends. In units of 1 / target() of a source pixel, target pixel i covers [i, i + 1)
    // * source.
    Edge edge(std::uint64_t index) const {
        assert(!grows() && index <= target_);
        const std::uint64_t begin = index * source_;
        return {begin / target_, begin % target_};
    }

  private:
    std::uint64_t source_;
    std::uint64_t target_;
};

// Exact quotients by one divisor of 1 to 2^29 without a division: the product with the 32-bit
// reciprocal is too small by at most 1. Dividends must be below 2^24 * divisor.
class Divider {
  public:
    explicit Divider(std::uint64_t divisor)
        : divisor_(divisor),
          drop_(std::max(width(divisor), 4) - 4),
          shift_(width(divisor) + 31 - drop_),
          reciprocal_((std::uint64_t{1} << (width(divisor) + 31)) / divisor) {
        assert(divisor <= std::uint64_t{1} << 29);
    }

    std::uint64_t quotient(std::uint64_t dividend) const {
        assert(dividend >> 24 < divisor_);
        const std::uint64_t low = ((dividend >> drop_) * reciprocal_) >> shift_;
        return low + (dividend - low * divisor_ >= divisor_ ? 1 : 0);
    }

    std::uint64_t rounded(std::uint64_t dividend) const {
        return quotient(dividend + divisor_ / 2);
    }

  private:
    static int width(std::uint64_t value) { return static_cast<int>(std::bit_width(value)); }

    std::uint64_t divisor_;
    int drop_;
    int shift_;
    std::uint64_t reciprocal_;
};

}  // namespace tavio::stretch
