// The command line of tavio-printer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "tools/tavio-printer/doors/print_server.h"
#include "tools/tavio-printer/tickets/ticket_store.h"

namespace tavio::virtual_printer {

inline constexpr std::uint16_t kUsualPagePort = 9180;

struct Options {
    std::int32_t stock = 0;      // an index of kTicketStocks
    std::int32_t dpi = 300;      // 200, 300 or 600
    PrintServerSettings server;  // with the ticket size of the two
    StoreLimits store;
    std::optional<ListenAddress> page = ListenAddress{"127.0.0.1", kUsualPagePort};
    std::uint64_t tickets = 0;  // ends after so many; 0: never
    bool quiet = false;
};

// Reads the command line. For help, version and bad usage it prints the text on standard output or
// standard error, and returns the exit status: 0 or 2.
std::variant<Options, int> parseCommandLine(int argc, const char* const* argv);

// The text with its \r,
// , \t, \\ and \xHH (two digits) replaced by their bytes. None if anything else follows a
// backslash.
std::optional<std::string> unescaped(std::string_view text);

}  // namespace tavio::virtual_printer
