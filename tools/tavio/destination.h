// The destination of a job's bytes.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "tavio/links/deadlines.h"
#include "tavio/links/link.h"
#include "tavio/preview/preview_link.h"
#include "tools/tavio/console.h"
#include "tools/tavio/options.h"

namespace tavio::tool {

struct Destination {
    std::shared_ptr<links::Link> link;

    // The name in messages.
    std::string name;

    // A printer: sending takes time, it may answer, and the outcome is printed.
    bool isPrinter = false;

    // True: sessions are opened with OpenSessionBT.
    bool isBluetooth = false;

    // To be called after the link is closed, and only if the job has succeeded: creates or replaces
    // the output files. True on success; otherwise see the link's failure().
    std::function<bool()> commit;

    // Warns of the problems that the far end found; after commit.
    std::function<void(Console&)> report;
};

// Throws Failure if the target cannot be used.
Destination destinationOf(const Options& options);

// The default deadlines, shortened to --timeout; the deadline for progress may also become longer.
links::Deadlines deadlinesOf(const Options& options);

// The virtual printer with the tickets of these settings.
virtual_printer::PrinterSettings printerSettings(const Settings& settings);

// Warns of the preview's problems, and of tickets that it did not write.
void reportPreview(const links::PreviewLink& preview, Console& console);

}  // namespace tavio::tool
