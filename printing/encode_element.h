// Encoding one element of a ticket.
#pragma once

#include "TavioIpadSDK/machine/bytes.h"
#include "tavio/printing/encoded_parts.h"
#include "tavio/printing/layout.h"
#include "tavio/printing/open_documents.h"
#include "tavio/printing/result.h"
#include "tavio/printing/ticket.h"

namespace tavio::printing {

// Appends the element's bytes. After a problem `bytes` may have some of them. The problem is not yet
// assigned to an element. Throws only what the application's functions throw.
Expected<EncodedParts, Problem> appendElement(const Element& element, const Layout& layout,
                                              const Encoding& encoding, Bytes& bytes);

}  // namespace tavio::printing
