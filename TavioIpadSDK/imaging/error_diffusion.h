// Error diffusion of a picture whose rows come a strip at a time.
//
// The entries are those of diffusing the whole picture at once, pixel by pixel (dither.h). They do
// not depend on the strips, the instruction set or the number of cores.
#pragma once

#include <cstdint>
#include <span>

#include "TavioIpadSDK/imaging/strip_chain.h"
#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::imaging {

// Turns rows into entries, the top row first:
//
//   ErrorDiffusion diffusion(width);
//   while (...) diffusion.convert(nextRows, entriesOfTheseRows);
//
// It keeps the errors for the next row. Each object converts one picture.
class ErrorDiffusion {
  public:
    // `width`: pixels of a row, 0 or more. Throws std::bad_alloc.
    explicit ErrorDiffusion(std::int32_t width);

    // The best number of rows of a strip, so that no lane of the vectors is idle; a multiple of it
    // is as good. Depends on the instruction set in use.
    static std::int32_t bestStrip();

    // `pixels`: the next n rows, any n from 0 on, n * width words as Picture has them. `entries`:
    // their n * paddedWidth(width) entries, overwritten: BLACK or WHITE, the LAST of these rows
    // first, as in mDataArray, each row filled up with WHITE. Throws std::bad_alloc, and then the
    // picture cannot be continued.
    void convert(std::span<const UInt32> pixels, std::span<Byte> entries);

  private:
    StripChain chain_;
};

}  // namespace tavio::imaging
