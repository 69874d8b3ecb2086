// Places, sizes and rectangles on a ticket.
#pragma once

#include <cstdint>

#include "TavioIpadSDK/machine/export.h"

namespace tavio::printing {

// A printer row and column in dots, any signed 32-bit values. In landscape the row counts down from
// the ticket's top and the column from its left. In portrait the row is the distance from the left
// edge of the upright ticket, and the column that from its top.
struct TAVIO_API Place {
    std::int32_t row = 0;
    std::int32_t column = 0;

    bool operator==(const Place&) const = default;
};

// Of something as it is seen on the upright ticket, in both orientations.
struct TAVIO_API Size {
    std::int32_t width = 0;   // dots
    std::int32_t height = 0;  // dots

    bool operator==(const Size&) const = default;
};

// On the upright ticket, in dots from the top left corner of what can be printed (see ticketSize). It
// may reach past the ticket. Drawn the classic way, it is where the element is meant to lie:
// docs/stream.md lists which graphics printers put elsewhere, and a preview (preview.h) shows them
// there.
struct TAVIO_API Rectangle {
    std::int64_t left = 0;
    std::int64_t top = 0;
    Size size;

    bool operator==(const Rectangle&) const = default;
};

}  // namespace tavio::printing
