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

// Draws what a printer with this stock, resolution and orientation would print. The first ticket is
// written to the path, the next ones to names with a number: ticket.png, ticket-2.png, ticket-3.png,
// ... A portrait ticket is turned upright.
//
// No file appears or is replaced before commit(). Several jobs may come before it: their tickets are
// numbered on. The first job after it begins with the first name again. A job that fails spoils what
// has not been committed, and all later jobs fail for the same reason.
//
//   auto size = virtual_printer::ticketSize(/*stock*/ 0, /*resolution*/ 300);
//   auto preview = std::make_shared<links::PreviewLink>(
//       "ticket.png", virtual_printer::PrinterSettings{.size = *size});
//   links::useLink(preview);
//   OpenSessionWiFi(""); SendString("<RC10,10>Row B, seat 12"); PrintCut(); CloseSessionWiFi();
//   if (!preview->commit()) return tellTheUser(preview->failure());
class PreviewLink : public LocalLink {
  public:
    // More tickets than this are counted only.
    static constexpr std::uint64_t kMaxPictures = 100;

    // Throws std::invalid_argument for a ticket size outside its ranges.
    PreviewLink(std::string path, const virtual_printer::PrinterSettings& settings);

    // Puts the pictures in their places, after close(); true on success.
    bool commit();

    // Tickets that left the printer, those that were only counted included.
    std::uint64_t ticketCount() const { return ticketCount_; }

    // What the printer found wrong with the stream.
    const virtual_printer::ProblemList& problems() const { return printer_.problems(); }

  protected:
    bool begin(const std::string& address) override;
    bool take(std::span<const Byte> bytes) override;
    // Draws the last ticket.
    void end() override;

  private:
    void draw(const virtual_printer::FinishedTicket& ticket);
    bool spoil(const std::string& why);
    void beginAnew();

    std::string path_;
    std::string spoiled_;  // why nothing can be committed any more; "" while it can
    bool committed_ = false;
    std::uint64_t ticketCount_ = 0;
    std::deque<OutputFile> pictures_;  // the first is there before its ticket
    virtual_printer::Printer printer_;
};

// The name of ticket `number` (from 1): "a/ticket.png", "a/ticket-2.png", ...
std::string ticketName(const std::string& path, std::uint64_t number);

}  // namespace tavio::links
