// Plain text in the printer's own face.
#pragma once

#include <string>
#include <string_view>

#include "tavio/printing/layout.h"
#include "tavio/printing/result.h"
#include "tavio/printing/ticket.h"

namespace tavio::printing {

// The bytes of a plain text at a place: path, orientation, position, then the text, in which there
// is no command. Problems: kNotUtf8, and kUnprintableLetter for the first letter that the printer's
// face does not have.
Expected<std::string, Problem> plainText(std::string_view text, const Layout& layout, Place place);

}  // namespace tavio::printing
