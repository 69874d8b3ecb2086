#include "tavio/printing/tickets_encoder.h"

#include <utility>

#include "TavioIpadSDK/encoder/stream_size.h"
#include "tavio/printing/encode_element.h"
#include "tavio/printing/read_source.h"

namespace tavio::printing {

void TicketsEncoder::encode(const Ticket& ticket, std::size_t number) {
    if (encoded_.isStopped) return;
    const auto layout = layoutOf(ticket.settings(), encoding_.options.calibration);
    if (!layout) return add(layout.error(), number, std::nullopt);
    if (ticket.isIncomplete()) {
        return add(Problem{ProblemKind::kOverMemory, 0, {}, "the ticket did not fit in memory"},
                   number, std::nullopt);
    }
    for (std::size_t at = 0; at < ticket.elements().size() && !encoded_.isStopped; ++at)
        encodeOne(ticket.elements()[at], *layout, number, at);
}

void TicketsEncoder::encodeOne(const Element& element, const Layout& layout, std::size_t ticket,
                               std::size_t at) {
    if (encoding_.options.stop.stop_requested()) {
        encoded_.isStopped = true;
        return add(Problem{ProblemKind::kCancelled, 0, {}, "encoding was cancelled"}, ticket, at);
    }
    tellProgress();
    Bytes& bytes = encoded_.job.bytes;
    const std::size_t offset = bytes.size();
    auto parts = appendElement(element, layout, encoding_, bytes);
    if (parts && bytes.size() > encoder::kMaxStreamBytes)
        parts = problem(ProblemKind::kTooLarge, "the job has more than 2^31 - 1 bytes: divide it");
    if (!parts) {
        bytes.resize(offset);
        return add(std::move(parts.error()), ticket, at);
    }
    keep(*parts, ticket, at, offset);
}

void TicketsEncoder::tellProgress() {
    try {
        const auto& progress = encoding_.options.progress;
        if (progress) progress(number_, count_);
    } catch (...) {  // NOLINT(bugprone-empty-catch): nothing depends on it
    }
    ++number_;
}

void TicketsEncoder::keep(EncodedParts& parts, std::size_t ticket, std::size_t at,
                          std::size_t offset) {
    Job::Impl& job = encoded_.job;
    job.elements.push_back(
        {ticket, at, parts.size, parts.rectangle, offset, job.bytes.size() - offset});
    for (Warning& warning : parts.warnings) {
        warning.ticket = ticket;
        warning.element = at;
        job.warnings.push_back(std::move(warning));
    }
    if (parts.page) encoded_.pages.push_back({ticket, at, std::move(*parts.page)});
}

void TicketsEncoder::add(Problem found, std::size_t ticket, std::optional<std::size_t> element) {
    found.ticket = ticket;
    found.element = element;
    encoded_.problems.push_back(std::move(found));
}

}  // namespace tavio::printing
