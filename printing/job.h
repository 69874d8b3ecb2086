// Encoding tickets: a job is the bytes for a printer, with what is known of them. Pure functions:
// no module-wide state, no link; on any thread, on many at once.
//
//   auto job = printing::encode(ticket);
//   if (!job) return tellTheUser(job.error().front().sentence);
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <vector>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/machine/export.h"
#include "TavioIpadSDK/platform/pdf_page.h"
#include "tavio/printing/calibration.h"
#include "tavio/printing/result.h"
#include "tavio/printing/ticket.h"

namespace tavio::printing {

// ---- The job ------------------------------------------------------------------------------------

struct TAVIO_API EncodedElement {
    std::size_t ticket = 0;   // as in Problem
    std::size_t element = 0;  // as in Problem

    // The size in dots of all that is drawn here, printed or stored; none for text, logos and bytes,
    // whose size only the printer knows.
    std::optional<Size> size;

    // Its rectangle, if it has a size and is printed.
    std::optional<Rectangle> rectangle;

    // Its bytes: Job::bytes()[offset : offset + count].
    std::size_t offset = 0;
    std::size_t count = 0;
};

// The bytes of one or more tickets. Immutable; copies and moves share everything and are cheap.
class TAVIO_API Job {
  public:
    std::span<const Byte> bytes() const { return impl_->bytes; }
    const std::vector<EncodedElement>& elements() const { return impl_->elements; }
    const std::vector<Warning>& warnings() const { return impl_->warnings; }

    // Of the first ticket; a preview is drawn for it.
    const TicketSettings& settings() const { return impl_->settings; }

    struct TAVIO_API Impl {
        Bytes bytes;
        std::vector<EncodedElement> elements;
        std::vector<Warning> warnings;
        TicketSettings settings;
    };

    // For encode().
    explicit Job(std::shared_ptr<const Impl> impl) : impl_(std::move(impl)) {}

  private:
    std::shared_ptr<const Impl> impl_;  // never null
};

// ---- Encoding -----------------------------------------------------------------------------------

// Draws a page (from 1) of a document, whose bytes are Source::content(), at one pixel a point. What it
// throws counts as kHelperFailed. Its pages are pictures, which are resampled: they cannot be as sharp
// as those of the program.
using DrawnPage = platform::DrawnPdfPage;
using PageEngine = std::function<DrawnPage(const Source& document, std::int32_t page)>;

struct TAVIO_API EncodeOptions {
    // The limits of the program that draws a page. Pictures are limited by their pixels alone.
    platform::PdfLimits pageLimits = {};

    // The path of that program, "" to look for it where it is installed.
    std::string helper = {};

    // The path of the program that draws words, likewise. It has the same limits.
    std::string wordsHelper = {};

    // Of the printer that the job is for.
    Calibration calibration = {};

    // Draws pages instead of that program, if it is not empty.
    PageEngine pageEngine = {};

    // The largest file that is read, in bytes.
    std::uint64_t maxFileBytes = std::uint64_t{1} << 30U;

    // A large picture is decoded, resampled and dithered by up to three threads. A server with work
    // for all its cores sets this to false; the bytes are the same.
    bool mayUseThreads = true;

    // Called before each element, on the calling thread: its number over all tickets, from 0, and
    // how many there are. Its exceptions are dropped.
    std::function<void(std::size_t number, std::size_t count)> progress = {};

    // Asked between elements; a request ends in kCancelled.
    std::stop_token stop = {};
};

// The job of the tickets in order, or all their problems: nothing is encoded if anything is wrong.
// The file of an element is read once. Never throws.
//
// Of a page or picture every dot is printed at its place (docs/stream.md). Drawn the classic way, its
// bytes are those of SendFile, or of DownloadLogo if it is stored. The bytes of logo are those of
// PrintLogo, of finish those of PrintCut or PrintNoCut. A plain text is preceded by path, orientation
// and position.
[[nodiscard]] TAVIO_API Expected<Job, Problems> encode(std::span<const Ticket> tickets,
                                                       const EncodeOptions& options = {}) noexcept;
[[nodiscard]] TAVIO_API Expected<Job, Problems> encode(const Ticket& ticket,
                                                       const EncodeOptions& options = {}) noexcept;

// The size of the upright ticket in dots: what can be printed on it, which in portrait is a little
// less wide than the paper. None for settings that no ticket can have.
[[nodiscard]] TAVIO_API std::optional<Size> ticketSize(const TicketSettings& settings) noexcept;

}  // namespace tavio::printing
