// A strip of rows is diffused by a skewed wave: a lane of a vector is a row, and each row follows the
// one above it at a distance of kSkew columns, so that all errors of that row have arrived.
//
//            column ->                                   with 4 lanes
//   lane 0   # # # # # # # # # # # # # o . . . . .       #  done
//   lane 1   # # # # # # # # # # o . . . . . . . .       o  in this step
//   lane 2   # # # # # # # o . . . . . . . . . . .
//   lane 3   # # # # o . . . . . . . . . . . . . .
//
// Two columns would be enough. With three, errors have a whole step's time to move one lane down.
//
// Two vectors of lanes lie one above the other, so that the processor has work while one of them waits
// for its errors. Left and right of the picture the strip is white. That is solid, so errors neither
// come from there nor are wanted there: no step needs to know where the picture ends.
//
// Before the steps, 16 columns at a time are turned from bytes of a row into bytes of a column, one for
// each lane; a quarter of this in each four steps. A step leaves one bit for each lane. When the
// strip is done, these are turned back into bits of a row.
//
// Shares of an error, of 16: 7 right, 3 below left, 4 below, 2 below right.
//
// Numbers:
//   Values are kept less 128, as signed bytes. value + errors, saturated, has the sign that decides.
//   The same sum, not saturated, is the error plus 128 if the dot is black, and one less if it is
//   white. Halves are byte averages with 128. Sums of two numbers plus 128 are without it.
//   With no errors, a solid 0 is -128, which is an error of 0, and 255 is 127, plus 1 the same.
#include "TavioIpadSDK/sharp/diffuse_strip.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cstring>
#include <type_traits>

#include "TavioIpadSDK/machine/instruction_set.h"
#include "TavioIpadSDK/sharp/diffusion_noise.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "TavioIpadSDK/sharp/diffuse_strip.cpp"
#include "TavioIpadSDK/machine/vectors-inl.h"

