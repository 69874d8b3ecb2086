// Bringing an encoded job to its destination.
#pragma once

#include "tavio/printing/job.h"
#include "tools/tavio/destination.h"
#include "tools/tavio/options.h"
#include "tools/tavio/printer_delivery.h"
#include "tools/tavio/report.h"

namespace tavio::tool {

// Prints the job, or writes it as bytes or as pictures, and tells the report its outcome. Throws
// Failure if nothing was sent or written.
Delivery deliver(const printing::Job& job, const Destination& destination, const Options& options,
                 Report& report);

}  // namespace tavio::tool
