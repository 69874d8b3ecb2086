// A printer in memory: takes the command stream and draws the tickets that it describes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>

#include "tavio/virtual-printer/problems.h"
#include "tavio/virtual-printer/ticket.h"

namespace tavio::virtual_printer {

struct PrinterSettings {
    TicketSize size;  // of every ticket; see ticketSize()

    // In force at the start of each stream, until "<LM>" or "<PM>" comes.
    Orientation orientation = Orientation::kLandscape;

    // Bytes for all stored logos together. A logo that no longer fits is a problem, and is not
    // stored.
    std::size_t logoMemory = std::size_t{16} << 20U;
};

enum class TicketEnd : std::uint8_t { kCut, kEjected, kStreamEnded };

// A ticket that leaves the printer. All of it is valid during the callback only.
struct FinishedTicket {
    const Ticket& ticket;
    std::uint64_t number;  // 1 for the first of its stream
    TicketEnd end;

    // Of the last thing drawn on it; where nothing was, the one in force. A portrait ticket is
    // read after Ticket::turnedUpright().
    Orientation orientation;

    // Something was put on it: graphics, a logo or a visible character, even beside the ticket.
    bool marked;

    // Its bytes in the stream: [begin, end).
    std::uint64_t beginOffset;
    std::uint64_t endOffset;
};

// Called once for each ticket, within feed() or finish(). Must not call the printer.
using TicketCallback = std::function<void(const FinishedTicket&)>;

// What it does with the commands:
//
// - "<RC" sets the position (row, column). At the start of a ticket it is where a picture has its
//   top left corner: row 0, column 0 in landscape, the last row, column 0 in portrait.
// - "<G" draws one byte per picture column, its top bit at the position, the next bits down the
//   picture: byte n, bit b (7 at the top) goes to row + 7 - b, column + n in landscape and to
//   row - n, column + 7 - b in portrait. The position then stands behind the run: column + count
//   in landscape, row - count in portrait.
// - Text is drawn in a plain face of 5 by 7 dots, enlarged to about 100 dots an inch, from the
//   position or from where the last text ended; CR, LF and CR LF go to a new line below its
//   beginning. Text is UTF-8; what the face does not have is a hollow box. Text does not move the
//   position at which graphics are drawn.
// - Between "<n>" ESC and ESC graphics are stored instead of drawn, at positions relative to the
//   logo's corner, in the orientation in force then. Storing logo n forgets an older logo n at
//   once. Only position, orientation and graphics belong in a logo; cuts, texts and logos in a
//   logo are problems and are ignored. A logo without its ESC is not kept.
// - "<SP" sets the place of logos (0, 0 at the start of a ticket), "<LD" draws one there.
//   All logos drawn on one ticket may hold 4 times the graphics that cover it (64 KiB at least):
//   more than any layout wants, and what keeps a short stream from taking hours.
// - "<p>" and "<q>" hand the ticket to the callback and begin a blank one.
// - ESC "c" forgets all logos.
// - The path, "<RE" and "<DI>" are known and have no effect on the picture.
//
// Unknown commands, unknown logos, dots beside the ticket (once per ticket, with their number) and
// whatever CommandReader objects to become problems.
//
//   Printer printer({*ticketSize(0, 300)}, [](const FinishedTicket& t) { show(t.ticket); });
//   printer.feed(bytes);
//   printer.finish();
class Printer {
  public:
    // Throws std::invalid_argument for a ticket size outside its ranges.
    Printer(const PrinterSettings& settings, TicketCallback onTicket);
    ~Printer();
    Printer(Printer&&) noexcept;
    Printer& operator=(Printer&&) noexcept;

    // The next bytes of the stream; cut anywhere.
    void feed(std::span<const Byte> bytes);

    // The end of the stream. Hands over the last ticket if it is marked, and a blank one if the
    // stream brought no ticket at all. The next feed() begins a new stream; logos are kept.
    void finish();

    // Since the start or the last forgetProblems(), of all streams.
    const ProblemList& problems() const;
    void forgetProblems();

    // What the stored logos take of PrinterSettings::logoMemory, in bytes.
    std::size_t logoMemoryUsed() const;

  private:
    class Interpreter;
    std::unique_ptr<Interpreter> interpreter_;
};

}  // namespace tavio::virtual_printer
