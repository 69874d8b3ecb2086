#include "tavio/printing/code_symbol.h"

#include <algorithm>
#include <memory>
#include <new>
#include <optional>
#include <string_view>
#include <zint.h>

#include "TavioIpadSDK/platform/utf8.h"
#include "tavio/printing/code_rules.h"
#include "tavio/printing/read_source.h"

namespace tavio::printing {
namespace {

// Tells a reader that text is UTF-8. Without it readers take other text than ASCII for Latin-1, or
// guess.
constexpr int kUtf8Interpretation = 26;

struct Deleter {
    void operator()(zint_symbol* symbol) const { ZBarcode_Delete(symbol); }
};
using Symbol = std::unique_ptr<zint_symbol, Deleter>;

int symbologyOf(CodeKind kind) {
    switch (kind) {
        case CodeKind::kQr:
            return BARCODE_QRCODE;
        case CodeKind::kCode128:
            return BARCODE_CODE128;
        case CodeKind::kEan13:
            return BARCODE_EANX;
        case CodeKind::kItf:
            return BARCODE_C25INTER;
        case CodeKind::kPdf417:
            return BARCODE_PDF417;
        case CodeKind::kAztec:
            return BARCODE_AZTEC;
        case CodeKind::kDataMatrix:
            return BARCODE_DATAMATRIX;
    }
    return 0;
}

bool isAscii(std::string_view text) {
    return std::ranges::none_of(
        text, [](char letter) { return static_cast<unsigned char>(letter) > 127; });
}

Symbol newSymbol(CodeKind kind, std::string_view data, Correction correction) {
    Symbol symbol(ZBarcode_Create());
    if (!symbol) throw std::bad_alloc();
    symbol->symbology = symbologyOf(kind);
    symbol->input_mode = UNICODE_MODE;
    symbol->show_hrt = 0;
    if (kind == CodeKind::kQr) symbol->option_1 = static_cast<int>(correction) + 1;
    if (kind == CodeKind::kDataMatrix) symbol->option_3 = DM_SQUARE;
    if (!rulesOf(kind).isLinear && !isAscii(data)) symbol->eci = kUtf8Interpretation;
    return symbol;
}

CodeSymbol modulesOf(const zint_symbol& symbol) {
    CodeSymbol result{symbol.width, symbol.rows, {}};
    result.modules.reserve(static_cast<std::size_t>(symbol.width) *
                           static_cast<std::size_t>(symbol.rows));
    for (int row = 0; row < symbol.rows; ++row) {
        for (int column = 0; column < symbol.width; ++column)
            result.modules.push_back((symbol.encoded_data[row][column / 8] >> column % 8 & 1) != 0);
    }
    return result;
}

// None if the symbol cannot hold the data.
std::optional<CodeSymbol> encoded(CodeKind kind, std::string_view data, Correction correction) {
    const Symbol symbol = newSymbol(kind, data, correction);
    const int result =
        ZBarcode_Encode(symbol.get(), reinterpret_cast<const unsigned char*>(data.data()),
                        static_cast<int>(data.size()));
    if (result == ZINT_ERROR_MEMORY) throw std::bad_alloc();
    if (result >= ZINT_ERROR || symbol->rows < 1 || symbol->width < 1) return std::nullopt;
    return modulesOf(*symbol);
}

// The same code with the highest correction that makes it no larger.
CodeSymbol moreCorrected(CodeSymbol symbol, std::string_view data, Correction correction) {
    for (auto level = correction; level < Correction::kHigh;) {
        level = static_cast<Correction>(static_cast<int>(level) + 1);
        auto better = encoded(CodeKind::kQr, data, level);
        if (!better || better->columns > symbol.columns) break;
        symbol = std::move(*better);
    }
    return symbol;
}

// The first bytes of the text, at most `count`, without a part of a character at the end.
std::string_view beginning(std::string_view text, std::size_t count) {
    constexpr unsigned kContinuation = 0x80;
    while (count < text.size() &&
           (static_cast<unsigned char>(text[count]) & 0xC0U) == kContinuation)
        --count;
    return text.substr(0, count);
}

// How many bytes of the data a symbol can hold.
std::size_t bytesThatFit(CodeKind kind, std::string_view data, Correction correction) {
    std::size_t fits = 0;
    std::size_t tooMany = data.size();
    while (tooMany - fits > 1) {
        const std::size_t middle = fits + (tooMany - fits) / 2;
        const std::string_view part = beginning(data, middle);
        if (part.empty() || encoded(kind, part, correction)) {
            fits = middle;
        } else {
            tooMany = middle;
        }
    }
    return beginning(data, fits).size();
}

}  // namespace

Expected<CodeSymbol, Problem> codeSymbol(CodeKind kind, const std::string& data,
                                         Correction correction) {
    auto symbol = encoded(kind, data, correction);
    if (!symbol) {
        return problem(ProblemKind::kBadData,
                       rulesOf(kind).name + std::string(" cannot hold ") +
                           std::to_string(data.size()) + " bytes of data, only the first " +
                           std::to_string(bytesThatFit(kind, data, correction)) + ": shorten them");
    }
    if (kind == CodeKind::kQr) return moreCorrected(std::move(*symbol), data, correction);
    return std::move(*symbol);
}

}  // namespace tavio::printing
