// The kernel of error diffusion in one grey channel: one strip of rows.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/machine/uncleared_bytes.h"

namespace tavio::sharp {

// Each row of a strip lies so many columns to the right of the row above (diffuse_strip.cpp).
inline constexpr std::int32_t kSkew = 3;

// The number of rows of a strip with the instruction set in use.
std::int32_t stripRows();

// The grey values of a strip, less 128, as the kernel reads them: skewed, with white on all sides.
//
//            step ->
//   row 0    a a a a a a w w w w w w w w       w  white
//   row 1    w w w b b b b b b w w w w w
//   row 2    w w w w w w c c c c c c w w
class SkewedStrip {
  public:
    // `width`: 1 or more. `rows`: stripRows(). Throws std::bad_alloc.
    SkewedStrip(std::int32_t width, std::int32_t rows);

    std::int32_t width() const { return width_; }
    std::int32_t rows() const { return rows_; }

    // Steps from the first column of the first row to the end of the last one, a multiple of 64.
    std::int32_t steps() const { return steps_; }

    // Where the row's width() values are written: grey values ^ 0x80. Row 0 to rows() - 1.
    Byte* row(std::int32_t row) { return lane(row) + std::ptrdiff_t{kSkew} * row; }
    const Byte* row(std::int32_t row) const { return lane(row) + std::ptrdiff_t{kSkew} * row; }

    // The row's values from step 0 on: steps() of them, and 16 more that may be read.
    const Byte* lane(std::int32_t row) const { return values_.data() + row * stride_; }

    // Bytes from one lane to the next.
    std::ptrdiff_t stride() const { return stride_; }

    // Makes the rows from `first` on white.
    void whiten(std::int32_t first);

  private:
    Byte* lane(std::int32_t row) { return values_.data() + row * stride_; }

    std::int32_t width_;
    std::int32_t rows_;
    std::int32_t steps_;
    std::ptrdiff_t stride_;
    Bytes values_;
};

// What the kernel keeps from strip to strip of a picture.
class DiffusionState {
  public:
    // As for SkewedStrip. Throws std::bad_alloc.
    DiffusionState(std::int32_t width, std::int32_t rows);

    // The errors that the last row passes down, summed for each column below it, plus 128. A strip
    // reads them and leaves its own. Column 0; the kernel may read and write kMargin bytes before it and
    // after the last one.
    Byte* errors() { return errors_.data() + kMargin; }

    // Memory without a meaning between strips: kStepBytes for each step.
    Byte* scratch() { return scratch_.data(); }
    static constexpr std::size_t kStepBytes = 20;

  private:
    static constexpr std::size_t kMargin = 512;
    Bytes errors_;
    machine::UnclearedBytes scratch_;
};

// Turns the strip into dots. `firstRow`: the strip's first row in the picture, a multiple of
// stripRows(). `bits`: whole rows of Dots, at most stripRows() of them; overwritten.
//
// Row by row, from the left, each value v that is not solid becomes
//
//   sum = v + the errors passed to it + noise     (diffusion_noise.h; the passed ones as one byte)
//   dot = white if sum is 128 or more             error = sum - 255 if white, else sum
//
// and passes its error on: 7/16 to the right, 3/16 below left, 4/16 below and 2/16 below right, in
// whole numbers h = half the error, q, o and s = half of the one before, each rounded up:
//
//   right h - s        below left the rest        below q        below right o
void diffuseStrip(const SkewedStrip& strip, std::int32_t firstRow, DiffusionState& state,
                  std::span<Byte> bits);

}  // namespace tavio::sharp
