// The bytes of a series of tickets, as they are encoded.
#pragma once

#include "tavio/printing/encoded_ahead.h"
#include "tavio/printing/job_bytes.h"
#include "tavio/printing/printed_documents.h"
#include "tavio/printing/series.h"

namespace tavio::printing {

class SeriesBytes : public JobBytes {
  public:
    // The tickets and the options must live as long as this. Throws std::bad_alloc.
    SeriesBytes(std::span<const Ticket> tickets, const SeriesOptions& options);

    std::optional<std::span<const Byte>> next() noexcept override;
    std::uint64_t total() const noexcept override { return total_; }
    std::span<const EncodedElement> elements() const noexcept override { return elements_; }
    std::vector<ElementFate>& fates() noexcept override { return fates_; }
    const std::function<void(std::uint64_t)>& progress() const noexcept override {
        return progress_;
    }

    // The result, with `print`, when no more is sent.
    SeriesResult take(PrintResult print) noexcept;

  private:
    bool append(EncodedTickets& ticket);
    void warnOfMorePages() noexcept;
    std::size_t sentTickets(std::uint64_t accepted) const noexcept;

    const SeriesOptions& options_;
    std::size_t count_;  // of all tickets
    EncodedAhead ahead_;
    Bytes piece_;                      // the bytes of the present ticket
    std::uint64_t total_ = 0;          // bytes of the tickets so far
    std::vector<std::uint64_t> ends_;  // of each ticket so far: where its bytes end
    std::vector<EncodedElement> elements_;
    std::vector<ElementFate> fates_;
    std::vector<Warning> warnings_;
    PrintedDocuments documents_;
    Problems problems_;
    bool isEnded_ = false;  // by a problem
    std::function<void(std::uint64_t)> progress_;
};

}  // namespace tavio::printing
