// Black or white by the sign of a whole number. A pixel is black where 0.299 red + 0.587 green +
// 0.114 blue is below 128, and so where
//
//   sum = 299 red + 587 green + 114 blue - 128000
//
// is negative: (127, 127, 127) gives -1000, black, and (129, 129, 129) gives 1000, white. Where the
// sum is exactly 0, a tie, the rounding of the doubles decides: (128, 128, 128) is black. There are
// 111 such colours. No two of them have the same red, so a table of 256 bits tells by the red
// whether 1 is subtracted from the sum. It is used only for ties.
//
// The bytes of a pixel are two pairs of 16-bit numbers, and vectors multiply and add by pairs:
//
//   32 bits of memory     red        green      blue       alpha
//   even bytes            red x 299          +  blue x 114            added, less 128000: the sum
//   odd bytes                        green x 587     +     alpha x 0
//
// Four vectors of sums shrink to one of entries. Saturation to 16 bits keeps sign and zero; then
// the upper bytes, which have the sign, are put side by side:
//
//   sums          a a a a    b b b b    c c c c    d d d d      32 bits each
//   saturated     a a a a b b b b       c c c c d d d d         16 bits each
//   upper bytes   a a a a b b b b c c c c d d d d               8 bits each
//
// In vectors longer than 16 bytes each 16 bytes do this on their own, and the groups of four are
// put in order at the end:
//
//   upper bytes   a0 b0 c0 d0   a1 b1 c1 d1                     groups of four entries
//   entries       a0 a1 b0 b1   c0 c1 d0 d1
#include "TavioIpadSDK/imaging/threshold_rows.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cstddef>
#include <cstdint>

#include "TavioIpadSDK/imaging/entries.h"
#include "TavioIpadSDK/imaging/grey.h"
#include "TavioIpadSDK/machine/instruction_set.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "TavioIpadSDK/imaging/threshold_rows.cpp"
#include "TavioIpadSDK/machine/vectors-inl.h"

