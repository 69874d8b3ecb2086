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

}  // namespace tavio::virtual_printer
