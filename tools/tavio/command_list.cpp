#include "tools/tavio/command_list.h"

#include <iterator>
#include <utility>

#include "tools/tavio/content_options.h"
#include "tools/tavio/element_options.h"
#include "tools/tavio/job_options.h"
#include "tools/tavio/printer_options.h"
#include "tools/tavio/setting_options.h"

namespace tavio::tool {

namespace {

const std::string kAbout =
    "Prints texts, PDF pages and pictures on thermal ticket and label printers, and shows what "
    "comes out.";

// ---- The commands that make up a job, with the options of their own ------------------------------

CommandSpec print(Options& options) {
    return {Command::kPrint,
            "print",
            "Print text files, pages of PDFs, and PNG, JPEG or BMP pictures.",
            "tavio print page.pdf --stock 8.3x11.7 --cut --to page.png",
            OptionSpecs{filesArgument(options, "FILE", "the documents; - for standard input")} +
                placeOptions(options) + finishOptions(options) + pageOptions(options) +
                sequenceOptions(options) + OptionSpecs{typeOption(options)},
            {}};
}

CommandSpec storeLogo(Options& options) {
    return {Command::kLogoStore,
            "store",
            "Store a picture or a page of a PDF in the printer as logo N.",
            "tavio logo store 7 seal.png --to file:seal.bin",
            OptionSpecs{logoNumber(options),
                        fileArgument(options, "FILE", "the picture or PDF; - for standard input")} +
                pageOptions(options) + OptionSpecs{typeOption(options)},
            {}};
}

CommandSpec printLogo(Options& options) {
    return {Command::kLogoPrint,
            "print",
            "Print the stored logo N.",
            "tavio logo print 7 --row 100 --column 250 --to file:job.bin",
            OptionSpecs{logoNumber(options)} + placeOptions(options),
            {}};
}

CommandSpec logo(Options& options) {
    return {std::nullopt,
            "logo",
            "Store a logo in the printer, or print one.",
            "tavio logo store 7 seal.png --to file:seal.bin",
            {},
            {storeLogo(options), printLogo(options)}};
}

CommandSpec send(Options& options) {
    return {Command::kSend,
            "send",
            "Send a text as it is.",
            "tavio send '<RC100,50>Row B, seat 12' --to ticket.png",
            {argument("TEXT", "the text; after -- if it begins with a hyphen", options.text)},
            {}};
}

CommandSpec text(Options& options) {
    return {Command::kText,
            "text",
            "Print a text in the printer's own face; as words if that lacks one of its letters. It "
            "never sends a command.",
            "tavio text 'Row B, seat 12' --row 100 --column 50 --to ticket.png",
            OptionSpecs{
                argument("TEXT", "the text; after -- if it begins with a hyphen", options.text)} +
                placeOptions(options) + textFaceOptions(options) + finishOptions(options),
            {}};
}

CommandSpec code(Options& options) {
    return {Command::kCode,
            "code",
            "Print a code for scanners. Each of its modules is a whole number of dots.",
            "tavio code qr https://example.org/t/4711 --module 6 --to ticket.png",
            codeElementOptions(options) + placeOptions(options) + finishOptions(options),
            {}};
}

CommandSpec words(Options& options) {
    return {Command::kWords,
            "words",
            "Print words in any script, in a face of this machine or of a file.",
            "tavio words 'Café, 26 €' --size 9 --box 300x80 --to ticket.png",
            wordsElementOptions(options) + placeOptions(options) + finishOptions(options),
            {}};
}

CommandSpec line(Options& options) {
    return {Command::kLine,
            "line",
            "Print a line across or down the ticket.",
            "tavio line --length 900 --thickness 4 --row 200 --to ticket.png",
            lineElementOptions(options) + placeOptions(options) + finishOptions(options),
            {}};
}

CommandSpec box(Options& options) {
    return {Command::kBox,
            "box",
            "Print a frame, or a filled box.",
            "tavio box 400x120 --thickness 4 --row 40 --column 40 --to ticket.png",
            boxElementOptions(options) + placeOptions(options) + finishOptions(options),
            {}};
}

CommandSpec raw(Options& options) {
    return {Command::kRaw,
            "raw",
            "Send the bytes of a file as they are.",
            "tavio raw job.bin --to ticket.png",
            {fileArgument(options, "FILE", "the file; - for standard input")},
            {}};
}

CommandSpec plain(Command command, const char* name, const char* what) {
    const std::string example =
        std::string("tavio ").append(name).append(" --to file:").append(name).append(".bin");
    return {command, name, what, example, {}, {}};
}

std::vector<CommandSpec> jobCommands(Options& options) {
    return {print(options),
            logo(options),
            send(options),
            text(options),
            words(options),
            code(options),
            line(options),
            box(options),
            raw(options),
            plain(Command::kCut, "cut", "Print what the printer holds and cut."),
            plain(Command::kEject, "eject", "Print what the printer holds and eject it uncut."),
            plain(Command::kClear, "clear", "Clear the printer's memory.")};
}

CommandSpec run(Options& options) {
    return {Command::kRun,
            "run",
            "Send a script as one job over one connection: on each line a command without its "
            "target, or settings for what follows. All of it is checked first.",
            "tavio run evening.tavio --to tcp://192.168.1.50",
            {fileArgument(options, "FILE", "the script; - for standard input")},
            {}};
}

CommandSpec calibrate(Options& options) {
    return {Command::kCalibrate,
            "calibrate",
            "Print the page on which a person reads how the printer prints: the tone, the offset "
            "and the size for tavio printers set.",
            "tavio calibrate --printer hall --cut",
            OptionSpecs{flag("--check", "with what was read before, to see what has become of it",
                             [&options](bool given) { options.check = given; })} +
                finishOptions(options),
            {}};
}

// ---- Other commands -----------------------------------------------------------------------------

CommandSpec status(Options& options) {
    return {Command::kStatus,
            "status",
            "Show the printer's reply and what it means.",
            "tavio status --to tcp://192.168.1.50\n"
            "A preview or a file has no reply, only a printer answers.",
            destinationOptions(options),
            {}};
}

OptionSpec output(Options& options) {
    return {.name = "-o,--output",
            .help = "the picture; ticket.png if not given",
            .value = "X.png",
            .set = [&options](const std::string& text) -> std::string {
                if (!isPictureName(text)) {
                    return "\"" + text +
                           "\" is no name for the picture: give a name ending in .png";
                }
                options.output = text;
                return "";
            }};
}

CommandSpec preview(Options& options) {
    return {Command::kPreview,
            "preview",
            "Draw the tickets that a job file prints. The stock, the resolution and the "
            "orientation are those of the printer.",
            "tavio preview job.bin --stock concert --resolution 300 -o ticket.png",
            {fileArgument(options, "JOB", "the job file; - for standard input"), output(options)},
            {}};
}

CommandSpec decode(Options& options) {
    return {Command::kDecode,
            "decode",
            "List the commands of a job file, each with its offset and its meaning.",
            "tavio decode job.bin",
            {fileArgument(options, "JOB", "the job file; - for standard input")},
            {}};
}

CommandSpec info(Options& options) {
    return {Command::kInfo,
            "info",
            "Tell what a document is, its pages and its size, and what printing it would lose.",
            "tavio info page.pdf --stock cinema",
            OptionSpecs{fileArgument(options, "FILE", "the document; - for standard input")} +
                placeOptions(options) + pageOptions(options) + OptionSpecs{typeOption(options)},
            {}};
}

CommandSpec stocks() {
    return {Command::kStocks,
            "stocks",
            "List the ticket stocks with their sizes in inches and in dots.",
            "tavio stocks",
            {},
            {}};
}

// ---- Options that commands share ----------------------------------------------------------------

// Adds the options to the command and to its own commands, if these send or show something.
void addToEach(CommandSpec& command, const OptionSpecs& options) {
    if (command.command) command.options = std::move(command.options) + options;
    for (CommandSpec& inner : command.commands) addToEach(inner, options);
}

OptionSpec json(Options& options) {
    return flag("--json", "tell what was done as a JSON object on standard output",
                [&options](bool given) { options.json = given; });
}

// A line of a script has no target of its own.
OptionSpecs refusedInScripts() {
    OptionSpecs refused;
    for (const char* name : {"--to", "--printer", "--timeout"}) {
        refused.push_back({.name = name, .help = "", .value = "X", .set = [](const std::string&) {
                               return std::string("give it to tavio run: a script has one target");
                           }});
    }
    for (const char* name : {"--trace", "--ready", "--confirm", "--json"}) {
        refused.push_back({.kind = OptionSpec::Kind::kFlag,
                           .name = name,
                           .help = "",
                           .set = [](const std::string&) {
                               return std::string("give it to tavio run: a script is one job");
                           }});
    }
    return refused;
}

}  // namespace

CommandSpec toolCommands(Options& options) {
    CommandSpec root{std::nullopt,
                     "tavio",
                     kAbout,
                     "tavio print photo.jpg --fit cover --stock receipt --cut\n"
                     "prints onto a preview of the ticket, ticket.png; --to tcp://192.168.1.50 "
                     "prints it. tavio COMMAND --help tells more.",
                     {},
                     jobCommands(options)};
    root.commands.push_back(run(options));
    root.commands.push_back(calibrate(options));
    addToEach(root, destinationOptions(options) + demandOptions(options));
    for (CommandSpec& command : std::vector<CommandSpec>{
             status(options), preview(options), decode(options), info(options), stocks()}) {
        root.commands.push_back(std::move(command));
    }
    addToEach(root, settingOptions(options.settings));
    root.commands.push_back(printerCommands(options));
    addToEach(root, {json(options)});
    return root;
}

CommandSpec scriptCommands(Options& options) {
    CommandSpec root{std::nullopt, "tavio", kAbout, "", {}, jobCommands(options)};
    addToEach(root, settingOptions(options.settings) + refusedInScripts());
    return root;
}

CommandSpec scriptSettings(Options& options) {
    return {Command::kSettings,
            "tavio",
            kAbout,
            "",
            settingOptions(options.settings) + refusedInScripts(),
            {}};
}

}  // namespace tavio::tool
