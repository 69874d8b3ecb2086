// A dot is one of three kinds (settle_dots.h):
//
//   mean     only pixels between are in it, and black and white ones beside it are both there, where an
//            edge is thin, or both missing
//   cover    other dots without pixels between, or with both black and white in them and beside them
//   grey     all others
//
// A cover is as a grey whose colour is black on white: it is that colour if half or more of it is
// covered, or if it is a thin stroke.
#include "TavioIpadSDK/sharp/settle_row.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "TavioIpadSDK/machine/instruction_set.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "TavioIpadSDK/sharp/settle_row.cpp"
#include "TavioIpadSDK/machine/vectors-inl.h"

HWY_BEFORE_NAMESPACE();
namespace tavio::sharp::HWY_NAMESPACE {

#if HWY_TARGET != HWY_SCALAR && HWY_TARGET != HWY_EMU128

namespace hn = hwy::HWY_NAMESPACE;

using SumsTag = hn::CappedTag<std::int16_t, kPiece>;
using ValuesTag = hn::Rebind<Byte, SumsTag>;
using Sums = hn::Vec<SumsTag>;
using Values = hn::Vec<ValuesTag>;
using Mask = hn::Mask<SumsTag>;

constexpr SumsTag kSums;
constexpr ValuesTag kValues;
constexpr std::size_t kLanes = hn::MaxLanes(SumsTag());

HWY_INLINE Sums splat(std::size_t value) {
    return hn::Set(kSums, static_cast<std::int16_t>(value));
}

HWY_INLINE Mask isAtLeast(Sums one, Sums other) {
    return hn::Eq(hn::Max(one, other), one);
}

HWY_INLINE Sums load(const Bytes& values, std::size_t at) {
    return hn::PromoteTo(kSums, hn::LoadU(kValues, values.data() + at));
}

// The lowest of each dot and the eight beside it; `at` is the dot.
HWY_INLINE Sums minAround(const ThreeRows& rows, Bytes DotRow::*values, std::size_t at) {
    Values min = hn::Set(kValues, 255);
    for (const DotRow* row : rows) {
        const Byte* const from = (row->*values).data() + at - 1;
        const Values sides = hn::Min(hn::LoadU(kValues, from), hn::LoadU(kValues, from + 2));
        min = hn::Min(min, hn::Min(sides, hn::LoadU(kValues, from + 1)));
    }
    return hn::PromoteTo(kSums, min);
}

HWY_INLINE Sums maxAround(const ThreeRows& rows, Bytes DotRow::*values, std::size_t at) {
    Values max = hn::Zero(kValues);
    for (const DotRow* row : rows) {
        const Byte* const from = (row->*values).data() + at - 1;
        const Values sides = hn::Max(hn::LoadU(kValues, from), hn::LoadU(kValues, from + 2));
        max = hn::Max(max, hn::Max(sides, hn::LoadU(kValues, from + 1)));
    }
    return hn::PromoteTo(kSums, max);
}

// True where a stroke through `ink` is thin, goes from one side to the other and has `before` and
// `after` across.
HWY_INLINE Mask isStroke(Sums ink, Sums before, Sums after, Sums one, Sums other, Sums full) {
    const auto isAcross = hn::And(hn::Lt(before, ink), isAtLeast(ink, after));
    const Sums min = hn::Min(one, other);
    const Sums max = hn::Max(one, other);
    const auto ends =
        hn::And(isAtLeast(hn::ShiftLeft<2>(max), full), hn::Lt(hn::Add(max, max), full));
    return hn::And(isAcross, hn::Or(isAtLeast(hn::ShiftLeft<2>(min), full), ends));
}

HWY_INLINE Mask isThinStroke(const ThreeRows& rows, std::size_t at, std::size_t all, Sums full) {
    const auto inkAt = [&](std::size_t y, std::size_t x) {
        return hn::Sub(splat(255 * all), hn::LoadU(kSums, rows[y]->sums.data() + at + x - 1));
    };
    const Sums ink = inkAt(1, 1);
    const Sums above = inkAt(0, 1);
    const Sums below = inkAt(2, 1);
    const Sums left = inkAt(1, 0);
    const Sums right = inkAt(1, 2);
    const Sums top = hn::Max(inkAt(0, 0), inkAt(0, 2));
    const Sums bottom = hn::Max(inkAt(2, 0), inkAt(2, 2));
    const Sums before = hn::Max(hn::Max(inkAt(0, 0), inkAt(2, 0)), left);
    const Sums after = hn::Max(hn::Max(inkAt(0, 2), inkAt(2, 2)), right);
    const auto isLevel = isStroke(ink, above, below, before, after, full);
    const auto isUpright =
        isStroke(ink, left, right, hn::Max(top, above), hn::Max(bottom, below), full);
    return hn::And(isAtLeast(hn::ShiftLeft<2>(ink), full), hn::Or(isLevel, isUpright));
}

// Sums divided by `all`, which is 1, 4, 9 or 16, and rounded.
HWY_INLINE Sums means(Sums sums, std::size_t all) {
    const hn::RebindToUnsigned<SumsTag> halves;
    const auto doubled = hn::BitCast(halves, hn::ShiftLeft<1>(hn::Add(sums, splat(all / 2))));
    const auto factor = hn::Set(halves, static_cast<std::uint16_t>((32'768 + all - 1) / all));
    return hn::BitCast(kSums, hn::MulHigh(doubled, factor));
}

struct Kinds {
    Mask isCover;
    Mask isMean;
    Mask hasWhite;
};

HWY_INLINE Kinds kindsOf(const ThreeRows& rows, std::size_t at, bool isThinEdge) {
    const DotRow& row = *rows[1];
    const Sums black = hn::Zero(kSums);
    const Sums white = splat(255);
    const auto hasBlack = hn::Eq(minAround(rows, &DotRow::lowest, at), black);
    const auto hasWhite = hn::Eq(maxAround(rows, &DotRow::highest, at), white);
    auto besideBoth = hn::And(hasBlack, hasWhite);
    if (isThinEdge) {
        const auto hasSolid =
            hn::Or(hn::Eq(load(row.lowest, at), black), hn::Eq(load(row.highest, at), white));
        besideBoth = hn::And(besideBoth, hasSolid);
    }
    const auto isCover = hn::Or(hn::Eq(load(row.lightest, at), black), besideBoth);
    const auto isMean =
        hn::AndNot(hn::Or(isCover, hn::Xor(hasBlack, hasWhite)), hn::Eq(black, black));
    return {isCover, isMean, hasWhite};
}

HWY_INLINE Values settledDots(const ThreeRows& rows, std::size_t factor, std::size_t at) {
    const DotRow& row = *rows[1];
    const std::size_t all = factor * factor;
    const bool isThinEdge = factor >= 3;
    const Kinds kinds = kindsOf(rows, at, isThinEdge);
    const Sums darkest = isThinEdge ? load(row.darkest, at) : minAround(rows, &DotRow::darkest, at);
    const Sums lightest =
        isThinEdge ? load(row.lightest, at) : maxAround(rows, &DotRow::lightest, at);
    const Sums sums = hn::LoadU(kSums, row.sums.data() + at);

    const auto isOnWhite = hn::Or(kinds.isCover, kinds.hasWhite);
    const Sums solid = hn::IfThenElseZero(isOnWhite, splat(255));
    const Sums grey =
        hn::IfThenZeroElse(kinds.isCover, hn::IfThenElse(kinds.hasWhite, darkest, lightest));
    const Sums full = hn::Mul(hn::Abs(hn::Sub(grey, solid)), splat(all));
    const Sums covered = hn::Abs(hn::Sub(sums, hn::Mul(solid, splat(all))));
    const auto isStroke = hn::And(isOnWhite, isThinStroke(rows, at, all, full));
    const auto isGrey = hn::Or(isAtLeast(hn::Add(covered, covered), full), isStroke);
    const Sums settled = hn::IfThenElse(isGrey, grey, solid);
    return hn::DemoteTo(kValues, hn::IfThenElse(kinds.isMean, means(sums, all), settled));
}

// Solid dots are what their pixels are.
bool settleVectors(const ThreeRows& rows, std::size_t factor, PieceRange pieces, Byte* settled) {
    const DotRow& row = *rows[1];
    for (std::size_t dot = pieces.first * kPiece; dot < pieces.end * kPiece; dot += kLanes) {
        const Values lowest = hn::LoadU(kValues, row.lowest.data() + dot + 1);
        const Values highest = hn::LoadU(kValues, row.highest.data() + dot + 1);
        const auto isWhite = hn::Eq(lowest, hn::Set(kValues, 255));
        const auto isSolid = hn::Or(isWhite, hn::Eq(highest, hn::Zero(kValues)));
        Values values = lowest;
        if (!hn::AllTrue(kValues, isSolid)) {
            values = hn::IfThenElse(isSolid, lowest, settledDots(rows, factor, dot + 1));
        }
        hn::StoreU(values, kValues, settled + dot);
    }
    return true;
}

#else

bool settleVectors(const ThreeRows& /*rows*/, std::size_t /*factor*/, PieceRange /*pieces*/,
                   Byte* /*settled*/) {
    return false;
}

#endif

}  // namespace tavio::sharp::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace tavio::sharp {
namespace {

constexpr int kMinStroke = 4;  // a thin stroke covers a quarter of a dot or more

// What is known of a dot and those beside it.
struct Surroundings {
    bool hasBlack = false;
    bool hasWhite = false;
    Byte darkest = 255;
    Byte lightest = 0;
};

Surroundings around(const ThreeRows& rows, std::size_t at) {
    Surroundings seen;
    for (const DotRow* row : rows) {
        for (std::size_t i = at - 1; i <= at + 1; ++i) {
            seen.hasBlack = seen.hasBlack || row->lowest[i] == 0;
            seen.hasWhite = seen.hasWhite || row->highest[i] == 255;
            seen.darkest = std::min(seen.darkest, row->darkest[i]);
            seen.lightest = std::max(seen.lightest, row->lightest[i]);
        }
    }
    return seen;
}

// full: the ink of a dot that is covered all over.
bool isThinStroke(const ThreeRows& rows, std::size_t at, int all, int full) {
    std::array<std::array<int, 3>, 3> ink{};
    for (std::size_t y = 0; y < 3; ++y) {
        for (std::size_t x = 0; x < 3; ++x) ink[y][x] = 255 * all - rows[y]->sums[at + x - 1];
    }
    if (kMinStroke * ink[1][1] < full) return false;
    const auto isAcross = [&](int before, int after) {
        return before < ink[1][1] && after <= ink[1][1];
    };
    const auto goesOn = [&](int one, int other) {
        return kMinStroke * std::min(one, other) >= full ||
               (kMinStroke * std::max(one, other) >= full && 2 * std::max(one, other) < full);
    };
    const auto maxOf = [](int a, int b, int c) { return std::max({a, b, c}); };
    return (isAcross(ink[0][1], ink[2][1]) && goesOn(maxOf(ink[0][0], ink[1][0], ink[2][0]),
                                                     maxOf(ink[0][2], ink[1][2], ink[2][2]))) ||
           (isAcross(ink[1][0], ink[1][2]) &&
            goesOn(maxOf(ink[0][0], ink[0][1], ink[0][2]), maxOf(ink[2][0], ink[2][1], ink[2][2])));
}

Byte settledDot(const ThreeRows& rows, std::size_t factor, std::size_t at) {
    const DotRow& row = *rows[1];
    const int all = static_cast<int>(factor * factor);
    const int sum = row.sums[at];
    const bool isThinEdge = factor >= 3;
    const bool hasSolid = row.lowest[at] == 0 || row.highest[at] == 255;
    const Surroundings seen = around(rows, at);
    const bool besideBoth = seen.hasBlack && seen.hasWhite;
    const bool isCover = row.lightest[at] == 0 || (besideBoth && (hasSolid || !isThinEdge));
    if (!isCover && seen.hasBlack == seen.hasWhite) return static_cast<Byte>((sum + all / 2) / all);

    const bool isOnWhite = isCover || seen.hasWhite;
    const int darkest = isThinEdge ? row.darkest[at] : seen.darkest;
    const int lightest = isThinEdge ? row.lightest[at] : seen.lightest;
    const int between = seen.hasWhite ? darkest : lightest;
    const int solid = isOnWhite ? 255 : 0;
    const int grey = isCover ? 0 : between;
    const int full = std::abs(grey - solid) * all;
    const bool isGrey =
        2 * std::abs(sum - solid * all) >= full || (isOnWhite && isThinStroke(rows, at, all, full));
    return static_cast<Byte>(isGrey ? grey : solid);
}

}  // namespace

void settleRow(const ThreeRows& rows, std::size_t factor, PieceRange pieces, Byte* settled) {
    if (TAVIO_CHOSEN_FORM(settleVectors)(rows, factor, pieces, settled)) return;
    for (std::size_t dot = pieces.first * kPiece; dot < pieces.end * kPiece; ++dot) {
        settled[dot] = settledDot(rows, factor, dot + 1);
    }
}

}  // namespace tavio::sharp
#endif
