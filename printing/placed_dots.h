// Dots at their place on a ticket, and the printer's graphics of them.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/sharp/dots.h"
#include "tavio/printing/encoded_parts.h"
#include "tavio/printing/layout.h"
#include "tavio/printing/result.h"

namespace tavio::printing {

struct PlacedDots {
    sharp::Dots dots;
    Rectangle rectangle;            // of the dots' size
    std::string name;               // in sentences
    std::vector<Warning> warnings;  // not yet assigned to an element
};

// kBadPlace if the printer cannot name the places of all dots in the rectangle. cure: ends the sentence.
std::optional<Problem> problemOfPlace(const std::string& name, const Rectangle& rectangle,
                                      const Layout& layout,
                                      const char* cure = "move it, or make it smaller");

// kTooLarge: what is drawn comes to more than can be printed.
tl::unexpected<Problem> tooLarge(const std::string& name, Size size);

// Appends the commands that print the dots in the rectangle, which must be one that can be placed, moved
// as the printer's calibration says. White dots may come to lie where the printer has no rows or
// columns; kBadPlace if black ones do. kTooLarge. Throws std::bad_alloc.
std::optional<Problem> appendDots(const sharp::Dots& dots, const Rectangle& rectangle,
                                  const std::string& name, const Layout& layout, Bytes& bytes);

// Appends the commands that print the dots. Problems: those above. Throws std::bad_alloc.
Expected<EncodedParts, Problem> appendPlaced(PlacedDots placed, const Layout& layout, Bytes& bytes);

}  // namespace tavio::printing
