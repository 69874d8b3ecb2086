// A band is a row of 8x8 bit squares, and each square is turned about its diagonal. All squares
// that fit side by side into vectors are turned at once: vector i holds piece after piece of row i.
//
// First the bits. Three rounds swap ever smaller squares across the diagonal, each between two
// vectors: the low half bytes of rows 0 to 3 with the high ones of rows 4 to 7, then pairs of
// bits, then single bits.
//
//   row 0   A a        A B
//   ...         ->            with A = 4x4 bits, then inside each of the four 2x2, then 1x1
//   row 4   B b        a b
//
// Now byte p of vector j is column 8 p + j. Then the bytes: three rounds of interleaving bring the
// eight columns of each p together.
//
//   0 and 4, 1 and 5, 2 and 6, 3 and 7  ->  0 4, 1 5, 2 6, 3 7
//   04 and 26, 15 and 37                ->  0 2 4 6, 1 3 5 7
//   0246 and 1357                       ->  0 1 2 3 4 5 6 7
//
// Vectors interleave within 16 bytes only, so each result is stored in pieces of 16 bytes. Paper is
// mostly white: if all eight rows are blank, zeros are written at once.
#include "TavioIpadSDK/encoder/band_columns.h"

#include <cassert>
#include <cstdint>

#include "TavioIpadSDK/machine/instruction_set.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "TavioIpadSDK/encoder/band_columns.cpp"
#include "TavioIpadSDK/machine/vectors-inl.h"

