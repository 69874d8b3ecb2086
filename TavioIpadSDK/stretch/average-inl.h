// Averaging vectors of passed channels.
//
// Passed rows are added up in double, times their weights. The sums are divided by the total T of
// the weights and by 2^16, for the fraction bits. Half a unit has been added to every passed row,
// so truncating rounds:
//
//     row 0 * w0 |
//     row 1 * w1 |  added up: S      result = floor(S / (2^16 * T))
//     row 2 * w2 |
//
// The sums are exact: whole numbers of at most 2^24 * T, below 2^53. Vectors then compute
//
//     (S + 1/2) * (1 / (2^16 * T))
//
// Proof that truncating this to a whole number is exact for T of up to 2^26: with the 1/2, which S
// has room for, the exact value is at least 2^-17 / T, so 2^-43, away from a whole number, and it
// is at most 2^8. The factor and the product have a relative error of 2^-53 each, together an error
// of at most 2^-44.

#include <cstddef>
#include <cstdint>

#include "TavioIpadSDK/machine/vectors-inl.h"
#include "TavioIpadSDK/stretch/passed_row.h"

#ifndef TAVIO_STRETCH_AVERAGE_ONCE
#define TAVIO_STRETCH_AVERAGE_ONCE
namespace tavio::stretch {

inline constexpr std::uint64_t kMaxAverageTotal = 1 << 26;

// A mean is (sum + constant) * factor, truncated.
struct AverageFactors {
    double constant;
    double factor;
};

inline AverageFactors averageFactors(std::uint64_t total) {
    const auto divisor = static_cast<double>(total);
    return {0.5 - kMargin * divisor, 1 / (divisor * (1 << kFractionBits))};
}

}  // namespace tavio::stretch
#endif

// Highway's way of compiling a header once for each instruction set.
#if defined(TAVIO_STRETCH_AVERAGE_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef TAVIO_STRETCH_AVERAGE_INL_H_
#undef TAVIO_STRETCH_AVERAGE_INL_H_
#else
#define TAVIO_STRETCH_AVERAGE_INL_H_
#endif

HWY_BEFORE_NAMESPACE();
namespace tavio::stretch::HWY_NAMESPACE {

#if HWY_TARGET != HWY_SCALAR && HWY_TARGET != HWY_EMU128

namespace hn = hwy::HWY_NAMESPACE;

using Doubles = hn::ScalableTag<double>;
using Floats = hn::Rebind<float, Doubles>;
using Words = hn::Rebind<std::int32_t, Doubles>;
using Word = hn::Vec<Words>;

// sums += values * weight, kCount of them
template <std::size_t kCount>
HWY_INLINE void addValues(const float* values, hn::Vec<Doubles> weight, double* sums) {
    const Doubles d;
    for (std::size_t at = 0; at < kCount; at += hn::Lanes(d)) {
        const auto value = hn::PromoteTo(d, hn::Load(Floats(), values + at));
        hn::Store(hn::MulAdd(value, weight, hn::Load(d, sums + at)), d, sums + at);
    }
}

// (sums + constant) * factor, truncated.
HWY_INLINE Word averages(const double* sums, hn::Vec<Doubles> constant, hn::Vec<Doubles> factor) {
    const auto sum = hn::Add(hn::Load(Doubles(), sums), constant);
    return hn::DemoteTo(Words(), hn::Mul(sum, factor));
}

#endif

}  // namespace tavio::stretch::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
