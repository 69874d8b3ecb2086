// Tickets as PNG files: greyscale, 1 bit per dot, black dots on white, with the resolution.
#pragma once

#include <string>
#include <vector>

#include "tavio/virtual-printer/ticket.h"

namespace tavio::virtual_printer {

struct PngOptions {
    // Turns the ticket so that a portrait print reads normally; see Ticket::turnedUpright().
    bool turnedUpright = false;
};

// Replaces `png` by the file's bytes. False, with one sentence in `reason` and `png` empty, when
// that fails (memory).
bool encodeTicketPng(const Ticket& ticket, const PngOptions& options, std::vector<Byte>& png,
                     std::string& reason) noexcept;

// Writes the file, replacing one of that name. False, with one sentence in `reason`, when it cannot
// be created or written completely; an incomplete file may be left then.
//
//   std::string reason;
//   if (!writeTicketPng(ticket, {}, "ticket.png", reason)) std::cerr << reason << '\n';
bool writeTicketPng(const Ticket& ticket, const PngOptions& options, const std::string& path,
                    std::string& reason) noexcept;

}  // namespace tavio::virtual_printer
