// Streams, and what printers and readers make of them, in a form that tests can compare.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tavio/virtual-printer/command_reader.h"
#include "tavio/virtual-printer/printer.h"

namespace tavio::virtual_printer::testing {

using Stream = std::vector<Byte>;

// Text and bytes joined: stream("<G2>", {0xFF, 0x80}, "<p>").
void appendTo(Stream& to, std::string_view text);
void appendTo(Stream& to, const Stream& bytes);

template <typename... Parts>
Stream stream(const Parts&... parts) {
    Stream joined;
    (appendTo(joined, parts), ...);
    return joined;
}

// Everything that a reader said, one line for each call; graphics in one line however they came.
class RecordingSink : public CommandSink {
  public:
    std::vector<std::string> lines;
    std::vector<std::string> problems;

    void command(const Command& command) override;
    void graphicsBytes(std::span<const Byte> bytes) override;
    void graphicsEnd() override;
    void text(std::uint64_t offset, std::span<const Byte> bytes) override;
    void problem(std::uint64_t offset, std::string_view text) override;

  private:
    Stream graphics_;
};

// Feeds a whole stream to a new reader.
RecordingSink readAll(const Stream& bytes);

// A ticket as it was when it left the printer.
struct KeptTicket {
    std::string dots;
    std::uint64_t number = 0;
    TicketEnd end = TicketEnd::kCut;
    Orientation orientation = Orientation::kLandscape;
    bool marked = false;
    std::uint64_t black = 0;
    std::uint64_t dotsOff = 0;
    std::uint64_t beginOffset = 0;
    std::uint64_t endOffset = 0;

    bool operator==(const KeptTicket&) const = default;
};

// A printer together with what came out of it.
class TestPrinter {
  public:
    explicit TestPrinter(const PrinterSettings& settings)
        : printer_(settings, [this](const FinishedTicket& ticket) { keep(ticket); }) {}
    explicit TestPrinter(TicketSize size) : TestPrinter(PrinterSettings{.size = size}) {}

    TestPrinter(const TestPrinter&) = delete;
    TestPrinter& operator=(const TestPrinter&) = delete;

    void feed(std::span<const Byte> bytes) { printer_.feed(bytes); }
    void finish() { printer_.finish(); }
    void print(const Stream& bytes) {
        feed(bytes);
        finish();
    }

    const std::vector<KeptTicket>& tickets() const { return tickets_; }
    Printer& printer() { return printer_; }

    // "offset: text" for each problem.
    std::vector<std::string> problems() const;

  private:
    void keep(const FinishedTicket& ticket);

    std::vector<KeptTicket> tickets_;
    Printer printer_;
};

// The one ticket that a stream makes, as text.
std::string printOne(TicketSize size, const Stream& bytes);

}  // namespace tavio::virtual_printer::testing
