// Strips of rows, each by a skewed wave (diffuse_step-inl.h tells what one step does):
//
//            column ->                                   rows of two strips, in 3 lanes
//   lane 0   # # # # # # # # # # # # # # # # # o . . .   the last row of the strip above once more
//   lane 1   # # # # # # # # # # # # # # o . . . . . .   #  done
//   lane 2   # # # # # # # # # # # o . . . . . . . . .   o  in this step
//   lane 0   # # # o . . . . . . . . . . . . . . . . .   the row of lane 2 once more
//   lane 1   o . . . . . . . . . . . . . . . . . . . .
//
// A step waits for the step before, and the processor has half its time left over: so two strips
// are done at once, the lower one behind the upper one by what it needs of its last row. Steps are
// done in pieces of 16:
//
//   before   the 16 words of each row that enter are copied together, and four columns of them at a
//            time are turned from words of a row into bytes of a column, one byte a lane
//   after    the entries of 16 columns are turned back; four such pieces are written at once, since
//            every row lies in another page of memory
//
// The lanes are in different columns, so near the edges of the picture some lanes are outside. What
// they do there is masked, in pieces compiled for this.
#include "TavioIpadSDK/imaging/diffuse_strip.h"

#include <algorithm>
#include <cstring>
#include <thread>

#include "TavioIpadSDK/imaging/monochrome.h"
#include "TavioIpadSDK/platform/instruction_set.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "TavioIpadSDK/imaging/diffuse_strip.cpp"
#include <hwy/foreach_target.h>
// Must follow foreach_target.h.
#include <hwy/cache_control.h>
#include <hwy/highway.h>

#include "TavioIpadSDK/imaging/diffuse_step-inl.h"

