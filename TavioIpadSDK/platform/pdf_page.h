// Page 1 of a PDF document as a picture, drawn by a helper program that can be stopped.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "TavioIpadSDK/platform/picture.h"
#include "TavioIpadSDK/platform/url.h"

namespace tavio::platform {

// Page 1, drawn at one pixel per point.
//
// The canvas that the page will be put on has its origin at the top left, one pixel per point, and
// shows the PDF point (x, y) at column x, row height - y. `picture` holds the canvas pixels that
// the crop box touches, also those that it touches in part only: `left` = floor(x), `top` =
// floor(-y). It is opaque: the page lies on white, and a pixel that the crop box covers in part is
// white there too, never darker than the page made it. Nothing outside the crop box is drawn.
struct PdfPage {
    // The crop box as the document reports it, within the media box. In a direction in which it is
    // larger than the media box it counts as the media box.
    double x = 0;           // left edge in points (1/72 inch)
    double y = 0;           // bottom edge
    double width = 0;       // more than 0
    double height = 0;      // more than 0
    std::int32_t left = 0;  // where the picture's left column lies on the canvas
    std::int32_t top = 0;   // where the picture's top row lies on the canvas
    Picture picture;        // orientation 1
};

// What became of a request for a page.
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
    kHelperFailed,   // the helper program died, or answered out of form
};

// One sentence without a full stop, e.g. "the document is encrypted and needs a password".
std::string describe(PdfOutcome outcome);

struct PdfPageResult {
    PdfOutcome outcome = PdfOutcome::kUnreadable;
    std::optional<PdfPage> page;  // present exactly when outcome is kDrawn
};

// What the helper program may use for one page.
struct PdfLimits {
    std::chrono::seconds cpu{10};
    std::chrono::milliseconds wall{15000};
    std::uint64_t memoryBytes = std::uint64_t{1} << 30;  // address space
    double mostPointsPerSide = 14400;
};

// Draws page 1 of the document with the helper program. Blocks until the page is there or a limit
// is reached; leaves no process behind. Never throws.
//
// helper: path of the program `tavio-pdf-page`; "" looks for it beside the running program, then in
// the installed tree that the program is part of, then in the place where this library was to be
// installed, then where it was built.
PdfPageResult drawPdfPageWithHelper(const Url& url, const PdfLimits& limits = {},
                                    const std::string& helper = "") noexcept;

// Where the library takes its pages from. Another engine, other limits or a test puts its own
// source here; an empty function restores the default, drawPdfPageWithHelper(url).
// Not to be changed while a job is running.
using PdfPageSource = std::function<PdfPageResult(const Url&)>;
void setPdfPageSource(PdfPageSource source);

// Asks the current source. One that throws, or whose answer is out of form (a page without the
// outcome kDrawn or the other way round, or fewer pixels than it says), counts as kHelperFailed.
PdfPageResult drawPdfPage(const Url& url) noexcept;

}  // namespace tavio::platform
