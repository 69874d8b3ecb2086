// Whether the printer's own face has the letters of a text.
#pragma once

#include <optional>
#include <string>

namespace tavio::tool {

// Why the printer's own face cannot print the text, where words can: a sentence without a full stop
// that names the first letter. None if it can, or if words cannot either.
std::optional<std::string> whyNotInPrinterFace(const std::string& text);

// The points of words that stand for a text in the printer's face: their capitals are about as high
// as those that the virtual printer draws, 7 hundredths of an inch.
inline constexpr double kPrinterFacePoints = 7;

}  // namespace tavio::tool
