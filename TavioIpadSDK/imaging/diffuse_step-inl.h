// One step of the wave: every lane turns its pixel black or white and passes its error on.
//
// Lane l is a row of the picture, and each row follows the one above it at a distance of kSkew
// columns, so that all errors of the row above have arrived:
//
//                      column ->
//   lane l      . . . . . . . . . . . . V
//   lane l + 1  . . . . . . . . . V - 2 1 e      V  the pixel of this step, decided and passed on
//   lane l + 2  . . . . . . V - 2 1 e            1  has got the error of its upper left neighbour
//                                                2  and of its upper one; after the upper right
//                                                   one's it moves one lane down
//                                                e  enters
//
// While a pixel gathers the errors from above it lies in the lane of the row ABOVE its own, where
// these errors arise. So three vectors move from lane to lane in a step, one for each field, not
// one for each error. The additions must have the order of DitherFloydSteinberg() in raster order,
// since a field is clamped after each one: upper left, above, upper right, left.
//
// Lane 0 is the last row of the strip above, diffused again. It already has all errors that it
// received, so none may be added: the weight of 7 sixteenths into lane 0 is 0, and so are the
// weights with which the last lane passes errors down, since the pixels of lane 0 enter through the
// last lane.
//
// Numbers:
//   Values are kept less 128, as signed bytes: a clamped addition is then one saturating addition.
//   An error has 9 bits, so errors are words, those of even and of odd lanes apart. Multiplied by
//   weight << 12 the high half of an even lane's product is error * weight >> 4; multiplied by
//   weight << 4 that is the high byte of an odd lane's product, just where the byte belongs.
//   A pixel is black if S = 299 red + 587 green + 114 blue - 128000 < 0. S = 4 Q + R with
//   Q = 75 red + 147 green + 28 blue - 32000 and R = 2 blue - red - green, so the sign of S is that
//   of Q + floor(R / 4), which fits a word; two byte averages make floor(R / 4). The sum is 0 for
//   S = 0 to 3: those lanes, about one in ten thousand, are judged by isBlack().

#include <cstddef>
#include <cstdint>

#include "TavioIpadSDK/imaging/grey.h"
#include "TavioIpadSDK/machine/vectors-inl.h"

// Highway's way of compiling a header once for each instruction set.
#if defined(TAVIO_IMAGING_DIFFUSE_STEP_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef TAVIO_IMAGING_DIFFUSE_STEP_INL_H_
#undef TAVIO_IMAGING_DIFFUSE_STEP_INL_H_
#else
#define TAVIO_IMAGING_DIFFUSE_STEP_INL_H_
#endif

