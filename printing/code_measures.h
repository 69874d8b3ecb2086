// How large a code is, and which way it lies.
#pragma once

#include <cstdint>

#include "tavio/printing/box.h"
#include "tavio/printing/code_options.h"
#include "tavio/printing/result.h"

namespace tavio::printing {

// The size of a face below bars, but for EAN-13, whose digits grow with its modules.
inline constexpr double kTextPoints = 9;

// What the measures of a code depend on, besides its options.
struct CodeExtent {
    CodeKind kind = CodeKind::kQr;
    std::int32_t columns = 0;       // of its symbol
    std::int32_t rows = 0;          // of its symbol
    std::int32_t resolution = 300;  // dots per inch
};

// In dots, as the code is when it is not turned.
struct CodeMeasures {
    std::int32_t module = 0;
    std::int32_t barHeight = 0;  // of linear codes
    std::int32_t left = 0;       // white to the left of the symbol
    std::int32_t above = 0;
    std::int32_t text = 0;  // the height of the text's zone below the bars; 0 without text
    Size size;              // of all of it
    int quarterTurns = 0;   // clockwise, 0 to 3
};

// Problems: kBadSetting for options that no code can have, kSmallBox with the size that would do.
Expected<CodeMeasures, Problem> codeMeasures(const CodeExtent& extent, const CodeOptions& options,
                                             const Box& box);

}  // namespace tavio::printing
