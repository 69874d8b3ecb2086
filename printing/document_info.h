// Looking at a document without printing it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "TavioIpadSDK/machine/export.h"
#include "tavio/printing/job.h"
#include "tavio/printing/result.h"
#include "tavio/printing/source.h"
#include "tavio/printing/ticket.h"

namespace tavio::printing {

enum class Format : std::uint8_t { kPdf, kPng, kJpeg, kBmp, kText };

// "PDF", "PNG", "JPEG", "BMP", "text"
TAVIO_API const char* nameOf(Format format) noexcept;

struct TAVIO_API DocumentInfo {
    Format format = Format::kText;
    std::uint64_t bytes = 0;  // of the file

    std::int32_t pages = 1;  // of a PDF
    double widthInches = 0;  // of the page; of a picture at one dot a pixel; 0 for a text
    double heightInches = 0;
    std::int32_t widthPixels = 0;  // of an upright picture, else 0
    std::int32_t heightPixels = 0;

    // As it would be printed with the given settings and options; none for a text.
    std::optional<Size> dots;

    // What printing it at the place would warn of.
    std::vector<Warning> warnings;

    // What would be printed: for a preview, or to look for codes on it.
    std::optional<Job> job;
};

// What the document is and what printing it would lose. It does everything but print: a damaged
// picture is a problem here too. A text is taken as a printer text; a file of another format that is
// not UTF-8 is kUnknownFormat.
[[nodiscard]] TAVIO_API Expected<DocumentInfo, Problems> inspect(
    const Source& source, const TicketSettings& settings = {}, Place place = {},
    const DrawOptions& drawing = {}, const EncodeOptions& options = {}) noexcept;

// The format that the first bytes of a file tell: a PDF, PNG, JPEG or BMP file by its signature (that
// of a PDF may lie in the first 1024 bytes). None for anything else: only its reader knows whether it
// is a text.
[[nodiscard]] TAVIO_API std::optional<Format> formatOf(std::span<const Byte> file) noexcept;

}  // namespace tavio::printing
