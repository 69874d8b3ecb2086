// What each dot of a drawing is: black, white or grey.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/sharp/dot_row.h"

namespace tavio::sharp {

// A drawing is made of pixels; a dot is a square of `factor` by `factor` of them.
inline constexpr int kMaxPixelsPerDotSide = 4;

// Settles the dots of a drawing row by row, from the top.
//
// A pixel is 0x00RRGGBB; its top byte has no meaning. Black and white pixels are those that the eye
// cannot tell from black and white, and black ink without others (0x231F20). All others are between.
//
// Edges are drawn smoothly, so a pixel between may be of a grey or of an edge. What is in a dot and
// in the eight beside it tells which:
//
//   black and white, or nothing between   the dot is black if half or more of it is covered, else white
//   black or white, and pixels between    they are grey: the dot is that grey if half or more of it is
//                                         covered by it. The grey is that of the pixel farthest from
//                                         the solid colour, so that no edge lightens or darkens it
//   only pixels between                   the dot has their mean
//
// A stroke that is thinner than a dot is one dot wide: a dot that is covered by a quarter or more is
// taken as covered if
//   - those on both of two opposite sides are covered less (one of them may be equally so), and
//   - along the stroke it goes on at both ends, or at one end in dots that are less than half covered:
//     what ends at a dot of its own width is no stroke but the edge of an area.
//
// At three pixels a side and more, an edge is thinner than a dot: a dot of pixels between only is grey
// whatever is beside it.
class DotSettler {
  public:
    // width: of the drawing in dots, 1 or more. factor: 1 to kMaxPixelsPerDotSide.
    DotSettler(std::int32_t width, int factor);

    // The pixels of the next row of dots: `factor` rows of them, the first of each `stride` pixels
    // after that above. Returns the dots of the row above, none for the first; valid until the next
    // call.
    std::span<const Byte> add(const std::uint32_t* pixels, std::size_t stride);

    // After the last row: its dots.
    std::span<const Byte> finish();

  private:
    // `pixels` begins with the first of these pieces.
    void count(const PixelRows& pixels, PieceRange pieces, DotRow& row);
    void countLastPiece(const PixelRows& whole, DotRow& row);
    std::span<const Byte> settle(const ThreeRows& rows);

    std::size_t width_;
    std::size_t factor_;
    std::size_t wholePieces_;
    std::size_t pieces_;                    // with one that is partly in the drawing
    std::vector<std::uint32_t> lastPiece_;  // its pixels, and white ones; empty if there is none
    Bytes marks_;                           // the white pieces of the row that is counted
    std::array<DotRow, 3> rows_;            // the last three
    std::size_t added_ = 0;
    Bytes settled_;
};

}  // namespace tavio::sharp
