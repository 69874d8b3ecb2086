#include "tavio/printing/code_options.h"

namespace tavio::printing {

const char* nameOf(CodeKind kind) noexcept {
    switch (kind) {
        case CodeKind::kQr:
            return "qr";
        case CodeKind::kCode128:
            return "code128";
        case CodeKind::kEan13:
            return "ean13";
        case CodeKind::kItf:
            return "itf";
        case CodeKind::kPdf417:
            return "pdf417";
        case CodeKind::kAztec:
            return "aztec";
        case CodeKind::kDataMatrix:
            return "datamatrix";
    }
    return "";
}

}  // namespace tavio::printing
