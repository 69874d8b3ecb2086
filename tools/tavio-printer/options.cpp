#include "tools/tavio-printer/options.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <functional>
#include <limits>
#include <system_error>
#include <vector>

#include <CLI/CLI.hpp>

#include "tools/common/printable.h"
#include "tools/common/ticket_options.h"
#include "tools/tavio-printer/device/link_rate.h"

namespace tavio::virtual_printer {
namespace {

using command_line::asOrientation;
using command_line::asResolution;
using command_line::asStock;
using command_line::printable;
using command_line::stockChoices;

constexpr std::uint64_t kMaxLogoMemory = std::uint64_t{1} << 30U;
constexpr std::uint64_t kMaxKept = 1'000'000;
constexpr std::uint64_t kMaxKeptBytes = std::uint64_t{1} << 40U;
constexpr std::uint64_t kMaxSocketBuffer = std::uint64_t{16} << 20U;
constexpr std::uint64_t kMaxCount = std::numeric_limits<std::int64_t>::max();
constexpr double kMillisecondsPerSecond = 1000;

template <typename Number>
std::optional<Number> parse(std::string_view text) {
    Number number{};
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end) return std::nullopt;
    return number;
}

// 1000000 as "1000000" and 0.5 as "0.5".
std::string shortest(double number) {
    std::array<char, 32> text{};
    const auto end =
        std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed);
    return {text.data(), end.ptr};
}

// Checks of option values; each returns "" or the error.
using Check = std::function<std::string(std::string&)>;

Check wholeNumber(std::uint64_t min, std::uint64_t max) {
    return [min, max](const std::string& text) -> std::string {
        const auto number = parse<std::uint64_t>(text);
        if (number && *number >= min && *number <= max) return {};
        return "\"" + text + "\" is not a whole number from " + std::to_string(min) + " to " +
               std::to_string(max);
    };
}

Check decimalNumber(double min, double max) {
    return [min, max](const std::string& text) -> std::string {
        const auto number = parse<double>(text);
        if (number && *number >= min && *number <= max) return {};
        return "\"" + text + "\" is not a number from " + shortest(min) + " to " + shortest(max);
    };
}

std::string asListenAddress(std::string& text) {
    if (parseListenAddress(text, 0)) return {};
    return "\"" + text + "\" is no address to listen on: give ADDRESS, ADDRESS:PORT or [IPV6]:PORT";
}

std::string asReply(std::string& text) {
    const auto reply = unescaped(text);
    if (!reply) return "a backslash in a reply begins \\r, \\n, \\t, \\\\ or \\x and two digits";
    if (reply->size() <= kMaxReplyTextBytes) return {};
    return "a reply has " + std::to_string(kMaxReplyTextBytes) + " bytes at most";
}

std::string asFolder(std::string& text) {
    return text.empty() ? std::string("the folder has no name") : std::string();
}

CLI::Validator valueCheck(Check check) {
    return {std::move(check), ""};
}

std::string failureLine(const CLI::Error& error) {
    const std::string sentence = std::string(error.what()) + " (tavio-printer --help tells more)";
    return "tavio-printer: " + printable(sentence) + "\n";
}

class CommandLine {
  public:
    explicit CommandLine(Options& options);

    CLI::App& app() { return app_; }

  private:
    void addPlaces();
    void addTicket();
    void addKeeping();
    void addAnswers();
    void addPhysics();
    void addFaults();

    CLI::Option* add(const char* name, const char* what, const char* type, Check check,
                     const std::function<void(const std::string&)>& take);
    void addWhole(const char* name, const char* what, std::uint64_t min, std::uint64_t max,
                  const std::function<void(std::uint64_t)>& take);
    void addDecimal(const char* name, const char* what, double min, double max,
                    const std::function<void(double)>& take);

    Options& options_;
    const char* group_ = "";  // of the next options
    CLI::App app_{
        "A printer without paper: takes jobs where a printer would and shows the tickets on a page "
        "and in a folder.",
        "tavio-printer"};
};