HWY_BEFORE_NAMESPACE();
namespace tavio::imaging::HWY_NAMESPACE {

#if HWY_TARGET != HWY_SCALAR && HWY_TARGET != HWY_EMU128

namespace hn = hwy::HWY_NAMESPACE;

using BytesTag = hn::ScalableTag<Byte>;
using HalvesTag = hn::ScalableTag<std::int16_t>;
using UnsignedHalvesTag = hn::ScalableTag<std::uint16_t>;
using SumsTag = hn::ScalableTag<std::int32_t>;
using WordsTag = hn::ScalableTag<UInt32>;
using Halves = hn::Vec<HalvesTag>;
using Sums = hn::Vec<SumsTag>;
using Words = hn::Vec<WordsTag>;

constexpr int kRed = 299;
constexpr int kGreen = 587;
constexpr int kBlue = 114;
constexpr int kThreshold = 1000 * DITHERTHRESHOLD;

constexpr std::size_t kLanes = HWY_MAX_BYTES / sizeof(UInt32);
constexpr std::size_t kStep = 4 * kLanes;  // pixels done at once

// The distance of prefetching: the arithmetic takes less time than reading the pixels from memory.
constexpr std::size_t kAhead = 4096;

// The reds of the black ties: bit c of left[r] is red 16 r + c, bit c of right[r] is 16 r + 8 + c.
struct BlackTies {
    std::array<Byte, 16> left{};
    std::array<Byte, 16> right{};
};

constexpr BlackTies findBlackTies() {
    BlackTies ties;
    for (int red = 0; red < 256; ++red) {
        for (int green = 0; green < 256; ++green) {
            const int rest = kThreshold - kRed * red - kGreen * green;
            const int blue = rest / kBlue;
            if (rest < 0 || rest % kBlue != 0 || blue > 255) continue;
            if (!isBlack(static_cast<Byte>(red), static_cast<Byte>(green), static_cast<Byte>(blue)))
                continue;
            auto& half = red % 16 < 8 ? ties.left : ties.right;
            const auto row = static_cast<std::size_t>(red / 16);
            half[row] = static_cast<Byte>(half[row] | (1 << red % 8));
        }
    }
    return ties;
}

// Two factors of 16 bits in every 32.
HWY_INLINE Halves factors(int even, int odd) {
    const auto both = hn::Set(WordsTag(), static_cast<UInt32>(even | (odd << 16)));
    return hn::BitCast(HalvesTag(), both);
}

HWY_INLINE Sums sumsOf(Words pixels) {
    const HalvesTag halves;
    const SumsTag d;
    const auto evenBytes = hn::And(pixels, hn::Set(WordsTag(), 0x00FF00FF));
    const auto oddBytes = hn::ShiftRight<8>(hn::BitCast(UnsignedHalvesTag(), pixels));
    const auto even = hn::BitCast(halves, evenBytes);
    const auto odd = hn::BitCast(halves, oddBytes);
    Sums sums = hn::Zero(d);
    Sums others = hn::Zero(d);
    sums = hn::ReorderWidenMulAccumulate(d, even, factors(kRed, kBlue), sums, others);
    sums = hn::ReorderWidenMulAccumulate(d, odd, factors(kGreen, 0), sums, others);
    sums = hn::RearrangeToOddPlusEven(sums, others);
    return hn::Sub(sums, hn::Set(d, kThreshold));
}

// Sums that are negative for black ties as well. Other pixels of the same red may lose one too, and
// keep their sign: a positive sum does not become negative by it.
HWY_INLINE Sums withoutTies(Words pixels, Sums sums) {
    alignas(16) static constexpr BlackTies kTies = findBlackTies();
    alignas(16) static constexpr Byte kLeft[16] = {1, 2, 4, 8, 16, 32, 64, 128};
    alignas(16) static constexpr Byte kRight[16] = {0, 0, 0, 0, 0,  0,  0,  0,
                                                    1, 2, 4, 8, 16, 32, 64, 128};
    const BytesTag bytes;
    const WordsTag words;
    const auto lookedUp = [&](const Byte* table, Words index) {
        const auto found =
            hn::TableLookupBytes(hn::LoadDup128(bytes, table), hn::BitCast(bytes, index));
        return hn::BitCast(words, found);
    };
    const auto row = hn::And(hn::ShiftRight<4>(pixels), hn::Set(words, 0x0F));
    const auto column = hn::And(pixels, hn::Set(words, 0x0F));
    const auto left = hn::And(lookedUp(kTies.left.data(), row), lookedUp(kLeft, column));
    const auto right = hn::And(lookedUp(kTies.right.data(), row), lookedUp(kRight, column));
    const auto bit = hn::And(hn::Or(left, right), hn::Set(words, 0xFF));
    return hn::Sub(sums, hn::BitCast(SumsTag(), hn::Min(bit, hn::Set(words, 1))));
}

// The order of the groups of four entries that puts those of the first vector first.
constexpr std::array<std::int32_t, kLanes> orderOfGroups() {
    constexpr std::size_t kBlocks = kLanes / 4;
    std::array<std::int32_t, kLanes> order{};
    for (std::size_t i = 0; i < kLanes; ++i)
        order[i] = static_cast<std::int32_t>(i % kBlocks * 4 + i / kBlocks);
    return order;
}

// Entries by the signs of saturated sums.
HWY_INLINE hn::Vec<BytesTag> entriesOf(Halves first, Halves second) {
    constexpr Byte kNone = 0x80;
    alignas(16) static constexpr Byte kToLeft[16] = {
        1, 3, 5, 7, 9, 11, 13, 15, kNone, kNone, kNone, kNone, kNone, kNone, kNone, kNone};
    alignas(16) static constexpr Byte kToRight[16] = {
        kNone, kNone, kNone, kNone, kNone, kNone, kNone, kNone, 1, 3, 5, 7, 9, 11, 13, 15};
    alignas(HWY_MAX_BYTES) static constexpr std::array<std::int32_t, kLanes> kGroups =
        orderOfGroups();
    const BytesTag bytes;
    const UnsignedHalvesTag halves;
    const WordsTag words;
    const auto left =
        hn::TableLookupBytesOr0(hn::BitCast(bytes, first), hn::LoadDup128(bytes, kToLeft));
    const auto right =
        hn::TableLookupBytesOr0(hn::BitCast(bytes, second), hn::LoadDup128(bytes, kToRight));
    const auto isBlack = hn::ShiftRight<7>(hn::BitCast(halves, hn::Or(left, right)));
    const auto isWhite = hn::AndNot(isBlack, hn::Set(halves, 0x0101));
    return hn::BitCast(bytes, hn::TableLookupLanes(hn::BitCast(words, isWhite),
                                                   hn::SetTableIndices(words, kGroups.data())));
}

// kStep pixels become as many entries.
HWY_INLINE void thresholdStep(const UInt32* pixels, Byte* entries) {
    const HalvesTag halves;
    const UnsignedHalvesTag d;
    const auto load = [&](std::size_t i) { return hn::LoadU(WordsTag(), pixels + i * kLanes); };
    auto first = hn::ReorderDemote2To(halves, sumsOf(load(0)), sumsOf(load(1)));
    auto second = hn::ReorderDemote2To(halves, sumsOf(load(2)), sumsOf(load(3)));
    const auto minimum = hn::Min(hn::BitCast(d, first), hn::BitCast(d, second));
    if (HWY_UNLIKELY(!hn::AllFalse(d, hn::Eq(minimum, hn::Zero(d))))) {
        const auto decided = [&](std::size_t i) { return withoutTies(load(i), sumsOf(load(i))); };
        first = hn::ReorderDemote2To(halves, decided(0), decided(1));
        second = hn::ReorderDemote2To(halves, decided(2), decided(3));
    }
    hn::StoreU(entriesOf(first, second), BytesTag(), entries);
}

// Prefetches kStep pixels.
HWY_INLINE void fetch(const UInt32* pixels) {
    constexpr std::size_t kLine = 64 / sizeof(UInt32);
    for (std::size_t i = 0; i < kStep; i += kLine) hwy::Prefetch(pixels + i);
}

// The rest of a row, less than kStep pixels, and the white past it.
void finishRow(const UInt32* pixels, std::size_t count, Byte* entries, std::size_t paddedCount) {
    std::array<UInt32, kStep> copied;
    std::array<Byte, kStep> results;
    const auto end = std::copy_n(pixels, count, copied.begin());
    std::fill(end, copied.end(), ~UInt32{0});
    thresholdStep(copied.data(), results.data());
    const std::size_t copies = std::min(kStep, paddedCount);
    std::copy_n(results.begin(), copies, entries);
    std::fill(entries + copies, entries + paddedCount, static_cast<Byte>(WHITE));
}

// Converts all rows and returns true.
bool thresholdVectors(const UInt32* pixels, std::size_t width, std::size_t rows, std::size_t padded,
                      Byte* entries) {
    const std::size_t lastStep = std::max(rows * width, kStep) - kStep;
    for (std::size_t row = 0; row < rows; ++row) {
        const std::size_t from = row * width;
        Byte* const to = entries + (rows - 1 - row) * padded;
        std::size_t column = 0;
        for (; column + kStep <= width; column += kStep) {
            fetch(pixels + std::min(from + column + kAhead, lastStep));
            thresholdStep(pixels + from + column, to + column);
        }
        finishRow(pixels + from + column, width - column, to + column, padded - column);
    }
    return true;
}

#else

bool thresholdVectors(const UInt32* /*pixels*/, std::size_t /*width*/, std::size_t /*rows*/,
                      std::size_t /*padded*/, Byte* /*entries*/) {
    return false;
}

#endif

}  // namespace tavio::imaging::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace tavio::imaging {
namespace {

void thresholdPlainly(const UInt32* pixels, std::size_t width, std::size_t rows, std::size_t padded,
                      Byte* entries) {
    for (std::size_t row = 0; row < rows; ++row) {
        Byte* const to = entries + (rows - 1 - row) * padded;
        for (std::size_t x = 0; x < width; ++x) {
            const UInt32 word = pixels[row * width + x];
            const bool black = isBlack(static_cast<Byte>(word), static_cast<Byte>(word >> 8),
                                       static_cast<Byte>(word >> 16));
            to[x] = static_cast<Byte>(black ? BLACK : WHITE);
        }
        std::fill(to + width, to + padded, static_cast<Byte>(WHITE));
    }
}

}  // namespace

void thresholdRows(std::span<const UInt32> pixels, std::int32_t width, std::span<Byte> entries) {
    if (width <= 0) return;
    const auto columns = static_cast<std::size_t>(width);
    const auto padded = static_cast<std::size_t>(paddedWidth(width));
    const std::size_t rows = pixels.size() / columns;
    assert(pixels.size() == rows * columns && entries.size() == rows * padded);
    const bool isPlain = machine::instructionSet() == machine::InstructionSet::kPlain;
    if (!isPlain &&
        TAVIO_CHOSEN_FORM(thresholdVectors)(pixels.data(), columns, rows, padded, entries.data()))
        return;
    thresholdPlainly(pixels.data(), columns, rows, padded, entries.data());
}

}  // namespace tavio::imaging
#endif
