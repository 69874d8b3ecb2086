// The dots of one ticket, and the sizes that tickets have.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::virtual_printer {

// How a picture lies on the ticket. The printer's rows and columns are the same in both.
//   landscape: the picture's columns run towards larger columns, its rows towards larger rows.
//   portrait:  the picture's columns run towards smaller rows, its rows towards larger columns.
enum class Orientation : std::uint8_t { kLandscape, kPortrait };

// A ticket stock as it lies in the printer (landscape). This list is separate from the library's on
// purpose: tests compare the two.
struct TicketStock {
    const char* name;  // "" if the stock has none
    double width;      // inches, along the columns
    double height;     // inches, along the rows
};

inline constexpr auto kTicketStocks = std::to_array<TicketStock>({
    {"concert", 5.5, 2.0},
    {"cinema", 2.0, 3.25},
    {"creditcard", 3.37, 2.13},
    {"receipt", 8.0, 3.25},
    {"", 6.0, 3.25},
    {"", 6.0, 4.0},
    {"", 11.0, 1.0},
    {"", 11.0, 1.328},
    {"", 11.0, 8.5},
});

struct TicketSize {
    std::int32_t rows = 0;     // dots, 1 to kMaxTicketDots
    std::int32_t columns = 0;  // dots, 1 to kMaxTicketDots
    std::int32_t dpi = 0;      // dots per inch, 1 to kMaxDpi

    bool operator==(const TicketSize&) const = default;
};

inline constexpr std::int32_t kMaxTicketDots = 16384;
inline constexpr std::int32_t kMaxDpi = 1200;

// Inches times dots per inch, rounded to the nearest dot. None for a stock outside kTicketStocks
// or a resolution outside 1 to kMaxDpi.
//
//   ticketSize(0, 300)  ->  600 rows, 1650 columns
std::optional<TicketSize> ticketSize(std::int32_t stock, std::int32_t dpi);

// A rectangle of dots: rows [row, row + rows), columns [column, column + columns).
struct TicketRegion {
    std::int32_t row = 0;
    std::int32_t column = 0;
    std::int32_t rows = 0;
    std::int32_t columns = 0;
};

// Rows from the top, columns from the left, both from 0. One bit per dot.
class Ticket {
  public:
    // A blank ticket. Throws std::invalid_argument for a size outside the ranges of TicketSize.
    explicit Ticket(TicketSize size);

    const TicketSize& size() const { return size_; }

    // Makes a dot black. A dot outside the ticket is counted and otherwise ignored.
    void setDot(std::int64_t row, std::int64_t column);

    // False outside the ticket.
    bool isBlack(std::int64_t row, std::int64_t column) const;

    std::uint64_t blackCount() const { return blackCount_; }

    // The number of setDot() calls outside the ticket.
    std::uint64_t dotsOff() const { return dotsOff_; }

    // Makes the ticket blank and both counts 0.
    void clear();

    // One row, bit 7 of its first byte being column 0, a 1 bit black; (columns + 7) / 8 bytes,
    // the bits past the last column 0. The row must lie on the ticket.
    std::span<const Byte> row(std::int32_t row) const;

    // One line per row, each ended by "\n": "X" for a black dot, a space for a white one.
    std::string toText() const;

    // The same for a region; places outside the ticket are white.
    std::string toText(const TicketRegion& region) const;

    // The ticket turned to read a portrait print: its columns are this one's rows from the last to
    // the first, its rows are this one's columns. Its dotsOff() is 0.
    Ticket turnedUpright() const;

  private:
    bool contains(std::int64_t row, std::int64_t column) const;
    std::size_t byteIndex(std::int64_t row, std::int64_t column) const;

    TicketSize size_;
    std::size_t rowBytes_;
    std::vector<Byte> bits_;
    std::uint64_t blackCount_ = 0;
    std::uint64_t dotsOff_ = 0;
};

}  // namespace tavio::virtual_printer
