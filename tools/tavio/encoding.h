// Encoding composed tickets, and telling where they come from.
#pragma once

#include <optional>
#include <vector>

#include "tavio/printing/job.h"
#include "tools/tavio/composer.h"
#include "tools/tavio/console.h"
#include "tools/tavio/destination.h"
#include "tools/tavio/report.h"

namespace tavio::tool {

// Those of every job for the destination. The console is told what is being encoded; it must live as
// long.
printing::EncodeOptions encodeOptions(const Destination& destination, Console& console);

// With their places in the script; the same problem of several copies once.
void addProblems(const printing::Problems& found, const Composer& composer,
                 std::vector<Notice>& problems);

// The job of the tickets. None if there are problems, to which those of the tickets are added.
std::optional<printing::Job> encodeTickets(const Composer& composer, const Destination& destination,
                                           Console& console, std::vector<Notice>& problems);

// The warnings that a person needs: once for all copies, and none of pages that were not chosen.
std::vector<Notice> warningsOf(const std::vector<printing::Warning>& warnings,
                               const Composer& composer);

}  // namespace tavio::tool
