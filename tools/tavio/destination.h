// Where a job's bytes go in this run of the tool.
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

    // As messages name it.
    std::string name;

    // Something that takes its time, may answer, and does not tell by itself what it got.
    bool isPrinter = false;

    // Sessions are Bluetooth ones.
    bool isBluetooth = false;

    // To be called after the link is closed, and only when the job has succeeded: puts what came
    // out in its place; true on success, otherwise the link's failure() says why not.
    std::function<bool()> commit;

    // Warns of what the far end found wrong; after commit.
    std::function<void(Console&)> report;
};

// Throws Failure where the target cannot be used.
Destination destinationOf(const Options& options);

// The default deadlines, shortened to what --timeout says; the one on progress may become longer.
links::Deadlines deadlinesOf(const Options& options);

// The virtual printer that has these settings' tickets in it.
virtual_printer::PrinterSettings printerSettings(const Settings& settings);

// Warns of what the preview found wrong, and of tickets beyond those that it wrote.
void reportPreview(const links::PreviewLink& preview, Console& console);

}  // namespace tavio::tool
