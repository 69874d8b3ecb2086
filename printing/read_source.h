// Reading a document once.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "TavioIpadSDK/machine/bytes.h"
#include "tavio/printing/result.h"
#include "tavio/printing/source.h"

namespace tavio::printing {

// All bytes of the source. Problems: kNotFound, kNotReadable, kTooLarge, kOverMemory. Throws std::bad_alloc.
Expected<std::shared_ptr<const Bytes>, Problem> readSource(const Source& source,
                                                           std::uint64_t maxBytes);

// The source's name in sentences.
std::string shownName(const Source& source);

// A problem that is not yet assigned to an element.
tl::unexpected<Problem> problem(ProblemKind kind, std::string sentence);

// A single problem, kOverMemory; none if there is not even memory for that.
tl::unexpected<Problems> outOfMemory() noexcept;

}  // namespace tavio::printing