HWY_BEFORE_NAMESPACE();
namespace tavio::sharp::HWY_NAMESPACE {

#if HWY_TARGET != HWY_SCALAR && HWY_TARGET != HWY_EMU128

namespace hn = hwy::HWY_NAMESPACE;

using Unsigned8 = hn::ScalableTag<Byte>;
using Signed8 = hn::ScalableTag<std::int8_t>;
using VecU8 = hn::Vec<Unsigned8>;
using Vec8 = hn::Vec<Signed8>;

constexpr Unsigned8 kU8;
constexpr Signed8 k8;

constexpr int kLanes = static_cast<int>(hn::MaxLanes(Unsigned8()));
constexpr int kVectors = 2;
constexpr int kRows = kVectors * kLanes;
constexpr int kPiece = 16;                  // steps
constexpr int kGroup = 4;                   // steps whose columns are turned at once
constexpr int kFours = (kLanes + 31) / 32;  // four bytes of bits each
static_assert(4 * (kVectors * kFours + 1) <= DiffusionState::kStepBytes);
constexpr int kNoisePeriod = kNoiseSide;
static_assert(kNoisePeriod % kPiece == 0);

// What lies between a lane's steps, and between it and the lane below. Errors are plus 128 but for
// fromLeft and second.
struct Wave {
    Vec8 fromLeft;
    VecU8 first;     // errors for the pixel below right: of one pixel
    VecU8 second;    // for the pixel below: of two
    VecU8 arriving;  // of three, in their own lanes, for the step after the next
    VecU8 arrived;   // for the next step
};

HWY_INLINE VecU8 splat(int value) {
    return hn::Set(kU8, static_cast<Byte>(value));
}

HWY_INLINE Wave makeWave() {
    return {hn::Zero(k8), splat(128), splat(0), splat(128), splat(128)};
}

// Moves every lane's value one lane down; lane 0 gets the last one of `above`.
HWY_INLINE VecU8 laneDown(VecU8 v, VecU8 above) {
    if constexpr (kLanes == 16) {
        return hn::CombineShiftRightBytes<15>(kU8, v, above);
    } else if constexpr (kLanes == 32) {
        return hn::CombineShiftRightBytes<15>(kU8, v, hn::ConcatLowerUpper(kU8, v, above));
    } else {
        const hn::ScalableTag<std::uint64_t> d64;
        alignas(64) static constexpr std::uint64_t kFrom[8] = {6, 7, 0, 1, 2, 3, 4, 5};
        const auto from = hn::SetTableIndices(d64, kFrom);
        const auto blockBefore =
            hn::IfThenElse(hn::FirstN(d64, 2), hn::TableLookupLanes(hn::BitCast(d64, above), from),
                           hn::TableLookupLanes(hn::BitCast(d64, v), from));
        return hn::CombineShiftRightBytes<15>(kU8, v, hn::BitCast(kU8, blockBefore));
    }
}

using Bits = std::array<Byte, 4 * kFours>;

// One step of a vector of lanes: sets a bit for each lane that is black, and returns the summed errors
// for the column before in the row below. `solid`: -127.
HWY_INLINE VecU8 step(Wave& wave, Vec8 value, VecU8 noise, Vec8 solid, Bits& blackBits) {
    const Vec8 next = hn::Add(value, hn::Set(k8, 1));  // solid ones are -127 and -128
    const Vec8 fromAbove = hn::BitCast(k8, hn::Add(wave.arrived, noise));
    const Vec8 passed =
        hn::IfThenElseZero(hn::Gt(next, solid), hn::SaturatedAdd(fromAbove, wave.fromLeft));
    const auto isBlack = hn::Lt(hn::SaturatedAdd(value, passed), hn::Zero(k8));
    hn::StoreMaskBits(k8, isBlack, blackBits.data());
    const VecU8 error =
        hn::BitCast(kU8, hn::Add(hn::Add(next, passed), hn::VecFromMask(k8, isBlack)));
    const VecU8 half = hn::AverageRound(error, splat(128));
    const VecU8 quarter = hn::AverageRound(half, splat(128));
    const VecU8 eighth = hn::AverageRound(quarter, splat(128));
    const VecU8 sixteenth = hn::AverageRound(eighth, splat(128));
    const VecU8 right = hn::Sub(half, sixteenth);
    wave.fromLeft = hn::BitCast(k8, right);
    const VecU8 belowLeft = hn::Sub(hn::Sub(error, right), hn::Add(quarter, eighth));
    const VecU8 complete = hn::Add(wave.second, belowLeft);
    wave.second = hn::Add(wave.first, quarter);
    wave.first = eighth;
    wave.arrived = wave.arriving;
    return complete;
}

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

// 16 bytes each of rows that lie 16 rows apart: one row in each block of 16 lanes.
template <class D>
HWY_INLINE hn::Vec<D> sixteenBytes(D d, const Byte* from, std::ptrdiff_t sixteenRows) {
    constexpr std::size_t kWidth = hn::MaxLanes(D());
    if constexpr (kWidth == 16) {
        return hn::LoadU(d, from);
    } else {
        const hn::Half<D> half;
        const std::ptrdiff_t upper = sixteenRows * static_cast<std::ptrdiff_t>(kWidth / 32);
        return hn::Combine(d, sixteenBytes(half, from + upper, sixteenRows),
                           sixteenBytes(half, from, sixteenRows));
    }
}

// ---- The strip ----------------------------------------------------------------------------------

// The noise as the lanes see it, step by step, for strips that begin with row 0, kRows, ...
constexpr int kPhases = kRows < kNoisePeriod ? kNoisePeriod / kRows : 1;

struct SkewedNoise {
    alignas(64) Byte steps[kPhases][kNoisePeriod][kVectors][kLanes];  // plus 128
};

SkewedNoise makeNoise() {
    SkewedNoise noise;
    for (int phase = 0; phase < kPhases; ++phase)
        for (int step = 0; step < kNoisePeriod; ++step)
            for (int row = 0; row < kRows; ++row)
                noise.steps[phase][step][row / kLanes][row % kLanes] =
                    static_cast<Byte>(128 + noiseAt(phase * kRows + row, step - kSkew * row));
    return noise;
}

const SkewedNoise& skewedNoise() {
    static const SkewedNoise noise = makeNoise();
    return noise;
}

struct Buffers {
    alignas(64) Byte half[2][kVectors][16][kLanes];  // of this piece and the next, half turned
    alignas(64) Byte complete[kPiece][kLanes];       // errors that the last vector passes down
};

class StripWave {
  public:
    StripWave(const SkewedStrip& strip, std::int32_t firstRow, DiffusionState& state);
    void run();
    void writeRows(std::span<Byte> bits);

  private:
    using Noise = const Byte (*)[kVectors][kLanes];

    HWY_INLINE void turnQuarter(int firstStep, int quarter);
    void runPiece(int first);
    void keepErrors(int first);
    HWY_INLINE Byte* bitsOf(int vector, int step);
    HWY_INLINE void keepBits(const Bits& bits, Byte* first, int i) const;
    void readPlanes(int vector, int four);
    HWY_INLINE void writeRow(const Byte* plane, int bit, int row, std::span<Byte> to) const;

