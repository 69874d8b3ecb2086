// Printing jobs. A Printer is one printer; a program may have hundreds, each with its own queue.
//
//   Printer printer("tcp://192.168.1.50");
//   PrintResult result = printer.print(*job);
//   if (result.outcome == links::Outcome::kNothingSent) retryLater();
#pragma once

#include <cstddef>
#include <functional>
#include <future>
#include <memory>
#include <span>
#include <string>

#include "TavioIpadSDK/machine/export.h"
#include "tavio/links/deadlines.h"
#include "tavio/printing/job.h"
#include "tavio/printing/print_options.h"
#include "tavio/printing/print_result.h"
#include "tavio/printing/printer_address.h"
#include "tavio/printing/reply.h"
#include "tavio/printing/series.h"

namespace tavio::printing {

struct TAVIO_API PrinterOptions {
    links::Deadlines deadlines = {};  // not used with links of the application's own
    ReplyTable replies = {};
};

// All functions may be called on any thread at any time, and none throws. Jobs are sent one after
// the other in the order of the calls, each over a connection of its own. Nothing is ever sent
// twice.
class TAVIO_API Printer {
  public:
    // address: as in printer_address.h. Nothing is connected yet. With any other text every job
    // ends in kBadAddress.
    explicit Printer(std::string address, PrinterOptions options = {}) noexcept;

    // A printer over links of the application's own. A null function: kBadAddress.
    explicit Printer(LinkMaker makeLink, PrinterOptions options = {}) noexcept;

    // Waits until all submitted jobs are done; call cancel() first to end them. Callbacks must not
    // destroy the printer.
    ~Printer();
    Printer(const Printer&) = delete;
    Printer& operator=(const Printer&) = delete;

    // Sends the job and waits for its end. In a callback of submit() it may wait for ever, for the
    // jobs that were submitted after that one.
    [[nodiscard]] PrintResult print(const Job& job, const PrintOptions& options = {}) noexcept;

    // Encodes and sends the tickets in order over one connection, as one job would be, but each is
    // encoded while those before it are sent. The connection is made when the first is encoded. Waits
    // for its end.
    [[nodiscard]] SeriesResult printSeries(std::span<const Ticket> tickets,
                                           const SeriesOptions& options = {}) noexcept;

    // Sends the job on a thread of the printer's own, which is started for it and ends when no job
    // is left. The future is not valid if there is no memory for it; nothing is sent then.
    [[nodiscard]] std::future<PrintResult> submit(const Job& job,
                                                  const PrintOptions& options = {}) noexcept;

    // The same; `callback` gets the result on that thread, or on the caller's if no thread can be
    // started. Its exceptions are dropped.
    using Callback = std::function<void(const PrintResult&)>;
    void submit(const Job& job, const PrintOptions& options, const Callback& callback) noexcept;

    // Ends the running job as soon as possible, and all that wait; their results say kCancelled.
    // Jobs that come later are printed.
    void cancel() noexcept;

    // The number of jobs that are running or waiting.
    [[nodiscard]] std::size_t pending() const noexcept;

    // Asks for the printer's reply; takes its turn among the jobs.
    [[nodiscard]] StatusResult status() noexcept;

    // The printer's name in messages: its address, "" for links of the application's own.
    const std::string& address() const noexcept;

  private:
    class TAVIO_INTERNAL Impl;
    std::unique_ptr<Impl> impl_;  // null if there was no memory for it
};

}  // namespace tavio::printing
