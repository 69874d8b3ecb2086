// The text of the file printers.toml: read, checked and changed. Pure functions.
//
//   default = "hall"
//
//   [printers.hall]
//   address = "tcp://192.168.1.50"
//   stock = "cinema"                # or 1, or { width = 3.5, height = 2.0 } in inches
//   resolution = 300
//   orientation = "landscape"
//   path = "<P1>"
//   replies = [
//     { state = "ready", match = "exact", text = "OK" },
//     { state = "out-of-paper", match = "contains", text = "PAPER" },
//   ]
//   tone = 4                        # 0 to 9
//   offset = { right = 3, down = -2 }
//   size = { width = 1648, height = 598 }
//
// Only the address must be there; a match that is not given is "exact".
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "tavio/printing/reply.h"
#include "tavio/printing/ticket.h"
#include "tools/tavio/failure.h"
#include "tools/tavio/readings.h"

namespace tavio::tool {

// What a name stands for. What is not given is as the library has it.
struct NamedPrinter {
    std::string address;
    std::optional<printing::Stock> stock;
    std::optional<std::int32_t> resolution;
    std::optional<printing::Orientation> orientation;
    std::optional<std::string> path;
    printing::ReplyTable replies;
    Readings readings{};
};

struct PrinterBook {
    std::map<std::string, NamedPrinter> printers;
    std::string defaultName;  // of one of the printers; "" if none is the default
};

// Tells whether a text is the address of a printer: printing::isPrinterAddress().
using AddressCheck = bool (*)(std::string_view text);

// A mistake in the text: its text is "FILE:LINE:COLUMN: SENTENCE".
class BadPrinterBook : public Failure {
  public:
    BadPrinterBook(const std::string& file, std::uint32_t line, std::uint32_t column,
                   const std::string& sentence);

    // Both from 1; columns are characters.
    std::uint32_t line() const { return line_; }
    std::uint32_t column() const { return column_; }
    const std::string& sentence() const { return sentence_; }

  private:
    std::uint32_t line_;
    std::uint32_t column_;
    std::string sentence_;
};

// True for 1 to 64 letters (A to Z, a to z), digits, "-", "_" and ".".
bool isPrinterName(std::string_view name);

// Throws BadPrinterBook, with `file` as the text's name, on the first mistake that it finds: syntax,
// an unknown key, a value of the wrong type or without a meaning.
PrinterBook parsePrinterBook(std::string_view text, const std::string& file,
                             AddressCheck isAddress);

// A text that parsePrinterBook() accepts, changed. All other values stay; comments and the order do
// not. `name` is a printer's name; to be removed or the default, that of a printer in the text. The
// default that is removed leaves none.
std::string withPrinter(std::string_view text, const std::string& name,
                        const NamedPrinter& printer);
std::string withoutPrinter(std::string_view text, const std::string& name);
std::string withDefault(std::string_view text, const std::string& name);

}  // namespace tavio::tool
