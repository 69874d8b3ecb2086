#include "TavioIpadSDK/platform/stretch.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <span>
#include <stdexcept>

#include "TavioIpadSDK/platform/upright_view.h"

namespace tavio::platform {
namespace {

// The columns are passed first, into rows whose channels carry these extra bits; the rows are then
// blended and rounded a second and last time.
constexpr int kFractionBits = 16;
constexpr std::size_t kChannels = 4;

// So many target columns at a time, so that the rows between the two passes stay in the cache and
// never take more memory for a wider picture.
constexpr std::uint64_t kTileColumns = 1024;

// The source pixels first to last that one target pixel is blended from, and their weights.
struct Taps {
    std::uint64_t first = 0;
    std::uint64_t last = 0;
    std::uint64_t atFirst = 0;
    std::uint64_t between = 0;  // of each pixel that is neither first nor last
    std::uint64_t atLast = 0;   // 0 where first and last are the same
};

// One direction of the picture. With at most 2^28 pixels on either side, positions stay below 2^58.
class Axis {
  public:
    Axis(std::int32_t source, std::int32_t target)
        : source_(static_cast<std::uint64_t>(source)),
          target_(static_cast<std::uint64_t>(target)) {}

    // What the weights of any target pixel add up to; at most 2^29.
    std::uint64_t total() const { return target_ > source_ ? 2 * target_ : source_; }

    Taps taps(std::uint64_t index) const { return target_ > source_ ? blend(index) : cover(index); }

  private:
    // In units of 1 / target_ of a source pixel, target pixel i covers [i, i + 1) * source_.
    Taps cover(std::uint64_t index) const {
        const std::uint64_t begin = index * source_;
        const std::uint64_t end = begin + source_;
        const std::uint64_t first = begin / target_;
        const std::uint64_t last = (end - 1) / target_;
        return {first, last, std::min(end, (first + 1) * target_) - begin, target_,
                first == last ? 0 : end - last * target_};
    }

    // In units of 1 / (2 * target_) of a source pixel, counted from the centre of the first one,
    // the centre of target pixel i lies at (2 * i + 1) * source_ - target_.
    Taps blend(std::uint64_t index) const {
        const std::uint64_t pixel = 2 * target_;
        const std::uint64_t centre = (2 * index + 1) * source_;
        if (centre <= target_) return {0, 0, pixel, 0, 0};
        const std::uint64_t first = (centre - target_) / pixel;
        const std::uint64_t beyond = (centre - target_) % pixel;
        if (beyond == 0 || first + 1 >= source_) return {first, first, pixel, 0, 0};
        return {first, first + 1, pixel - beyond, 0, beyond};
    }

    std::uint64_t source_;
    std::uint64_t target_;
};

// Exact quotients by one divisor of 1 to 2^29 without dividing: the product with the reciprocal,
// kept to 32 bits, falls short by at most 1. Dividends must be below 2^24 * divisor.
class Divider {
  public:
    explicit Divider(std::uint64_t divisor)
        : divisor_(divisor),
          drop_(std::max(width(divisor), 4) - 4),
          shift_(width(divisor) + 31 - drop_),
          reciprocal_((std::uint64_t{1} << (width(divisor) + 31)) / divisor) {}

