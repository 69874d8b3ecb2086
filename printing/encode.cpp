#include <exception>
#include <utility>

#include "tavio/printing/encode_noting.h"
#include "tavio/printing/job.h"
#include "tavio/printing/printed_documents.h"
#include "tavio/printing/read_source.h"
#include "tavio/printing/tickets_encoder.h"

namespace tavio::printing {
namespace {

std::size_t elementCountOf(std::span<const Ticket> tickets) {
    std::size_t count = 0;
    for (const Ticket& ticket : tickets) count += ticket.elements().size();
    return count;
}

EncodedTickets encodeAll(std::span<const Ticket> tickets, const EncodeOptions& options) {
    OpenDocuments documents;
    TicketsEncoder encoder({options, documents}, elementCountOf(tickets));
    if (!tickets.empty()) encoder.encoded().job.settings = tickets.front().settings();
    for (std::size_t number = 0; number < tickets.size(); ++number)
        encoder.encode(tickets[number], number);
    return std::move(encoder.encoded());
}

Expected<Job, Problems> jobOf(EncodedTickets encoded) {
    if (!encoded.problems.empty()) return tl::unexpected(std::move(encoded.problems));
    PrintedDocuments documents;
    for (const PrintedPage& page : encoded.pages) documents.add(page);
    for (Warning& warning : documents.warnings())
        encoded.job.warnings.push_back(std::move(warning));
    return Job(std::make_shared<const Job::Impl>(std::move(encoded.job)));
}

}  // namespace

Expected<Job, Problems> encode(std::span<const Ticket> tickets,
                               const EncodeOptions& options) noexcept {
    try {
        return jobOf(encodeAll(tickets, options));
    } catch (const std::exception&) {  // no memory for the job
        return outOfMemory();
    }
}

Expected<Job, Problems> encodeNoting(const Ticket& ticket, const EncodeOptions& options,
                                     std::optional<DocumentPage>& page) {
    EncodedTickets encoded = encodeAll(std::span(&ticket, 1), options);
    if (!encoded.pages.empty()) page = encoded.pages.back().page;
    return jobOf(std::move(encoded));
}

Expected<Job, Problems> encode(const Ticket& ticket, const EncodeOptions& options) noexcept {
    return encode(std::span(&ticket, 1), options);
}

}  // namespace tavio::printing
