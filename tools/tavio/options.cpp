#include "tools/tavio/options.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <system_error>
#include <vector>

#include <CLI/CLI.hpp>

#include "TavioIpadSDK/platform/text.h"
#include "tools/common/printable.h"
#include "tools/common/ticket_options.h"
#include "tools/tavio/console.h"

namespace tavio::tool {

namespace {

using command_line::asOrientation;
using command_line::asResolution;
using command_line::asStock;
using command_line::printable;
using command_line::stockChoices;

// Checks of option values; each replaces the value by the form that is converted afterwards, and
// returns "" or the error.

std::string asNumber(std::string& text) {
    auto number = parseNumber(text);
    if (!number) return "\"" + text + "\" is not a whole number of 32 bits";
    text = std::to_string(*number);
    return {};
}

std::string asTarget(std::string& text) {
    return parseTarget(text) ? std::string() : whyNoTarget(text);
}

std::string asSeconds(std::string& text) {
    if (parseSeconds(text)) return {};
    return "\"" + text + "\" is no number of seconds above 0 and up to 86400, a day";
}

std::string asPictureName(std::string& text) {
    if (isPictureName(text)) return {};
    return "\"" + text + "\" is no name for the picture: give a name ending in .png";
}

std::string asUtf8(std::string& text) {
    if (platform::decodeUtf8({reinterpret_cast<const Byte*>(text.data()), text.size()})) return {};
    return "the path command is not UTF-8";
}

CLI::Validator valueCheck(std::string (*check)(std::string&)) {
    return {check, ""};
}

std::string fullName(const CLI::App& command) {
    const CLI::App* parent = command.get_parent();
    return parent == nullptr ? command.get_name() : fullName(*parent) + " " + command.get_name();
}

// The sentence about the first unknown word of this command or its subcommand, if that word
// explains a missing argument; none if there is no such word.
std::optional<std::string> aboutWrongWord(const CLI::App& command) {
    const auto named = command.get_subcommands();  // those on this command line
    const std::vector<std::string> words = command.remaining();
    auto word = std::find_if(words.begin(), words.end(),
                             [](const std::string& candidate) { return candidate != "--"; });
    if (word == words.end()) return named.empty() ? std::nullopt : aboutWrongWord(*named.front());
    const bool option = words.front() != "--" && word->size() > 1 && word->front() == '-';
    const bool hasCommands = command.get_require_subcommand_min() > 0;
    if (!option && (!hasCommands || !named.empty())) return std::nullopt;
    const std::string name = fullName(command);
    return (word->empty() ? "\"\"" : *word) + " is no " + (option ? "option" : "command") + " of " +
           name + " (" + name + " --help lists them)";
}

std::string failureLine(const CLI::App& app, const CLI::Error& error) {
    const auto code = static_cast<CLI::ExitCodes>(error.get_exit_code());
    std::optional<std::string> sentence;
    if (code == CLI::ExitCodes::RequiredError || code == CLI::ExitCodes::ExtrasError) {
        sentence = aboutWrongWord(app);
    }
    if (!sentence) sentence = std::string(error.what()) + " (tavio --help tells more)";
    return "tavio: " + printable(*sentence) + "\n";
}

// Declares the commands. Every command writes into the same Options.
class CommandLine {
  public:
    explicit CommandLine(Options& options);

    CLI::App& app() { return app_; }

  private:
    CLI::App* add(CLI::App& parent, Command command, const char* name, const char* what,
                  const char* example);
    CLI::App* addJob(CLI::App& parent, Command command, const char* name, const char* what,
                     const char* example);
    void addSettings(CLI::App& command);
    void addPlace(CLI::App& command);
    void addFinish(CLI::App& command);
    void addLogoNumber(CLI::App& command);
    void addPrinting();
    void addLogos();
    void addDirect();
    void addReading();

