// A column's channel is the mean of the source pixels that it covers, weighted by the covered part
// of each, rounded half up to 16 fraction bits:
//
//     source pixels   |     |     |     |     |     |     |     |      each counts `target`
//     columns         |              |              |                  each covers `source`
//     edge                           ^ pixel 2, part of it before
//
// With before[i] the sum of the pixels before pixel i, the sum of everything before an edge is
//
//     before[pixel] * target + row[pixel] * part
//
// and the sum of a column is the difference of its two edges. So there is no loop over the pixels
// of a column, whose number varies. Sums may wrap around in 32 bits; their difference is below
// 2^31.
//
// The quotients floor((sum * 2^16 + floor(T / 2)) / T) take one multiplication and one addition in
// double, with half of 1/T added:
//
//     sum * (2^16 / T) + (floor(T / 2) + 1/2) / T
//
// Proof that truncating this to a whole number is exact for T of up to 2^20: the quotient is a
// multiple of 1/T before it is truncated, so with the half of 1/T it is at least 2^-21 away from a
// whole number. It is below 2^24. The factor has a relative error of 2^-53, so the product an error
// of at most 2^-29, the constant a far smaller one, and rounding product and sum, or both in one,
// adds at most 2^-29 each. kAdded in the constant leaves the sum below 2^24 and so changes none of
// this.
#include "TavioIpadSDK/stretch/shrink_columns.h"

#include <algorithm>
#include <cassert>

#include "TavioIpadSDK/machine/instruction_set.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "TavioIpadSDK/stretch/shrink_columns.cpp"
#include "TavioIpadSDK/machine/vectors-inl.h"

#ifndef TAVIO_STRETCH_SHRINK_COLUMNS_ONCE
#define TAVIO_STRETCH_SHRINK_COLUMNS_ONCE
namespace tavio::stretch {
namespace {

// Columns as ShrinkColumns keeps them. There is one edge more than there are columns.
struct ShrunkColumns {
    std::size_t count;
    const std::uint32_t* pixel;
    const std::uint32_t* part;
    double factor;    // 2^16 / T
    double constant;  // (floor(T / 2) + 1/2) / T + kAdded
};

constexpr std::uint64_t kMaxTotal = 1 << 20;

}  // namespace
}  // namespace tavio::stretch
#endif

