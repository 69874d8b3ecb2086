#include "tools/tavio/commands.h"

#include <iostream>
#include <memory>
#include <sstream>

#include "tavio/virtual-printer/decode_listing.h"
#include "tools/tavio/destination.h"
#include "tools/tavio/exit_status.h"
#include "tools/tavio/failure.h"
#include "tools/tavio/info.h"
#include "tools/tavio/input_file.h"
#include "tools/tavio/job_command.h"
#include "tools/tavio/picture_files.h"
#include "tools/tavio/printer_delivery.h"
#include "tools/tavio/printers_command.h"
#include "tools/tavio/stocks.h"

namespace tavio::tool {

namespace {

constexpr int kGood = static_cast<int>(ExitStatus::kGood);

int preview(const Options& options, Report& report) {
    const std::string& path = options.files.front();
    if (areSameFile(path, options.output)) {
        throw Failure(path + " is the job itself, so choose another place with --output");
    }
    auto bytes = std::make_shared<const Bytes>(InputFile(path).rest());
    const auto job = printing::encode(
        printing::Ticket(ticketSettings(options.settings)).bytes(std::move(bytes)));
    if (!job) throw Failure(job.error().front().sentence);
    writePictures(*job, options.output, report);
    report.outcome("written");
    return kGood;
}

void feed(InputFile& file, std::ostream& out) {
    virtual_printer::DecodeListing listing(out);
    for (auto bytes = file.next(); out && !bytes.empty(); bytes = file.next()) {
        listing.feed(bytes);
    }
    listing.finish();
}

// The listing as one text per line.
std::string listingJson(InputFile& file) {
    std::stringstream text;
    feed(file, text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(text, line);) {
        lines.push_back(command_line::jsonText(line));
    }
    return command_line::jsonArray(lines);
}

int decode(const Options& options, Report& report) {
    if (!standardOutputIsTerminal()) report.console().stage("decoding");
    InputFile file(options.files.front());
    if (report.isJson()) {
        report.member("listing", listingJson(file));
    } else {
        feed(file, std::cout);
    }
    report.outcome("told");
    return kGood;
}

int listStocks(Report& report) {
    if (!report.isJson()) std::cout << stocksTable();
    report.member("stocks", stocksJson());
    report.outcome("told");
    return kGood;
}

}  // namespace

const char* nameOf(Command command) {
    switch (command) {
        case Command::kPrint:
            return "print";
        case Command::kLogoStore:
            return "logo store";
        case Command::kLogoPrint:
            return "logo print";
        case Command::kSend:
            return "send";
        case Command::kText:
            return "text";
        case Command::kCode:
            return "code";
        case Command::kWords:
            return "words";
        case Command::kLine:
            return "line";
        case Command::kBox:
            return "box";
        case Command::kRaw:
            return "raw";
        case Command::kCut:
            return "cut";
        case Command::kEject:
            return "eject";
        case Command::kClear:
            return "clear";
        case Command::kRun:
            return "run";
        case Command::kCalibrate:
            return "calibrate";
        case Command::kStatus:
            return "status";
        case Command::kPreview:
            return "preview";
        case Command::kDecode:
            return "decode";
        case Command::kInfo:
            return "info";
        case Command::kStocks:
            return "stocks";
        case Command::kPrintersAdd:
            return "printers add";
        case Command::kPrintersSet:
            return "printers set";
        case Command::kPrintersRemove:
            return "printers remove";
        case Command::kPrintersList:
            return "printers list";
        case Command::kPrintersDefault:
            return "printers default";
        case Command::kSettings:
            break;
    }
    return "";
}

int runCommand(const Options& options, Report& report) {
    switch (options.command) {
        case Command::kStatus:
            return tellStatus(destinationOf(options), options, report);
        case Command::kPreview:
            return preview(options, report);
        case Command::kDecode:
            return decode(options, report);
        case Command::kInfo:
            return tellInfo(options, report);
        case Command::kStocks:
            return listStocks(report);
        case Command::kPrintersAdd:
        case Command::kPrintersSet:
        case Command::kPrintersRemove:
        case Command::kPrintersList:
        case Command::kPrintersDefault:
            return runPrinters(options, report);
        default:
            return runJob(options, report);
    }
}

}  // namespace tavio::tool
