// A strip of rows is diffused by a skewed wave (diffuse_step-inl.h describes one step):
//
//            column ->                                   with 4 lanes
//   lane 0   # # # # # # # # # # # # # o . . . . .   the last row of the strip above once more
//   lane 1   # # # # # # # # # # o . . . . . . . .   #  done
//   lane 2   # # # # # # # o . . . . . . . . . . .   o  in this step
//   lane 3   # # # # o . . . . . . . . . . . . . .
//
// Around the steps:
//
//   before   four columns of words are turned from words of a row into bytes of a column, one byte
//            a lane; a quarter of this in each of the four steps before, whose arithmetic leaves
//            the time for it
//   after    a step leaves one bit a lane, white or black; every 64 steps these are turned back into
//            entries, since every row lies in another page of memory
//
// The lanes are in different columns, so near the edges of the picture some lanes are outside.
// Pieces of 16 steps near the edges are compiled on their own: what the lanes do outside is masked,
// and only words of the picture are read, into a copy. Away from the edges words are read where
// they lie.
#include "TavioIpadSDK/imaging/diffuse_strip.h"

#include <algorithm>
#include <cassert>
#include <cstring>
#include <thread>

#include "TavioIpadSDK/imaging/entries.h"
#include "TavioIpadSDK/machine/instruction_set.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "TavioIpadSDK/imaging/diffuse_strip.cpp"
#include "TavioIpadSDK/imaging/diffuse_step-inl.h"
#include "TavioIpadSDK/machine/vectors-inl.h"

HWY_BEFORE_NAMESPACE();
namespace tavio::imaging::HWY_NAMESPACE {

#if HWY_TARGET != HWY_SCALAR && HWY_TARGET != HWY_EMU128

constexpr int kPiece = 16;       // steps
constexpr int kGroup = 4;        // columns turned at once: 16 bytes of a row
constexpr int kBitSteps = 64;    // entries of so many steps are written at once
constexpr int kPrefetched = 48;  // words
constexpr int kBitParts = kBitSteps / kLanes;
constexpr int kBitFours = (kLanes + 31) / 32;  // four bytes of bits each

// Early enough for the first pixel of lane 0 to enter.
constexpr int kFirstStep = -kGroup;
static_assert(kEntersAhead <= kGroup);

// A piece copies up to kPiece words from the end of the row above on.
static_assert(kPiece <= static_cast<int>(LastRow::kPast));

// The row of lane l + 1 is row l of the strip, and enters in lane l; the row above in the last.
// Words are turned a group ahead of their steps, so a piece that begins with step s turns the words
// that enter from step s + kGroup on.
struct Buffers {
    alignas(64) UInt32 words[kLanes][kPiece];  // of this piece, near the edges
    alignas(64) Byte columns[2][16][kLanes];   // of this group and the next, half turned
    alignas(64) Byte values[kPiece][3][kLanes];
    alignas(64) Byte black[kBitParts][kBitFours][kLanes][4];  // a bit a lane, a row of four a step
};

// ---- Turning ------------------------------------------------------------------------------------

// Two of the four rounds of interleaving that turn 16 x 16 bytes in each block of 16 lanes. The
// first two rounds take vectors i, i + 4, i + 8, i + 12 and give vectors 4 i to 4 i + 3 of the
// next; the other two do the same once more.
HWY_INLINE void interleave(VecU8& a, VecU8& b, VecU8& c, VecU8& d) {
    const VecU8 lowAC = hn::InterleaveLower(kU8, a, c);
    const VecU8 highAC = hn::InterleaveUpper(kU8, a, c);
    const VecU8 lowBD = hn::InterleaveLower(kU8, b, d);
    const VecU8 highBD = hn::InterleaveUpper(kU8, b, d);
    a = hn::InterleaveLower(kU8, lowAC, lowBD);
    b = hn::InterleaveUpper(kU8, lowAC, lowBD);
    c = hn::InterleaveLower(kU8, highAC, highBD);
    d = hn::InterleaveUpper(kU8, highAC, highBD);
}

HWY_INLINE void copyWords(const UInt32* from, UInt32* to) {
    const hn::ScalableTag<UInt32> d;
    constexpr int kWords = static_cast<int>(hn::MaxLanes(d));
    for (int i = 0; i < kPiece; i += kWords) hn::Store(hn::LoadU(d, from + i), d, to + i);
}

// Four words each of rows 0, 16, ... : one row in each block of 16 lanes.
template <class D>
HWY_INLINE hn::Vec<D> fourWords(D d, const UInt32* const* rows, int column) {
    constexpr std::size_t kWidth = hn::MaxLanes(D());
    if constexpr (kWidth == 16) {
        return hn::LoadU(d, reinterpret_cast<const Byte*>(rows[0] + column));
    } else {
        const hn::Half<D> half;
        return hn::Combine(d, fourWords(half, rows + kWidth / 2, column),
                           fourWords(half, rows, column));
    }
}

// The first half of turning every fourth row's words into columns.
HWY_INLINE void turnWords(const UInt32* const* rows, int firstColumn, int quarter,
                          Byte (*columns)[kLanes]) {
    VecU8 a = fourWords(kU8, rows + quarter, firstColumn);
    VecU8 b = fourWords(kU8, rows + quarter + 4, firstColumn);
    VecU8 c = fourWords(kU8, rows + quarter + 8, firstColumn);
    VecU8 d = fourWords(kU8, rows + quarter + 12, firstColumn);
    interleave(a, b, c, d);
    hn::Store(a, kU8, columns[4 * quarter]);
    hn::Store(b, kU8, columns[4 * quarter + 1]);
    hn::Store(c, kU8, columns[4 * quarter + 2]);
    hn::Store(d, kU8, columns[4 * quarter + 3]);
}

// The second half, for one column: returns the bytes of its words. The channels are rotated as by
// TransformToRGBA: Red = source green, Green = source blue, Blue = source red.
HWY_INLINE Fields columnOf(const Byte (*columns)[kLanes], int column) {
    VecU8 red = hn::Load(kU8, columns[column]);
    VecU8 green = hn::Load(kU8, columns[column + 4]);
    VecU8 blue = hn::Load(kU8, columns[column + 8]);
    VecU8 alpha = hn::Load(kU8, columns[column + 12]);
    interleave(red, green, blue, alpha);
    return {.red = less128(green), .green = less128(blue), .blue = less128(red)};
}

// The entries of one lane in as many steps as there are lanes, from bytes that hold its bit.
static_assert(BLACK == 0 && WHITE == 1);
HWY_INLINE VecU8 entriesOf(VecU8 black, int bit) {
    const VecU8 white = hn::AndNot(black, hn::Set(kU8, static_cast<Byte>(1 << bit)));
    return hn::Min(white, hn::Set(kU8, WHITE));
}

// ---- One strip, piece by piece ------------------------------------------------------------------

class StripWave {
  public:
    StripWave(const Constants& constants, const DitherStrip& strip);
    void run();

