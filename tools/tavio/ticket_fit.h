// Checking whether a picture fits on the ticket.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "TavioIpadSDK/intake/target_size.h"
#include "tools/tavio/extension.h"
#include "tools/tavio/options.h"

namespace tavio::tool {

// The size of the upright ticket in dots. In portrait the width is the printable one, which is a
// little less than the paper's.
intake::DotSize ticketDots(const Settings& settings);

// The warnings about a picture or page of `size` dots: nothing of it prints (a print needs 8 rows,
// a logo 16), or it reaches past the ticket. For a logo, whose place is not known yet, row and
// column are 0. An empty size gives no warning: the library refuses it with a notice. Sentences
// without a full stop.
std::vector<std::string> fitWarnings(intake::DotSize size, Use use, std::int32_t row,
                                     std::int32_t column, const Settings& settings);

}  // namespace tavio::tool
