// The sample documents. All of them belong to a concert hall that does not exist.
#pragma once

#include <string>

namespace tavio::examples {

// Each writes one file and throws std::runtime_error when it cannot.

// A ticket of 5.5 by 2 inches. Pages reach the printer at one pixel per point, so it keeps to
// letters and lines that can be told apart at 396 by 144 pixels.
void drawTicket(const std::string& path);

// A square part of a ticket, as wide as the printable width of the same stock held upright: a
// page's width and height change places in portrait, and a square stays what it is. Its frame
// begins at the very left, so that it can stand at any column in landscape.
void drawStub(const std::string& path);

// An evening at the harbour, a photo as far as the printer is concerned. Square for the same
// reason, 576 dots a side: the printable width of that stock.
void drawPhoto(const std::string& path);

// The hall's round seal: black on opaque white, for the printer's logo memory.
void drawSeal(const std::string& path);

}  // namespace tavio::examples
