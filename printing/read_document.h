// Reading a page's or a picture's file once, and why nothing can be drawn of it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/pictures/stored_picture.h"
#include "TavioIpadSDK/platform/pdf_page.h"
#include "tavio/printing/job.h"
#include "tavio/printing/result.h"
#include "tavio/printing/ticket.h"

namespace tavio::printing {

struct ReadDocument {
    std::shared_ptr<const Bytes> file;
    std::string name;  // in sentences
    bool isPage = false;

    // The same for all elements that print the same document.
    std::string identity;
};

// Problems: those of readSource(), and kUnknownFormat if it may be of any kind and is of none.
Expected<ReadDocument, Problem> readDocument(const element::Document& document,
                                             const EncodeOptions& options);

// None if the picture in memory can be printed.
std::optional<Problem> problemOf(const element::Pixels& pixels);

inline constexpr const char* kPixelsName = "the picture in memory";

tl::unexpected<Problem> noPicture(const std::string& name, pictures::Refusal refusal,
                                  const std::string& why);

// outcome: other than kDrawn. pages: of the document, 0 if not known. A file that is no PDF document at
// all is of an unknown format.
tl::unexpected<Problem> noPage(const ReadDocument& document, platform::PdfOutcome outcome,
                               std::int32_t page, std::int32_t pages);

}  // namespace tavio::printing
