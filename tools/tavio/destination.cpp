#include "tools/tavio/destination.h"

#include <utility>

#include "tools/tavio/console.h"
#include "tools/tavio/failure.h"
#include "tools/tavio/printers_command.h"

namespace tavio::tool {

namespace {

void refuseTerminal(const Target& target) {
    if (std::holds_alternative<StandardOutputTarget>(target) && standardOutputIsTerminal()) {
        throw Failure("standard output is a terminal, which a job would upset: redirect it");
    }
}

void refuseDemands(const Destination& destination, const Options& options) {
    if (isPrinter(destination.target) || !(options.ready || options.confirm)) return;
    throw Failure(destination.name + " is not a printer, so it confirms nothing");
}

// Sets what the name of a printer stands for.
void meanPrinter(const Options& options, Destination& destination) {
    const auto printer = findPrinter(options.printer);
    if (!printer) return;
    destination.target = parseTarget(printer->address).value_or(destination.target);
    destination.replies = printer->replies;
    destination.settings.stock = printer->stock;
    destination.settings.resolution = printer->resolution;
    destination.settings.orientation = printer->orientation;
    destination.settings.path = printer->path;
    // Without --check, the page shows the printer as it is.
    if (options.command != Command::kCalibrate || options.check)
        destination.calibration = calibrationOf(printer->readings);
}

}  // namespace

Destination destinationOf(const Options& options) {
    Destination result;
    if (!options.target || !options.printer.empty()) meanPrinter(options, result);
    if (options.target) result.target = *options.target;
    refuseTerminal(result.target);
    result.name = toText(result.target);
    refuseDemands(result, options);
    return result;
}

}  // namespace tavio::tool
