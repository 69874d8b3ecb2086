#include "tools/tavio/printer_options.h"

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
