// A column's channel is the blend of those of two neighbours p and q, rounded half up to 16
// fraction bits:
//
//        p               q
//        |-------o-------|               p * 2^16 + floor((q - p) * w * 2^16 / T + 1/2)
//        |<- w ->|
//        |<------ T ---->|
//
// Vectors have no exact division. So w * 2^16 / T is split into the nearest whole number C and a
// rest, which is kept as R = rest * 2^24, rounded. With d = q - p the result is
//
//     p * 2^16 + d * C + floor((d * R + 2^23) / 2^24)
//
// Proof that this is exact for T below 2^17: T is even and has at most 16 factors of 2, so the rest
// is a fraction whose denominator D is odd and at most T / 2. Thus d * rest is at least 1 / (2 * D)
// >= 1/T > 2^-17 away from every half of a whole number. R has an error of at most 1/2, so d * R /
// 2^24 one of at most 255 / 2^25 < 2^-17, and both round to the same whole number. And it fits 32
// bits: the rest is at most 1/2 - 1/T, so |R| < 2^23 - 2^7 + 1, and 255 * (2^23 - 2^7 + 1) + 2^23 <
// 2^31.
//
// A vector of neighbouring columns needs no more source pixels than it has lanes. One load and a
// permutation give their left pixels, and the same permutation of the pixels one further their
// right ones, whatever the factor:
//
//     loaded         a b c d e f g h          b c d e f g h i
//     first - base   0 0 0 1 1 2 2 2          0 0 0 1 1 2 2 2
//     neighbours     a a a b b c c c          b b b c c d d d
#include "TavioIpadSDK/stretch/grow_columns.h"

#include <algorithm>
#include <array>
#include <cassert>

#include "TavioIpadSDK/machine/instruction_set.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "TavioIpadSDK/stretch/grow_columns.cpp"
#include "TavioIpadSDK/machine/vectors-inl.h"

#ifndef TAVIO_STRETCH_GROW_COLUMNS_ONCE
#define TAVIO_STRETCH_GROW_COLUMNS_ONCE
namespace tavio::stretch {
namespace {

// Columns as GrowColumns keeps them.
struct GrownColumns {
    std::size_t blocks;
    const std::int32_t* first;
    const std::int32_t* whole;
    const std::int32_t* rest;
};

constexpr int kRestBits = 24;
constexpr std::uint64_t kMaxTotal = (1 << 17) - 1;

}  // namespace
}  // namespace tavio::stretch
#endif

HWY_BEFORE_NAMESPACE();
namespace tavio::stretch::HWY_NAMESPACE {

#if HWY_TARGET != HWY_SCALAR && HWY_TARGET != HWY_EMU128

namespace hn = hwy::HWY_NAMESPACE;

using Words = hn::ScalableTag<std::int32_t>;
using Word = hn::Vec<Words>;

template <int kChannel>
HWY_INLINE Word channelOf(Word pixels) {
    const hn::RebindToUnsigned<Words> du;
    const auto moved = hn::ShiftRight<8 * kChannel>(hn::BitCast(du, pixels));
    return hn::BitCast(Words(), hn::And(moved, hn::Set(du, 0xFF)));
}

template <int kChannel>
HWY_INLINE void passChannel(Word left, Word right, Word whole, Word rest, float* out) {
    const Words d;
    const hn::RebindToFloat<Words> df;
    const Word p = channelOf<kChannel>(left);
    const Word step = hn::Sub(channelOf<kChannel>(right), p);
    const Word fraction =
        hn::ShiftRight<kRestBits>(hn::Add(hn::Mul(step, rest), hn::Set(d, 1 << (kRestBits - 1))));
    const Word start = hn::Add(hn::ShiftLeft<kFractionBits>(p), hn::Set(d, kAdded));
    const Word value = hn::Add(hn::Add(start, fraction), hn::Mul(step, whole));
    hn::Store(hn::ConvertTo(df, value), df, out);
}

// `row` has `pixels` pixels, more than a vector has lanes. The alphas of an opaque row are
// constant.
template <bool kAlpha>
void growBlocks(const UInt32* row, std::size_t pixels, const GrownColumns& columns,
                PassedBlock* out) {
    const Words d;
    const hn::RebindToFloat<Words> df;
    const std::size_t lanes = hn::Lanes(d);
    const auto* words = reinterpret_cast<const std::int32_t*>(row);
    const auto lastBase = static_cast<std::int32_t>(pixels - 1 - lanes);
    const auto opaque = hn::Set(df, (255 << kFractionBits) + kAdded);
    for (std::size_t column = 0; column < columns.blocks * kBlockColumns; column += lanes) {
        const std::int32_t base = std::min(columns.first[column], lastBase);
        const auto order =
            hn::IndicesFromVec(d, hn::Sub(hn::LoadU(d, columns.first + column), hn::Set(d, base)));
        const Word left = hn::TableLookupLanes(hn::LoadU(d, words + base), order);
        const Word right = hn::TableLookupLanes(hn::LoadU(d, words + base + 1), order);
        const Word whole = hn::LoadU(d, columns.whole + column);
        const Word rest = hn::LoadU(d, columns.rest + column);
        float* values = out[column / kBlockColumns].values + column % kBlockColumns;
        passChannel<0>(left, right, whole, rest, values);
        passChannel<1>(left, right, whole, rest, values + kBlockColumns);
        passChannel<2>(left, right, whole, rest, values + 2 * kBlockColumns);
        if constexpr (kAlpha)
            passChannel<3>(left, right, whole, rest, values + 3 * kBlockColumns);
        else
            hn::Store(opaque, df, values + 3 * kBlockColumns);
    }
}

void growVectors(const UInt32* row, std::size_t pixels, const GrownColumns& columns,
                 bool isOpaqueRow, PassedBlock* out) {
    if (isOpaqueRow) return growBlocks<false>(row, pixels, columns, out);
    growBlocks<true>(row, pixels, columns, out);
}

#else

void growVectors(const UInt32* /*row*/, std::size_t /*pixels*/, const GrownColumns& /*columns*/,
                 bool /*isOpaqueRow*/, PassedBlock* /*out*/) {}

#endif

}  // namespace tavio::stretch::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace tavio::stretch {
namespace {

// No vector has more lanes than a block has columns, so rows of this many pixels are long enough.
constexpr std::size_t kMinPixels = kBlockColumns + 1;

}  // namespace