CommandLine::CommandLine(Options& options) : options_(options) {
    app_.set_version_flag("--version", "tavio-printer " TAVIO_VERSION);
    app_.failure_message(
        [](const CLI::App*, const CLI::Error& error) { return failureLine(error); });
    app_.footer(
        "Example:\n"
        "  tavio-printer --stock cinema --out tickets\n"
        "says where it prints and where its page is. SIGUSR1 loads paper, SIGINT and SIGTERM end "
        "it.");
    addPlaces();
    addTicket();
    addKeeping();
    addAnswers();
    addPhysics();
    addFaults();
}

CLI::Option* CommandLine::add(const char* name, const char* what, const char* type, Check check,
                              const std::function<void(const std::string&)>& take) {
    return app_.add_option_function<std::string>(name, take, what)
        ->transform(valueCheck(std::move(check)))
        ->type_name(type)
        ->group(group_);
}

void CommandLine::addWhole(const char* name, const char* what, std::uint64_t min, std::uint64_t max,
                           const std::function<void(std::uint64_t)>& take) {
    add(name, what, "N", wholeNumber(min, max),
        [take](const std::string& text) { take(parse<std::uint64_t>(text).value_or(0)); });
}

void CommandLine::addDecimal(const char* name, const char* what, double min, double max,
                             const std::function<void(double)>& take) {
    add(name, what, "X", decimalNumber(min, max),
        [take](const std::string& text) { take(parse<double>(text).value_or(0)); });
}

void CommandLine::addPlaces() {
    group_ = "Where";
    auto* listen = add("--listen", "where to take jobs; 127.0.0.1:9100 if not given; port 0: any",
                       "ADDRESS[:PORT]", asListenAddress, [this](const std::string& text) {
                           options_.server.listen = parseListenAddress(text, kUsualPrintPort);
                       });
    app_.add_flag_callback(
            "--no-listen", [this] { options_.server.listen.reset(); },
            "take jobs from the pseudo-terminal alone")
        ->excludes(listen)
        ->group(group_);
    auto* tty = app_.add_option_function<std::string>(
        "--tty", [this](const std::string& link) { options_.server.tty = link; },
        "also take jobs on a pseudo-terminal, with a symbolic link LINK to it if given");
    tty->expected(0, 1)->type_name("[LINK]")->group(group_);
    app_.get_option("--no-listen")->needs(tty);
    auto* page = add("--page", "where the page is; 127.0.0.1:9180 if not given; port 0: any",
                     "ADDRESS[:PORT]", asListenAddress, [this](const std::string& text) {
                         options_.page = parseListenAddress(text, kUsualPagePort);
                     });
    app_.add_flag_callback(
            "--no-page", [this] { options_.page.reset(); }, "have no page")
        ->excludes(page)
        ->group(group_);
}

void CommandLine::addTicket() {
    group_ = "The ticket in the printer";
    app_.add_option("--stock", options_.stock, stockChoices() + "; 0 if not given")
        ->transform(valueCheck(asStock))
        ->type_name("STOCK")
        ->group(group_);
    app_.add_option("--resolution", options_.dpi,
                    "dots per inch: 200, 300 or 600; 300 if not given")
        ->transform(valueCheck(asResolution))
        ->type_name("DPI")
        ->group(group_);
    add("--orientation", "of jobs that do not say: landscape or portrait; landscape if not given",
        "WAY", asOrientation, [this](const std::string& text) {
            if (text == "portrait") {
                options_.server.device.printer.orientation = Orientation::kPortrait;
            }
        });
}

void CommandLine::addKeeping() {
    group_ = "Tickets";
    StoreLimits& store = options_.store;
    add("--out", "folder for pictures and bytes of tickets, which is made if it is not there",
        "FOLDER", asFolder, [&store](const std::string& text) { store.folder = text; });
    addWhole("--keep", "tickets that are kept; 200 if not given", 1, kMaxKept,
             [&store](std::uint64_t count) { store.tickets = count; });
    addWhole("--keep-bytes",
             "bytes of tickets that are kept, in memory and in the folder; 268435456 if not given",
             1, kMaxKeptBytes, [&store](std::uint64_t count) { store.bytes = count; });
    addWhole("--tickets", "end by itself after so many tickets", 1, kMaxCount,
             [this](std::uint64_t count) { options_.tickets = count; });
    app_.add_flag("--quiet", options_.quiet, "say where it listens, and nothing of the tickets")
        ->group(group_);
}