    Options& options_;
    CLI::App app_{
        "Prints texts, PDF pages and pictures on thermal ticket and label printers, and "
        "shows what comes out.",
        "tavio"};
};

CommandLine::CommandLine(Options& options) : options_(options) {
    app_.require_subcommand(1);
    app_.set_version_flag("--version", "tavio " TAVIO_VERSION);
    app_.failure_message(
        [](const CLI::App* app, const CLI::Error& error) { return failureLine(*app, error); });
    app_.footer(
        "Example:\n"
        "  tavio print photo.jpg --scaled --stock receipt --cut\n"
        "prints onto a preview of the ticket, ticket.png; --to tcp://192.168.1.50 prints it. "
        "tavio COMMAND --help tells more.");
    addPrinting();
    addLogos();
    addDirect();
    addReading();
}

CLI::App* CommandLine::add(CLI::App& parent, Command command, const char* name, const char* what,
                           const char* example) {
    CLI::App* added = parent.add_subcommand(name, what);
    added->footer(std::string("Example:\n  ") + example);
    added->callback([this, command] { options_.command = command; });
    addSettings(*added);
    return added;
}

// A command that sends something.
CLI::App* CommandLine::addJob(CLI::App& parent, Command command, const char* name, const char* what,
                              const char* example) {
    CLI::App* added = add(parent, command, name, what, example);
    added
        ->add_option_function<std::string>(
            "--to", [this](const std::string& text) { options_.target = *parseTarget(text); },
            "where to print: X.png (a preview of the ticket), file:JOB.bin (the bytes as sent), or "
            "a printer: tcp://HOST[:PORT] (port 9100 if not given), "
            "bt://AA:BB:CC:DD:EE:FF[/CHANNEL], tty:DEVICE[?baud=RATE]; ticket.png if not given")
        ->transform(valueCheck(asTarget))
        ->type_name("TARGET");
    added
        ->add_option_function<std::string>(
            "--timeout", [this](const std::string& text) { options_.timeout = parseSeconds(text); },
            "how long to wait for a printer that takes not one byte more, 30 if not given; and at "
            "most for it to connect, to reply and to end the connection, 5 each if not given")
        ->transform(valueCheck(asSeconds))
        ->type_name("SECONDS");
    added->add_flag("--trace", options_.trace, "tell each transport operation and its size");
    return added;
}

void CommandLine::addSettings(CLI::App& command) {
    Settings& settings = options_.settings;
    const char* group = "Settings";
    command.add_option("--path", settings.path, "print path command; <P1> if not given")
        ->transform(valueCheck(asUtf8))
        ->type_name("TEXT")
        ->group(group);
    command
        .add_option("--resolution", settings.resolution,
                    "dots per inch: 200, 300 or 600; 300 if "
                    "not given")
        ->transform(valueCheck(asResolution))
        ->type_name("DPI")
        ->group(group);
    command.add_flag("--scaled", settings.scaled, "stretch pages and pictures to the stock")
        ->group(group);
    command
        .add_flag("--threshold", settings.threshold, "black and white by a threshold, undithered")
        ->group(group);
    command
        .add_option("--stock", settings.stock,
                    stockChoices() + " (see tavio stocks); 0 if not given")
        ->transform(valueCheck(asStock))
        ->type_name("STOCK")
        ->group(group);
    command
        .add_option_function<std::string>(
            "--orientation",
            [&settings](const std::string& text) { settings.portrait = text == "portrait"; },
            "landscape or portrait; landscape if not given")
        ->transform(valueCheck(asOrientation))
        ->type_name("WAY")
        ->group(group);
}

void CommandLine::addPlace(CLI::App& command) {
    command.add_option("--row", options_.row, "printer row in dots; 0 if not given")
        ->transform(valueCheck(asNumber))
        ->type_name("R");
    command.add_option("--column", options_.column, "printer column in dots; 0 if not given")
        ->transform(valueCheck(asNumber))
        ->type_name("C");
}

void CommandLine::addFinish(CLI::App& command) {
    auto* cut = command.add_flag_callback(
        "--cut", [this] { options_.finish = Finish::kCut; }, "cut the ticket afterwards");
    auto* eject = command.add_flag_callback(
        "--eject", [this] { options_.finish = Finish::kEject; }, "eject the ticket uncut");
    cut->excludes(eject);
}

void CommandLine::addLogoNumber(CLI::App& command) {
    command.add_option("N", options_.logo, "number of the logo")
        ->transform(valueCheck(asNumber))
        ->required()
        ->type_name("");
}

void CommandLine::addPrinting() {
    CLI::App* print =
        addJob(app_, Command::kPrint, "print",
               "Print a text file, the first page of a PDF, or a PNG, JPEG or BMP picture.",
               "tavio print page.pdf --scaled --stock cinema --cut --to page.png");
    print->add_option("FILE", options_.file, "the document")->required()->type_name("");
    addPlace(*print);
    addFinish(*print);
}

void CommandLine::addLogos() {
    CLI::App* logo = app_.add_subcommand("logo", "Store a logo in the printer, or print one.");
    logo->require_subcommand(1);
    logo->footer("Example:\n  tavio logo store 7 seal.png --to file:seal.bin");
    CLI::App* store =
        addJob(*logo, Command::kLogoStore, "store",
               "Store a picture or the first page of a PDF in the printer as logo N. The top 8 "
               "rows of a logo are not stored.",
               "tavio logo store 7 seal.png --to file:seal.bin");
    addLogoNumber(*store);
    store->add_option("FILE", options_.file, "the picture or PDF")->required()->type_name("");
    CLI::App* print = addJob(*logo, Command::kLogoPrint, "print", "Print the stored logo N.",
                             "tavio logo print 7 --row 100 --column 250 --to file:job.bin");
    addLogoNumber(*print);
    addPlace(*print);
}

void CommandLine::addDirect() {
    CLI::App* send = addJob(app_, Command::kSend, "send", "Send a text as it is.",
                            "tavio send '<RC100,50>Row B, seat 12' --to ticket.png");
    send->add_option("TEXT", options_.text, "the text; after -- if it begins with a hyphen")
        ->required()
        ->type_name("");
    CLI::App* raw = addJob(app_, Command::kRaw, "raw", "Send the bytes of a file as they are.",
                           "tavio raw job.bin --to ticket.png");
    raw->add_option("FILE", options_.file, "the file")->required()->type_name("");
    addJob(app_, Command::kCut, "cut", "Print what the printer holds and cut.",
           "tavio cut --to file:cut.bin");
    addJob(app_, Command::kEject, "eject", "Print what the printer holds and eject it uncut.",
           "tavio eject --to file:eject.bin");
    addJob(app_, Command::kClear, "clear", "Clear the printer's memory.",
           "tavio clear --to file:clear.bin");
    addJob(app_, Command::kStatus, "status", "Show the printer's reply.",
           "tavio status --to tcp://192.168.1.50\n"
           "A preview or a file has no reply, only a printer answers.");
}

void CommandLine::addReading() {
    CLI::App* preview = add(app_, Command::kPreview, "preview",
                            "Draw the tickets that a job file prints. The stock, the resolution "
                            "and the orientation are those of the printer.",
                            "tavio preview job.bin --stock concert --resolution 300 -o ticket.png");
    preview->add_option("JOB", options_.file, "the job file")->required()->type_name("");
    preview->add_option("-o,--output", options_.output, "the picture; ticket.png if not given")
        ->transform(valueCheck(asPictureName))
        ->type_name("X.png");
    CLI::App* decode = add(app_, Command::kDecode, "decode",
                           "List the commands of a job file, each with its offset and its meaning.",
                           "tavio decode job.bin");
    decode->add_option("JOB", options_.file, "the job file")->required()->type_name("");
    add(app_, Command::kStocks, "stocks",
        "List the ticket stocks with their sizes in inches and in dots.", "tavio stocks");
}

}  // namespace

std::optional<std::int32_t> parseNumber(std::string_view text) {
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-')) return std::nullopt;
    }
    std::int32_t number = 0;
    auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || stop != text.data() + text.size()) return std::nullopt;
    return number;
}

std::optional<std::chrono::milliseconds> parseSeconds(std::string_view text) {
    constexpr double kMost = 86'400;
    if (text.find_first_not_of("0123456789.") != std::string_view::npos) return std::nullopt;
    double seconds = 0;
    auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
    if (error != std::errc() || stop != text.data() + text.size()) return std::nullopt;
    if (!(seconds > 0 && seconds <= kMost)) return std::nullopt;
    return std::chrono::ceil<std::chrono::milliseconds>(std::chrono::duration<double>(seconds));
}

std::variant<Options, int> parseCommandLine(int argc, const char* const* argv) {
    Options options;
    CommandLine commandLine(options);
    try {
        commandLine.app().parse(argc, argv);
    } catch (const CLI::ParseError& end) {
        constexpr int kBadUsage = 2;
        return commandLine.app().exit(end) == 0 ? 0 : kBadUsage;
    }
    return options;
}

}  // namespace tavio::tool
