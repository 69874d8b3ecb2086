// The warnings about a page or picture that is printed or stored the sharp way.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "TavioIpadSDK/sharp/dots.h"
#include "tavio/printing/layout.h"
#include "tavio/printing/result.h"
#include "tavio/printing/sharp_drawing.h"

namespace tavio::printing {

struct SharpGraphics {
    const SharpDrawing& drawing;
    const sharp::Dots& dots;
    Rectangle rectangle;
};

// Not yet assigned to an element. Throws std::bad_alloc.
std::vector<Warning> sharpWarnings(const SharpGraphics& graphics, const Layout& layout);

// Scanners read a code from 3 dots a module on.
inline constexpr std::int32_t kMinModuleDots = 3;

// That a code's modules are too small to be scanned. subject: "the QR code has modules".
std::optional<Warning> smallModule(const std::string& subject, double dots);

// That a page has text whose face is printed `dots` high, if that is too small to be read; 0 for a
// page without text.
std::optional<Warning> smallText(const std::string& name, double dots);

}  // namespace tavio::printing
