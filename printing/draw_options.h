// How a page or a picture is made into dots.
//
// There are two ways. The sharp one is what a new application wants: pages are drawn at the printer's
// resolution, black and white stay solid, and every dot is printed at its place. The classic one
// gives exactly the bytes of the classic calls (TavioIpadSDK.h), with all that they leave out.
#pragma once

#include <cstdint>
#include <optional>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/machine/export.h"
#include "TavioIpadSDK/sharp/options.h"

namespace tavio::printing {

enum class BlackAndWhite : std::uint8_t {
    kDithered,   // error diffusion
    kThreshold,  // dark pixels black, light ones white
};

using sharp::Fit;   // kShrink, kContain, kCover, kStretch, kActual
using sharp::Tone;  // brightness, contrast, gamma, dotGain
using sharp::Turn;  // kAuto, k0, k90, k180, k270

// Where a page or picture lies in its box if it does not fill it.
enum class Align : std::uint8_t {
    kTopLeft,
    kTop,
    kTopRight,
    kLeft,
    kCentre,
    kRight,
    kBottomLeft,
    kBottom,
    kBottomRight,
};

// The classic way. A page is drawn at one pixel a point and resampled.
struct TAVIO_API Classic {
    bool scaled = false;  // to the stock's size; else its own size (a pixel is a dot)

    bool operator==(const Classic&) const = default;
};

//   ticket.picture(photo, {}, {.fit = Fit::kCover, .margin = 20});
//   ticket.page(document, {}, {.page = 2, .blackAndWhite = BlackAndWhite::kThreshold});
//   ticket.page(document, {}, {.classic = Classic{}});
struct TAVIO_API DrawOptions {
    std::int32_t page = 1;  // of a document, from 1

    BlackAndWhite blackAndWhite = BlackAndWhite::kDithered;

    // The box is what the ticket has to the right of and below the element's place, less the margin
    // on all sides. A logo's box is the whole ticket.
    Fit fit = Fit::kShrink;
    Turn turn = Turn::kAuto;
    Align align = Align::kTopLeft;
    std::int32_t margin = 0;  // dots, 0 or more

    Byte threshold = 128;  // of kThreshold: darker grey values, 0 to 255, are black
    Tone tone{};

    // If present, the classic way. All other options but page and blackAndWhite must be as they are
    // here by default, else there is a kBadSetting.
    std::optional<Classic> classic{};

    bool operator==(const DrawOptions&) const = default;
};

}  // namespace tavio::printing