HWY_BEFORE_NAMESPACE();
namespace tavio::encoder::HWY_NAMESPACE {

#if HWY_TARGET != HWY_SCALAR && HWY_TARGET != HWY_EMU128

namespace hn = hwy::HWY_NAMESPACE;

// Swaps the bits of `upper` under `mask` with those of `lower` that are kShift further up.
template <int kShift, class V>
HWY_INLINE void swapBits(V& upper, V& lower, V mask) {
    const hn::Repartition<std::uint16_t, hn::DFromV<V>> wide;  // bytes have no shift of their own
    const hn::DFromV<V> d;
    const V moved = hn::BitCast(d, hn::ShiftRight<kShift>(hn::BitCast(wide, lower)));
    const V swapped = hn::And(hn::Xor(upper, moved), mask);
    upper = hn::Xor(upper, swapped);
    lower = hn::Xor(lower, hn::BitCast(d, hn::ShiftLeft<kShift>(hn::BitCast(wide, swapped))));
}

// Piece b of 16 bytes goes to out + 128 b, where the columns of piece b of the rows begin.
template <class V>
HWY_INLINE void storePieces(V columns, Byte* out) {
    const hn::DFromV<V> d;
    if constexpr (hn::MaxLanes(d) > 16) {
        const hn::Half<decltype(d)> half;
        storePieces(hn::LowerHalf(half, columns), out);
        storePieces(hn::UpperHalf(half, columns), out + 8 * hn::MaxLanes(half));
    } else {
        hn::StoreU(columns, d, out);
    }
}

// Interleaves four pairs of columns that belong to the same bytes: the two pieces lie side by side.
template <class V>
HWY_INLINE void storeQuarter(V c04, V c15, V c26, V c37, Byte* out) {
    const hn::DFromV<V> d;
    const V even = hn::InterleaveLower(d, c04, c26);
    const V odd = hn::InterleaveLower(d, c15, c37);
    const V evenUp = hn::InterleaveUpper(d, c04, c26);
    const V oddUp = hn::InterleaveUpper(d, c15, c37);
    storePieces(hn::InterleaveLower(d, even, odd), out);
    storePieces(hn::InterleaveUpper(d, even, odd), out + 16);
    storePieces(hn::InterleaveLower(d, evenUp, oddUp), out + 32);
    storePieces(hn::InterleaveUpper(d, evenUp, oddUp), out + 48);
}

// The columns of one vector of bytes of each row. `top` is in the band's first row.
template <class D>
HWY_INLINE void transposeVectors(D d, const Byte* top, std::size_t rowSize, Byte* out) {
    using V = hn::Vec<D>;
    V r0 = hn::LoadU(d, top), r1 = hn::LoadU(d, top - rowSize);
    V r2 = hn::LoadU(d, top - 2 * rowSize), r3 = hn::LoadU(d, top - 3 * rowSize);
    V r4 = hn::LoadU(d, top - 4 * rowSize), r5 = hn::LoadU(d, top - 5 * rowSize);
    V r6 = hn::LoadU(d, top - 6 * rowSize), r7 = hn::LoadU(d, top - 7 * rowSize);
    const V blank = hn::Set(d, 0xFF);
    const V all = hn::And(hn::And(hn::And(r0, r1), hn::And(r2, r3)),
                          hn::And(hn::And(r4, r5), hn::And(r6, r7)));
    if (hn::AllTrue(d, hn::Eq(all, blank))) {
        for (std::size_t i = 0; i < 8; ++i) hn::StoreU(hn::Zero(d), d, out + i * hn::Lanes(d));
        return;
    }
    const V halves = hn::Set(d, 0x0F), pairs = hn::Set(d, 0x33), singles = hn::Set(d, 0x55);
    r0 = hn::Xor(r0, blank), r1 = hn::Xor(r1, blank), r2 = hn::Xor(r2, blank);
    r3 = hn::Xor(r3, blank), r4 = hn::Xor(r4, blank), r5 = hn::Xor(r5, blank);
    r6 = hn::Xor(r6, blank), r7 = hn::Xor(r7, blank);
    swapBits<4>(r0, r4, halves), swapBits<4>(r1, r5, halves);
    swapBits<4>(r2, r6, halves), swapBits<4>(r3, r7, halves);
    swapBits<2>(r0, r2, pairs), swapBits<2>(r1, r3, pairs);
    swapBits<2>(r4, r6, pairs), swapBits<2>(r5, r7, pairs);
    swapBits<1>(r0, r1, singles), swapBits<1>(r2, r3, singles);
    swapBits<1>(r4, r5, singles), swapBits<1>(r6, r7, singles);
    storeQuarter(hn::InterleaveLower(d, r0, r4), hn::InterleaveLower(d, r1, r5),
                 hn::InterleaveLower(d, r2, r6), hn::InterleaveLower(d, r3, r7), out);
    storeQuarter(hn::InterleaveUpper(d, r0, r4), hn::InterleaveUpper(d, r1, r5),
                 hn::InterleaveUpper(d, r2, r6), hn::InterleaveUpper(d, r3, r7), out + 64);
}

// Writes all columns and returns true if the rows fill a vector; else returns false. The last
// vector begins early enough to end with the row.
template <class D>
HWY_INLINE bool transposeRows(D d, const Byte* top, std::size_t rowSize, Byte* columns) {
    const std::size_t lanes = hn::Lanes(d);
    if (rowSize < lanes) return false;
    for (std::size_t byte = 0; byte < rowSize; byte += lanes) {
        const std::size_t first = byte + lanes <= rowSize ? byte : rowSize - lanes;
        transposeVectors(d, top + first, rowSize, columns + 8 * first);
    }
    return true;
}

bool transposeByVectors(const Byte* top, std::size_t rowSize, Byte* columns) {
    return transposeRows(hn::ScalableTag<Byte>(), top, rowSize, columns) ||
           transposeRows(hn::FixedTag<Byte, 16>(), top, rowSize, columns);
}

#else

bool transposeByVectors(const Byte* /*top*/, std::size_t /*rowSize*/, Byte* /*columns*/) {
    return false;
}

#endif

}  // namespace tavio::encoder::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace tavio::encoder {
namespace {

// Eight rows of eight pixels as one word: the first row in the top byte, the leftmost pixel in each
// byte's top bit; a 1 bit prints.
using Block = std::uint64_t;

Block gatherBlock(const Byte* top, std::size_t rowSize) {
    Block block = 0;
    for (std::size_t row = 0; row < kBandRows; ++row)
        block = (block << 8) | static_cast<Byte>(~*(top - row * rowSize));
    return block;
}

// The same three rounds within one word.
constexpr Block transposed(Block block) {
    Block swap = (block ^ (block >> 7)) & 0x00AA00AA00AA00AAULL;
    block ^= swap ^ (swap << 7);
    swap = (block ^ (block >> 14)) & 0x0000CCCC0000CCCCULL;
    block ^= swap ^ (swap << 14);
    swap = (block ^ (block >> 28)) & 0x00000000F0F0F0F0ULL;
    return block ^ swap ^ (swap << 28);
}

void transposePlainly(const Byte* top, std::size_t rowSize, Byte* columns) {
    for (std::size_t byte = 0; byte < rowSize; ++byte) {
        const Block block = transposed(gatherBlock(top + byte, rowSize));
        for (std::size_t i = 0; i < 8; ++i)
            columns[8 * byte + i] = static_cast<Byte>(block >> (56 - 8 * i));
    }
}

}  // namespace

void transposeBand(std::span<const Byte> rows, std::size_t rowSize, std::span<Byte> columns) {
    assert(rows.size() == kBandRows * rowSize && columns.size() >= 8 * rowSize);
    if (rowSize == 0) return;
    const Byte* const top = rows.data() + (kBandRows - 1) * rowSize;
    const bool isPlain = machine::instructionSet() == machine::InstructionSet::kPlain;
    if (isPlain || !TAVIO_CHOSEN_FORM(transposeByVectors)(top, rowSize, columns.data()))
        transposePlainly(top, rowSize, columns.data());
}

}  // namespace tavio::encoder
#endif
