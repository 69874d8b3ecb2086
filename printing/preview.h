// The tickets that a job prints, as pictures: drawn by the virtual printer from the job's bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/machine/export.h"
#include "TavioIpadSDK/platform/picture.h"
#include "tavio/printing/job.h"
#include "tavio/printing/result.h"

namespace tavio::printing {

enum class PaperEnd : std::uint8_t { kCut, kEjected, kJobEnded };

struct TAVIO_API TicketPicture {
    platform::Picture picture;  // upright, black dots on white
    Bytes png;                  // the same as a file, one bit a dot, with the resolution
    PaperEnd end = PaperEnd::kJobEnded;
};

// A mistake in the command stream, as the printer sees it.
struct TAVIO_API StreamProblem {
    std::size_t offset = 0;  // of the byte in the job
    std::string sentence;    // without a full stop
};

struct TAVIO_API Preview {
    std::vector<TicketPicture> tickets;   // the first maxTickets; at least one
    std::uint64_t ticketCount = 0;        // of all
    std::vector<StreamProblem> problems;  // the first 1000
    std::uint64_t problemCount = 0;       // of all
};

struct TAVIO_API PreviewOptions {
    // Further tickets are only counted. A ticket of 11 x 8.5 inches at 600 dots an inch takes 135 MB.
    std::size_t maxTickets = 20;

    // False leaves TicketPicture::picture, which takes most of that (4 bytes a dot), or png empty.
    bool withPictures = true;
    bool withPngs = true;
};

// Stock, resolution and orientation are those of the job's first ticket. The only problems are
// kTooLarge, for a ticket of more than 16,384 dots a side, and kOverMemory. Never throws.
[[nodiscard]] TAVIO_API Expected<Preview, Problem> preview(
    const Job& job, const PreviewOptions& options = {}) noexcept;

}  // namespace tavio::printing