  private:
    void waitForAbove();
    void fillUp();
    void copyChecked(int first);
    void pointAtPixels(int first);
    void pointAtCopies();
    template <bool kEdge>
    void runPiece();
    template <bool kEdge>
    HWY_INLINE void step(Wave& wave, int i);
    HWY_INLINE void prefetch(int i) const;
    HWY_INLINE Byte* rowOf(int lane) const;
    void writeLastRow();
    void writeEntries(int first);
    HWY_INLINE void writeEight(VecU8 black, int firstLane, int firstStep);
    HWY_NOINLINE void writeInside(VecU8 entries, Byte* row, int firstColumn) const;
    HWY_INLINE void keepBlack(const Byte* bits, int bitStep);

    const Constants& constants_;
    const DitherStrip& strip_;
    const int width_;
    const int rows_;
    Wave wave_ = makeWave();
    int first_ = kFirstStep;         // step of the piece
    int bitSteps_ = 0;               // steps whose entries have not been written
    int known_ = 0;                  // columns of the strip above that are known to be done
    const UInt32* at_[kLanes] = {};  // the words that the piece turns
    Buffers buffers_;
};

StripWave::StripWave(const Constants& constants, const DitherStrip& strip)
    : constants_(constants), strip_(strip), width_(strip.width), rows_(strip.rows) {
    assert(width_ >= 1 && rows_ >= 1 && rows_ < kLanes);
    assert(strip.pixels.size() ==
           static_cast<std::size_t>(width_) * static_cast<std::size_t>(rows_));
    std::memset(&buffers_, 0, sizeof(buffers_));
}

void StripWave::run() {
    const int end = width_ + kSkew * rows_;
    const int innerBegin = kSkew * rows_ + 2;
    const int innerEnd = width_ - kGroup - kPiece - kPrefetched;
    bool isPointing = false;
    fillUp();
    waitForAbove();
    copyChecked(first_);
    pointAtCopies();
    for (int quarter = 0; quarter < 4; ++quarter) turnWords(at_, 0, quarter, buffers_.columns[0]);
    for (; first_ < end; first_ += kPiece) {
        waitForAbove();
        if (first_ >= innerBegin && first_ < innerEnd) {
            if (!isPointing) pointAtPixels(first_ + kGroup);
            isPointing = true;
            runPiece<false>();
            for (const UInt32*& at : at_) at += kPiece;
        } else {
            copyChecked(first_ + kGroup);
            pointAtCopies();
            runPiece<true>();
        }
        writeLastRow();
        bitSteps_ += kPiece;
        if (bitSteps_ == kBitSteps || first_ + kPiece >= end) {
            writeEntries(first_ + kPiece - bitSteps_);
            bitSteps_ = 0;
            const int done = std::clamp(first_ + kPiece - kSkew * rows_, 0, width_);
            strip_.last.done->publish(strip_.last.base + done);
        }
    }
}

// Waits until the last row of the strip above has the columns that the piece needs. It then waits
// for those of many pieces at once: reading the number slows down the core that changes it.
void StripWave::waitForAbove() {
    constexpr int kLead = 256;
    constexpr int kSpins = 1000;
    const int needed = std::min(width_, first_ + kGroup + kPiece + kEntersAhead);
    if (needed <= known_) return;
    const std::int64_t target = strip_.above.base + std::min(width_, needed + kLead);
    for (int i = 0; strip_.above.done->count() < target; ++i) {
        if (i < kSpins) {
            hwy::Pause();
        } else {
            std::this_thread::yield();
        }
    }
    known_ = std::min(width_, needed + kLead);
}

// Fills the rows up with white.
void StripWave::fillUp() {
    const auto width = static_cast<std::size_t>(width_);
    const auto padded = static_cast<std::size_t>(paddedWidth(width_));
    for (std::size_t at = 0; at < strip_.entries.size(); at += padded)
        std::fill_n(strip_.entries.data() + at + width, padded - width, static_cast<Byte>(WHITE));
}

// Copies the words that enter in steps first to first + 15. Words outside of the row do not matter,
// and words outside of the strip are not read.
void StripWave::copyChecked(int first) {
    const auto size = static_cast<std::ptrdiff_t>(strip_.pixels.size());
    const UInt32* pixels = strip_.pixels.data();
    for (int row = 0; row < rows_; ++row) {
        UInt32* words = buffers_.words[row];
        const std::ptrdiff_t at =
            std::ptrdiff_t{row} * width_ + first + 1 - std::ptrdiff_t{kSkew} * row;
        if (at >= 0 && at + kPiece <= size) {
            copyWords(pixels + at, words);
            if (at + kPiece + kPrefetched < size) hwy::Prefetch(pixels + at + kPrefetched);
            continue;
        }
        for (std::ptrdiff_t i = 0; i < kPiece; ++i)
            words[i] = at + i >= 0 && at + i < size ? pixels[at + i] : 0;
    }
    const int column = std::min(first + kEntersAhead, width_);  // past the row are zeros
    copyWords(strip_.above.row->words() + column, buffers_.words[kLanes - 1]);
}

void StripWave::pointAtCopies() {
    for (int lane = 0; lane < kLanes; ++lane) at_[lane] = buffers_.words[lane];
}

// For pieces that need no checks. Lanes without a row repeat the last row.
void StripWave::pointAtPixels(int first) {
    for (int lane = 0; lane < kLanes - 1; ++lane) {
        const std::ptrdiff_t row = std::min(lane, rows_ - 1);
        at_[lane] = strip_.pixels.data() + row * (width_ - kSkew) + first + 1;
    }
    at_[kLanes - 1] = strip_.above.row->words() + first + kEntersAhead;
}

template <bool kEdge>
HWY_NOINLINE void StripWave::runPiece() {
    Wave wave = wave_;
    for (int i = 0; i < kPiece; ++i) step<kEdge>(wave, i);
    wave_ = wave;
}

HWY_INLINE void StripWave::keepBlack(const Byte* bits, int bitStep) {
    for (int four = 0; four < kBitFours; ++four)
        std::memcpy(buffers_.black[bitStep / kLanes][four][bitStep % kLanes], bits + 4 * four, 4);
}

// Also does this step's share of preparing the next group.
template <bool kEdge>
HWY_INLINE void StripWave::step(Wave& wave, int i) {
    const int group = i / kGroup;
    const int column = i % kGroup;
    EdgeMasks masks;
    if constexpr (kEdge) masks = makeMasks(constants_.lane, first_ + i, width_);
    alignas(8) Byte black[4 * kBitFours] = {};
    const FieldHalves error = decide<kEdge>(wave, constants_, masks, buffers_.values[i], black);
    keepBlack(black, bitSteps_ + i);
    passOn<kEdge>(wave, constants_, masks, error, columnOf(buffers_.columns[group % 2], column));
    turnWords(at_, kGroup * group, column, buffers_.columns[(group + 1) % 2]);
    if constexpr (!kEdge) prefetch(i);
}

// A step's share of prefetching the words of the next pieces and the memory of the next entries:
// there are too many rows for the processor's own prefetching.
HWY_INLINE void StripWave::prefetch(int i) const {
    constexpr int kShare = kLanes / kPiece;
    for (int lane = i * kShare; lane < (i + 1) * kShare; ++lane)
        hwy::Prefetch(at_[lane] + kPrefetched);
    const int lane = bitSteps_ + i + 1;
    if (lane > rows_) return;
    const int lastColumn = first_ - bitSteps_ - kSkew * lane + kBitSteps - 1;
    hwy::Prefetch(rowOf(lane) + std::min(lastColumn, width_ - 1));
}

HWY_INLINE Byte* StripWave::rowOf(int lane) const {
    return strip_.entries.data() + static_cast<std::ptrdiff_t>(rows_ - lane) * paddedWidth(width_);
}

void StripWave::writeLastRow() {
    UInt32* words = strip_.last.row->words();
    const int column = first_ - kSkew * rows_;
    const int begin = std::max(0, -column);
    const int end = std::min(kPiece, width_ - column);
    for (int i = begin; i < end; ++i) {
        const auto& [red, green, blue] = buffers_.values[i];
        words[column + i] =
            UInt32{blue[rows_]} | (UInt32{red[rows_]} << 8) | (UInt32{green[rows_]} << 16);
    }
}

// Writes the entries of the steps from `first` on. Those that were not done lie past the end of
// every row.
void StripWave::writeEntries(int first) {
    for (int part = 0; part < kBitParts; ++part) {
        for (int four = 0; four < kBitFours; ++four) {
            VecU8 a, b, c, d;
            hn::LoadInterleaved4(kU8, buffers_.black[part][four][0], a, b, c, d);
            const int step = first + part * kLanes;
            writeEight(a, 32 * four, step);
            writeEight(b, 32 * four + 8, step);
            writeEight(c, 32 * four + 16, step);
            writeEight(d, 32 * four + 24, step);
        }
    }
}

// The entries of eight lanes, in as many steps as there are lanes.
HWY_INLINE void StripWave::writeEight(VecU8 black, int firstLane, int firstStep) {
    for (int bit = 0; bit < 8; ++bit) {
        const int lane = firstLane + bit;
        if (lane < 1 || lane > rows_) continue;
        const VecU8 entries = entriesOf(black, bit);
        Byte* row = rowOf(lane);
        const int column = firstStep - kSkew * lane;
        if (column >= 0 && column + kLanes <= width_) {
            hn::StoreU(entries, kU8, row + column);
        } else {
            writeInside(entries, row, column);
        }
    }
}

// Writes those that are inside of the row.
HWY_NOINLINE void StripWave::writeInside(VecU8 entries, Byte* row, int firstColumn) const {
    alignas(64) Byte all[kLanes];
    hn::Store(entries, kU8, all);
    const int begin = std::max(0, -firstColumn);
    const int end = std::min(kLanes, width_ - firstColumn);
    if (begin < end) std::copy(all + begin, all + end, row + firstColumn + begin);
}

void runStrips(std::span<const DitherStrip> strips) {
    const Constants constants = makeConstants();
    for (const DitherStrip& strip : strips) StripWave(constants, strip).run();
}

std::int32_t maxRows() {
    return kLanes - 1;
}

#else

void runStrips(std::span<const DitherStrip> /*strips*/) {}

std::int32_t maxRows() {
    return 0;
}

#endif

}  // namespace tavio::imaging::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace tavio::imaging {
std::int32_t maxStripRows() {
    const bool isPlain = machine::instructionSet() == machine::InstructionSet::kPlain;
    return isPlain ? 0 : TAVIO_CHOSEN_FORM(maxRows)();
}

void diffuseStrips(std::span<const DitherStrip> strips) {
    TAVIO_CHOSEN_FORM(runStrips)(strips);
}

}  // namespace tavio::imaging
#endif
