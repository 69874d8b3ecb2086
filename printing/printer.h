// Printing jobs. A Printer is one printer; a program may have hundreds, each with its own queue.
//
//   Printer printer("tcp://192.168.1.50");
//   PrintResult result = printer.print(*job);
//   if (result.outcome == links::Outcome::kNothingSent) retryLater();
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "TavioIpadSDK/machine/export.h"
#include "TavioIpadSDK/platform/text.h"
#include "tavio/links/deadlines.h"
#include "tavio/links/link.h"
#include "tavio/links/link_report.h"
#include "tavio/printing/job.h"
#include "tavio/printing/reply.h"

namespace tavio::printing {

// ---- The result of a job ------------------------------------------------------------------------

enum class RemarkKind : std::uint8_t {
    kBadAddress,      // the printer's address is none
    kNotReached,      // no connection to the printer
    kTimeOut,         // the printer took or acknowledged no byte in time
    kBrokenOff,       // the connection broke off
    kCancelled,       // cancel() was called
    kNotReady,        // the printer did not say that it is ready, so nothing was sent
    kNotConfirmed,    // all was sent, but the printer did not confirm it
    kEmptyJob,        // the job has no bytes
    kLinkFailed,      // the link failed for another reason
    kEndedEarly,      // all was sent, but the printer ended the connection in an unusual way
    kNoThread,        // submit() got no thread
    kCallbackFailed,  // the callback of submit() threw an exception
};

struct TAVIO_API Remark {
    RemarkKind kind = RemarkKind::kLinkFailed;
    std::string sentence;  // without a full stop
};

enum class ElementFate : std::uint8_t {
    kNotSent,     // no byte of it has left
    kPartlySent,  // some bytes of it have left, perhaps all
    kSent,        // all of it has left; it is not known whether it has arrived
    kArrived,     // all of it has surely arrived at the printer's system
};

struct TAVIO_API PrintResult {
    links::Outcome outcome = links::Outcome::kNothingSent;

    // Bytes of the job, those that the operating system took, and those that have surely arrived
    // (none if the kind of link cannot tell): acknowledged <= accepted <= total.
    std::uint64_t total = 0;
    std::uint64_t accepted = 0;
    std::optional<std::uint64_t> acknowledged;

    // One for each of Job::elements().
    std::vector<ElementFate> elements;

    // The printer's reply, no text if it sent none, and what it means by the reply table.
    Text reply;
    PrinterState state = PrinterState::kUnknown;

    // What went wrong and what is unusual, in the order in which it came; empty after a plain
    // success.
    std::vector<Remark> remarks;

    // True if all of it was sent and everything that was demanded was confirmed.
    bool isGood() const;

    bool has(RemarkKind kind) const;

    // One line without a full stop, as links::describe().
    std::string describe() const;
};

struct TAVIO_API StatusResult {
    Text reply;  // no text if there is none
    PrinterState state = PrinterState::kUnknown;
    std::vector<Remark> remarks;
};

// The names as they stand in JSON and logs: "not-reached", "arrived", "nothing-sent".
TAVIO_API const char* nameOf(RemarkKind kind) noexcept;
TAVIO_API const char* nameOf(ElementFate fate) noexcept;
TAVIO_API const char* nameOf(links::Outcome outcome) noexcept;

// ---- Options ------------------------------------------------------------------------------------

struct TAVIO_API PrinterOptions {
    links::Deadlines deadlines;  // not used with a link of the application's own
    ReplyTable replies;
};

// What the printer has to confirm. Without a reply table any reply confirms; with one, only a reply
// that means kReady.
struct TAVIO_API PrintOptions {
    bool readyBefore = false;  // else nothing is sent: kNotReady
    bool readyAfter = false;   // else the remark kNotConfirmed

    // Called while bytes are sent, on the thread that sends: bytes sent so far, bytes of the job.
    std::function<void(std::uint64_t sent, std::uint64_t total)> progress;
};

// ---- The printer --------------------------------------------------------------------------------

// Makes the link for one job; called on the thread that sends. It must not return null.
using LinkMaker = std::function<std::shared_ptr<links::Link>()>;

// All functions may be called on any thread at any time, and none throws. Jobs are sent one after the
// other in the order of the calls, each over a connection of its own. Nothing is ever sent twice.
class TAVIO_API Printer {
  public:
    // address: "tcp://HOST[:PORT]" (port 9100 if not given), "bt://AA:BB:CC:DD:EE:FF[/CHANNEL]" or
    // "tty:DEVICE[?baud=RATE]". Nothing is connected yet. With any other text every job ends in
    // kBadAddress.
    explicit Printer(std::string address, PrinterOptions options = {});

    // A printer over links of the application's own. A null function: kBadAddress.
    explicit Printer(LinkMaker makeLink, PrinterOptions options = {});

    // Waits until all submitted jobs are done; call cancel() first to end them. Callbacks must not
    // destroy the printer.
    ~Printer();
    Printer(const Printer&) = delete;
    Printer& operator=(const Printer&) = delete;

    // Sends the job and waits for its end. Call it from a callback of submit() and it waits for ever.
    [[nodiscard]] PrintResult print(const Job& job, const PrintOptions& options = {}) noexcept;

    // Sends the job on a thread of the printer's own, which is started for it and ends when no job
    // is left.
    [[nodiscard]] std::future<PrintResult> submit(Job job, PrintOptions options = {}) noexcept;
    using Callback = std::function<void(const PrintResult&)>;
    void submit(Job job, PrintOptions options, Callback callback) noexcept;

    // Ends the running job as soon as possible, and all that wait; their results say kCancelled. Jobs
    // that come later are printed.
    void cancel() noexcept;

    // The number of jobs that are running or waiting.
    [[nodiscard]] std::size_t pending() const noexcept;

    // Asks for the printer's reply; takes its turn among the jobs.
    [[nodiscard]] StatusResult status() noexcept;

    // The printer's name in messages: its address, "" for links of the application's own.
    const std::string& address() const noexcept;

  private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

// True if the text is an address that a Printer takes.
[[nodiscard]] TAVIO_API bool isPrinterAddress(std::string_view text) noexcept;

// Why it is none: a sentence without a full stop, with the form to give.
[[nodiscard]] TAVIO_API std::string whyNoPrinterAddress(std::string_view text);

}  // namespace tavio::printing
