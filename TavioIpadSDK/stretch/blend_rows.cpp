// The passed rows u (upper) and v (lower) are whole numbers with 16 fraction bits and a half added
// already. The exact blend between them is
//
//     u           e = u + (v - u) * w / T           result = floor(e / 2^16)
//     |
//     o <- w of T     ..bbbbbbbb.ffffffffffffffff
//     |                 a byte   cut off
//     v
//
// Float arithmetic has a small error. It matters only if e is so close to a multiple of 2^16 that
// the float may be on its other side. That is rare in photos, and common when a picture is
// resampled by a simple factor. Vectors with such a doubtful column are blended again, in double.
//
//     multiples of 2^16  |                                 |
//     doubtful           xxxx                              xxxx
//
// The float becomes a whole number by adding 2^24, since floats from there on are even numbers: its
// lower 23 bits are then Y, half of the blend, rounded.
//
// The error: u, v and v - u are exact, being whole numbers below 2^24. The share w / T as a float
// has a relative error of 2^-24, so the product an error below 1. Rounding the product and the sum,
// or both in one, adds at most 1/2 each, and the sum with 2^24 at most 1. So 2 * Y is less than 3
// away from the blend. Passed rows have a margin of 4 added, so 2 * Y is above the e without it by
// more than 1 and by less than 7. Therefore Y mod 2^15 decides: from 4 on, 2 * Y and e lie between
// the same multiples of 2^16, and the result is Y / 2^15, truncated. Below 4 it is doubtful.
//
// In double it is exact for T of up to 2^24: e is a multiple of 1/T. The share has a relative error
// of 2^-53, so the product an error of at most 2^-29, and roundings add at most 2^-29 each. With
// 2^-26 added, the double is above e by more than 0 and by less than 2^-25, so no whole number lies
// between the two.
#include "TavioIpadSDK/stretch/blend_rows.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cstddef>

#include "TavioIpadSDK/machine/instruction_set.h"
#include "TavioIpadSDK/stretch/axis.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "TavioIpadSDK/stretch/blend_rows.cpp"
#include "TavioIpadSDK/machine/vectors-inl.h"

#ifndef TAVIO_STRETCH_BLEND_ROWS_ONCE
#define TAVIO_STRETCH_BLEND_ROWS_ONCE
namespace tavio::stretch {
namespace {

// Blocks of both rows, and the lower one's share of the blend.
struct RowPair {
    const PassedBlock* upper;
    const PassedBlock* lower;
    double share;
};

// Without vectors these are not used.
[[maybe_unused]] constexpr int kHalvesBits =
    kFractionBits - 1;                                  // fraction bits in halves of blends
[[maybe_unused]] constexpr std::int32_t kDoubtful = 4;  // halves above a multiple; a power of 2
[[maybe_unused]] constexpr double kAboveExact = 1.0 / (1 << 26);
[[maybe_unused]] constexpr float kToHalves =
    1 << (kFractionBits + 8);  // floats from here on are even numbers
constexpr std::uint64_t kMaxTotal = 1 << 24;

}  // namespace
}  // namespace tavio::stretch
#endif