HWY_BEFORE_NAMESPACE();
namespace tavio::stretch::HWY_NAMESPACE {

#if HWY_TARGET != HWY_SCALAR && HWY_TARGET != HWY_EMU128

namespace hn = hwy::HWY_NAMESPACE;

using Sums = hn::FixedTag<std::uint32_t, kChannels>;  // one pixel's channels

HWY_INLINE hn::Vec<Sums> channelsOf(const UInt32* pixel) {
    const hn::FixedTag<std::uint8_t, kChannels> bytes;
    return hn::PromoteTo(Sums(), hn::LoadU(bytes, reinterpret_cast<const std::uint8_t*>(pixel)));
}

void addUp(const UInt32* row, std::size_t pixels, std::uint32_t* before) {
    auto sum = hn::Zero(Sums());
    for (std::size_t pixel = 0; pixel < pixels; ++pixel) {
        hn::StoreU(sum, Sums(), before + pixel * kChannels);
        sum = hn::Add(sum, channelsOf(row + pixel));
    }
}

void sumColumns(const UInt32* row, const std::uint32_t* before, const ShrunkColumns& columns,
                std::uint32_t* within) {
    const auto target = hn::Set(Sums(), static_cast<std::uint32_t>(columns.count));
    auto begin = hn::Zero(Sums());
    for (std::size_t column = 0; column < columns.count; ++column) {
        const std::uint32_t pixel = columns.pixel[column + 1];
        const auto whole = hn::Mul(hn::LoadU(Sums(), before + pixel * kChannels), target);
        const auto part =
            hn::Mul(channelsOf(row + pixel), hn::Set(Sums(), columns.part[column + 1]));
        const auto end = hn::Add(whole, part);
        hn::StoreU(hn::Sub(end, begin), Sums(), within + column * kChannels);
        begin = end;
    }
}

using Doubles = hn::ScalableTag<double>;
using Floats = hn::Repartition<float, Doubles>;
using Words = hn::RebindToSigned<Floats>;
using Word = hn::Vec<Words>;

// The quotients of one channel.
HWY_INLINE void divide(Word sums, const ShrunkColumns& columns, float* out) {
    const hn::Half<Words> half;
    const auto factor = hn::Set(Doubles(), columns.factor);
    const auto constant = hn::Set(Doubles(), columns.constant);
    const auto low = hn::PromoteTo(Doubles(), hn::LowerHalf(half, sums));
    const auto high = hn::PromoteTo(Doubles(), hn::UpperHalf(half, sums));
    const Word quotients =
        hn::Combine(Words(), hn::DemoteTo(half, hn::MulAdd(high, factor, constant)),
                    hn::DemoteTo(half, hn::MulAdd(low, factor, constant)));
    hn::Store(hn::ConvertTo(Floats(), quotients), Floats(), out);
}

// `within` has whole blocks.
void divideColumns(const std::uint32_t* within, const ShrunkColumns& columns, PassedBlock* out) {
    const std::size_t lanes = hn::Lanes(Words());
    const auto* sums = reinterpret_cast<const std::int32_t*>(within);
    for (std::size_t column = 0; column < columns.count; column += lanes) {
        Word red, green, blue, alpha;
        hn::LoadInterleaved4(Words(), sums + column * kChannels, red, green, blue, alpha);
        float* values = out[column / kBlockColumns].values + column % kBlockColumns;
        divide(red, columns, values);
        divide(green, columns, values + kBlockColumns);
        divide(blue, columns, values + 2 * kBlockColumns);
        divide(alpha, columns, values + 3 * kBlockColumns);
    }
}

void shrinkVectors(std::span<const UInt32> row, const ShrunkColumns& columns, std::uint32_t* before,
                   std::uint32_t* within, PassedBlock* out) {
    addUp(row.data(), row.size(), before);
    sumColumns(row.data(), before, columns, within);
    divideColumns(within, columns, out);
}

#else

void shrinkVectors(std::span<const UInt32> /*row*/, const ShrunkColumns& /*columns*/,
                   std::uint32_t* /*before*/, std::uint32_t* /*within*/, PassedBlock* /*out*/) {}

#endif

}  // namespace tavio::stretch::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace tavio::stretch {
ShrinkColumns::ShrinkColumns(const Axis& axis)
    : columns_(axis.target()), total_(axis.total()), hasVectorForm_(total_ <= kMaxTotal) {
    for (std::size_t column = 0; column < columns_; ++column) {
        const Edge edge = axis.edge(column);
        pixel_.push_back(static_cast<std::uint32_t>(edge.pixel));
        part_.push_back(static_cast<std::uint32_t>(edge.part));
    }
    // All of the last pixel lies before the end.
    pixel_.push_back(static_cast<std::uint32_t>(axis.source() - 1));
    part_.push_back(static_cast<std::uint32_t>(axis.target()));
    if (!hasVectorForm_) return;
    before_.resize(axis.source());
    within_.resize(blocksOf(columns_) * kBlockColumns);
}

void ShrinkColumns::pass(std::span<const UInt32> row, PassedRow& passed) {
    assert(row.size() == std::size_t{pixel_.back()} + 1);
    passed.isOpaque = isOpaque(row);
    passed.blocks.resize(blocksOf(columns_));
    if (!hasVectorForm_ || machine::instructionSet() == machine::InstructionSet::kPlain)
        return passPlainly(row, passed);
    const auto total = static_cast<double>(total_);
    const std::uint64_t rounding = total_ / 2;
    const double half = static_cast<double>(rounding) + 0.5;
    const ShrunkColumns columns{columns_, pixel_.data(), part_.data(), (1 << kFractionBits) / total,
                                half / total + kAdded};
    TAVIO_CHOSEN_FORM(shrinkVectors)
    (row, columns, before_.front().data(), within_.front().data(), passed.blocks.data());
}

void ShrinkColumns::passPlainly(std::span<const UInt32> row, PassedRow& passed) const {
    const Divider divider(total_);
    for (std::size_t column = 0; column < columns_; ++column) {
        const std::uint32_t first = pixel_[column];
        const std::uint32_t last = pixel_[column + 1];
        std::array<std::uint64_t, kChannels> sums{};
        for (std::uint32_t pixel = first; pixel <= last; ++pixel) {
            const std::uint64_t end = pixel == last ? part_[column + 1] : columns_;
            const std::uint64_t weight = end - (pixel == first ? part_[column] : 0);
            for (std::size_t channel = 0; channel < kChannels; ++channel)
                sums[channel] += ((row[pixel] >> (8 * channel)) & 0xFF) * weight;
        }
        float* values = passed.blocks[column / kBlockColumns].values + column % kBlockColumns;
        for (std::size_t channel = 0; channel < kChannels; ++channel) {
            const std::uint64_t value = divider.rounded(sums[channel] << kFractionBits) + kAdded;
            values[channel * kBlockColumns] = static_cast<float>(value);
        }
    }
}

}  // namespace tavio::stretch
#endif
