// Page 1 of a PDF document as a picture, drawn by a helper program that can be stopped.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "TavioIpadSDK/machine/export.h"
#include "TavioIpadSDK/platform/picture.h"
#include "TavioIpadSDK/platform/url.h"

namespace tavio::platform {

// Page 1, drawn at one pixel per point.
//
// The page is put on a canvas whose origin is at the top left, at one pixel per point. The PDF
// point (x, y) is at column x, row height - y. `picture` holds all canvas pixels that the crop box
// touches, even in part: `left` = floor(x), `top` = floor(-y). It is opaque: the page lies on
// white. Where the crop box covers a pixel only in part, the rest of the pixel is white. Nothing
// outside the crop box is drawn.
struct TAVIO_API PdfPage {
    // The crop box of the document. Where it is wider or higher than the media box, the media box
    // counts in that direction.
    double x = 0;           // left edge in points (1/72 inch)
    double y = 0;           // bottom edge
    double width = 0;       // more than 0
    double height = 0;      // more than 0
    std::int32_t left = 0;  // canvas column of the picture's left column
    std::int32_t top = 0;   // canvas row of the picture's top row
    Picture picture;        // orientation 1
};

// The result of a request for a page.
enum class PdfOutcome {
    kDrawn,
    kUnreadable,     // no such file, not a regular file, or no right to read it
    kNotPdf,         // not a PDF document, or damaged beyond reading
    kEncrypted,      // needs a password
    kNoPage,         // the document has no page
    kTooLarge,       // a side of the crop box is above the limit (or not above 0)
    kCpuLimit,       // stopped: used more processor time than allowed
    kWallLimit,      // stopped: took longer than allowed
    kMemoryLimit,    // stopped: asked for more memory than allowed
    kHelperMissing,  // the helper program cannot be started
    kHelperFailed,   // the helper program died, or its answer is malformed
};

// One sentence without a full stop, e.g. "the document is encrypted and needs a password".
TAVIO_API std::string describe(PdfOutcome outcome);

struct TAVIO_API PdfPageResult {
    PdfOutcome outcome = PdfOutcome::kUnreadable;
    std::optional<PdfPage> page;  // present exactly when outcome is kDrawn
};

// The result of a request for any page of a document.
struct TAVIO_API DrawnPdfPage {
    PdfPageResult result;
    std::int32_t pages = 0;  // how many the document has; 0 if it is not known
    double smallestTextPoints =
        0;  // the face of the page's smallest letters; 0 if it has no text, or
            // if that is not known
};

// The limits of the helper program for one page.
struct TAVIO_API PdfLimits {
    std::chrono::seconds cpu{10};
    std::chrono::milliseconds wall{15000};
    std::uint64_t memoryBytes = std::uint64_t{1} << 30;  // address space
    double mostPointsPerSide = 14400;
};

// Draws page 1 of the document with the helper program. Blocks until the page is drawn or a limit
// is reached. No process outlives the call. Never throws.
//
// helper: path of the program `tavio-pdf-page`. "" looks for it beside the running program, then in
// the installed tree that the program is part of, then in this library's place of installation,
// then in the build tree.
TAVIO_API PdfPageResult drawPdfPageWithHelper(const Url& url, const PdfLimits& limits = {},
                                              const std::string& helper = "") noexcept;

// Sets the source of the library's pages: another engine, other limits, or a test's own. An empty
// function restores the default, drawPdfPageWithHelper(url). Do not call it while a job is running.
using PdfPageSource = std::function<PdfPageResult(const Url&)>;
TAVIO_API void setPdfPageSource(PdfPageSource source);

// Asks the current source. The result is kHelperFailed if the source throws or its answer is
// malformed: a page without the outcome kDrawn, that outcome without a page, or pixels that do not
// match the size.
TAVIO_API PdfPageResult drawPdfPage(const Url& url) noexcept;

}  // namespace tavio::platform
