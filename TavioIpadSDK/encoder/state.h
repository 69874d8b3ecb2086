// The encoder's module-wide variables. ParseBMP alone knows them: what it calls is given values.
//
// All are of one picture: the next one overwrites them, and until then they are kept. They have
// their first value before any code of the program runs, and keep theirs until all of it has run.
#pragma once

#include <vector>

#include "TavioIpadSDK/encoder/bitmap_headers.h"
#include "TavioIpadSDK/encoder/runs.h"

namespace tavio::encoder {

// The first 14 bytes of the last file of 62 bytes or more, refused or not; all 0 before the first.
// Written by: parse_bmp.cpp
// Read by: nobody
extern FileHeader bmfile;

// The 48 bytes that follow these, with the defaults that `judge` fills in; all 0 before the first.
// Written by: parse_bmp.cpp
// Read by: parse_bmp.cpp
extern InfoHeader bminfo;

// The runs of the last band of the last picture that had one, then entries that are not used. Empty
// before the first such picture, LINEMAPMAX entries or more from then on: it never shrinks.
// Written by: parse_bmp.cpp
// Read by: nobody
extern std::vector<LineParser> linemap;

}  // namespace tavio::encoder
