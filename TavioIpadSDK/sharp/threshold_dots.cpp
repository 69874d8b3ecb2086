#include "TavioIpadSDK/sharp/threshold_dots.h"

#include <algorithm>
#include <cstddef>

#include "TavioIpadSDK/machine/instruction_set.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "TavioIpadSDK/sharp/threshold_dots.cpp"
#include "TavioIpadSDK/machine/vectors-inl.h"

HWY_BEFORE_NAMESPACE();
namespace tavio::sharp::HWY_NAMESPACE {

#if HWY_TARGET != HWY_SCALAR && HWY_TARGET != HWY_EMU128

namespace hn = hwy::HWY_NAMESPACE;

using BytesTag = hn::ScalableTag<Byte>;
constexpr BytesTag kBytes;
constexpr std::size_t kLanes = hn::MaxLanes(BytesTag());

// Makes dots of the first values, and returns how many these are. Each eight values are put in reverse
// order, since the first one is the top bit of a byte.
std::size_t thresholdVectors(std::span<const Byte> greys, Byte lastBlack, Byte* bits) {
    alignas(16) static constexpr Byte kReversed[16] = {7,  6,  5,  4,  3,  2,  1, 0,
                                                       15, 14, 13, 12, 11, 10, 9, 8};
    const auto reversed = hn::LoadDup128(kBytes, kReversed);
    const auto limit = hn::Set(kBytes, lastBlack);
    std::size_t at = 0;
    for (; at + kLanes <= greys.size(); at += kLanes) {
        const auto values = hn::TableLookupBytes(hn::LoadU(kBytes, greys.data() + at), reversed);
        const auto isBlack = hn::Eq(hn::Min(values, limit), values);
        hn::StoreMaskBits(kBytes, isBlack, bits + at / 8);
    }
    return at;
}

#else

std::size_t thresholdVectors(std::span<const Byte> /*greys*/, Byte /*lastBlack*/, Byte* /*bits*/) {
    return 0;
}

#endif

}  // namespace tavio::sharp::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace tavio::sharp {

void thresholdDots(std::span<const Byte> greys, Byte lastBlack, std::span<Byte> bits) {
    std::size_t at = TAVIO_CHOSEN_FORM(thresholdVectors)(greys, lastBlack, bits.data());
    std::ranges::fill(bits.subspan(at / 8), Byte{0});
    for (; at < greys.size(); ++at) {
        const int bit = greys[at] <= lastBlack ? 0x80 >> at % 8 : 0;
        bits[at / 8] = static_cast<Byte>(bits[at / 8] | bit);
    }
}

}  // namespace tavio::sharp
#endif