    std::uint64_t quotient(std::uint64_t dividend) const {
        const std::uint64_t least = ((dividend >> drop_) * reciprocal_) >> shift_;
        return least + (dividend - least * divisor_ >= divisor_ ? 1 : 0);
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

using Sums = std::array<std::uint64_t, kChannels>;

void add(Sums& sums, UInt32 pixel, std::uint64_t weight) {
    for (std::size_t channel = 0; channel < kChannels; ++channel)
        sums[channel] += ((pixel >> (8 * channel)) & 0xFF) * weight;
}

Sums blendPixels(const UInt32* line, std::ptrdiff_t step, const Taps& taps) {
    const auto pixel = [line, step](std::uint64_t column) {
        return line[static_cast<std::ptrdiff_t>(column) * step];
    };
    Sums sums{};
    for (std::uint64_t column = taps.first + 1; column < taps.last; ++column)
        add(sums, pixel(column), 1);
    for (std::uint64_t& sum : sums) sum *= taps.between;
    add(sums, pixel(taps.first), taps.atFirst);
    add(sums, pixel(taps.last), taps.atLast);
    return sums;
}

// Target columns [left, left + count) of the whole height.
class Tile {
  public:
    Tile(const UprightView& source, const Axis& columns, std::uint64_t left, std::uint64_t count)
        : source_(source), columnDivider_(columns.total()) {
        for (std::uint64_t column = left; column < left + count; ++column)
            columns_.push_back(columns.taps(column));
        for (Held& held : held_) held.channels.resize(count * kChannels);
        sums_.resize(count * kChannels);
    }

    // One target row of the tile, into target[0 .. count).
    void blendRow(const Taps& rows, const Divider& rowDivider, std::uint64_t rowTotal,
                  UInt32* target) {
        std::fill(sums_.begin(), sums_.end(), 0);
        addRow(rows.first, rows.atFirst);
        for (std::uint64_t row = rows.first + 1; row < rows.last; ++row) addRow(row, rows.between);
        if (rows.last != rows.first) addRow(rows.last, rows.atLast);
        const std::uint64_t half = rowTotal << (kFractionBits - 1);
        for (std::size_t column = 0; column < columns_.size(); ++column) {
            UInt32 pixel = 0;
            for (std::size_t channel = 0; channel < kChannels; ++channel) {
                const std::uint64_t sum = sums_[column * kChannels + channel] + half;
                const std::uint64_t value = rowDivider.quotient(sum >> kFractionBits);
                pixel |= static_cast<UInt32>(value) << (8 * channel);
            }
            target[column] = pixel;
        }
    }

  private:
    struct Held {
        std::uint64_t row = UINT64_MAX;
        std::vector<UInt32> channels;
    };

    void addRow(std::uint64_t row, std::uint64_t weight) {
        const std::vector<UInt32>& channels = passedRow(row);
        for (std::size_t at = 0; at < sums_.size(); ++at) sums_[at] += channels[at] * weight;
    }

    // A target row begins no further back than with the row before the last one that was asked
    // for, so with two rows held each is passed once.
    const std::vector<UInt32>& passedRow(std::uint64_t row) {
        Held& held = held_[row % held_.size()];
        if (held.row == row) return held.channels;
        held.row = row;
        const UInt32* line = source_.origin + static_cast<std::ptrdiff_t>(row) * source_.rowStep;
        auto channel = held.channels.begin();
        for (const Taps& taps : columns_) {
            for (const std::uint64_t sum : blendPixels(line, source_.columnStep, taps))
                *channel++ = static_cast<UInt32>(columnDivider_.rounded(sum << kFractionBits));
        }
        return held.channels;
    }

    UprightView source_;
    Divider columnDivider_;
    std::vector<Taps> columns_;
    std::array<Held, 2> held_;
    std::vector<std::uint64_t> sums_;
};

void copyUpright(const UprightView& source, std::vector<UInt32>& out) {
    UInt32* target = out.data();
    for (std::ptrdiff_t row = 0; row < source.height; ++row) {
        const UInt32* line = source.origin + row * source.rowStep;
        for (std::ptrdiff_t column = 0; column < source.width; ++column)
            *target++ = line[column * source.columnStep];
    }
}

}  // namespace

void stretch(const Picture& picture, std::int32_t width, std::int32_t height,
             std::vector<UInt32>& out) {
    const UprightView source = uprightView(picture);
    out.clear();
    if (width <= 0 || height <= 0 || source.width <= 0) return;
    const std::int64_t sourcePixels = std::int64_t{source.width} * source.height;
    const std::int64_t targetPixels = std::int64_t{width} * height;
    if (std::max(sourcePixels, targetPixels) > kMostPixels)
        throw std::length_error("a picture has too many pixels to be stretched");
    out.resize(static_cast<std::size_t>(targetPixels));
    if (width == source.width && height == source.height) return copyUpright(source, out);

    const Axis columns(source.width, width);
    const Axis rows(source.height, height);
    const Divider rowDivider(rows.total());
    const auto line = static_cast<std::uint64_t>(width);
    for (std::uint64_t left = 0; left < line; left += kTileColumns) {
        Tile tile(source, columns, left, std::min(kTileColumns, line - left));
        for (std::uint64_t row = 0; row < static_cast<std::uint64_t>(height); ++row)
            tile.blendRow(rows.taps(row), rowDivider, rows.total(), out.data() + row * line + left);
    }
}

}  // namespace tavio::platform
