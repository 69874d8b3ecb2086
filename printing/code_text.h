// A linear code's data in letters below its bars.
#pragma once

#include <string>
#include <vector>

#include "TavioIpadSDK/sharp/dots.h"
#include "tavio/printing/code_measures.h"
#include "tavio/printing/job.h"
#include "tavio/printing/layout.h"
#include "tavio/printing/result.h"

namespace tavio::printing {

// Draws the letters into the dots of a code that is not turned: of an EAN-13 its first digit to the left of
// the bars and two groups between the guard bars, else all letters centred, without control characters.
// Gives warnings of words; problems: those of words. Throws std::bad_alloc.
Expected<std::vector<Warning>, Problem> drawCodeText(CodeKind kind, const std::string& data,
                                                     const CodeMeasures& measures,
                                                     const Layout& layout,
                                                     const EncodeOptions& options,
                                                     sharp::Dots& dots);

}  // namespace tavio::printing
