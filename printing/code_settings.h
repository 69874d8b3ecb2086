// Options that a code cannot have.
#pragma once

#include <optional>

#include "tavio/printing/code_options.h"
#include "tavio/printing/result.h"

namespace tavio::printing {

// kBadSetting, if there is one.
std::optional<Problem> problemOf(CodeKind kind, const CodeOptions& options);

}  // namespace tavio::printing
