// Printing a document: the one call for texts, PDF pages and photos.
#pragma once

#include <cstdint>

#include "TavioIpadSDK/machine/export.h"
#include "TavioIpadSDK/platform/url.h"

namespace tavio {

// Prints the document: a page or picture with its top left corner at printer row `row`, column
// `column` (dots; in portrait the row is counted back from the dot width), a text unchanged. The
// extension alone decides the route, and only in these spellings: "TXT", "txt"; "PDF", "pdf";
// "PNG", "png"; "JPG", "jpg", "JPEG", "jpeg"; "BMP", "bmp". Mixed case is deliberately refused.
//
// All bytes have been handed to the transport when it returns. The result:
//   text      false if no file exists there, else true
//   PDF       always true, also when nothing could be printed
//   picture   always false, also when the picture printed
//   no route  false
// Pictures are looked up in the photo library (platform/photo_library.h), never in the file system.
// LogoNumber, originalx and originaly are set on every call, whatever the route.
TAVIO_API bool SendFile(const URL& filename, std::int32_t row, std::int32_t column);

// Sends the whole text file as one text, unchanged; no position, path, cut or eject is added.
// Returns false, and sends nothing, if nothing exists at the path, true otherwise. A file that is
// not UTF-8 is sent as no text; one that cannot be read is not sent at all.
TAVIO_API bool RWTextFile(const URL& url);

}  // namespace tavio
