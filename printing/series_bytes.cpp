#include "tavio/printing/series_bytes.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "tavio/printing/link_result.h"
#include "tavio/printing/read_source.h"

namespace tavio::printing {

SeriesBytes::SeriesBytes(std::span<const Ticket> tickets, const SeriesOptions& options)
    : options_(options), count_(tickets.size()), ahead_(tickets, options) {
    ends_.reserve(count_);
    if (!options.progress) return;
    progress_ = [this](std::uint64_t accepted) {
        options_.progress({sentTickets(accepted), ahead_.encoded(), count_, accepted});
    };
}

std::optional<std::span<const Byte>> SeriesBytes::next() noexcept {
    while (!isEnded_) {
        std::optional<EncodedTickets> ticket = ahead_.next();
        if (!ticket) return std::nullopt;
        isEnded_ = ticket->isStopped || !ticket->problems.empty();
        problems_ = std::move(ticket->problems);
        if (isEnded_) break;
        try {
            if (append(*ticket)) return piece_;
        } catch (const std::exception&) {
            isEnded_ = true;
            problems_ = outOfMemory().value();
        }
    }
    return std::nullopt;
}

// False if the ticket has no bytes.
bool SeriesBytes::append(EncodedTickets& ticket) {
    std::vector<EncodedElement>& elements = ticket.job.elements;
    elements_.reserve(elements_.size() + elements.size());
    fates_.resize(elements_.size() + elements.size());
    warnings_.insert(warnings_.end(), std::move_iterator(ticket.job.warnings.begin()),
                     std::move_iterator(ticket.job.warnings.end()));
    for (const PrintedPage& page : ticket.pages) documents_.add(page);

    for (EncodedElement& element : elements) {
        element.offset += total_;
        elements_.push_back(element);
    }
    piece_ = std::move(ticket.job.bytes);
    total_ += piece_.size();
    ends_.push_back(total_);
    return !piece_.empty();
}

std::size_t SeriesBytes::sentTickets(std::uint64_t accepted) const noexcept {
    const auto end = std::ranges::upper_bound(ends_, accepted);
    return static_cast<std::size_t>(end - ends_.begin());
}

// After a problem the pages that are missing are no surprise.
void SeriesBytes::warnOfMorePages() noexcept {
    if (isEnded_ || ends_.size() < count_) return;
    try {
        for (Warning& warning : documents_.warnings()) warnings_.push_back(std::move(warning));
    } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): all is printed without it
    }
}

SeriesResult SeriesBytes::take(PrintResult print) noexcept {
    warnOfMorePages();
    SeriesResult result;
    result.tickets = count_;
    result.sentTickets = sentTickets(print.accepted);
    result.print = std::move(print);
    result.elements = std::move(elements_);
    result.warnings = std::move(warnings_);
    result.problems = std::move(problems_);
    std::vector<Remark>& remarks = result.print.remarks;
    if (isEnded_ && result.print.has(RemarkKind::kEmptyJob)) remarks.clear();
    if (isEnded_ && result.problems.empty())
        addRemark(remarks, RemarkKind::kOutOfMemory, "out of memory");
    return result;
}

}  // namespace tavio::printing