void CommandLine::addAnswers() {
    group_ = "Answers";
    Reply& reply = options_.server.device.reply;
    add("--reply",
        "answer after each ticket, and to a client that says nothing; \\r, \\n, \\t, \\\\ and "
        "\\xHH "
        "are known; no answers if not given",
        "TEXT", asReply,
        [&reply](const std::string& text) { reply.text = unescaped(text).value_or(""); });
    const double max = static_cast<double>(std::chrono::seconds(kMaxReplyDelay).count());
    addDecimal("--reply-delay", "seconds until an answer", 0, max, [&reply](double seconds) {
        reply.delay = std::chrono::milliseconds(std::llround(seconds * kMillisecondsPerSecond));
    });
}

void CommandLine::addPhysics() {
    group_ = "Physics";
    Physics& physics = options_.server.device.physics;
    addWhole("--buffer", "bytes of the receive buffer; 65536 if not given", 1, kMaxReceiveBuffer,
             [&physics](std::uint64_t count) { physics.receiveBuffer = count; });
    app_.add_flag("--drop", physics.dropWhenFull,
                  "lose bytes when the buffer is full, instead of having the sender wait")
        ->group(group_);
    addWhole("--socket-buffer", "bytes that the system holds before the buffer; 16384 if not given",
             1, kMaxSocketBuffer,
             [this](std::uint64_t count) { options_.server.socketBuffer = count; });
    addDecimal("--rate", "bytes a second that the link brings", LinkRate::kMinBytesPerSecond,
               LinkRate::kMaxBytesPerSecond,
               [&physics](double rate) { physics.bytesPerSecond = rate; });
    addDecimal("--speed", "millimetres a second that paper moves when a ticket has ended",
               kMinMillimetresPerSecond, kMaxMillimetresPerSecond,
               [&physics](double speed) { physics.millimetresPerSecond = speed; });
    addWhole("--paper", "out of paper after so many tickets, until new paper is loaded", 1,
             kMaxCount,
             [this](std::uint64_t count) { options_.server.device.faults.paperOutAfter = count; });
    addWhole("--logo-memory", "bytes for stored logos; 16777216 if not given", 0, kMaxLogoMemory,
             [this](std::uint64_t count) { options_.server.device.printer.logoMemory = count; });
}

void CommandLine::addFaults() {
    group_ = "Faults";
    Faults& faults = options_.server.device.faults;
    app_.add_flag("--one-client", options_.server.oneClient,
                  "turn further clients away instead of having them wait")
        ->group(group_);
    app_.add_flag("--never-read", faults.neverRead, "take connections and read nothing")
        ->group(group_);
    addWhole("--reset-after", "reset each connection after so many bytes", 0, kMaxCount,
             [&faults](std::uint64_t count) { faults.resetAfter = count; });
    addWhole("--close-after", "close each connection after so many bytes", 0, kMaxCount,
             [&faults](std::uint64_t count) { faults.closeAfter = count; });
}

std::optional<unsigned> hexByte(std::string_view digits) {
    unsigned value = 0;
    const char* end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, value, 16);
    if (digits.size() != 2 || error != std::errc() || stop != end) return std::nullopt;
    return value;
}

}  // namespace

std::optional<std::string> unescaped(std::string_view text) {
    constexpr std::string_view kLetters = "rnt\\";
    constexpr std::string_view kMeanings = "\r\n\t\\";
    std::string result;
    while (!text.empty()) {
        const char first = text.front();
        text.remove_prefix(1);
        if (first != '\\') {
            result += first;
            continue;
        }
        const std::size_t letter = text.empty() ? std::string_view::npos : kLetters.find(text[0]);
        if (letter != std::string_view::npos) {
            result += kMeanings[letter];
            text.remove_prefix(1);
            continue;
        }
        const auto byte = text.starts_with('x') ? hexByte(text.substr(1, 2)) : std::nullopt;
        if (!byte) return std::nullopt;
        result += static_cast<char>(*byte);
        text.remove_prefix(3);
    }
    return result;
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
    options.server.device.printer.size = ticketSize(options.stock, options.dpi).value();
    return options;
}

}  // namespace tavio::virtual_printer
