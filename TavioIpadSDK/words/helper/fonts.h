// The fonts that words may be set in.
#pragma once

#include <optional>
#include <span>
#include <string>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/words/helper/objects.h"

namespace tavio::words_helper {

struct Fonts {
    FontConfig config;
    std::string family;
};

// Finds the fonts of this machine, once for all texts.
void loadFontsOfMachine();

// The fonts of this machine, and the face among them: "sans", "serif" and "mono", or a family that the
// machine has. None if it has not.
std::optional<Fonts> fontsOfMachine(const std::string& face);

// The font of a file and no other; nothing of this machine's settings changes how it looks. None if
// the bytes are no font that words can be set in.
std::optional<Fonts> fontOfFile(std::span<const Byte> file);

// Makes texts in these fonts: solid, without grey, stems of whole dots.
TextContext textContext(const Fonts& fonts);

}  // namespace tavio::words_helper
