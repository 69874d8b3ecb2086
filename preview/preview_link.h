// A link to a printer in memory, whose tickets become PNG files.
#pragma once

#include <cstdint>
#include <deque>
#include <span>
#include <string>

#include "tavio/links/local_link.h"
#include "tavio/links/output_file.h"
#include "tavio/virtual-printer/printer.h"

namespace tavio::links {

// Draws the tickets that a printer with this stock, resolution and orientation would print. The
// first ticket is written to the path, the next ones to names with a number: ticket.png,
// ticket-2.png, ticket-3.png, ... A portrait ticket is turned upright.
//
// No file is created or replaced before commit(). Several jobs may come before it; their tickets
// are numbered consecutively. The first job after it begins with the first name again. After a
// failed job nothing can be committed, and all later jobs fail for the same reason.
//
//   auto size = virtual_printer::ticketSize(/*stock*/ 0, /*resolution*/ 300);
//   auto preview = std::make_shared<links::PreviewLink>(
//       "ticket.png", virtual_printer::PrinterSettings{.size = *size});
//   links::useLink(preview);
//   OpenSessionWiFi(""); SendString("<RC10,10>Row B, seat 12"); PrintCut(); CloseSessionWiFi();
//   if (!preview->commit()) return tellTheUser(preview->failure());
class PreviewLink : public LocalLink {
  public:
    // Further tickets are only counted.
    static constexpr std::uint64_t kMaxPictures = 100;

    // Throws std::invalid_argument for a ticket size outside its ranges.
    PreviewLink(std::string path, const virtual_printer::PrinterSettings& settings);

    // Creates or replaces the files, after close(); true on success.
    bool commit();

    // The number of all tickets, also those that were only counted.
    std::uint64_t ticketCount() const { return ticketCount_; }

    // The printer's problems with the stream.
    const virtual_printer::ProblemList& problems() const { return printer_.problems(); }

  protected:
    bool begin(const std::string& address) override;
    bool take(std::span<const Byte> bytes) override;
    // Draws the last ticket.
    void end() override;

  private:
    void draw(const virtual_printer::FinishedTicket& ticket);
    bool markUnusable(const std::string& why);
    void restart();

    std::string path_;
    std::string lastingFailure_;  // why nothing can be committed; "" if it can
    bool committed_ = false;
    std::uint64_t ticketCount_ = 0;
    std::deque<OutputFile> pictures_;  // the first one is opened before its ticket
    virtual_printer::Printer printer_;
};

// The name of ticket `number` (from 1): "a/ticket.png", "a/ticket-2.png", ...
std::string ticketName(const std::string& path, std::uint64_t number);

}  // namespace tavio::links
