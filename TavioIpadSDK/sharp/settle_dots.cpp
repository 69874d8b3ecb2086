#include "TavioIpadSDK/sharp/settle_dots.h"

#include <algorithm>
#include <cstdlib>

namespace tavio::sharp {

namespace {

constexpr std::size_t kPiece = 32;  // dots that are looked at together
constexpr std::uint32_t kColour = 0xFFFFFF;
constexpr std::uint32_t kBlackInk = 0x231F20;  // how the engine shows black ink without others
constexpr std::uint32_t kTolerance = 3;        // luminance that the eye does not see

// 0.299 red + 0.587 green + 0.114 blue
constexpr std::uint32_t luminance(std::uint32_t pixel) {
    return (77 * (pixel >> 16 & 255) + 150 * (pixel >> 8 & 255) + 29 * (pixel & 255) + 128) >> 8;
}

bool isWhite(const std::uint32_t* pixels, std::size_t count) {
    std::uint32_t all = kColour;
    for (std::size_t i = 0; i < count; ++i) all &= pixels[i];
    return all == kColour;
}

}  // namespace

DotSettler::DotSettler(std::int32_t width, int factor)
    : width_(static_cast<std::size_t>(width)),
      factor_(static_cast<std::size_t>(factor)),
      settled_(width_) {
    for (Row& row : rows_) {
        row.dots.resize(width_ + 2);
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

void DotSettler::count(const std::uint32_t* pixels, std::size_t stride, Row& row) const {
    const auto all = static_cast<Byte>(factor_ * factor_);
    const Counts blank{static_cast<std::uint16_t>(255 * all), 0, all, 255, 0};
    for (std::size_t first = 0; first < width_; first += kPiece) {
        const std::size_t dots = std::min(kPiece, width_ - first);
        const std::span piece = std::span(row.dots).subspan(first + 1, dots);
        const std::uint32_t* const corner = pixels + first * factor_;
        bool isBlank = true;
        for (std::size_t y = 0; y < factor_ && isBlank; ++y) {
            isBlank = isWhite(corner + y * stride, dots * factor_);
        }
        row.isBlank[first / kPiece] = isBlank ? 1 : 0;
        if (isBlank) {
            std::ranges::fill(piece, blank);
        } else {
            countPiece(corner, stride, piece);
        }
    }
    row.dots.front() = row.dots[1];
    row.dots.back() = row.dots[width_];
}

// First down the columns of pixels, then along them: the first is the most work and has no steps that
// wait for each other.
void DotSettler::countPiece(const std::uint32_t* pixels, std::size_t stride,
                            std::span<Counts> dots) const {
    constexpr std::size_t kMaxColumns = kPiece * kMaxPixelsPerDotSide;
    std::array<std::uint16_t, kMaxColumns> sums{};
    std::array<std::uint16_t, kMaxColumns> solids{};  // black ones, and 256 for each white one
    std::array<Byte, kMaxColumns> darkest{};
    std::array<Byte, kMaxColumns> lightest{};
    darkest.fill(255);
    const std::size_t columns = dots.size() * factor_;
    for (std::size_t y = 0; y < factor_; ++y) {
        for (std::size_t x = 0; x < columns; ++x) {
            const std::uint32_t pixel = pixels[y * stride + x] & kColour;
            const auto value = static_cast<Byte>(luminance(pixel));
            const bool isBlack = value <= kTolerance || pixel == kBlackInk;
            const bool isPaper = value >= 255 - kTolerance;
            const bool isSolid = isBlack || isPaper;
            sums[x] = static_cast<std::uint16_t>(sums[x] + (isBlack ? 0 : isPaper ? 255 : value));
            solids[x] = static_cast<std::uint16_t>(solids[x] + (isBlack ? 1 : isPaper ? 256 : 0));
            darkest[x] = std::min(darkest[x], isSolid ? Byte{255} : value);
            lightest[x] = std::max(lightest[x], isSolid ? Byte{0} : value);
        }
    }
    for (std::size_t dot = 0; dot < dots.size(); ++dot) {
        std::uint32_t sum = 0;
        std::uint32_t solid = 0;
        Counts& counts = dots[dot] = {};
        for (std::size_t x = dot * factor_; x < (dot + 1) * factor_; ++x) {
            sum += sums[x];
            solid += solids[x];
            counts.darkest = std::min(counts.darkest, darkest[x]);
            counts.lightest = std::max(counts.lightest, lightest[x]);
        }
        counts.sum = static_cast<std::uint16_t>(sum);
        counts.black = static_cast<Byte>(solid & 255);
        counts.white = static_cast<Byte>(solid >> 8);
    }
}

std::span<const Byte> DotSettler::settle(const Row& above, const Row& row, const Row& below) {
    const std::size_t all = factor_ * factor_;
    for (std::size_t first = 0; first < width_; first += kPiece) {
        const std::size_t end = std::min(first + kPiece, width_);
        if (row.isBlank[first / kPiece] != 0) {
            std::fill(settled_.begin() + static_cast<std::ptrdiff_t>(first),
                      settled_.begin() + static_cast<std::ptrdiff_t>(end), Byte{255});
            continue;
        }
        for (std::size_t x = first; x < end; ++x) {
            const Counts& dot = row.dots[x + 1];
            if (dot.white == all || dot.black == all) {
                settled_[x] = dot.white == all ? 255 : 0;
            } else {
                settled_[x] = settled(dot, around({&above.dots[x], &row.dots[x], &below.dots[x]}));
            }
        }
    }
    return settled_;
}

// dots: the nine dots of which the one in the middle is settled, three to a row.
DotSettler::Counts DotSettler::around(const std::array<const Counts*, 3>& dots) {
    Counts sum;
    for (const Counts* row : dots) {
        for (const Counts& dot : std::span(row, 3)) {
            sum.black = std::max(sum.black, dot.black);
            sum.white = std::max(sum.white, dot.white);
            sum.darkest = std::min(sum.darkest, dot.darkest);
            sum.lightest = std::max(sum.lightest, dot.lightest);
        }
    }
    return sum;
}

Byte DotSettler::settled(const Counts& dot, const Counts& around) const {
    const int all = static_cast<int>(factor_ * factor_);
    const int between = all - dot.black - dot.white;
    const bool isThinEdge = factor_ >= 3;
    const bool besideBoth = around.black != 0 && around.white != 0;
    if (between == 0 || (besideBoth && !(isThinEdge && between == all))) {
        return static_cast<Byte>(2 * dot.sum <= 255 * all ? 0 : 255);
    }
    if (besideBoth || (around.black == 0 && around.white == 0)) {
        return static_cast<Byte>(std::clamp((dot.sum + all / 2) / all, 1, 254));
    }
    const Counts& seen = isThinEdge ? dot : around;
    const int solid = around.white != 0 ? 255 : 0;
    const int grey = around.white != 0 ? seen.darkest : seen.lightest;
    const bool isGrey = 2 * std::abs(dot.sum - solid * all) >= std::abs(grey - solid) * all;
    return static_cast<Byte>(isGrey ? grey : solid);
}

}  // namespace tavio::sharp
