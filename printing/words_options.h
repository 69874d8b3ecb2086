// Words: text in any script, set in a face of this machine or of a font file.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "TavioIpadSDK/machine/export.h"
#include "tavio/printing/draw_options.h"
#include "tavio/printing/place.h"
#include "tavio/printing/source.h"

namespace tavio::printing {

//   ticket.words("Café, 26 €", {40, 60}, {.size = 9, .box = Size{300, 80}});
struct TAVIO_API WordsOptions {
    // A family that this machine has, e.g. "DejaVu Sans"; "sans", "serif" and "mono" are always
    // there. Letters that it lacks are taken from other fonts of the machine. A face that is not there
    // is a problem.
    std::string face = "sans";

    // A TrueType or OpenType file, instead of the face. The same file gives the same dots on every
    // machine; letters that it lacks are a problem.
    std::optional<Source> font{};

    // If the font has no such letters, they are made of its plain ones.
    bool isBold = false;
    bool isItalic = false;

    double size = 10;  // points, 1 to 1000

    // Words that do not fit into the box are set smaller, down to this size in points; if they do
    // not fit then, that is a problem that names the box that would do. 0: they are never smaller.
    // They are rather set smaller than broken inside of a word.
    double minSize = 0;

    // Lines are wrapped at its width, between words, and inside of words that are longer than a line.
    // The element is the whole box, as it lies on the ticket. None: the element is as large as the
    // words, with all that the ticket has to the right of and below its place as the room for them.
    std::optional<Size> box{};

    // Of the lines in the box, as they are read; without a box, of the words in their room as well.
    // Lines that run from right to left begin at the right where this is at the left.
    Align align = Align::kTopLeft;

    Turn turn = Turn::k0;  // clockwise, after the words have been set; kAuto is k0

    // The box is black and the letters are white, a quarter of their size away from its left and right
    // edges; without a box, as much is black as the words need.
    bool isWhiteOnBlack = false;
};

}  // namespace tavio::printing
