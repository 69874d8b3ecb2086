// Printing page 1 of a PDF document.
#pragma once

#include "TavioIpadSDK/platform/url.h"

namespace tavio::intake {

// Draws page 1 at one pixel per point and prints it (or stores it, if LogoNumber is set) at its
// size in dots (target_size.h). A file that is missing, no PDF, encrypted, without pages or over
// the limits of platform/pdf_page.h prints nothing. Always returns true, even then.
bool PdfToBmp(const URL& url);

}  // namespace tavio::intake
