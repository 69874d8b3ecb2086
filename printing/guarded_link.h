// A link for one job, perhaps of the application's own: an exception of it is a failure.
#pragma once

#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <span>
#include <string>

#include "tavio/links/link.h"
#include "tavio/printing/printer_address.h"
#include "tavio/printing/turn_queue.h"

namespace tavio::printing {

// The failure that the exception stands for: out of memory, or one of another reason, with the
// exception's own text after `what`.
links::Failure failureOf(const std::exception_ptr& exception, const char* what) noexcept;

// Cancelled with the turn. No function throws.
class GuardedLink {
  public:
    // Null counts as a failure.
    GuardedLink(const LinkMaker& makeLink, TurnQueue::Turn& turn) noexcept;
    ~GuardedLink();
    GuardedLink(const GuardedLink&) = delete;
    GuardedLink& operator=(const GuardedLink&) = delete;

    // As of Link; after an exception nothing more is opened, sent or read.
    bool open() noexcept;
    bool write(std::span<const Byte> bytes) noexcept;
    bool drain() noexcept;
    Text read() noexcept;
    void close() noexcept;
    void observeProgress(links::ProgressObserver observer) noexcept;

    // The link's report of a job of `total` bytes, whether or not all of them were offered. If it
    // is not known how many bytes were accepted, all may have been.
    links::LinkReport report(std::uint64_t total) noexcept;

  private:
    template <typename Operation>
    void guard(const Operation& operation) noexcept;

    TurnQueue::Turn& turn_;
    std::shared_ptr<links::Link> link_;
    links::Failure thrown_;        // the first exception
    bool hasWritten_ = false;      // bytes may have left
    bool isWriteComplete_ = true;  // else a write was ended by an exception
};

}  // namespace tavio::printing
