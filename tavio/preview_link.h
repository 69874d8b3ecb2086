// A link to a printer in memory, whose tickets become PNG files.
#pragma once

#include <cstdint>
#include <deque>
#include <string>

#include "links/link.h"
#include "links/output_file.h"
#include "tavio/options.h"
#include "virtual-printer/printer.h"

namespace tavio::tool {

// The first ticket is written to the path, the next ones to names with a number: ticket.png,
// ticket-2.png, ticket-3.png, ... A portrait ticket is turned upright. No file appears or is
// replaced before commit().
class PreviewLink : public links::Link {
  public:
    // More tickets than this are counted only.
    static constexpr std::uint64_t kMostPictures = 100;

    PreviewLink(std::string path, const Settings& settings);

    bool open(const std::string& address) override;
    bool write(std::span<const Byte> bytes) override;
    Text read() override { return std::nullopt; }
    // Draws the last ticket.
    void close() override;
    std::string failure() const override { return failure_; }

    // Puts the pictures in their places, after close(); true on success.
    bool commit();

    // Tickets that left the printer, those that were only counted included.
    std::uint64_t ticketCount() const { return ticketCount_; }

    // What the printer found wrong with the stream.
    const virtual_printer::ProblemList& problems() const { return printer_.problems(); }

  private:
    void take(const virtual_printer::FinishedTicket& ticket);
    bool fail(const std::string& why);

    std::string path_;
    std::string failure_;
    bool open_ = false;
    std::uint64_t ticketCount_ = 0;
    std::deque<links::OutputFile> pictures_;  // the first is there before its ticket
    virtual_printer::Printer printer_;
};

// The name of ticket `number` (from 1): "a/ticket.png", "a/ticket-2.png", ...
std::string ticketName(const std::string& path, std::uint64_t number);

}  // namespace tavio::tool
