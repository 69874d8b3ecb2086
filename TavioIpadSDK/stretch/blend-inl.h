// Blending vectors of one channel of two passed rows.
//
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

#include <cstddef>
#include <cstdint>

#include "TavioIpadSDK/machine/vectors-inl.h"
#include "TavioIpadSDK/stretch/passed_row.h"

#ifndef TAVIO_STRETCH_BLEND_ONCE
#define TAVIO_STRETCH_BLEND_ONCE
namespace tavio::stretch {

inline constexpr int kHalvesBits = kFractionBits - 1;  // fraction bits in halves of blends
inline constexpr std::int32_t kDoubtful = 4;           // halves above a multiple; a power of 2
inline constexpr double kAboveExact = 1.0 / (1 << 26);
inline constexpr float kToHalves = 1
                                   << (kFractionBits + 8);  // floats from here on are even numbers
inline constexpr std::uint64_t kMaxBlendTotal = 1 << 24;

}  // namespace tavio::stretch
#endif

// Highway's way of compiling a header once for each instruction set.
#if defined(TAVIO_STRETCH_BLEND_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef TAVIO_STRETCH_BLEND_INL_H_
#undef TAVIO_STRETCH_BLEND_INL_H_
#else
#define TAVIO_STRETCH_BLEND_INL_H_
#endif

HWY_BEFORE_NAMESPACE();
namespace tavio::stretch::HWY_NAMESPACE {

#if HWY_TARGET != HWY_SCALAR && HWY_TARGET != HWY_EMU128

namespace hn = hwy::HWY_NAMESPACE;

using Floats = hn::ScalableTag<float>;
using Words = hn::RebindToSigned<Floats>;
using Word = hn::Vec<Words>;
using Doubles = hn::Repartition<double, Floats>;

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

#endif

}  // namespace tavio::stretch::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
