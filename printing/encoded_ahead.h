// Tickets that are encoded by threads of their own before they are asked for.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <optional>
#include <span>
#include <thread>
#include <vector>

#include "tavio/printing/job.h"
#include "tavio/printing/series.h"
#include "tavio/printing/ticket.h"
#include "tavio/printing/tickets_encoder.h"

namespace tavio::printing {

class EncodedAhead {
  public:
    // The tickets and the options must live as long as this. If no thread can be started, next()
    // encodes. Throws std::bad_alloc.
    EncodedAhead(std::span<const Ticket> tickets, const SeriesOptions& options);

    // Waits until the tickets that are being encoded are done; no others are begun.
    ~EncodedAhead();
    EncodedAhead(const EncodedAhead&) = delete;
    EncodedAhead& operator=(const EncodedAhead&) = delete;

    // The next ticket, each alone: its elements' offsets count from its own first byte. None after
    // the last.
    std::optional<EncodedTickets> next() noexcept;

    std::size_t encoded() const noexcept;  // how many are encoded so far

  private:
    void run() noexcept;
    EncodedTickets encode(std::size_t number) noexcept;
    void startThreads(std::size_t count) noexcept;

    std::span<const Ticket> tickets_;
    EncodeOptions options_;
    OpenDocuments documents_;

    mutable std::mutex mutex_;
    std::condition_variable hasRoom_;
    std::condition_variable isEncoded_;
    std::vector<std::optional<EncodedTickets>> slots_;  // of ticket n: n modulo their number
    std::size_t begun_ = 0;                             // tickets whose encoding has begun
    std::size_t encoded_ = 0;                           // tickets
    std::size_t handed_ = 0;                            // tickets that next() has returned
    bool isEnding_ = false;                             // no ticket is begun any more

    std::vector<std::jthread> threads_;  // end before everything that they use
};

}  // namespace tavio::printing
