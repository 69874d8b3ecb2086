#include "TavioIpadSDK/sharp/settle_dots.h"

#include <algorithm>
#include <cstring>

#include "TavioIpadSDK/sharp/count_pixels.h"
#include "TavioIpadSDK/sharp/mark_white.h"
#include "TavioIpadSDK/sharp/pixel_value.h"
#include "TavioIpadSDK/sharp/settle_row.h"

namespace tavio::sharp {

namespace {

// The first pieces of a range that are all marked, or all not.
PieceRange runOf(const Bytes& marks, PieceRange pieces) {
    const auto first = marks.begin() + static_cast<std::ptrdiff_t>(pieces.first);
    const std::size_t count = pieces.end - pieces.first;
    const void* const other = std::memchr(&*first, 1 - *first, count);
    if (other == nullptr) return pieces;
    return {pieces.first, static_cast<std::size_t>(static_cast<const Byte*>(other) - marks.data())};
}

// Most pieces of a page are white, and were so in the row that this one replaces.
void whiten(PieceRange pieces, std::size_t factor, DotRow& row) {
    for (std::size_t piece = pieces.first; piece < pieces.end; ++piece) {
        if (row.isWhite[piece] != 0) continue;
        const auto first = static_cast<std::ptrdiff_t>(piece * kPiece + 1);
        const auto sum = static_cast<std::int16_t>(255 * factor * factor);
        std::fill_n(row.sums.begin() + first, kPiece, sum);
        std::fill_n(row.lowest.begin() + first, kPiece, Byte{255});
        std::fill_n(row.highest.begin() + first, kPiece, Byte{255});
        std::fill_n(row.darkest.begin() + first, kPiece, Byte{255});
        std::fill_n(row.lightest.begin() + first, kPiece, Byte{0});
        row.isWhite[piece] = 1;
    }
}

void padEnds(DotRow& row, std::size_t width) {
    row.sums[0] = row.sums[1];
    row.sums[width + 1] = row.sums[width];
    for (Bytes* values : {&row.lowest, &row.highest, &row.darkest, &row.lightest}) {
        (*values)[0] = (*values)[1];
        (*values)[width + 1] = (*values)[width];
    }
}

}  // namespace

DotSettler::DotSettler(std::int32_t width, int factor)
    : width_(static_cast<std::size_t>(width)),
      factor_(static_cast<std::size_t>(factor)),
      wholePieces_(width_ / kPiece),
      pieces_((width_ + kPiece - 1) / kPiece),
      lastPiece_((pieces_ - wholePieces_) * kPiece * factor_ * factor_, kColour),
      marks_(pieces_),
      rows_{DotRow(pieces_), DotRow(pieces_), DotRow(pieces_)},
      settled_(pieces_ * kPiece) {}

std::span<const Byte> DotSettler::add(const std::uint32_t* pixels, std::size_t stride) {
    DotRow& row = rows_[added_ % 3];
    const PixelRows whole{pixels, stride, factor_};
    count(whole, {0, wholePieces_}, row);
    if (pieces_ > wholePieces_) countLastPiece(whole, row);
    padEnds(row, width_);
    ++added_;
    if (added_ == 1) return {};
    // The first row has none above it: it stands beside itself.
    const DotRow& above = rows_[added_ == 2 ? 0 : added_ % 3];
    return settle({&above, &rows_[(added_ - 2) % 3], &row});
}

void DotSettler::count(const PixelRows& pixels, PieceRange pieces, DotRow& row) {
    markWhite(pixels, pieces.end - pieces.first, marks_.data() + pieces.first);
    PieceRange left = pieces;
    while (left.first < left.end) {
        const PieceRange run = runOf(marks_, left);
        if (marks_[run.first] != 0) {
            whiten(run, factor_, row);
        } else {
            countPixels(pixels.fromPiece(run.first - pieces.first), run, row);
        }
        left.first = run.end;
    }
}

std::span<const Byte> DotSettler::finish() {
    if (added_ == 0) return {};
    const DotRow& last = rows_[(added_ - 1) % 3];
    return settle({added_ == 1 ? &last : &rows_[(added_ - 2) % 3], &last, &last});
}

// Past the drawing's right edge nothing may be read.
void DotSettler::countLastPiece(const PixelRows& whole, DotRow& row) {
    const std::size_t columns = kPiece * factor_;
    const PixelRows inside = whole.fromPiece(wholePieces_);
    for (std::size_t y = 0; y < factor_; ++y) {
        std::copy_n(inside.top + y * inside.stride, width_ * factor_ - wholePieces_ * columns,
                    lastPiece_.data() + y * columns);
    }
    count({lastPiece_.data(), columns, factor_}, {wholePieces_, pieces_}, row);
}

std::span<const Byte> DotSettler::settle(const ThreeRows& rows) {
    const DotRow& row = *rows[1];
    PieceRange left{0, pieces_};
    while (left.first < left.end) {
        const PieceRange run = runOf(row.isWhite, left);
        if (row.isWhite[run.first] != 0) {
            std::fill_n(settled_.data() + run.first * kPiece, (run.end - run.first) * kPiece,
                        Byte{255});
        } else {
            settleRow(rows, factor_, run, settled_.data());
        }
        left.first = run.end;
    }
    return std::span(settled_).first(width_);
}

}  // namespace tavio::sharp
