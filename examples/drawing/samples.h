// The sample documents, all of an invented concert hall.
#pragma once

#include <string>

namespace tavio::examples {

// Each writes one file and throws std::runtime_error when it cannot.

// A ticket of 5.5 by 2 inches. Pages are drawn at one pixel per point, so its letters and lines
// must be legible at 396 by 144 pixels.
void drawTicket(const std::string& path);

// A square part of a ticket, as wide as the printable width of the same stock held upright. In
// portrait a page's width and height are swapped, which does not change a square. Its frame begins
// at the left edge, so that it can be printed at any column in landscape.
void drawStub(const std::string& path);

// An evening at the harbour, with the tones of a photo. Square for the same reason, 576 dots a
// side: the printable width of that stock.
void drawPhoto(const std::string& path);

// The hall's round seal: black on opaque white, for the printer's logo memory.
void drawSeal(const std::string& path);

}  // namespace tavio::examples
