#include <algorithm>
#include <exception>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "TavioIpadSDK/encoder/stream_size.h"
#include "tavio/printing/encode_element.h"
#include "tavio/printing/encode_noting.h"
#include "tavio/printing/job.h"
#include "tavio/printing/read_source.h"

namespace tavio::printing {
namespace {

// A document of several pages, and those that are printed.
struct PrintedDocument {
    std::string identity;  // as in DocumentPage
    std::string name;
    std::int32_t pages = 0;
    std::set<std::int32_t> printed;
    std::size_t ticket = 0;  // where it is printed first
    std::size_t element = 0;
};

// Encodes tickets one after the other; keeps going after a problem, so that all are told.
class TicketsEncoder {
  public:
    TicketsEncoder(std::span<const Ticket> tickets, const EncodeOptions& options)
        : tickets_(tickets), options_(options) {
        for (const Ticket& ticket : tickets) count_ += ticket.elements().size();
    }

    Expected<Job, Problems> encode() {
        if (!tickets_.empty()) job_.settings = tickets_.front().settings();
        for (std::size_t index = 0; index < tickets_.size() && !isStopped_; ++index)
            encodeTicket(index);
        if (!problems_.empty()) return tl::unexpected(std::move(problems_));
        warnOfMorePages();
        return Job(std::make_shared<const Job::Impl>(std::move(job_)));
    }

    // The page that was encoded last, none if there was none.
    const std::optional<DocumentPage>& lastPage() const { return lastPage_; }

  private:
    void encodeTicket(std::size_t index) {
        const Ticket& ticket = tickets_[index];
        const auto layout = layoutOf(ticket.settings());
        if (!layout) return add(layout.error(), index, std::nullopt);
        if (ticket.isIncomplete()) {
            return add(Problem{ProblemKind::kOverMemory, 0, {}, "the ticket did not fit in memory"},
                       index, std::nullopt);
        }
        for (std::size_t at = 0; at < ticket.elements().size() && !isStopped_; ++at)
            encodeOne(ticket.elements()[at], *layout, index, at);
    }

    void encodeOne(const Element& element, const Layout& layout, std::size_t ticket,
                   std::size_t at) {
        if (options_.stop.stop_requested()) {
            isStopped_ = true;
            return add(Problem{ProblemKind::kCancelled, 0, {}, "encoding was cancelled"}, ticket,
                       at);
        }
        tellProgress();
        const std::size_t offset = job_.bytes.size();
        auto encoded = appendElement(element, layout, options_, job_.bytes);
        if (encoded && job_.bytes.size() > encoder::kMaxStreamBytes) {
            encoded =
                problem(ProblemKind::kTooLarge, "the job has more than 2^31 - 1 bytes: divide it");
        }
        if (!encoded) {
            job_.bytes.resize(offset);
            return add(std::move(encoded.error()), ticket, at);
        }
        keep(*encoded, ticket, at, offset);
    }

    void tellProgress() {
        try {
            if (options_.progress) options_.progress(number_, count_);
        } catch (...) {  // NOLINT(bugprone-empty-catch): nothing depends on it
        }
        ++number_;
    }

    void keep(EncodedParts& parts, std::size_t ticket, std::size_t at, std::size_t offset) {
        job_.elements.push_back(
            {ticket, at, parts.size, parts.rectangle, offset, job_.bytes.size() - offset});
        for (Warning& warning : parts.warnings) {
            warning.ticket = ticket;
            warning.element = at;
            job_.warnings.push_back(std::move(warning));
        }
        if (!parts.page) return;
        if (parts.page->pages > 1)
            documentOf(*parts.page, ticket, at).printed.insert(parts.page->page);
        lastPage_ = std::move(parts.page);
    }

    PrintedDocument& documentOf(const DocumentPage& page, std::size_t ticket, std::size_t at) {
        const auto known = std::ranges::find(documents_, page.identity, &PrintedDocument::identity);
        if (known != documents_.end()) return *known;
        return documents_.emplace_back(
            PrintedDocument{page.identity, page.name, page.pages, {}, ticket, at});
    }

    void warnOfMorePages() {
        for (const PrintedDocument& document : documents_) {
            const std::int64_t rest =
                document.pages - static_cast<std::int64_t>(document.printed.size());
            if (rest <= 0) continue;
            job_.warnings.push_back(
                {WarningKind::kMorePages, document.ticket, document.element, rest,
                 document.name + " has " + std::to_string(document.pages) + " pages, of which " +
                     std::to_string(rest) + (rest == 1 ? " is" : " are") + " not printed"});
        }
    }

    void add(Problem found, std::size_t ticket, std::optional<std::size_t> element) {
        found.ticket = ticket;
        found.element = element;
        problems_.push_back(std::move(found));
    }

    std::span<const Ticket> tickets_;
    const EncodeOptions& options_;
    std::size_t count_ = 0;   // of all elements
    std::size_t number_ = 0;  // of the next element
    bool isStopped_ = false;
    Job::Impl job_;
    Problems problems_;
    std::vector<PrintedDocument> documents_;  // in the order of printing
    std::optional<DocumentPage> lastPage_;
};

}  // namespace

Expected<Job, Problems> encode(std::span<const Ticket> tickets,
                               const EncodeOptions& options) noexcept {
    try {
        return TicketsEncoder(tickets, options).encode();
    } catch (const std::exception&) {  // no memory for the job
        return outOfMemory();
    }
}

Expected<Job, Problems> encodeNoting(const Ticket& ticket, const EncodeOptions& options,
                                     std::optional<DocumentPage>& page) {
    TicketsEncoder encoder(std::span(&ticket, 1), options);
    auto job = encoder.encode();
    page = encoder.lastPage();
    return job;
}

Expected<Job, Problems> encode(const Ticket& ticket, const EncodeOptions& options) noexcept {
    return encode(std::span(&ticket, 1), options);
}

}  // namespace tavio::printing
