// Previews as files.
#pragma once

#include <cstdint>
#include <string>

#include "tavio/printing/job.h"
#include "tavio/printing/preview.h"
#include "tools/tavio/report.h"

namespace tavio::tool {

// Draws the tickets of the job, at most `maxTickets` of them, and tells the problems of its bytes as
// warnings. Throws Failure if they cannot be drawn.
printing::Preview drawTickets(const printing::Job& job, std::size_t maxTickets, Report& report);

// Warns if the preview has not all tickets, after these were written.
void tellLeftOut(const printing::Preview& preview, Report& report);

// Writes the tickets of the job: the first to the path, the next to names with a number
// (ticket-2.png), 100 at most. All files appear, or, if one cannot be written, none is created or
// replaced and a Failure is thrown.
void writePictures(const printing::Job& job, const std::string& path, Report& report);

}  // namespace tavio::tool
