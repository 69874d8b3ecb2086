// Error diffusion of a picture whose rows come a strip at a time.
//
// The entries are those of diffusing the whole picture at once, pixel by pixel (dither.h). They do
// not depend on how the rows are cut into strips, nor on the instruction set or the number of cores.
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
// It keeps what the last row converted passes on to the next. One picture each.
class ErrorDiffusion {
  public:
    // `width`: pixels of a row, 0 or more. Throws std::bad_alloc.
    explicit ErrorDiffusion(std::int32_t width);

    // How many rows a strip should have, so that no lane of the vectors stands idle; a multiple of
    // it is as good. Depends on the instruction set in use.
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
