// Plain packing makes one byte of eight entries, the first in the top bit. The byte wanted here is
// that byte shifted right by one as a signed number, which doubles its top bit and drops its lowest
// one. The processor gathers one bit from each byte of a vector, that of the first byte lowest, so
// the entries of each group only have to be put in the wanted order first:
//
//   entries     a b c d e f g h
//   reordered   g f e d c b a a      bytes; h is gone, a is there twice
//   gathered    a a b c d e f g      bits, the top one first
//
// This takes less time than reading the entries from memory, so they are prefetched well ahead.
#include "TavioIpadSDK/imaging/pack_entries.h"

#include <cassert>
#include <cstddef>

#include "TavioIpadSDK/imaging/entries.h"
#include "TavioIpadSDK/machine/instruction_set.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "TavioIpadSDK/imaging/pack_entries.cpp"
#include "TavioIpadSDK/machine/vectors-inl.h"

HWY_BEFORE_NAMESPACE();
namespace tavio::imaging::HWY_NAMESPACE {

#if HWY_TARGET != HWY_SCALAR && HWY_TARGET != HWY_EMU128

namespace hn = hwy::HWY_NAMESPACE;

// The distance of prefetching.
constexpr std::size_t kAhead = 16384;

// One vector of entries.
HWY_INLINE void packVector(const Byte* entries, Byte* packed) {
    const hn::ScalableTag<Byte> d;
    alignas(16) static constexpr Byte kWanted[16] = {6,  5,  4,  3,  2,  1, 0, 0,
                                                     14, 13, 12, 11, 10, 9, 8, 8};
    const auto wanted = hn::LoadDup128(d, kWanted);
    const auto bits = hn::TableLookupBytes(hn::LoadU(d, entries), wanted);
    hn::StoreMaskBits(d, hn::Eq(bits, hn::Set(d, WHITE)), packed);
}

// Packs the groups that fill whole vectors and returns their number.
std::size_t packVectors(const Byte* entries, std::size_t groups, Byte* packed) {
    constexpr std::size_t kStep = HWY_MAX_BYTES / 8;  // groups of one vector
    constexpr std::size_t kLine = 64 / 8;             // and of one line of the cache
    std::size_t done = 0;
    for (; done + kLine + kAhead / 8 <= groups; done += kLine) {
        hwy::Prefetch(entries + 8 * done + kAhead);
        for (std::size_t i = 0; i < kLine; i += kStep)
            packVector(entries + 8 * (done + i), packed + done + i);
    }
    for (; done + kStep <= groups; done += kStep) packVector(entries + 8 * done, packed + done);
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
    assert(packed.size() >= groups);
    const bool isPlain = machine::instructionSet() == machine::InstructionSet::kPlain;
    const std::size_t done =
        isPlain ? 0 : TAVIO_CHOSEN_FORM(packVectors)(entries.data(), groups, packed.data());
    packPlainly(entries.data() + 8 * done, groups - done, packed.data() + done);
}

}  // namespace tavio::imaging
#endif
