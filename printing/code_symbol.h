// A code's modules.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "tavio/printing/code_options.h"
#include "tavio/printing/result.h"

namespace tavio::printing {

struct CodeSymbol {
    std::int32_t columns = 0;
    std::int32_t rows = 0;      // 1 of linear codes
    std::vector<bool> modules;  // rows from the top; true is black

    bool isBlack(std::int32_t row, std::int32_t column) const {
        return modules[static_cast<std::size_t>(row) * static_cast<std::size_t>(columns) +
                       static_cast<std::size_t>(column)];
    }
};

// data: of codeData(). kBadData if they are too many, with how many fit. Throws std::bad_alloc. On any
// thread, on many at once.
Expected<CodeSymbol, Problem> codeSymbol(CodeKind kind, const std::string& data,
                                         Correction correction);

}  // namespace tavio::printing
