// Words: text in any script, set in a face of this machine or of a file.
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
    // there. With a font file: not used. A face that is not there is a problem.
    std::string face = "sans";

    // A TrueType or OpenType file. The same file gives the same dots on every machine; letters that
    // it lacks are a problem.
    std::optional<Source> font{};

    bool isBold = false;
    bool isItalic = false;

    double size = 10;  // points, 1 to 1000

    // Words that do not fit into the box are set smaller, down to this size in points; if they do
    // not fit then, that is a problem that names the box that would do. 0: they are never smaller.
    double minSize = 0;

    // Lines are wrapped at its width. None: what the ticket has to the right of and below the
    // element's place.
    std::optional<Size> box{};
    Align align = Align::kTopLeft;  // of the lines in the box
    Turn turn = Turn::k0;           // clockwise; kAuto is k0

    // The box is black and the letters are white; without a box, as much as the words need.
    bool isWhiteOnBlack = false;
};

}  // namespace tavio::printing
