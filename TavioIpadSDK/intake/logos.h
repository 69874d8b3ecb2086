// Logos: pictures in the printer's memory, each with a number.
//
//   DownloadLogo(URL::fromPath("seal.pdf"), 7);  // store it once
//   PrintLogo(7, 100, 250);                      // print it at row 100, column 250
#pragma once

#include <cstdint>

#include "TavioIpadSDK/machine/export.h"
#include "TavioIpadSDK/platform/url.h"

namespace tavio {

// Stores page 1 of a PDF or a photo in the printer as logo `idnum`. Routes and spellings are those
// of SendFile without the text route: a text file cannot become a logo. The top 8 rows of the
// picture are deliberately not stored, so a logo of fewer than 16 rows stays empty.
//
// Returns true for a PDF, false for a picture (even if it was stored) and for no route. LogoNumber
// is set on every call and stays set until the next SendFile.
TAVIO_API bool DownloadLogo(const URL& filename, std::int32_t idnum);

// Prints logo `idnum` at `row`, `column`: sends "<SP" row "," column "><LD" idnum ">". No number is
// checked. Always returns true, even without a session.
TAVIO_API bool PrintLogo(std::int32_t idnum, std::int32_t row, std::int32_t column);

}  // namespace tavio
