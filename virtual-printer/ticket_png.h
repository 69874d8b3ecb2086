// Tickets as PNG files: greyscale, 1 bit per dot, black dots on white, with the resolution.
#pragma once

#include <string>
#include <vector>

#include "tavio/virtual-printer/ticket.h"

namespace tavio::virtual_printer {

struct PngOptions {
    // Turns the ticket so that a portrait print is upright; see Ticket::turnedUpright().
    bool turnedUpright = false;
};

// Replaces `png` by the file's bytes. If there is no memory it returns false, with one sentence in
// `reason`, and `png` is empty.
bool encodeTicketPng(const Ticket& ticket, const PngOptions& options, std::vector<Byte>& png,
                     std::string& reason) noexcept;

// Writes the file, or replaces one of that name. Returns false, with one sentence in `reason`, if
// it cannot be created or written completely; then an incomplete file may be left.
//
//   std::string reason;
//   if (!writeTicketPng(ticket, {}, "ticket.png", reason)) std::cerr << reason << '\n';
bool writeTicketPng(const Ticket& ticket, const PngOptions& options, const std::string& path,
                    std::string& reason) noexcept;

}  // namespace tavio::virtual_printer