HWY_BEFORE_NAMESPACE();
namespace tavio::imaging::HWY_NAMESPACE {

#if HWY_TARGET != HWY_SCALAR && HWY_TARGET != HWY_EMU128

constexpr int kPiece = 16;  // steps
constexpr int kPieces = 4;  // whose entries are written at once
constexpr int kGroup = 4;   // columns turned at once: 16 bytes of a row
constexpr int kPrefetched = 2 * kPiece;

// So early that the first pixel of lane 0 can enter.
constexpr int kFirstStep = -kGroup;
static_assert(kEntersAhead <= kGroup);

// The row of lane l + 1 is row l of the strip, and enters in lane l; the row above in the last.
// Words are turned a group ahead of their steps, so a piece that begins with step s has copied
// those which enter from step s + kGroup on.
struct Buffers {
    alignas(64) UInt32 words[2][kLanes][kPiece];  // of this piece and the next
    alignas(64) Byte columns[2][16][kLanes];      // of this group and the next, half turned
    alignas(64) Byte values[kPiece][3][kLanes];
    alignas(64) Byte entries[kPiece][kLanes];
    alignas(64) Byte turned[kPieces][kPiece][kLanes];  // [piece][lane % 16][lane / 16 * 16 + step]
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
HWY_INLINE hn::Vec<D> fourWords(D d, const UInt32 (*rows)[kPiece], int column) {
    constexpr std::size_t kWidth = hn::MaxLanes(D());
    if constexpr (kWidth == 16) {
        return hn::Load(d, reinterpret_cast<const Byte*>(rows[0] + column));
    } else {
        const hn::Half<D> half;
        return hn::Combine(d, fourWords(half, rows + kWidth / 2, column),
                           fourWords(half, rows, column));
    }
}

// Half the way of every fourth row's words to columns.
HWY_INLINE void turnWords(const UInt32 (*rows)[kPiece], int firstColumn, int quarter,
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

// The other half of the way, of one column: gives the bytes of its words. Red takes the source
// green, Green the source blue and Blue the source red.
HWY_INLINE Fields columnOf(const Byte (*columns)[kLanes], int column) {
    VecU8 red = hn::Load(kU8, columns[column]);
    VecU8 green = hn::Load(kU8, columns[column + 4]);
    VecU8 blue = hn::Load(kU8, columns[column + 8]);
    VecU8 alpha = hn::Load(kU8, columns[column + 12]);
    interleave(red, green, blue, alpha);
    return {less128(green), less128(blue), less128(red)};
}

HWY_INLINE void turnEntries(const Byte (*from)[kLanes], Byte (*to)[kLanes], int quarter) {
    VecU8 a = hn::Load(kU8, from[quarter]);
    VecU8 b = hn::Load(kU8, from[quarter + 4]);
    VecU8 c = hn::Load(kU8, from[quarter + 8]);
    VecU8 d = hn::Load(kU8, from[quarter + 12]);
    interleave(a, b, c, d);
    hn::Store(a, kU8, to[4 * quarter]);
    hn::Store(b, kU8, to[4 * quarter + 1]);
    hn::Store(c, kU8, to[4 * quarter + 2]);
    hn::Store(d, kU8, to[4 * quarter + 3]);
}

// ---- One strip, piece by piece ------------------------------------------------------------------

class StripWave {
  public:
    StripWave() { std::memset(&buffers_, 0, sizeof(buffers_)); }

    // Every second of `strips`, from `first` on.
    void take(std::span<const Strip> strips, std::size_t first);
    bool isDone() const { return strip_ == nullptr; }

    // A piece: prepare(), both halves of steps 0 to 15, finish().
    bool prepare();  // false: the strip above is not far enough yet
    bool isEdge() const { return isEdge_; }
    template <bool kEdge>
    HWY_INLINE FieldHalves decideStep(const Constants& constants, const Wave& state, int i);
    template <bool kEdge>
    HWY_INLINE void passOnStep(const Constants& constants, const FieldHalves& error, Wave& state,
                               int i);
    void finish();

    Wave wave = makeWave();

  private:
    HWY_INLINE EdgeMasks masksOf(const Constants& constants, int i) const;
    void begin();
    void fillUp();
    void copyChecked(int first, UInt32 (*words)[kPiece]);
    void pointAt(int first);
    void writeLastRow();
    void writeEntries(int first);
    void writeEntriesOf(int lane, int firstColumn);

    std::span<const Strip> strips_;
    std::size_t index_ = 0;
    const Strip* strip_ = nullptr;
    bool hasBegun_ = false;
    bool isEdge_ = false;
    int first_ = kFirstStep;  // step of the piece
    int piecesTurned_ = 0;    // and not written
    int current_ = 0;         // which of buffers_.words is of this piece
    bool isPointing_ = false;
    const UInt32* at_[kLanes] = {};  // the next piece's words, away from the edges
    Buffers buffers_;
};

void StripWave::take(std::span<const Strip> strips, std::size_t first) {
    strips_ = strips;
    index_ = first;
    strip_ = index_ < strips_.size() ? &strips_[index_] : nullptr;
    hasBegun_ = false;
    first_ = kFirstStep;
}

void StripWave::begin() {
    hasBegun_ = true;
    isPointing_ = false;
    piecesTurned_ = 0;
    wave = makeWave();
    fillUp();
    copyChecked(first_, buffers_.words[current_]);
    for (int quarter = 0; quarter < 4; ++quarter)
        turnWords(buffers_.words[current_], 0, quarter, buffers_.columns[0]);
    copyChecked(first_ + kGroup, buffers_.words[current_]);
}

// Fills the rows up with white.
void StripWave::fillUp() {
    const auto width = static_cast<std::size_t>(strip_->width);
    const auto padded = static_cast<std::size_t>(paddedWidth(strip_->width));
    for (std::size_t at = 0; at < strip_->entries.size(); at += padded)
        std::fill_n(strip_->entries.data() + at + width, padded - width, static_cast<Byte>(WHITE));
}

bool StripWave::prepare() {
    const int width = strip_->width;
    const int next = first_ + kPiece + kGroup;
    const int needed = std::min(width, next + kPiece + kEntersAhead);
    if (!strip_->above.progress->has(strip_->above.first + needed)) return false;
    if (!hasBegun_) begin();
    isEdge_ = first_ < kSkew * strip_->rows + 2 || next + kPiece + 1 > width;
    if (isEdge_) {
        copyChecked(next, buffers_.words[1 - current_]);
    } else if (!isPointing_) {
        pointAt(next);
        isPointing_ = true;
    }
    return true;
}

// Copies the words that enter in steps first to first + 15. They may lie outside of the row, where
// they do not matter, and even outside of the strip, where they are not read.
void StripWave::copyChecked(int first, UInt32 (*words)[kPiece]) {
    const auto size = static_cast<std::ptrdiff_t>(strip_->pixels.size());
    const UInt32* pixels = strip_->pixels.data();
    for (int row = 0; row < strip_->rows; ++row) {
        const std::ptrdiff_t at =
            std::ptrdiff_t{row} * strip_->width + first + 1 - std::ptrdiff_t{kSkew} * row;
        if (at >= 0 && at + kPiece <= size) {
            copyWords(pixels + at, words[row]);
            if (at + kPiece + kPrefetched < size) hwy::Prefetch(pixels + at + kPrefetched);
            continue;
        }
        for (std::ptrdiff_t i = 0; i < kPiece; ++i)
            words[row][i] = at + i >= 0 && at + i < size ? pixels[at + i] : 0;
    }
    const int column = std::min(first + kEntersAhead, strip_->width);  // behind the row are zeros
    copyWords(strip_->above.row->words() + column, words[kLanes - 1]);
}

// The same for the pieces that need no checks. Lanes without a row do what the last row does.
void StripWave::pointAt(int first) {
    for (int lane = 0; lane < kLanes - 1; ++lane) {
        const std::ptrdiff_t row = std::min(lane, strip_->rows - 1);
        at_[lane] = strip_->pixels.data() + row * (strip_->width - kSkew) + first + 1;
    }
    at_[kLanes - 1] = strip_->above.row->words() + first + kEntersAhead;
}

HWY_INLINE EdgeMasks StripWave::masksOf(const Constants& constants, int i) const {
    return makeMasks(constants.lane, first_ + i, strip_->width);
}

template <bool kEdge>
HWY_INLINE FieldHalves StripWave::decideStep(const Constants& constants, const Wave& state, int i) {
    return decide<kEdge>(state, constants, masksOf(constants, i), buffers_.values[i],
                         buffers_.entries[i]);
}

// Also does this step's share of making the next group and the next piece ready.
template <bool kEdge>
HWY_INLINE void StripWave::passOnStep(const Constants& constants, const FieldHalves& error,
                                      Wave& state, int i) {
    const int group = i / kGroup;
    const int column = i % kGroup;
    passOn<kEdge>(state, constants, masksOf(constants, i), error,
                  columnOf(buffers_.columns[group % 2], column));
    turnWords(buffers_.words[current_], kGroup * group, column, buffers_.columns[(group + 1) % 2]);
    if constexpr (!kEdge) {
        constexpr int kShare = kLanes / kPiece;
        for (int lane = i * kShare; lane < (i + 1) * kShare; ++lane) {
            copyWords(at_[lane], buffers_.words[1 - current_][lane]);
            hwy::Prefetch(at_[lane] + kPrefetched);
        }
    }
}

void StripWave::finish() {
    const int skewed = kSkew * strip_->rows;
    const int end = first_ + kPiece;
    const bool isLast = end >= strip_->width + skewed;
    current_ = 1 - current_;
    if (!isEdge_) {
        for (const UInt32*& at : at_) at += kPiece;
    }
    writeLastRow();
    alignas(64) Byte half[kPiece][kLanes];
    for (int quarter = 0; quarter < 4; ++quarter) turnEntries(buffers_.entries, half, quarter);
    for (int quarter = 0; quarter < 4; ++quarter)
        turnEntries(half, buffers_.turned[piecesTurned_], quarter);
    ++piecesTurned_;
    if (piecesTurned_ == kPieces || isLast) {
        writeEntries(end - kPiece * piecesTurned_);
        piecesTurned_ = 0;
    }
    const int columnsDone = std::clamp(end - skewed, 0, strip_->width);
    strip_->last.progress->publish(strip_->last.first + columnsDone);
    first_ = end;
    if (isLast) take(strips_, index_ + 2);
}

void StripWave::writeLastRow() {
    UInt32* words = strip_->last.row->words();
    const int lane = strip_->rows;
    const int column = first_ - kSkew * lane;
    const int begin = std::max(0, -column);
    const int end = std::min(kPiece, strip_->width - column);
    for (int i = begin; i < end; ++i) {
        const auto& [red, green, blue] = buffers_.values[i];
        words[column + i] =
            UInt32{blue[lane]} | (UInt32{red[lane]} << 8) | (UInt32{green[lane]} << 16);
    }
}

// Writes the turned entries, which begin with step `first`.
void StripWave::writeEntries(int first) {
    for (int lane = 1; lane <= strip_->rows; ++lane) writeEntriesOf(lane, first - kSkew * lane);
}

void StripWave::writeEntriesOf(int lane, int firstColumn) {
    const auto padded = static_cast<std::ptrdiff_t>(paddedWidth(strip_->width));
    Byte* row = strip_->entries.data() + (strip_->rows - lane) * padded;
    constexpr int kColumns = kPiece * kPieces;
    const int block = lane / 16 * 16;
    if (firstColumn >= 0 && firstColumn + kColumns <= strip_->width) {
        for (int piece = 0; piece < kPieces; ++piece)
            std::memcpy(row + firstColumn + kPiece * piece,
                        &buffers_.turned[piece][lane % 16][block], kPiece);
        return;
    }
    const int begin = std::max(0, -firstColumn);
    const int end = std::min(kPiece * piecesTurned_, strip_->width - firstColumn);
    for (int i = begin; i < end; ++i)
        row[firstColumn + i] = buffers_.turned[i / kPiece][lane % 16][block + i % kPiece];
}

// ---- Two strips at once -------------------------------------------------------------------------

template <bool kEdge>
HWY_NOINLINE void runPiece(const Constants& constants, StripWave& strip) {
    Wave wave = strip.wave;
    for (int i = 0; i < kPiece; ++i) {
        const FieldHalves error = strip.decideStep<kEdge>(constants, wave, i);
        strip.passOnStep<kEdge>(constants, error, wave, i);
    }
    strip.wave = wave;
}

HWY_NOINLINE void runPieces(const Constants& constants, StripWave& upper, StripWave& lower) {
    Wave upperWave = upper.wave;
    Wave lowerWave = lower.wave;
    for (int i = 0; i < kPiece; ++i) {
        const FieldHalves upperError = upper.decideStep<false>(constants, upperWave, i);
        const FieldHalves lowerError = lower.decideStep<false>(constants, lowerWave, i);
        upper.passOnStep<false>(constants, upperError, upperWave, i);
        lower.passOnStep<false>(constants, lowerError, lowerWave, i);
    }
    upper.wave = upperWave;
    lower.wave = lowerWave;
}

void runAlone(const Constants& constants, StripWave& strip) {
    strip.isEdge() ? runPiece<true>(constants, strip) : runPiece<false>(constants, strip);
    strip.finish();
}

void runBoth(const Constants& constants, StripWave& a, StripWave& b) {
    if (a.isEdge() || b.isEdge()) {
        runAlone(constants, a);
        runAlone(constants, b);
        return;
    }
    runPieces(constants, a, b);
    a.finish();
    b.finish();
}

void runStrips(std::span<const Strip> strips) {
    const Constants constants = makeConstants();
    StripWave a;
    StripWave b;
    a.take(strips, 0);
    b.take(strips, 1);
    constexpr int kSpins = 1000;
    for (int idle = 0; !a.isDone() || !b.isDone();) {
        const bool isReadyA = !a.isDone() && a.prepare();
        const bool isReadyB = !b.isDone() && b.prepare();
        if (isReadyA && isReadyB) {
            runBoth(constants, a, b);
        } else if (isReadyA || isReadyB) {
            runAlone(constants, isReadyA ? a : b);
        } else {
            if (++idle > kSpins) std::this_thread::yield();
            continue;
        }
        idle = 0;
    }
}

std::int32_t mostRows() {
    return kLanes - 1;
}

#else

void runStrips(std::span<const Strip> /*strips*/) {}

std::int32_t mostRows() {
    return 0;
}

#endif

}  // namespace tavio::imaging::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace tavio::imaging {
namespace {

HWY_EXPORT(runStrips);
HWY_EXPORT(mostRows);

}  // namespace

std::int32_t rowsOfStrip() {
    const bool isPlain = platform::instructionSet() == platform::InstructionSet::kPlain;
    return isPlain ? 0 : HWY_DYNAMIC_DISPATCH(mostRows)();
}

void diffuseStrips(std::span<const Strip> strips) {
    HWY_DYNAMIC_DISPATCH(runStrips)(strips);
}

}  // namespace tavio::imaging
#endif
