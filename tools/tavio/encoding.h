// Encoding composed tickets, and telling where they come from.
#pragma once

#include <optional>
#include <vector>

#include "tavio/printing/job.h"
#include "tools/tavio/composer.h"
#include "tools/tavio/console.h"
#include "tools/tavio/report.h"

namespace tavio::tool {

// The job of the tickets. None if there are problems, to which those of the tickets are added.
std::optional<printing::Job> encodeTickets(const Composer& composer, Console& console,
                                           std::vector<Notice>& problems);

// The warnings that a person needs: once for all copies, and none of pages that were not chosen.
std::vector<Notice> warningsOf(const printing::Job& job, const Composer& composer);

}  // namespace tavio::tool