HWY_BEFORE_NAMESPACE();
namespace tavio::imaging::HWY_NAMESPACE {

#if HWY_TARGET != HWY_SCALAR && HWY_TARGET != HWY_EMU128

namespace hn = hwy::HWY_NAMESPACE;

using Unsigned8 = hn::ScalableTag<std::uint8_t>;
using Signed8 = hn::ScalableTag<std::int8_t>;
using Signed16 = hn::ScalableTag<std::int16_t>;
using Unsigned16 = hn::ScalableTag<std::uint16_t>;
using VecU8 = hn::Vec<Unsigned8>;
using Vec8 = hn::Vec<Signed8>;
using Vec16 = hn::Vec<Signed16>;

constexpr Unsigned8 kU8;
constexpr Signed8 k8;
constexpr Signed16 k16;
constexpr Unsigned16 kU16;

constexpr int kLanes = static_cast<int>(hn::MaxLanes(Unsigned8()));

// Two columns are enough; with three, a move to the next lane has a whole step's time.
constexpr int kSkew = 3;

// A pixel enters so many steps before it is decided, in lane 0 too.
constexpr int kEntersAhead = kSkew + 1;

// Named members, not arrays: compilers keep these in registers.
struct Fields {
    Vec8 red, green, blue;
};

// The bytes of a vector as words: of the even lanes and of the odd ones.
struct Halves {
    Vec16 even, odd;
};

struct FieldHalves {
    Halves red, green, blue;
};

// Sixteenths, scaled for MulHigh in even lanes and for Mul in odd lanes.
struct Weights {
    Vec16 one, three, five, seven;
};

struct GreyWeights {
    Vec16 red, green, blue;
    Vec16 black;  // the sum of black, with floor(R / 4) as a number from 0 to 255
};

struct Constants {
    Weights even, odd;
    GreyWeights grey;
    Vec8 lane;  // 0, 1, 2 ...
};

struct Wave {
    Fields first;     // pixels of the rows below, with one error
    Fields second;    // with two
    Fields arriving;  // with three, in their own lanes, for the next step
    Fields arrived;   // for this step
    Fields fromLeft;  // errors: 7 sixteenths
};

// For steps in which some rows have not begun or have ended.
struct EdgeMasks {
    hn::Mask<Signed8> inside;      // the lane's column is one of the picture
    hn::Mask<Signed8> passesLeft;  // and is not 0 or 1, which pass nothing down to their left
};

// ---- Constants and masks ------------------------------------------------------------------------

HWY_INLINE Vec8 splat(int value) {
    return hn::Set(k8, static_cast<std::int8_t>(value));
}

HWY_INLINE Weights weightsOf(int unit) {
    const Vec16 one = hn::Set(k16, static_cast<std::int16_t>(unit));
    const Vec16 two = hn::Add(one, one);
    const Vec16 three = hn::Add(two, one);
    const Vec16 five = hn::Add(three, two);
    return {one, three, five, hn::Add(five, two)};
}

HWY_INLINE Constants makeConstants() {
    Constants constants = {
        weightsOf(1 << 12),
        weightsOf(1 << 4),
        {hn::Set(k16, 75), hn::Set(k16, 147), hn::Set(k16, 28), hn::Set(k16, -32000 - 128)},
        hn::Iota(k8, 0)};
    const auto isLane0 = hn::FirstN(k16, 1);
    const auto isNotLastLane = hn::FirstN(k16, kLanes / 2 - 1);
    Weights& odd = constants.odd;
    constants.even.seven = hn::IfThenElse(isLane0, hn::Zero(k16), constants.even.seven);
    odd.one = hn::IfThenElseZero(isNotLastLane, odd.one);
    odd.three = hn::IfThenElseZero(isNotLastLane, odd.three);
    odd.five = hn::IfThenElseZero(isNotLastLane, odd.five);
    return constants;
}

HWY_INLINE Wave makeWave() {
    const Fields black = {splat(-128), splat(-128), splat(-128)};
    return {black, black, black, black, {splat(0), splat(0), splat(0)}};
}

// The column of a lane is step - kSkew * lane. Those of the lanes below this one are `column` or
// more.
HWY_INLINE Vec8 lanesFrom(int column, int step) {
    const int room = step - column;
    return splat(room < 0 ? 0 : room / kSkew < kLanes ? room / kSkew + 1 : kLanes);
}

HWY_INLINE EdgeMasks makeMasks(Vec8 lane, int step, int width) {
    const auto hasBegun = hn::Lt(lane, lanesFrom(0, step));
    const auto hasEnded = hn::Lt(lane, lanesFrom(width, step));
    return {hn::AndNot(hasEnded, hasBegun), hn::Lt(lane, lanesFrom(2, step))};
}

// ---- Bytes --------------------------------------------------------------------------------------

HWY_INLINE Vec8 less128(VecU8 value) {
    return hn::BitCast(k8, hn::Xor(value, hn::Set(kU8, 0x80)));
}

HWY_INLINE VecU8 plus128(Vec8 value) {
    return hn::Xor(hn::BitCast(kU8, value), hn::Set(kU8, 0x80));
}

HWY_INLINE Fields clampedSum(const Fields& a, const Fields& b) {
    return {hn::SaturatedAdd(a.red, b.red), hn::SaturatedAdd(a.green, b.green),
            hn::SaturatedAdd(a.blue, b.blue)};
}

HWY_INLINE Fields select(hn::Mask<Signed8> mask, const Fields& yes, Vec8 no) {
    return {hn::IfThenElse(mask, yes.red, no), hn::IfThenElse(mask, yes.green, no),
            hn::IfThenElse(mask, yes.blue, no)};
}

// Moves every lane's value one lane down, and the last one's to lane 0.
template <class D>
HWY_INLINE hn::Vec<D> laneDown(D d, hn::Vec<D> v) {
    hn::Vec<D> blockBefore = v;
    if constexpr (hn::MaxLanes(D()) == 32) {
        blockBefore = hn::ConcatLowerUpper(d, v, v);
    } else if constexpr (hn::MaxLanes(D()) == 64) {
        const hn::ScalableTag<std::uint64_t> d64;
        alignas(64) static constexpr std::uint64_t kFrom[8] = {6, 7, 0, 1, 2, 3, 4, 5};
        blockBefore = hn::BitCast(
            d, hn::TableLookupLanes(hn::BitCast(d64, v), hn::SetTableIndices(d64, kFrom)));
    }
    return hn::CombineShiftRightBytes<15>(d, v, blockBefore);
}

HWY_INLINE Fields laneDown(const Fields& v) {
    return {laneDown(k8, v.red), laneDown(k8, v.green), laneDown(k8, v.blue)};
}

// ---- Grey ---------------------------------------------------------------------------------------

HWY_INLINE Halves halvesOf(VecU8 v) {
    const auto words = hn::BitCast(kU16, v);
    return {hn::BitCast(k16, hn::And(words, hn::Set(kU16, 0xFF))),
            hn::BitCast(k16, hn::ShiftRight<8>(words))};
}

// Q + floor(R / 4), with rest = floor(R / 4) + 128.
HWY_INLINE Vec16 greySum(const GreyWeights& weights, Vec16 red, Vec16 green, Vec16 blue,
                         Vec16 rest) {
    const Vec16 sum = hn::Add(hn::Mul(red, weights.red), hn::Mul(green, weights.green));
    return hn::Add(hn::Add(sum, hn::Add(hn::Mul(blue, weights.blue), weights.black)), rest);
}

HWY_INLINE bool anyZero(const Halves& v) {
    const auto minimum = hn::Min(hn::BitCast(kU16, v.even), hn::BitCast(kU16, v.odd));
    return !hn::AllFalse(kU16, hn::Eq(minimum, hn::Zero(kU16)));
}

// Makes sums of 0 negative where the pixel is black. `values`: red, green and blue of each lane.
HWY_NOINLINE void judgeZeros(const Byte (*values)[kLanes], std::int16_t* even, std::int16_t* odd) {
    for (int lane = 0; lane < kLanes; ++lane) {
        std::int16_t& sum = (lane % 2 == 0 ? even : odd)[lane / 2];
        if (sum == 0 && isBlack(values[0][lane], values[1][lane], values[2][lane])) sum = -1;
    }
}

// Negative where the pixel is black. `values`: red, green and blue of each lane once more.
HWY_INLINE Halves greyOf(const GreyWeights& weights, const FieldHalves& halves,
                         const Byte (*values)[kLanes]) {
    const VecU8 red = hn::Load(kU8, values[0]);
    const VecU8 green = hn::Load(kU8, values[1]);
    const VecU8 blue = hn::Load(kU8, values[2]);
    const VecU8 notMean = hn::Xor(hn::AverageRound(red, green), hn::Set(kU8, 0xFF));
    const Halves rest = halvesOf(hn::AverageRound(blue, notMean));
    const auto& [r, g, b] = halves;
    Halves grey = {greySum(weights, r.even, g.even, b.even, rest.even),
                   greySum(weights, r.odd, g.odd, b.odd, rest.odd)};
    if (HWY_UNLIKELY(anyZero(grey))) {
        alignas(64) std::int16_t even[kLanes / 2];
        alignas(64) std::int16_t odd[kLanes / 2];
        hn::Store(grey.even, k16, even);
        hn::Store(grey.odd, k16, odd);
        judgeZeros(values, even, odd);
        grey = {hn::Load(k16, even), hn::Load(k16, odd)};
    }
    return grey;
}

// ---- The step -----------------------------------------------------------------------------------

HWY_INLINE Halves minus(const Halves& a, const Halves& b) {
    return {hn::Sub(a.even, b.even), hn::Sub(a.odd, b.odd)};
}

HWY_INLINE Vec8 weighted(const Halves& error, Vec16 even, Vec16 odd) {
    return hn::OddEven(hn::BitCast(k8, hn::Mul(error.odd, odd)),
                       hn::BitCast(k8, hn::MulHigh(error.even, even)));
}

HWY_INLINE Fields weighted(const FieldHalves& error, Vec16 even, Vec16 odd) {
    return {weighted(error.red, even, odd), weighted(error.green, even, odd),
            weighted(error.blue, even, odd)};
}

// The first half of a step: black or white? Writes the pixels' values, one of the three fields
// after the other, and one bit for each lane, set for black. Returns the errors for the fields that
// receive them, crossed as in dither.cpp:
//
//   for Red: Red - Red'    for Green: Blue - Blue'    for Blue: Green - Green'
//
// so Red 0, Green 160, Blue 32 turned black gives 0, 32 and 160.
template <bool kEdge>
HWY_INLINE FieldHalves decide(const Wave& wave, const Constants& constants, const EdgeMasks& masks,
                              Byte (*values)[kLanes], Byte* blackBits) {
    Fields value = clampedSum(wave.arrived, wave.fromLeft);
    if constexpr (kEdge) value = select(masks.inside, value, splat(-128));  // black has no error
    const VecU8 red = plus128(value.red);
    const VecU8 green = plus128(value.green);
    const VecU8 blue = plus128(value.blue);
    hn::Store(red, kU8, values[0]);
    hn::Store(green, kU8, values[1]);
    hn::Store(blue, kU8, values[2]);
    const FieldHalves halves = {halvesOf(red), halvesOf(green), halvesOf(blue)};
    const Halves grey = greyOf(constants.grey, halves, values);
    const Halves black = {hn::BroadcastSignBit(grey.even), hn::BroadcastSignBit(grey.odd)};
    const VecU8 blackLanes = hn::OddEven(hn::BitCast(kU8, black.odd), hn::BitCast(kU8, black.even));
    hn::StoreMaskBits(kU8, hn::MaskFromVec(blackLanes), blackBits);
    const Vec16 white = hn::Set(k16, 255);
    const Halves level = {hn::AndNot(black.even, white), hn::AndNot(black.odd, white)};
    return {.red = minus(halves.red, level),
            .green = minus(halves.blue, level),
            .blue = minus(halves.green, level)};
}

// The second half: passes the errors on. The error that the next step needs comes first.
template <bool kEdge>
HWY_INLINE void passOn(Wave& wave, const Constants& constants, const EdgeMasks& masks,
                       const FieldHalves& error, const Fields& entering) {
    const Weights& even = constants.even;
    const Weights& odd = constants.odd;
    wave.fromLeft = weighted(error, even.seven, odd.seven);
    Fields three = weighted(error, even.three, odd.three);
    if constexpr (kEdge) three = select(masks.passesLeft, three, splat(0));
    wave.arrived = wave.arriving;
    wave.arriving = laneDown(clampedSum(wave.second, three));
    wave.second = clampedSum(wave.first, weighted(error, even.five, odd.five));
    wave.first = clampedSum(entering, weighted(error, even.one, odd.one));
}

#endif

}  // namespace tavio::imaging::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
