// The encoder's module-wide variables. Only ParseBMP uses them: the functions that it calls get
// values.
//
// All belong to one picture and are kept until the next one overwrites them. They have their
// initial value before any code of the program runs, and exist until all of it has run.
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