HWY_BEFORE_NAMESPACE();
namespace tavio::stretch::HWY_NAMESPACE {

#if HWY_TARGET != HWY_SCALAR && HWY_TARGET != HWY_EMU128

namespace hn = hwy::HWY_NAMESPACE;

using Floats = hn::ScalableTag<float>;
using Words = hn::RebindToSigned<Floats>;
using Word = hn::Vec<Words>;

// A vector of each channel: halves of blends in the lower 23 bits, anything above.
struct Blends {
    Word red, green, blue, alpha;
};

// One channel's.
HWY_INLINE Word blended(const float* upper, const float* lower, hn::Vec<Floats> share) {
    const auto u = hn::Load(Floats(), upper);
    const auto step = hn::Sub(hn::Load(Floats(), lower), u);
    const auto blend = hn::MulAdd(step, share, u);
    return hn::BitCast(Words(), hn::Add(blend, hn::Set(Floats(), kToHalves)));
}

HWY_INLINE hn::Mask<Words> doubtful(Word halves) {
    const Words d;
    const std::int32_t fraction = (1 << kHalvesBits) - kDoubtful;
    return hn::Eq(hn::And(halves, hn::Set(d, fraction)), hn::Zero(d));
}

using Doubles = hn::Repartition<double, Floats>;

// Halves of half a vector's exact blends.
HWY_INLINE hn::Vec<hn::Half<Words>> exactHalf(const float* upper, const float* lower,
                                              hn::Vec<Doubles> share) {
    const Doubles d;
    const hn::Half<Floats> floats;
    const auto u = hn::PromoteTo(d, hn::Load(floats, upper));
    const auto step = hn::Sub(hn::PromoteTo(d, hn::Load(floats, lower)), u);
    const auto start = hn::Add(u, hn::Set(d, kAboveExact - kMargin));
    return hn::ShiftRight<1>(hn::DemoteTo(hn::Half<Words>(), hn::MulAdd(step, share, start)));
}

// One channel's.
HWY_INLINE Word exactly(const float* upper, const float* lower, double share) {
    const std::size_t half = hn::Lanes(Doubles());
    const auto factor = hn::Set(Doubles(), share);
    return hn::Combine(Words(), exactHalf(upper + half, lower + half, factor),
                       exactHalf(upper, lower, factor));
}

// All channels; `upper` and `lower` point to red.
template <bool kAlpha>
HWY_INLINE Blends exactly(const float* upper, const float* lower, double share) {
    const auto channel = [&](std::size_t index) HWY_ATTR {
        const std::size_t from = index * kBlockColumns;
        return exactly(upper + from, lower + from, share);
    };
    return {channel(0), channel(1), channel(2),
            kAlpha ? channel(3) : hn::Set(Words(), 255 << kHalvesBits)};
}

HWY_INLINE Word pixels(const Blends& blends) {
    const Words d;
    const Word red = hn::And(hn::ShiftRight<kHalvesBits>(blends.red), hn::Set(d, 0xFF));
    const Word green = hn::And(hn::ShiftRight<kHalvesBits - 8>(blends.green), hn::Set(d, 0xFF00));
    const Word blue = hn::And(hn::ShiftLeft<16 - kHalvesBits>(blends.blue), hn::Set(d, 0xFF0000));
    const Word alpha = hn::And(hn::ShiftLeft<24 - kHalvesBits>(blends.alpha), hn::Set(d, -1 << 24));
    return hn::Or(hn::Or(red, green), hn::Or(blue, alpha));
}

// The pixels of whole blocks. Without kAlpha both rows are opaque, and alphas are not read.
template <bool kAlpha>
void blendBlocks(const RowPair& rows, std::size_t blocks, UInt32* target) {
    const Words d;
    const auto share = hn::Set(Floats(), static_cast<float>(rows.share));
    auto* words = reinterpret_cast<std::int32_t*>(target);
    for (std::size_t block = 0; block < blocks; ++block) {
        for (std::size_t at = 0; at < kBlockColumns; at += hn::Lanes(d), words += hn::Lanes(d)) {
            const float* upper = rows.upper[block].values + at;
            const float* lower = rows.lower[block].values + at;
            const auto channel = [&](std::size_t index) HWY_ATTR {
                const std::size_t from = index * kBlockColumns;
                return blended(upper + from, lower + from, share);
            };
            Blends blends{channel(0), channel(1), channel(2), hn::Set(d, 255 << kHalvesBits)};
            auto doubts =
                hn::Or(hn::Or(doubtful(blends.red), doubtful(blends.green)), doubtful(blends.blue));
            if constexpr (kAlpha) {
                blends.alpha = channel(3);
                doubts = hn::Or(doubts, doubtful(blends.alpha));
            }
            if (HWY_UNLIKELY(!hn::AllFalse(d, doubts)))
                blends = exactly<kAlpha>(upper, lower, rows.share);
            hn::StoreU(pixels(blends), d, words);
        }
    }
}

void blendVectors(const RowPair& rows, std::size_t blocks, bool areOpaque, UInt32* target) {
    if (areOpaque) return blendBlocks<false>(rows, blocks, target);
    blendBlocks<true>(rows, blocks, target);
}

#else

void blendVectors(const RowPair& /*rows*/, std::size_t /*blocks*/, bool /*areOpaque*/,
                  UInt32* /*target*/) {}

#endif

}  // namespace tavio::stretch::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace tavio::stretch {
namespace {

void blendPlainly(const PassedRow& upper, const PassedRow& lower, std::uint64_t beyond,
                  std::uint64_t total, std::span<UInt32> target) {
    const Divider divider(total);
    for (std::size_t column = 0; column < target.size(); ++column) {
        const float* above = upper.blocks[column / kBlockColumns].values + column % kBlockColumns;
        const float* below = lower.blocks[column / kBlockColumns].values + column % kBlockColumns;
        UInt32 pixel = 0;
        for (std::size_t channel = 0; channel < kChannels; ++channel) {
            const auto u = static_cast<std::uint64_t>(above[channel * kBlockColumns]) - kMargin;
            const auto v = static_cast<std::uint64_t>(below[channel * kBlockColumns]) - kMargin;
            const std::uint64_t sum = u * (total - beyond) + v * beyond;
            const std::uint64_t value = divider.quotient(sum >> kFractionBits);
            pixel |= static_cast<UInt32>(value) << (8 * channel);
        }
        target[column] = pixel;
    }
}

}  // namespace

void blendRows(const PassedRow& upper, const PassedRow& lower, std::uint64_t beyond,
               std::uint64_t total, std::span<UInt32> target) {
    assert(total >= 2 && total % 2 == 0 && total <= std::uint64_t{1} << 29 && beyond <= total);
    assert(upper.blocks.size() == blocksOf(target.size()));
    assert(lower.blocks.size() == upper.blocks.size());
    if (total > kMaxTotal || machine::instructionSet() == machine::InstructionSet::kPlain)
        return blendPlainly(upper, lower, beyond, total, target);
    const bool areOpaque = upper.isOpaque && lower.isOpaque;
    const double share = static_cast<double>(beyond) / static_cast<double>(total);
    RowPair rows{upper.blocks.data(), lower.blocks.data(), share};
    const std::size_t blocks = target.size() / kBlockColumns;
    TAVIO_CHOSEN_FORM(blendVectors)(rows, blocks, areOpaque, target.data());
    const std::span<UInt32> rest = target.subspan(blocks * kBlockColumns);
    if (rest.empty()) return;
    std::array<UInt32, kBlockColumns> last{};
    rows.upper += blocks;
    rows.lower += blocks;
    TAVIO_CHOSEN_FORM(blendVectors)(rows, 1, areOpaque, last.data());
    std::copy_n(last.begin(), rest.size(), rest.begin());
}

}  // namespace tavio::stretch
#endif
