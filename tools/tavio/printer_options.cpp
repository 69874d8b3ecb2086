#include "tools/tavio/printer_options.h"

#include "TavioIpadSDK/sharp/options.h"
#include "tavio/printing/printer.h"
#include "tools/tavio/option_values.h"
#include "tools/tavio/printer_book_text.h"
#include "tools/tavio/setting_options.h"

namespace tavio::tool {

namespace {

OptionSpec name(Options& options) {
    OptionSpec spec =
        argument("NAME", "the printer's name: letters, digits, - _ and .", options.name);
    spec.set = [&options](const std::string& text) -> std::string {
        if (!isPrinterName(text)) {
            return "\"" + text + "\" is no name: give 1 to 64 letters, digits, - _ and .";
        }
        options.name = text;
        return "";
    };
    return spec;
}

OptionSpec address(Options& options) {
    OptionSpec spec =
        argument("ADDRESS", "tcp://HOST[:PORT], bt://ADDRESS or tty:DEVICE", options.address);
    spec.set = [&options](const std::string& text) -> std::string {
        if (!printing::isPrinterAddress(text)) return printing::whyNoPrinterAddress(text);
        options.address = text;
        return "";
    };
    return spec;
}

OptionSpec reply(Options& options) {
    return {.kind = OptionSpec::Kind::kValues,
            .name = "--reply",
            .help =
                "what a reply means, may be repeated: STATE is ready, out-of-paper, "
                "cover-open, error or other, MATCH is exact, prefix or contains",
            .value = "STATE:MATCH:TEXT",
            .set = [&options](const std::string& text) -> std::string {
                const auto pattern = parseReplyPattern(text);
                if (!pattern) {
                    return "\"" + text + "\" is no reply: give STATE:MATCH:TEXT, ready:exact:OK";
                }
                options.replies.push_back(*pattern);
                return "";
            }};
}

OptionSpec tone(Options& options) {
    return {.name = "--tone",
            .help = "the number of the tone that vanishes between its stripes, 0 to 9",
            .value = "4",
            .set = [&options](const std::string& text) -> std::string {
                options.readings.tone = parseNumber(text);
                if (options.readings.tone && *options.readings.tone >= 0 &&
                    *options.readings.tone <= sharp::kMaxDotGain)
                    return "";
                return "\"" + text + "\" is no number from 0 to 9";
            }};
}

OptionSpec offset(Options& options) {
    return {.name = "--offset",
            .help =
                "where the ticket's corner lies, in dots to the right and down; negative is left "
                "and up",
            .value = "3,-2",
            .set = [&options](const std::string& text) -> std::string {
                const auto dots = parseDotPair(text, ',', -kMaxReading, kMaxReading);
                if (!dots) return "\"" + text + "\" is no offset in dots: give RIGHT,DOWN, 3,-2";
                options.readings.offset = PrinterOffset{dots->first, dots->second};
                return "";
            }};
}

OptionSpec size(Options& options) {
    return {.name = "--size",
            .help = "what can be printed, in dots, as the ticket lies in landscape",
            .value = "1648x598",
            .set = [&options](const std::string& text) -> std::string {
                const auto dots = parseDotPair(text, 'x', 1, kMaxReading);
                if (!dots)
                    return "\"" + text + "\" is no size in dots: give WIDTHxHEIGHT, 1648x598";
                options.readings.size = printing::Size{dots->first, dots->second};
                return "";
            }};
}

CommandSpec set(Options& options) {
    return {Command::kPrintersSet,
            "set",
            "Keep what was read from the page of tavio calibrate. Every job for the printer uses "
            "it. What is not given stays as it is.",
            "tavio printers set hall --tone 4 --offset 3,-2 --size 1648x598",
            {name(options), tone(options), offset(options), size(options),
             flag("--reset", "forget what was read before",
                  [&options](bool given) { options.reset = given; })},
            {}};
}

CommandSpec add(Options& options) {
    return {Command::kPrintersAdd,
            "add",
            "Give a printer a name, which stands for its address, settings and replies.",
            "tavio printers add hall tcp://192.168.1.50 --stock cinema --reply ready:exact:OK",
            OptionSpecs{name(options), address(options), reply(options)} +
                ticketOptions(options.settings),
            {}};
}

}  // namespace

CommandSpec printerCommands(Options& options) {
    return {std::nullopt,
            "printers",
            "The list of named printers.",
            "tavio printers add hall tcp://192.168.1.50 --stock cinema",
            {},
            {add(options),
             set(options),
             {Command::kPrintersRemove,
              "remove",
              "Remove a printer from the list.",
              "tavio printers remove hall",
              {name(options)},
              {}},
             {Command::kPrintersList, "list", "List the printers.", "tavio printers list", {}, {}},
             {Command::kPrintersDefault,
              "default",
              "Make a printer the one that is meant without --to and --printer.",
              "tavio printers default hall",
              {name(options)},
              {}}}};
}

}  // namespace tavio::tool
