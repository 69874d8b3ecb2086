// The data of codes, checked before a symbol is made of them.
#pragma once

#include <string>

#include "tavio/printing/code_options.h"
#include "tavio/printing/result.h"

namespace tavio::printing {

// The data as the symbol holds them: an EAN-13 with its last digit, an ITF code with an even number of
// digits. The problem is kBadData.
Expected<std::string, Problem> codeData(CodeKind kind, const std::string& data);

}  // namespace tavio::printing
