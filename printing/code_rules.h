// What the standards of the kinds of codes say about their symbols.
#pragma once

#include <cstdint>

#include "tavio/printing/code_options.h"

namespace tavio::printing {

// White around a symbol, in modules.
struct QuietZone {
    std::int32_t left = 0;
    std::int32_t right = 0;
    std::int32_t above = 0;  // and below
};

struct CodeRules {
    const char* name;         // in sentences
    bool isLinear = false;    // one row of bars
    std::int32_t rowModules;  // the height of a row in modules; without meaning for linear codes
    QuietZone quiet;
};

// Aztec codes need no quiet zone, and Data Matrix one module; scanners find both better with two.
constexpr CodeRules rulesOf(CodeKind kind) {
    switch (kind) {
        case CodeKind::kQr:
            return {"the QR code", false, 1, {4, 4, 4}};
        case CodeKind::kCode128:
            return {"the Code 128", true, 0, {10, 10, 0}};
        case CodeKind::kEan13:
            return {"the EAN-13", true, 0, {11, 7, 0}};
        case CodeKind::kItf:
            return {"the ITF code", true, 0, {10, 10, 0}};
        case CodeKind::kPdf417:
            return {"the PDF417 code", false, 3, {2, 2, 2}};
        case CodeKind::kAztec:
            return {"the Aztec code", false, 1, {2, 2, 2}};
        case CodeKind::kDataMatrix:
            return {"the Data Matrix code", false, 1, {2, 2, 2}};
    }
    return {"the code", false, 1, {}};
}

}  // namespace tavio::printing
