// One job, from the opening of the session to the output file.
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
    // Sends the job in an open session.
    std::function<void()> send;

    // The number of bytes, if it is known beforehand; only for the progress.
    std::uint64_t size = 0;

    // Called if the library has shown a notice: the document's error, which the notice does not
    // name; "" if it is not known.
    std::function<std::string()> damage = [] { return std::string(); };
};

// Sets the library's settings from the command line's.
void configure(const Settings& settings);

// Opens a session over the destination's link, sends the job, ends the ticket as the options say,
// closes, and commits. A job to a printer prints its outcome on standard output, even after a
// failure, and SIGINT and SIGTERM cancel it.
//
// Throws Failure if the link fails, the library shows a notice or a printer was sent nothing, and
// Interrupted after a signal; passes on exceptions of `send`. Then nothing is cut and nothing
// committed.
void runJob(const Options& options, const Destination& destination, Console& console,
            const Job& job);

// The same, to the target of --to.
void runJob(const Options& options, Console& console, const std::function<void()>& send);

// The reply of the printer that --to names. Throws Failure if there is none, Interrupted after a
// signal.
std::string readReply(const Options& options, Console& console);

}  // namespace tavio::tool
