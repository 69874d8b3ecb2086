// Printing on a printer.
#pragma once

#include <vector>

#include "tavio/printing/job.h"
#include "tavio/printing/printer.h"
#include "tools/tavio/composer.h"
#include "tools/tavio/destination.h"
#include "tools/tavio/options.h"
#include "tools/tavio/report.h"

namespace tavio::tool {

struct Delivery {
    int status = 0;                            // the exit status
    std::vector<printing::ElementFate> fates;  // of each element; of a printer only
};

// Sends the job and tells its outcome. SIGINT and SIGTERM cancel it.
Delivery printJob(const printing::Job& job, const Destination& printer, const Options& options,
                  Report& report);

// Tickets are encoded while those before them are sent. Tells the outcome, all problems and all warnings.
// SIGINT and SIGTERM cancel it. The result's elements are those that were encoded.
struct SeriesDelivery {
    int status = 0;  // the exit status
    printing::SeriesResult result;
};
SeriesDelivery printSeries(const Composer& composer, const Destination& printer,
                           const Options& options, Report& report);

// Tells the printer's reply and its state; returns the exit status.
int tellStatus(const Destination& printer, const Options& options, Report& report);

}  // namespace tavio::tool
