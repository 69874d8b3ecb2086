// One job, from opening the session to putting what came out in its place.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "TavioIpadSDK/platform/text.h"
#include "tools/tavio/console.h"
#include "tools/tavio/destination.h"
#include "tools/tavio/options.h"

namespace tavio::tool {

struct Job {
    // Sends it, in an open session.
    std::function<void()> send;

    // How many bytes that will be, where it is known beforehand; for the progress only.
    std::uint64_t size = 0;

    // Asked when the library has shown a notice: what is wrong with the document, which the notice
    // does not tell; "" where that is not known.
    std::function<std::string()> damage = [] { return std::string(); };
};

// Makes the library's settings those of the command line.
void configure(const Settings& settings);

// Opens a session over the destination's link, sends the job, ends the ticket as the options say,
// closes, and commits. Where it went to a printer, what became of it is told on standard output,
// also when it failed, and SIGINT and SIGTERM cancel it.
//
// Throws Failure when the link fails, the library shows a notice or a printer was sent nothing, and
// Interrupted when a signal came; passes on what `send` throws. Then nothing is cut and nothing
// committed.
void runJob(const Options& options, const Destination& destination, Console& console,
            const Job& job);

// The same, to where --to says.
void runJob(const Options& options, Console& console, const std::function<void()>& send);

// The reply of the printer that --to names. Throws Failure where there is none, Interrupted when a
// signal came.
std::string readReply(const Options& options, Console& console);

}  // namespace tavio::tool