    const SkewedStrip& strip_;
    Byte* const errors_;
    const int steps_;
    const Noise noise_;
    const Vec8 solid_ = hn::Set(k8, -127);  // compilers make more of a constant that they see
    Byte* const bits_;    // for each vector and four: the steps from the last one, 4 bytes each
    Byte* const planes_;  // for each byte of a four: the steps from the last one
    Wave waves_[kVectors] = {makeWave(), makeWave()};
    Buffers buffers_;
};

// 128 but for lane 0.
HWY_INLINE VecU8 inLane0(Byte value) {
    return hn::IfThenElse(hn::FirstN(kU8, 1), splat(value), splat(128));
}

StripWave::StripWave(const SkewedStrip& strip, std::int32_t firstRow, DiffusionState& state)
    : strip_(strip),
      errors_(state.errors()),
      steps_(strip.steps()),
      noise_(skewedNoise().steps[firstRow / kRows % kPhases]),
      bits_(state.scratch()),
      planes_(bits_ + std::ptrdiff_t{steps_} * kVectors * kFours * 4) {
    assert(strip.rows() == kRows && firstRow % kRows == 0);
    waves_[0].arrived = inLane0(errors_[0]);
    waves_[0].arriving = inLane0(errors_[1]);
}

void StripWave::run() {
    for (int quarter = 0; quarter < 4; ++quarter) turnQuarter(0, quarter);
    for (int first = 0; first < steps_; first += kPiece) {
        runPiece(first);
        keepErrors(first);
    }
}

// A quarter of the first half of turning a piece, of one vector of lanes: four by four rows from
// `from` on, each four rows apart.
HWY_INLINE void turnFirstHalf(const Byte* from, std::ptrdiff_t stride, Byte (*to)[kLanes]) {
    VecU8 a = sixteenBytes(kU8, from, 16 * stride);
    VecU8 b = sixteenBytes(kU8, from + 4 * stride, 16 * stride);
    VecU8 c = sixteenBytes(kU8, from + 8 * stride, 16 * stride);
    VecU8 d = sixteenBytes(kU8, from + 12 * stride, 16 * stride);
    interleave(a, b, c, d);
    hn::Store(a, kU8, to[0]);
    hn::Store(b, kU8, to[1]);
    hn::Store(c, kU8, to[2]);
    hn::Store(d, kU8, to[3]);
}

HWY_INLINE void StripWave::turnQuarter(int firstStep, int quarter) {
    auto& half = buffers_.half[firstStep / kPiece % 2];
    for (int vector = 0; vector < kVectors; ++vector)
        turnFirstHalf(strip_.lane(vector * kLanes + quarter) + firstStep, strip_.stride(),
                      half[vector] + kGroup * quarter);
}

// The values of four steps.
struct Columns {
    VecU8 first, second, third, fourth;
};

HWY_INLINE Columns turnSecondHalf(const Byte (*half)[kLanes], int group) {
    Columns columns = {hn::Load(kU8, half[group]), hn::Load(kU8, half[group + 4]),
                       hn::Load(kU8, half[group + 8]), hn::Load(kU8, half[group + 12])};
    interleave(columns.first, columns.second, columns.third, columns.fourth);
    return columns;
}

void StripWave::runPiece(int first) {
    Wave upper = waves_[0];
    Wave lower = waves_[1];
    const Noise noise = noise_ + first % kNoisePeriod;
    const Byte* const above = errors_ + first + 2 - (kLanes - 1);
    Byte* const upperBits = bitsOf(0, first);
    Byte* const lowerBits = bitsOf(1, first);
    const auto both = [&](int i, VecU8 upperValues, VecU8 lowerValues) HWY_ATTR {
        Bits bits{};
        const VecU8 upperErrors =
            step(upper, hn::BitCast(k8, upperValues), hn::Load(kU8, noise[i][0]), solid_, bits);
        keepBits(bits, upperBits, i);
        const VecU8 lowerErrors =
            step(lower, hn::BitCast(k8, lowerValues), hn::Load(kU8, noise[i][1]), solid_, bits);
        keepBits(bits, lowerBits, i);
        upper.arriving = laneDown(upperErrors, hn::LoadU(kU8, above + i));
        lower.arriving = laneDown(lowerErrors, upperErrors);
        hn::Store(lowerErrors, kU8, buffers_.complete[i]);
    };
    const auto& half = buffers_.half[first / kPiece % 2];
    HWY_UNROLL(4)
    for (int group = 0; group < kPiece / kGroup; ++group) {
        const Columns a = turnSecondHalf(half[0], group);
        const Columns b = turnSecondHalf(half[1], group);
        both(kGroup * group, a.first, b.first);
        both(kGroup * group + 1, a.second, b.second);
        turnQuarter(first + kPiece, group);
        both(kGroup * group + 2, a.third, b.third);
        both(kGroup * group + 3, a.fourth, b.fourth);
    }
    waves_[0] = upper;
    waves_[1] = lower;
}

// Keeps the errors that the last row passes down in the piece that begins with this step.
void StripWave::keepErrors(int first) {
    Byte* const to = errors_ + first - kSkew * (kRows - 1) - 1;
    for (int i = 0; i < kPiece; ++i) to[i] = buffers_.complete[i][kLanes - 1];
}

// ---- Bits ---------------------------------------------------------------------------------------

// The first four of this step.
HWY_INLINE Byte* StripWave::bitsOf(int vector, int step) {
    const std::ptrdiff_t steps = steps_;
    return bits_ + 4 * (vector * kFours * steps + steps - 1 - step);
}

// Keeps the bits of the step that is `i` steps after the one whose bits lie at `first`.
HWY_INLINE void StripWave::keepBits(const Bits& bits, Byte* first, int i) const {
    for (int four = 0; four < kFours; ++four)
        std::memcpy(first + 4 * (std::ptrdiff_t{four} * steps_ - i), bits.data() + 4 * four, 4);
}

// Takes the bytes of a four apart.
void StripWave::readPlanes(int vector, int four) {
    const Byte* from = bitsOf(vector, steps_ - 1) + 4 * std::ptrdiff_t{four} * steps_;
    Byte* to = planes_;
    for (int step = 0; step < steps_; step += kLanes, from += 4 * kLanes, to += kLanes) {
        VecU8 a, b, c, d;
        hn::LoadInterleaved4(kU8, from, a, b, c, d);
        hn::StoreU(a, kU8, to);
        hn::StoreU(b, kU8, to + steps_);
        hn::StoreU(c, kU8, to + 2 * std::ptrdiff_t{steps_});
        hn::StoreU(d, kU8, to + 3 * std::ptrdiff_t{steps_});
    }
}

// As many bits as a vector has lanes.
using LaneBits = std::conditional_t<kLanes == 16, std::uint16_t,
                                    std::conditional_t<kLanes == 32, std::uint32_t, std::uint64_t>>;

// The lanes that have this bit.
HWY_INLINE std::uint64_t lanesWith(VecU8 v, VecU8 bit) {
    alignas(8) Byte bytes[8];
    hn::StoreMaskBits(kU8, hn::TestBit(v, bit), bytes);
    LaneBits bits;
    std::memcpy(&bits, bytes, sizeof(bits));
    return bits;
}

// Stores the word's highest byte first.
HWY_INLINE void storeFromTop(std::uint64_t word, Byte* to) {
    for (int i = 0; i < 8; ++i) to[i] = static_cast<Byte>(word >> (56 - 8 * i));
}

// Since the steps lie backwards, the first of 64 is the top bit of a word.
HWY_INLINE void StripWave::writeRow(const Byte* plane, int bit, int row, std::span<Byte> to) const {
    const VecU8 mask = splat(1 << bit);
    const Byte* end = plane + steps_ - std::ptrdiff_t{kSkew} * row;
    for (std::size_t at = 0; at < to.size(); at += 8) {
        end -= 64;
        std::uint64_t black = 0;
        for (int i = 0; i < 64; i += kLanes) black |= lanesWith(hn::LoadU(kU8, end + i), mask) << i;
        storeFromTop(black, to.data() + at);
    }
}

void StripWave::writeRows(std::span<Byte> bits) {
    const std::size_t rowBytes = (static_cast<std::size_t>(strip_.width()) + 63) / 64 * 8;
    const int rows = static_cast<int>(bits.size() / rowBytes);
    for (int row = 0; row < rows; ++row) {
        const int lane = row % kLanes;
        if (lane % 32 == 0) readPlanes(row / kLanes, lane / 32);
        const Byte* plane = planes_ + std::ptrdiff_t{steps_} * (lane % 32 / 8);
        writeRow(plane, lane % 8, row,
                 bits.subspan(static_cast<std::size_t>(row) * rowBytes, rowBytes));
    }
}

void diffuseVectors(const SkewedStrip& strip, std::int32_t firstRow, DiffusionState& state,
                    std::span<Byte> bits) {
    StripWave wave(strip, firstRow, state);
    wave.run();
    wave.writeRows(bits);
}

std::int32_t rowsOfVectors() {
    return kRows;
}

#else

void diffuseVectors(const SkewedStrip& /*strip*/, std::int32_t /*firstRow*/,
                    DiffusionState& /*state*/, std::span<Byte> /*bits*/) {}

std::int32_t rowsOfVectors() {
    return 0;
}

#endif
}  // namespace tavio::sharp::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace tavio::sharp {
namespace {

constexpr std::int32_t kPlainRows = 32;

constexpr std::int32_t roundedUp(std::int32_t value, std::int32_t unit) {
    return (value + unit - 1) / unit * unit;
}

// Enough for the last row's words of bits, and one more for its errors.
constexpr std::int32_t stepsOf(std::int32_t width, std::int32_t rows) {
    return roundedUp(std::max(roundedUp(width, 64), width + 1) + kSkew * (rows - 1), 64);
}

// One row, pixel by pixel: the plain form.
class PlainRow {
  public:
    PlainRow(Byte* errors, std::int32_t row) : errors_(errors), row_(row) {}