GrowColumns::GrowColumns(const Axis& axis, std::uint64_t begin, std::uint64_t count)
    : columns_(count), total_(axis.total()), hasVectorForm_(total_ <= kMaxTotal) {
    assert(count >= 1 && begin + count <= axis.target());
    for (std::size_t column = 0; column < blocksOf(columns_) * kBlockColumns; ++column) {
        BlendOfTwo blend = axis.blend(begin + std::min(column, columns_ - 1));
        // The last pixel alone is the second one of the last pair, with all the weight.
        if (blend.first > 0 && blend.first + 1 == axis.source()) blend = {blend.first - 1, total_};
        first_.push_back(static_cast<std::int32_t>(blend.first));
        beyond_.push_back(static_cast<std::uint32_t>(blend.beyond));
        if (!hasVectorForm_) continue;
        const auto total = static_cast<std::int64_t>(total_);
        const auto weight = static_cast<std::int64_t>(blend.beyond << kFractionBits);
        const std::int64_t whole = (weight + total / 2) / total;
        const std::int64_t rest = (weight - whole * total) * (1 << kRestBits);
        whole_.push_back(static_cast<std::int32_t>(whole));
        rest_.push_back(
            static_cast<std::int32_t>((rest + (rest < 0 ? -total : total) / 2) / total));
    }
}

void GrowColumns::pass(std::span<const UInt32> row, PassedRow& passed) const {
    assert(row.size() > static_cast<std::size_t>(first_.back()));
    passed.isOpaque = isOpaque(row);
    passed.blocks.resize(blocksOf(columns_));
    if (!hasVectorForm_ || machine::instructionSet() == machine::InstructionSet::kPlain)
        return passPlainly(row, passed);
    std::array<UInt32, kMinPixels> filled{};
    if (row.size() < kMinPixels) {
        std::copy(row.begin(), row.end(), filled.begin());
        row = filled;
    }
    TAVIO_CHOSEN_FORM(growVectors)
    (row.data(), row.size(), {passed.blocks.size(), first_.data(), whole_.data(), rest_.data()},
     passed.isOpaque, passed.blocks.data());
}

void GrowColumns::passPlainly(std::span<const UInt32> row, PassedRow& passed) const {
    const Divider divider(total_);
    for (std::size_t column = 0; column < columns_; ++column) {
        const auto first = static_cast<std::size_t>(first_[column]);
        const std::uint64_t beyond = beyond_[column];
        const UInt32 left = row[first];
        const UInt32 right = row[std::min(first + 1, row.size() - 1)];
        float* values = passed.blocks[column / kBlockColumns].values + column % kBlockColumns;
        for (std::size_t channel = 0; channel < kChannels; ++channel) {
            const std::uint64_t p = (left >> (8 * channel)) & 0xFF;
            const std::uint64_t q = (right >> (8 * channel)) & 0xFF;
            const std::uint64_t sum = p * (total_ - beyond) + q * beyond;
            const auto value = static_cast<std::int32_t>(divider.rounded(sum << kFractionBits));
            values[channel * kBlockColumns] = static_cast<float>(value + kAdded);
        }
    }
}

}  // namespace tavio::stretch
#endif
