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

    // Bytes for all stored logos together. A logo that does not fit is not stored, and is a
    // problem.
    std::size_t logoMemory = std::size_t{16} << 20U;
};

enum class TicketEnd : std::uint8_t { kCut, kEjected, kStreamEnded };

// A ticket that leaves the printer. All of it is valid during the callback only.
struct FinishedTicket {
    const Ticket& ticket;
    std::uint64_t number;  // 1 for the first of its stream
    TicketEnd end;

    // The orientation of the last thing drawn on it, or the one in force if it is blank. A portrait
    // ticket is upright after Ticket::turnedUpright().
    Orientation orientation;

    // True if graphics, a logo or a visible character was drawn, even outside the ticket.
    bool marked;

    // Its bytes in the stream: [begin, end).
    std::uint64_t beginOffset;
    std::uint64_t endOffset;
};

// Called once for each ticket, within feed() or finish(). It must not call the printer.
using TicketCallback = std::function<void(const FinishedTicket&)>;

// The effect of the commands:
//
// - "<RC" sets the position (row, column). At the start of a ticket it is where a picture has its
//   top left corner: row 0, column 0 in landscape, the last row, column 0 in portrait.
// - "<G" draws one byte per picture column, its top bit at the position, the next bits down the
//   picture: byte n, bit b (7 at the top) goes to row + 7 - b, column + n in landscape and to row -
//   n, column + 7 - b in portrait. The position is then past the run: column + count in landscape,
//   row - count in portrait.
// - Text is drawn in a plain face of 5 by 7 dots, enlarged to about 100 dots an inch, from the
//   position or the end of the last text on. CR, LF and CR LF begin a new line below the beginning
//   of the text. Text is UTF-8; characters that the face does not have are a hollow box. Text does
//   not move the position of graphics.
// - Between "<n>" ESC and ESC graphics are stored instead of drawn, at positions relative to the
//   logo's corner, in the orientation in force then. Storing logo n removes an older logo n at
//   once. Only position, orientation and graphics belong in a logo; cuts, texts and logos in a logo
//   are ignored, and are problems. A logo without its ESC is not kept.
// - "<SP" sets the place of logos (0, 0 at the start of a ticket), "<LD" draws one there. All logos
//   drawn on one ticket may have 4 times the graphics that cover it, and at least 64 KiB. No layout
//   needs more, and without the limit a short stream could take hours.
// - "<p>" and "<q>" hand the ticket to the callback and begin a blank one.
// - ESC "c" removes all logos. - The path, "<RE" and "<DI>" are known and have no effect on the
// picture.
//
// Unknown commands, unknown logos, dots outside the ticket (once per ticket, with their number) and
// the problems of CommandReader become problems.
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

    // The next bytes of the stream, which may be cut anywhere.
    void feed(std::span<const Byte> bytes);

    // The end of the stream. Hands over the last ticket if it is marked, and a blank one if the
    // stream had no ticket at all. The next feed() begins a new stream; logos are kept.
    void finish();

    // The problems of all streams since the start or the last forgetProblems().
    const ProblemList& problems() const;
    void forgetProblems();

    // The part of PrinterSettings::logoMemory in use, in bytes.
    std::size_t logoMemoryUsed() const;

  private:
    class Interpreter;
    std::unique_ptr<Interpreter> interpreter_;
};

}  // namespace tavio::virtual_printer
