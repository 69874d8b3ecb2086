#include "tools/tavio/printers_command.h"

#include <cstdlib>
#include <utility>

#include "tavio/printing/printer.h"
#include "tools/tavio/exit_status.h"
#include "tools/tavio/failure.h"
#include "tools/tavio/option_values.h"
#include "tools/tavio/printer_book.h"
#include "tools/tavio/ticket_json.h"

namespace tavio::tool {

namespace {

using command_line::jsonArray;
using command_line::JsonObject;

PrinterBookFile userBook() {
    return {printerBookPath(), printing::isPrinterAddress};
}

bool isSet(const char* variable) {
    const char* value = std::getenv(variable);
    return value != nullptr && *value != '\0';
}

NamedPrinter printerOf(const Options& options) {
    NamedPrinter printer;
    printer.address = options.address;
    printer.stock = options.settings.stock;
    printer.resolution = options.settings.resolution;
    printer.orientation = options.settings.orientation;
    printer.path = options.settings.path;
    printer.replies = options.replies;
    return printer;
}

std::string repliesJson(const printing::ReplyTable& replies) {
    std::vector<std::string> patterns;
    for (const printing::ReplyPattern& pattern : replies) {
        patterns.push_back(JsonObject()
                               .text("state", printing::nameOf(pattern.state))
                               .text("match", nameOf(pattern.match))
                               .text("text", pattern.text)
                               .str());
    }
    return jsonArray(patterns);
}

std::string printerJson(const std::string& name, const NamedPrinter& printer, bool isDefault) {
    JsonObject json;
    json.text("name", name).text("address", printer.address).flag("isDefault", isDefault);
    if (printer.stock) json.json("stock", stockJson(*printer.stock));
    if (printer.resolution) json.number("resolution", *printer.resolution);
    if (printer.orientation) json.text("orientation", nameOf(*printer.orientation));
    if (printer.path) json.text("path", *printer.path);
    json.json("replies", repliesJson(printer.replies));
    const Readings& readings = printer.readings;
    if (readings.tone) json.number("tone", *readings.tone);
    if (readings.offset) {
        json.json("offset", JsonObject()
                                .number("right", readings.offset->right)
                                .number("down", readings.offset->down)
                                .str());
    }
    if (readings.size) {
        json.json("size", JsonObject()
                              .number("width", readings.size->width)
                              .number("height", readings.size->height)
                              .str());
    }
    return json.str();
}

void list(Report& report) {
    const PrinterBook book = userBook().read();
    std::vector<std::string> printers;
    for (const auto& [name, printer] : book.printers) {
        const bool isDefault = name == book.defaultName;
        std::string line = name + "  " + printer.address;
        if (printer.readings.areGiven()) line += "  " + toText(printer.readings);
        report.line(line + (isDefault ? "  (default)" : ""));
        printers.push_back(printerJson(name, printer, isDefault));
    }
    report.member("printers", jsonArray(printers));
    report.outcome("told");
}

void change(const Options& options) {
    const PrinterBookFile book = userBook();
    if (options.command == Command::kPrintersAdd) book.add(options.name, printerOf(options));
    if (options.command == Command::kPrintersSet)
        book.set(options.name, options.readings, options.reset);
    if (options.command == Command::kPrintersRemove) book.remove(options.name);
    if (options.command == Command::kPrintersDefault) book.setDefault(options.name);
}

}  // namespace

std::optional<NamedPrinter> findPrinter(const std::string& name) {
    std::string wanted = name;
    if (wanted.empty() && isSet("TAVIO_PRINTER")) wanted = std::getenv("TAVIO_PRINTER");
    const bool hasPlace = isSet("HOME") || isSet("XDG_CONFIG_HOME");
    if (wanted.empty() && !hasPlace) return std::nullopt;
    const PrinterBook book = userBook().read();
    if (wanted.empty()) wanted = book.defaultName;
    if (wanted.empty()) return std::nullopt;
    const auto found = book.printers.find(wanted);
    if (found != book.printers.end()) return found->second;
    throw Failure("there is no printer of the name \"" + wanted + "\" (tavio printers list)",
                  "no-such-printer");
}

int runPrinters(const Options& options, Report& report) {
    if (options.command == Command::kPrintersList) {
        list(report);
    } else {
        change(options);
        report.markDone();
        report.outcome("changed");
    }
    return static_cast<int>(ExitStatus::kGood);
}

}  // namespace tavio::tool
