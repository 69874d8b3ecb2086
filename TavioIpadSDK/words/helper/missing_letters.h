// The letters that no font has.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "TavioIpadSDK/words/helper/objects.h"

namespace tavio::words_helper {

// The first code points of the set text that no font has, at most `max`, each once.
std::vector<std::uint32_t> missingLetters(PangoLayout* layout, std::size_t max);

}  // namespace tavio::words_helper
