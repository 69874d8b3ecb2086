// Codes for scanners, drawn on the grid of dots: each module is a whole number of dots.
#pragma once

#include <cstdint>
#include <optional>
#include <variant>

#include "TavioIpadSDK/machine/export.h"
#include "tavio/printing/draw_options.h"
#include "tavio/printing/place.h"

namespace tavio::printing {

enum class CodeKind : std::uint8_t {
    kQr,          // UTF-8 text
    kCode128,     // characters from U+0000 to U+00FF
    kEan13,       // 12 digits, or 13 of which the last is right
    kItf,         // an even number of digits; one with an odd number gets a 0 before it
    kPdf417,      // UTF-8 text
    kAztec,       // UTF-8 text
    kDataMatrix,  // UTF-8 text
};

// The names as they stand on command lines and in messages: "qr", "code128", "datamatrix".
TAVIO_API const char* nameOf(CodeKind kind) noexcept;

// About how much of a QR code may be damaged: 7, 15, 25 or 30 percent. Higher levels need larger codes.
enum class Correction : std::uint8_t { kLow, kMedium, kQuartile, kHigh };

// ---- How large --------------------------------------------------------------------------------

// A module is this many dots wide, 1 or more. Scanners want 3 or more.
struct TAVIO_API ModuleDots {
    std::int32_t dots = 3;

    bool operator==(const ModuleDots&) const = default;
};

// A module is at least this wide: the nearest whole number of dots that is not smaller.
struct TAVIO_API ModuleMillimetres {
    double millimetres = 0.33;

    bool operator==(const ModuleMillimetres&) const = default;
};

// The symbol without its quiet zone is at least this wide, as it stands when it is not turned.
struct TAVIO_API WidthMillimetres {
    double millimetres = 25;

    bool operator==(const WidthMillimetres&) const = default;
};

// As large as the box allows.
struct TAVIO_API LargestInBox {
    bool operator==(const LargestInBox&) const = default;
};

using CodeSize = std::variant<ModuleMillimetres, ModuleDots, WidthMillimetres, LargestInBox>;

// ---- All options ------------------------------------------------------------------------------

//   ticket.code(CodeKind::kQr, "https://example.org/t/4711", {20, 1200}, {.size = ModuleDots{6}});
//   ticket.code(CodeKind::kCode128, "4711-0815", {}, {.turn = Turn::k90, .hasText = true});
struct TAVIO_API CodeOptions {
    CodeSize size = ModuleMillimetres{};

    // The element must fit into it, quiet zone and text included. None: what the ticket has to the
    // right of and below the element's place.
    std::optional<Size> box{};
    Turn turn =
        Turn::k0;  // kAuto: a quarter turn if the element only fits that way, or is larger so
    Align align = Align::kTopLeft;  // in the box

    bool hasQuietZone = true;  // else the application sees to the white around the symbol
    bool hasText = false;  // its data in letters below it; of linear codes only. That of an EAN-13
                           // lies in its quiet zone, too

    // Of linear codes: the height of the bars in dots; 0 for 15 % of the symbol's width, at least
    // 6.5 mm (of EAN-13: as its standard has it), and less if the box has less, down to 3 mm.
    std::int32_t barHeight = 0;

    // Of linear codes: how much narrower than their modules the bars are printed, in dots, 0 to 1,
    // because thermal dots spread. A part of a dot is taken off in as many of the rows. None: none,
    // or half a dot if the printer's calibration (EncodeOptions::calibration) has a tone of 8 or 9.
    std::optional<double> barReduction{};

    // Of QR codes: at least this much; more where the code becomes no larger by it.
    Correction correction = Correction::kMedium;

    bool operator==(const CodeOptions&) const = default;
};

}  // namespace tavio::printing
