// The command line.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "tools/tavio/target.h"

namespace tavio::tool {

enum class Command {
    kPrint,
    kLogoStore,
    kLogoPrint,
    kSend,
    kRaw,
    kCut,
    kEject,
    kClear,
    kStatus,
    kPreview,
    kDecode,
    kStocks,
};

// The end of the job: how the ticket leaves the printer.
enum class Finish { kNothing, kCut, kEject };

struct Settings {
    std::string path = "<P1>";
    std::int32_t resolution = 300;  // 200, 300 or 600 dots per inch
    bool scaled = false;
    bool threshold = false;  // else dithered
    std::int32_t stock = 0;  // an index of settings::kStocks
    bool portrait = false;
};

struct Options {
    Command command = Command::kStocks;
    Settings settings;
    Target target = PictureTarget{"ticket.png"};
    std::optional<std::chrono::milliseconds> timeout;  // none: the links' own deadlines
    bool trace = false;

    std::string file;  // the document or job file
    std::string text;  // of "send"
    std::int32_t row = 0;
    std::int32_t column = 0;
    std::int32_t logo = 0;
    Finish finish = Finish::kNothing;
    std::string output = "ticket.png";  // of "preview"
};

// Reads the command line. For help, version and bad usage it prints the text on standard output or
// standard error, and returns the exit status: 0 or 2.
std::variant<Options, int> parseCommandLine(int argc, const char* const* argv);

// A decimal number of 32 bits with an optional sign and nothing around it; none for any other text.
std::optional<std::int32_t> parseNumber(std::string_view text);

// A number of seconds with or without decimals, more than 0 and up to a day; none for any other
// text. Rounded up to a millisecond.
std::optional<std::chrono::milliseconds> parseSeconds(std::string_view text);

}  // namespace tavio::tool
