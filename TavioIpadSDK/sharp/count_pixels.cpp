// The pixels become values, one byte each. These are read so that each lane of a vector is a dot: at
// three pixels a dot, one vector holds the first pixels of the dots, one the second and one the third.
#include "TavioIpadSDK/sharp/count_pixels.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "TavioIpadSDK/machine/instruction_set.h"
#include "TavioIpadSDK/sharp/pixel_value.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "TavioIpadSDK/sharp/count_pixels.cpp"
#include "TavioIpadSDK/machine/vectors-inl.h"

HWY_BEFORE_NAMESPACE();
namespace tavio::sharp::HWY_NAMESPACE {

#if HWY_TARGET != HWY_SCALAR && HWY_TARGET != HWY_EMU128

namespace hn = hwy::HWY_NAMESPACE;

using WordsTag = hn::ScalableTag<std::uint32_t>;
using GreysTag = hn::Rebind<Byte, WordsTag>;
using SumsTag = hn::CappedTag<std::int16_t, kPiece>;
using ValuesTag = hn::Rebind<Byte, SumsTag>;
using Words = hn::Vec<WordsTag>;
using Values = hn::Vec<ValuesTag>;

constexpr WordsTag kWords;
constexpr GreysTag kGreys;
constexpr SumsTag kSums;
constexpr ValuesTag kValues;
constexpr std::size_t kPixelLanes = hn::MaxLanes(WordsTag());
constexpr std::size_t kDotLanes = hn::MaxLanes(SumsTag());

// luminanceOf() of each pixel, and 0 of black ink.
HWY_INLINE Words luminances(Words pixels) {
    const auto byteOf = [](Words words) { return hn::And(words, hn::Set(kWords, 255)); };
    const Words red = hn::Mul(byteOf(hn::ShiftRight<16>(pixels)), hn::Set(kWords, 299));
    const Words green = hn::Mul(byteOf(hn::ShiftRight<8>(pixels)), hn::Set(kWords, 587));
    const Words blue = hn::Mul(byteOf(pixels), hn::Set(kWords, 114));
    const Words thousandths = hn::Add(hn::Add(red, green), hn::Add(blue, hn::Set(kWords, 500)));
    const Words rounded =
        hn::ShiftRight<22>(hn::Mul(hn::ShiftRight<3>(thousandths), hn::Set(kWords, 33'555)));
    const Words colours = hn::And(pixels, hn::Set(kWords, kColour));
    return hn::IfThenZeroElse(hn::Eq(colours, hn::Set(kWords, kBlackInk)), rounded);
}

// count: a multiple of kPiece. Most pixels are grey, and their luminance is any of their bytes.
HWY_INLINE void toGreys(const std::uint32_t* pixels, std::size_t count, Byte* greys) {
    for (std::size_t i = 0; i < count; i += kPixelLanes) {
        Words words = hn::LoadU(kWords, pixels + i);
        const Words differences =
            hn::And(hn::Xor(words, hn::ShiftRight<8>(words)), hn::Set(kWords, 0xFFFF));
        if (HWY_UNLIKELY(!hn::AllTrue(kWords, hn::Eq(differences, hn::Zero(kWords))))) {
            words = luminances(words);
        }
        hn::StoreU(hn::TruncateTo(kGreys, words), kGreys, greys + i);
    }
}

struct Counts {
    Values lowest;
    Values highest;
    Values darkest;
    Values lightest;
    hn::Vec<SumsTag> sums;
};

HWY_INLINE Counts noCounts() {
    const Values white = hn::Set(kValues, 255);
    const Values black = hn::Zero(kValues);
    return {white, black, white, black, hn::Zero(kSums)};
}

// Adds a pixel of each dot.
HWY_INLINE void add(Values greys, Counts& counts) {
    const auto isBlack = hn::Eq(hn::Min(greys, hn::Set(kValues, kLastBlack)), greys);
    const auto isWhite = hn::Eq(hn::Max(greys, hn::Set(kValues, kFirstWhite)), greys);
    const Values white = hn::Set(kValues, 255);
    const Values blackened = hn::IfThenZeroElse(isBlack, greys);
    const Values values = hn::IfThenElse(isWhite, white, blackened);
    counts.lowest = hn::Min(counts.lowest, values);
    counts.highest = hn::Max(counts.highest, values);
    counts.darkest = hn::Min(counts.darkest, hn::IfThenElse(isBlack, white, values));
    counts.lightest = hn::Max(counts.lightest, hn::IfThenZeroElse(isWhite, blackened));
    counts.sums = hn::Add(counts.sums, hn::PromoteTo(kSums, values));
}

// Adds a row of pixels of each dot.
template <std::size_t kFactor>
HWY_INLINE void addRow(const Byte* greys, Counts& counts) {
    Values first;
    Values second;
    Values third;
    Values fourth;
    if constexpr (kFactor == 1) {
        first = hn::LoadU(kValues, greys);
    } else if constexpr (kFactor == 2) {
        hn::LoadInterleaved2(kValues, greys, first, second);
    } else if constexpr (kFactor == 3) {
        hn::LoadInterleaved3(kValues, greys, first, second, third);
    } else {
        hn::LoadInterleaved4(kValues, greys, first, second, third, fourth);
    }
    add(first, counts);
    if constexpr (kFactor > 1) add(second, counts);
    if constexpr (kFactor > 2) add(third, counts);
    if constexpr (kFactor > 3) add(fourth, counts);
}

HWY_INLINE void store(const Counts& counts, std::size_t at, DotRow& row) {
    hn::StoreU(counts.sums, kSums, row.sums.data() + at);
    hn::StoreU(counts.lowest, kValues, row.lowest.data() + at);
    hn::StoreU(counts.highest, kValues, row.highest.data() + at);
    hn::StoreU(counts.darkest, kValues, row.darkest.data() + at);
    hn::StoreU(counts.lightest, kValues, row.lightest.data() + at);
}

template <std::size_t kFactor>
void countPieces(const PixelRows& pixels, PieceRange pieces, DotRow& row) {
    constexpr std::size_t kColumns = kPiece * kFactor;
    alignas(HWY_MAX_BYTES) std::array<std::array<Byte, kColumns>, kFactor> greys;
    for (std::size_t piece = pieces.first; piece < pieces.end; ++piece) {
        const std::uint32_t* const corner = pixels.fromPiece(piece - pieces.first).top;
        for (std::size_t y = 0; y < kFactor; ++y) {
            toGreys(corner + y * pixels.stride, kColumns, greys[y].data());
        }
        for (std::size_t dot = 0; dot < kPiece; dot += kDotLanes) {
            Counts counts = noCounts();
            for (const auto& line : greys) addRow<kFactor>(line.data() + dot * kFactor, counts);
            store(counts, piece * kPiece + dot + 1, row);
        }
    }
}

bool countVectors(const PixelRows& pixels, PieceRange pieces, DotRow& row) {
    switch (pixels.factor) {
        case 1:
            countPieces<1>(pixels, pieces, row);
            break;
        case 2:
            countPieces<2>(pixels, pieces, row);
            break;
        case 3:
            countPieces<3>(pixels, pieces, row);
            break;
        default:
            countPieces<4>(pixels, pieces, row);
    }
    return true;
}

#else

bool countVectors(const PixelRows& /*pixels*/, PieceRange /*pieces*/, DotRow& /*row*/) {
    return false;
}

#endif

}  // namespace tavio::sharp::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace tavio::sharp {
namespace {

// corner: the dot's first pixel.
void countDot(const std::uint32_t* corner, const PixelRows& pixels, std::size_t at, DotRow& row) {
    row.sums[at] = 0;
    row.lowest[at] = row.darkest[at] = 255;
    row.highest[at] = row.lightest[at] = 0;
    for (std::size_t y = 0; y < pixels.factor; ++y) {
        for (std::size_t x = 0; x < pixels.factor; ++x) {
            const Byte value = pixelValue(corner[y * pixels.stride + x]);
            row.sums[at] = static_cast<std::int16_t>(row.sums[at] + value);
            row.lowest[at] = std::min(row.lowest[at], value);
            row.highest[at] = std::max(row.highest[at], value);
            if (value == 0 || value == 255) continue;
            row.darkest[at] = std::min(row.darkest[at], value);
            row.lightest[at] = std::max(row.lightest[at], value);
        }
    }
}

}  // namespace

void countPixels(const PixelRows& pixels, PieceRange pieces, DotRow& row) {
    std::fill(row.isWhite.begin() + static_cast<std::ptrdiff_t>(pieces.first),
              row.isWhite.begin() + static_cast<std::ptrdiff_t>(pieces.end), Byte{0});
    if (TAVIO_CHOSEN_FORM(countVectors)(pixels, pieces, row)) return;
    const std::size_t first = pieces.first * kPiece;
    for (std::size_t dot = first; dot < pieces.end * kPiece; ++dot) {
        countDot(pixels.top + (dot - first) * pixels.factor, pixels, dot + 1, row);
    }
}

}  // namespace tavio::sharp
#endif
