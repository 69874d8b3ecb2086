// Random tickets that both surfaces can print, and what the classic calls send for them.
#pragma once

#include <string>

#include "TavioIpadSDK/machine/bytes.h"
#include "support/random_picture.h"
#include "tavio/printing/job.h"
#include "tavio/printing/ticket.h"

namespace tavio::test {

// One element of a ticket in the terms of both surfaces.
struct RandomElement {
    enum class Kind { kPicture, kPage, kTextFile, kPrintLogo, kStorePicture, kStorePage, kFinish };

    Kind kind = Kind::kPicture;
    Bytes file;                 // a PNG file, or a text
    pictures::Picture picture;  // the same pixels
    platform::PdfPage page;     // of a page
    printing::Place place;
    printing::DrawOptions options;
    std::int32_t logo = 0;
    printing::Finish finish = printing::Finish::kCut;
};

struct RandomTicket {
    printing::TicketSettings settings;
    std::vector<RandomElement> elements;
};

RandomTicket randomTicket(Random& random);

// The ticket as a value of the new surface. Pictures come from bytes or as pixels; pages come from
// the engine that pageEngineOf() gives.
printing::Ticket composed(const RandomTicket& ticket, Random& random);
printing::PageEngine pageEngineOf(const RandomTicket& ticket);

// All bytes that SendFile, DownloadLogo, PrintLogo, PrintCut and PrintNoCut send for the ticket in
// an open session. folder: for its text files. Uses the module-wide state.
Bytes sentClassically(const RandomTicket& ticket, const std::string& folder);

}  // namespace tavio::test
