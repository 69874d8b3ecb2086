// Encoding tickets one after the other.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "tavio/printing/job.h"
#include "tavio/printing/layout.h"
#include "tavio/printing/open_documents.h"
#include "tavio/printing/printed_documents.h"
#include "tavio/printing/result.h"
#include "tavio/printing/ticket.h"

namespace tavio::printing {

// What has become of some tickets.
struct EncodedTickets {
    Job::Impl job;                   // without warnings of pages that are not printed
    Problems problems;               // if there are any, the job has gaps
    std::vector<PrintedPage> pages;  // in the order of printing
    bool isStopped = false;          // on request; the last problem says so
};

// Keeps going after a problem, so that all are told.
class TicketsEncoder {
  public:
    // elementCount: of all tickets, for EncodeOptions::progress.
    TicketsEncoder(const Encoding& encoding, std::size_t elementCount)
        : encoding_(encoding), count_(elementCount) {}

    // Appends the ticket. number: among all tickets, from 0. After a stop it does nothing. Throws
    // std::bad_alloc.
    void encode(const Ticket& ticket, std::size_t number);

    EncodedTickets& encoded() { return encoded_; }

  private:
    void encodeOne(const Element& element, const Layout& layout, std::size_t ticket,
                   std::size_t at);
    void tellProgress();
    void keep(EncodedParts& parts, std::size_t ticket, std::size_t at, std::size_t offset);
    void add(Problem found, std::size_t ticket, std::optional<std::size_t> element);

    Encoding encoding_;
    std::size_t count_;
    std::size_t number_ = 0;  // of the next element
    EncodedTickets encoded_;
};

}  // namespace tavio::printing
