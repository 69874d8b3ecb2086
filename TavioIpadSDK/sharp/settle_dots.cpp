#include "TavioIpadSDK/sharp/settle_dots.h"

#include <algorithm>
#include <cstdlib>

#include "TavioIpadSDK/sharp/luminance.h"

namespace tavio::sharp {

namespace {

constexpr std::size_t kPiece = 32;             // dots that are looked at together
constexpr std::uint32_t kColour = 0xFFFFFF;    // the part of a pixel that is its colour
constexpr std::uint32_t kBlackInk = 0x231F20;  // how the engine shows black ink without others
constexpr Byte kTolerance = 3;                 // luminance that the eye does not see

constexpr int kMinStroke = 4;  // a thin stroke covers a quarter of a dot or more

bool isWhite(const std::uint32_t* pixels, std::size_t count) {
    std::uint32_t all = kColour;
    for (std::size_t i = 0; i < count; ++i) all &= pixels[i];
    return (all & kColour) == kColour;
}

bool isColourless(const std::uint32_t* pixels, std::size_t count) {
    std::uint32_t differences = 0;
    for (std::size_t i = 0; i < count; ++i) differences |= pixels[i] ^ (pixels[i] >> 8);
    return (differences & 0xFFFF) == 0;
}

Byte greyOf(std::uint32_t pixel) {
    if ((pixel & kColour) == kBlackInk) return 0;
    return static_cast<Byte>(luminanceOf(pixel >> 16 & 255, pixel >> 8 & 255, pixel & 255));
}

// The pixels' luminance, black ones 0 and white ones 255.
void toValues(const std::uint32_t* pixels, std::size_t count, Byte* values) {
    if (isColourless(pixels, count)) {
        for (std::size_t i = 0; i < count; ++i) values[i] = static_cast<Byte>(pixels[i] & 255);
    } else {
        std::transform(pixels, pixels + count, values, greyOf);
    }
    for (std::size_t i = 0; i < count; ++i) {
        const Byte value = values[i];
        const Byte lighter = value >= 255 - kTolerance ? 255 : value;
        values[i] = value <= kTolerance ? 0 : lighter;
    }
}

}  // namespace

DotSettler::DotSettler(std::int32_t width, int factor)
    : width_(static_cast<std::size_t>(width)),
      factor_(static_cast<std::size_t>(factor)),
      settled_(width_) {
    for (Row& row : rows_) {
        row.sums.resize(width_ + 2);
        for (Bytes* bytes : {&row.black, &row.white, &row.darkest, &row.lightest}) {
            bytes->resize(width_ + 2);
        }
        row.isBlank.resize((width_ + kPiece - 1) / kPiece);
    }
}

std::span<const Byte> DotSettler::add(const std::uint32_t* pixels, std::size_t stride) {
    count(pixels, stride, rows_[added_ % 3]);
    ++added_;
    if (added_ == 1) return {};
    // The first row has none above it: it stands beside itself.
    const Row& above = rows_[added_ == 2 ? 0 : added_ % 3];
    return settle(above, rows_[(added_ - 2) % 3], rows_[(added_ - 1) % 3]);
}

std::span<const Byte> DotSettler::finish() {
    if (added_ == 0) return {};
    const Row& last = rows_[(added_ - 1) % 3];
    return settle(added_ == 1 ? last : rows_[(added_ - 2) % 3], last, last);
}

std::size_t DotSettler::dotsOf(std::size_t piece) const {
    return std::min(kPiece, width_ - piece * kPiece);
}

void DotSettler::count(const std::uint32_t* pixels, std::size_t stride, Row& row) const {
    for (std::size_t piece = 0; piece < row.isBlank.size(); ++piece) {
        const std::uint32_t* const corner = pixels + piece * kPiece * factor_;
        bool isBlank = true;
        for (std::size_t y = 0; y < factor_ && isBlank; ++y) {
            isBlank = isWhite(corner + y * stride, dotsOf(piece) * factor_);
        }
        if (isBlank) {
            clearPiece(piece, row);
        } else if (factor_ == 1) {
            countPiece<1>(corner, stride, piece, row);
        } else if (factor_ == 2) {
            countPiece<2>(corner, stride, piece, row);
        } else if (factor_ == 3) {
            countPiece<3>(corner, stride, piece, row);
        } else {
            countPiece<4>(corner, stride, piece, row);
        }
        row.isBlank[piece] = isBlank ? 1 : 0;
    }
    row.sums.front() = row.sums[1];
    row.sums.back() = row.sums[width_];
    for (Bytes* bytes : {&row.black, &row.white, &row.darkest, &row.lightest}) {
        bytes->front() = (*bytes)[1];
        bytes->back() = (*bytes)[width_];
    }
}

// Most pieces of a page are blank, and were so in the row that this one replaces.
void DotSettler::clearPiece(std::size_t piece, Row& row) const {
    if (row.isBlank[piece] != 0) return;
    const auto first = static_cast<std::ptrdiff_t>(piece * kPiece + 1);
    const std::size_t dots = dotsOf(piece);
    const std::size_t all = factor_ * factor_;
    std::fill_n(row.sums.begin() + first, dots, static_cast<std::uint16_t>(255 * all));
    std::fill_n(row.black.begin() + first, dots, Byte{0});
    std::fill_n(row.white.begin() + first, dots, static_cast<Byte>(all));
    std::fill_n(row.darkest.begin() + first, dots, Byte{255});
    std::fill_n(row.lightest.begin() + first, dots, Byte{0});
}

// First down the columns of pixels, whose steps do not wait for each other, then along them.
template <std::size_t kFactor>
void DotSettler::countPiece(const std::uint32_t* pixels, std::size_t stride, std::size_t piece,
                            Row& row) const {
    constexpr std::size_t kColumns = kPiece * kFactor;
    std::array<Byte, kColumns> values{};
    std::array<std::uint16_t, kColumns> sums{};
    std::array<Byte, kColumns> black{};
    std::array<Byte, kColumns> white{};
    std::array<Byte, kColumns> darkest{};
    std::array<Byte, kColumns> lightest{};
    darkest.fill(255);
    for (std::size_t y = 0; y < kFactor; ++y) {
        toValues(pixels + y * stride, dotsOf(piece) * kFactor, values.data());
        for (std::size_t x = 0; x < kColumns; ++x) {
            const Byte value = values[x];
            sums[x] = static_cast<std::uint16_t>(sums[x] + value);
            black[x] = static_cast<Byte>(black[x] + (value == 0 ? 1 : 0));
            white[x] = static_cast<Byte>(white[x] + (value == 255 ? 1 : 0));
            darkest[x] = std::min(darkest[x], value == 0 ? Byte{255} : value);
            lightest[x] = std::max(lightest[x], value == 255 ? Byte{0} : value);
        }
    }
    // In place: the sums of a dot lie where the first of its columns did, or before.
    for (std::size_t dot = 0; dot < kPiece; ++dot) {
        sums[dot] = sums[dot * kFactor];
        black[dot] = black[dot * kFactor];
        white[dot] = white[dot * kFactor];
        darkest[dot] = darkest[dot * kFactor];
        lightest[dot] = lightest[dot * kFactor];
        for (std::size_t x = dot * kFactor + 1; x < (dot + 1) * kFactor; ++x) {
            sums[dot] = static_cast<std::uint16_t>(sums[dot] + sums[x]);
            black[dot] = static_cast<Byte>(black[dot] + black[x]);
            white[dot] = static_cast<Byte>(white[dot] + white[x]);
            darkest[dot] = std::min(darkest[dot], darkest[x]);
            lightest[dot] = std::max(lightest[dot], lightest[x]);
        }
    }
    const std::size_t first = piece * kPiece + 1;
    const std::size_t dots = dotsOf(piece);
    std::copy_n(sums.data(), dots, row.sums.data() + first);
    std::copy_n(black.data(), dots, row.black.data() + first);
    std::copy_n(white.data(), dots, row.white.data() + first);
    std::copy_n(darkest.data(), dots, row.darkest.data() + first);
    std::copy_n(lightest.data(), dots, row.lightest.data() + first);
}

std::span<const Byte> DotSettler::settle(const Row& above, const Row& row, const Row& below) {
    for (std::size_t piece = 0; piece < row.isBlank.size(); ++piece) {
        const std::size_t first = piece * kPiece;
        const std::size_t dots = dotsOf(piece);
        if (row.isBlank[piece] != 0) {
            std::fill_n(settled_.data() + first, dots, Byte{255});
        } else if (!settleSolids(row, first, dots)) {
            settleOthers({&above, &row, &below}, first, dots);
        }
    }
    return settled_;
}

// Returns true if there are no others.
bool DotSettler::settleSolids(const Row& row, std::size_t first, std::size_t dots) {
    const auto all = static_cast<Byte>(factor_ * factor_);
    const Byte* const white = row.white.data() + first + 1;
    const Byte* const black = row.black.data() + first + 1;
    Byte* const settled = settled_.data() + first;
    Byte others = 0;
    for (std::size_t dot = 0; dot < dots; ++dot) {
        const Byte isWhite = white[dot] == all ? 255 : 0;
        const Byte isBlack = black[dot] == all ? 255 : 0;
        settled[dot] = isWhite;
        others = static_cast<Byte>(others | (255 ^ isWhite ^ isBlack));
    }
    return others == 0;
}

void DotSettler::settleOthers(const std::array<const Row*, 3>& rows, std::size_t first,
                              std::size_t dots) {
    const auto all = static_cast<Byte>(factor_ * factor_);
    for (std::size_t dot = first; dot < first + dots; ++dot) {
        if (settled_[dot] == 255 || rows[1]->black[dot + 1] == all) continue;
        settled_[dot] = settled(rows, dot + 1);
    }
}

DotSettler::Surroundings DotSettler::around(const std::array<const Row*, 3>& rows,
                                            std::size_t dot) {
    Surroundings seen;
    for (const Row* row : rows) {
        for (std::size_t i = dot - 1; i <= dot + 1; ++i) {
            seen.hasBlack = seen.hasBlack || row->black[i] != 0;
            seen.hasWhite = seen.hasWhite || row->white[i] != 0;
            seen.darkest = std::min(seen.darkest, row->darkest[i]);
            seen.lightest = std::max(seen.lightest, row->lightest[i]);
        }
    }
    return seen;
}

Byte DotSettler::settled(const std::array<const Row*, 3>& rows, std::size_t dot) const {
    const Row& row = *rows[1];
    const int all = static_cast<int>(factor_ * factor_);
    const int sum = row.sums[dot];
    const int between = all - row.black[dot] - row.white[dot];
    const bool isThinEdge = factor_ >= 3;
    const Surroundings seen = around(rows, dot);
    const bool besideBoth = seen.hasBlack && seen.hasWhite;
    if (between == 0 || (besideBoth && !(isThinEdge && between == all))) {
        return 2 * sum <= 255 * all || isThinStroke(rows, dot, 255 * all) ? 0 : 255;
    }
    if (besideBoth || (!seen.hasBlack && !seen.hasWhite)) {
        return static_cast<Byte>(std::clamp((sum + all / 2) / all, 1, 254));
    }
    const int solid = seen.hasWhite ? 255 : 0;
    const int darkest = isThinEdge ? row.darkest[dot] : seen.darkest;
    const int lightest = isThinEdge ? row.lightest[dot] : seen.lightest;
    const int grey = seen.hasWhite ? darkest : lightest;
    const int full = std::abs(grey - solid) * all;
    const bool isGrey =
        2 * std::abs(sum - solid * all) >= full || (seen.hasWhite && isThinStroke(rows, dot, full));
    return static_cast<Byte>(isGrey ? grey : solid);
}

bool DotSettler::isThinStroke(const std::array<const Row*, 3>& rows, std::size_t dot,
                              int full) const {
    const int all = static_cast<int>(factor_ * factor_);
    std::array<std::array<int, 3>, 3> ink{};
    for (std::size_t y = 0; y < 3; ++y) {
        for (std::size_t x = 0; x < 3; ++x) ink[y][x] = 255 * all - rows[y]->sums[dot + x - 1];
    }
    if (kMinStroke * ink[1][1] < full) return false;
    const auto isAcross = [&](int before, int after) {
        return before < ink[1][1] && after <= ink[1][1];
    };
    const auto goesOn = [&](int one, int other) {
        return kMinStroke * std::min(one, other) >= full ||
               (kMinStroke * std::max(one, other) >= full && 2 * std::max(one, other) < full);
    };
    const auto mostOf = [](int a, int b, int c) { return std::max({a, b, c}); };
    return (isAcross(ink[0][1], ink[2][1]) && goesOn(mostOf(ink[0][0], ink[1][0], ink[2][0]),
                                                     mostOf(ink[0][2], ink[1][2], ink[2][2]))) ||
           (isAcross(ink[1][0], ink[1][2]) && goesOn(mostOf(ink[0][0], ink[0][1], ink[0][2]),
                                                     mostOf(ink[2][0], ink[2][1], ink[2][2])));
}

}  // namespace tavio::sharp