    // Returns true if the dot is black. `value`: the grey value less 128.
    bool diffuse(std::int32_t column, int value) {
        const bool isSolid = value == -128 || value == 127;
        const int fromAbove = errors_[column] - 128 + noiseAt(row_, column);
        const int sum = isSolid ? value : value + std::clamp(fromAbove + fromLeft_, -128, 127);
        const bool isBlack = sum < 0;
        passOn(column, isSolid ? 0 : isBlack ? sum + 128 : sum - 127);
        return isBlack;
    }

  private:
    static int halved(int value) { return (value + 1) >> 1; }

    // The errors of the column before are complete now, and those from above were read.
    void passOn(std::int32_t column, int error) {
        const int half = halved(error);
        const int quarter = halved(half);
        const int eighth = halved(quarter);
        fromLeft_ = half - halved(eighth);
        errors_[column - 1] =
            static_cast<Byte>(128 + second_ + error - fromLeft_ - quarter - eighth);
        second_ = first_ + quarter;
        first_ = eighth;
        errors_[column] = static_cast<Byte>(128 + second_);
    }

    Byte* errors_;
    std::int32_t row_;
    int fromLeft_ = 0;
    int first_ = 0;   // for the pixel below right
    int second_ = 0;  // for the pixel below
};

void diffusePlainly(const SkewedStrip& strip, std::int32_t firstRow, DiffusionState& state,
                    std::span<Byte> bits) {
    const std::size_t rowBytes = (static_cast<std::size_t>(strip.width()) + 63) / 64 * 8;
    std::ranges::fill(bits, Byte{0});
    for (std::size_t row = 0; row * rowBytes < bits.size(); ++row) {
        const auto y = static_cast<std::int32_t>(row);
        PlainRow errorsOfRow(state.errors(), firstRow + y);
        for (std::int32_t x = 0; x < strip.width(); ++x) {
            const bool isBlack = errorsOfRow.diffuse(x, static_cast<std::int8_t>(strip.row(y)[x]));
            Byte& byte = bits[row * rowBytes + static_cast<std::size_t>(x) / 8];
            if (isBlack) byte = static_cast<Byte>(byte | 0x80 >> x % 8);
        }
    }
}

bool isPlain() {
    return machine::instructionSet() == machine::InstructionSet::kPlain ||
           TAVIO_CHOSEN_FORM(rowsOfVectors)() == 0;
}

}  // namespace

std::int32_t stripRows() {
    return isPlain() ? kPlainRows : TAVIO_CHOSEN_FORM(rowsOfVectors)();
}

SkewedStrip::SkewedStrip(std::int32_t width, std::int32_t rows)
    : width_(width),
      rows_(rows),
      steps_(stepsOf(width, rows)),
      stride_(steps_ + 64),
      values_(static_cast<std::size_t>(stride_) * static_cast<std::size_t>(rows), Byte{127}) {}

void SkewedStrip::whiten(std::int32_t first) {
    std::fill(values_.begin() + first * stride_, values_.end(), Byte{127});
}

DiffusionState::DiffusionState(std::int32_t width, std::int32_t rows)
    : errors_(static_cast<std::size_t>(width) + 2 * kMargin, Byte{128}),
      scratch_(static_cast<std::size_t>(stepsOf(width, rows)) * kStepBytes) {}

void diffuseStrip(const SkewedStrip& strip, std::int32_t firstRow, DiffusionState& state,
                  std::span<Byte> bits) {
    if (isPlain()) return diffusePlainly(strip, firstRow, state, bits);
    TAVIO_CHOSEN_FORM(diffuseVectors)(strip, firstRow, state, bits);
}

}  // namespace tavio::sharp
#endif
