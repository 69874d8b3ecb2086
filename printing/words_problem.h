// Why words cannot be drawn.
#pragma once

#include <optional>

#include "TavioIpadSDK/words/draw_words.h"
#include "tavio/printing/result.h"
#include "tavio/printing/ticket.h"

namespace tavio::printing {

// Nothing is said of an element whose text, face, sizes and box may be asked for. kBadSetting,
// kNotUtf8, kUnprintableLetter for control characters, kNoDots for an empty text, kNoFace, kTooLarge.
std::optional<Problem> problemOf(const element::Words& words);

// drawn: other than kDrawn. isTurned: the box of the answer lies on its side.
tl::unexpected<Problem> wordsProblem(const words::DrawnWords& drawn, const element::Words& words,
                                     bool isTurned);

}  // namespace tavio::printing
