// Encoding for inspection.
#pragma once

#include <optional>

#include "tavio/printing/encoded_parts.h"
#include "tavio/printing/job.h"

namespace tavio::printing {

// encode() that also tells the page that it encoded last, none if there was none. Throws
// std::bad_alloc.
Expected<Job, Problems> encodeNoting(const Ticket& ticket, const EncodeOptions& options,
                                     std::optional<DocumentPage>& page);

}  // namespace tavio::printing
