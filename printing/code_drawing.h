// A symbol's modules as dots.
#pragma once

#include "TavioIpadSDK/sharp/dots.h"
#include "tavio/printing/code_measures.h"
#include "tavio/printing/code_symbol.h"

namespace tavio::printing {

// Squares of dots in rows; a row of a PDF417 code is several modules high.
void drawModules(const CodeSymbol& symbol, const CodeMeasures& measures, std::int32_t rowModules,
                 sharp::Dots& dots);

// Bars. The guard bars of an EAN-13 with text reach into the text's zone.
// reduction: 0 to 1 dot, by which bars are narrower. The last dot of each bar is left out in as many of
// its rows. Bars of modules of one dot are not made narrower.
void drawBars(const CodeSymbol& symbol, const CodeMeasures& measures, bool hasGuards,
              double reduction, sharp::Dots& dots);

}  // namespace tavio::printing
