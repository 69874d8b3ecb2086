// Packing as a plain one, shifted. Eight entries, the first in the top bit, are one byte; the byte
// that the printer wants is that byte shifted right by one as a signed number, which doubles its
// top bit and drops its lowest one:
//
//   entries     a b c d e f g h
//   bits        a b c d e f g h
//   shifted     a a b c d e f g
//
// A vector of entries becomes bits by reversing each group of eight and comparing with 0: the
// processor then gathers one bit from each lane, that of the first lane lowest.
#include "TavioIpadSDK/imaging/pack_entries.h"

#include <cstddef>
#include <cstdint>

#include "TavioIpadSDK/platform/instruction_set.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "TavioIpadSDK/imaging/pack_entries.cpp"
#include <hwy/foreach_target.h>
// Must follow foreach_target.h.
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace tavio::imaging::HWY_NAMESPACE {

#if HWY_TARGET != HWY_SCALAR && HWY_TARGET != HWY_EMU128

namespace hn = hwy::HWY_NAMESPACE;

// Packs the groups that fill whole vectors and returns how many those are.
std::size_t packVectors(const Byte* entries, std::size_t groups, Byte* packed) {
    const hn::ScalableTag<Byte> d;
    const std::size_t lanes = hn::Lanes(d);
    alignas(16) static constexpr Byte kReversed[16] = {7,  6,  5,  4,  3,  2,  1, 0,
                                                       15, 14, 13, 12, 11, 10, 9, 8};
    const auto reversed = hn::LoadDup128(d, kReversed);
    const auto zero = hn::Zero(d);
    std::size_t done = 0;
    for (; (done + lanes / 8) <= groups; done += lanes / 8) {
        const auto group = hn::TableLookupBytes(hn::LoadU(d, entries + 8 * done), reversed);
        hn::StoreMaskBits(d, hn::Ne(group, zero), packed + done);
    }
    for (std::size_t i = 0; i < done; ++i)
        packed[i] = static_cast<Byte>(static_cast<std::int8_t>(packed[i]) >> 1);
    return done;
}

#else

std::size_t packVectors(const Byte* /*entries*/, std::size_t /*groups*/, Byte* /*packed*/) {
    return 0;
}

#endif

}  // namespace tavio::imaging::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace tavio::imaging {
namespace {

HWY_EXPORT(packVectors);

void packPlainly(const Byte* entries, std::size_t groups, Byte* packed) {
    for (std::size_t i = 0; i < groups; ++i) {
        unsigned bits = entries[8 * i];
        for (std::size_t j = 0; j < 7; ++j) bits = (bits << 1) | entries[8 * i + j];
        packed[i] = static_cast<Byte>(bits);
    }
}

}  // namespace

void packEntries(std::span<const Byte> entries, std::span<Byte> packed) {
    const std::size_t groups = entries.size() / 8;
    const bool isPlain = platform::instructionSet() == platform::InstructionSet::kPlain;
    const std::size_t done =
        isPlain ? 0 : HWY_DYNAMIC_DISPATCH(packVectors)(entries.data(), groups, packed.data());
    packPlainly(entries.data() + 8 * done, groups - done, packed.data() + done);
}

}  // namespace tavio::imaging
#endif
