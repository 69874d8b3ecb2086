// Small PDF documents, written as text.
#pragma once

#include "pixels.h"
#include "random.h"

namespace compare {

// A document of one page with shapes and a line of letters; some have no page, some a crop box that
// does not begin at (0, 0), some are turned.
Bytes pdfFile(Random& random);

}  // namespace compare
