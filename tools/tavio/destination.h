// Where a job goes.
#pragma once

#include <string>

#include "tavio/printing/calibration.h"
#include "tavio/printing/reply.h"
#include "tools/tavio/options.h"
#include "tools/tavio/settings.h"
#include "tools/tavio/target.h"

namespace tavio::tool {

struct Destination {
    Target target = PictureTarget{"ticket.png"};
    std::string name;                   // in messages
    Settings settings;                  // of the named printer; none without one
    printing::ReplyTable replies;       // of the named printer
    printing::Calibration calibration;  // of the named printer
};

// --to; else the printer that --printer, TAVIO_PRINTER or the list's default names; else the preview
// ticket.png. With --to only the settings, replies and calibration of --printer hold. Throws Failure if there is
// no such printer, the list cannot be read, or standard output is a terminal, or something is demanded of what is no printer.
Destination destinationOf(const Options& options);

}  // namespace tavio::tool
