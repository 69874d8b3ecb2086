// One job, from opening the session to putting what came out in its place.
#pragma once

#include <functional>

#include "tavio/console.h"
#include "tavio/destination.h"
#include "tavio/options.h"

namespace tavio::tool {

// Makes the library's settings those of the command line.
void configure(const Settings& settings);

// Opens a session over the destination's link, calls `send`, ends the ticket as the options say,
// closes, and commits. Throws Failure when the link fails or the library shows a notice, and passes
// on what `send` throws; then nothing is cut and nothing committed.
void runJob(const Options& options, const Destination& destination, Console& console,
            const std::function<void()>& send);

// The same, to where --to says.
void runJob(const Options& options, Console& console, const std::function<void()>& send);

}  // namespace tavio::tool
