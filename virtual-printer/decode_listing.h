// A command stream as lines of text, one for each command or run of text.
//
//   0000000  <P1>  path 1
//   0000017  <RC10,20>  position: row 10, column 20
//   0000026  <G8>  graphics: 8 columns, 36 dots
//   0000038  text: "Row A\r\n"
//
// Columns are separated by two spaces: offset in decimal (7 digits or more), command, meaning.
// Bytes that are not printable ASCII are shown as \r,
// , \t, \\, \" or \xNN.
#pragma once

#include <array>
#include <cstdint>
#include <iosfwd>
#include <memory>
#include <span>

#include "tavio/virtual-printer/problems.h"

namespace tavio::virtual_printer {

// Writes each line as soon as its command is complete, so that a stream of any length needs little
// memory. After the stream it writes the problems, if there are any:
//
//   problems: 1
//   0000038  graphics cut short: 12 of 40 bytes
//
//   DecodeListing listing(std::cout);
//   while (auto n = read(buffer)) listing.feed({buffer, n});
//   listing.finish();
class DecodeListing {
  public:
    // The stream must outlive the listing.
    explicit DecodeListing(std::ostream& out);
    ~DecodeListing();
    DecodeListing(DecodeListing&&) noexcept;
    DecodeListing& operator=(DecodeListing&&) noexcept;

    void feed(std::span<const std::uint8_t> bytes);

    // To be called once, after the last feed().
    void finish();

    // The stream's syntax errors. Unknown logos and dots outside the ticket are found by Printer.
    const ProblemList& problems() const;

  private:
    class Writer;
    std::unique_ptr<Writer> writer_;
};

}  // namespace tavio::virtual_printer
