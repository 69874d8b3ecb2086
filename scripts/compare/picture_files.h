// Picture files of random pixels, in the many forms that each format has.
#pragma once

#include "pixels.h"
#include "random.h"

namespace compare {

// All kinds of colour, depths and interlacing. At least one pixel.
Bytes pngFile(Random& random, const Pixels& pixels);

// Grey, colour and print colours, baseline and progressive, upright and turned. At least one pixel.
Bytes jpegFile(Random& random, const Pixels& pixels);

// All depths and header sizes, plain and run-length, bottom-up and top-down. May have no pixel.
Bytes bmpFile(Random& random, const Pixels& pixels);

}  // namespace compare
