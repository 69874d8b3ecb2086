// Damage to files.
#pragma once

#include "pixels.h"
#include "random.h"

namespace compare {

// Cuts the file short, changes some of its bytes, takes out, puts in or replaces a piece.
void damage(Random& random, Bytes& file);

}  // namespace compare
