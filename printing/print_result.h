// The result of a job: what became of it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "TavioIpadSDK/machine/export.h"
#include "TavioIpadSDK/platform/text.h"
#include "tavio/links/link_report.h"
#include "tavio/printing/reply.h"

namespace tavio::printing {

enum class RemarkKind : std::uint8_t {
    kBadAddress,    // the printer has no address, or a malformed one
    kNotReached,    // no connection to the printer
    kTimeOut,       // the printer took or acknowledged no byte in time
    kBrokenOff,     // the connection ended before all bytes had arrived
    kCancelled,     // cancel() was called
    kNotReady,      // the printer did not say that it is ready, so nothing was sent
    kNotConfirmed,  // all was sent, but the printer did not confirm it
    kEmptyJob,      // the job has no bytes
    kLinkFailed,    // the link failed for another reason
    kEndedEarly,   // all was sent, but the printer may have ended the connection before it read all
    kNotEnded,     // all was sent, but the printer did not end the connection in time
    kOutOfMemory,  // there is not enough memory
    kNoThread,     // submit() got no thread
    kCallbackFailed,  // PrintOptions::progress threw an exception; it was not called again
};

struct TAVIO_API Remark {
    RemarkKind kind = RemarkKind::kLinkFailed;
    std::string sentence;  // without a full stop
};

enum class ElementFate : std::uint8_t {
    kNotSent,     // no byte of it has left
    kPartlySent,  // a part of it may have left, perhaps all of it, before the job failed
    kSent,        // all of it has left; it is not known whether it has arrived
    kArrived,     // all of it has surely arrived at the printer's system
};

struct TAVIO_API PrintResult {
    links::Outcome outcome = links::Outcome::kNothingSent;

    // Bytes of the job, those that the operating system took, and those that have surely arrived
    // (none if the kind of link cannot tell): acknowledged <= accepted <= total. If a link of the
    // application's own throws while it writes, all bytes count as accepted: they may have left.
    std::uint64_t total = 0;
    std::uint64_t accepted = 0;
    std::optional<std::uint64_t> acknowledged;

    // One for each of Job::elements(). kArrived needs a link that acknowledges bytes, as TCP does;
    // over any other link an element is kSent at best.
    std::vector<ElementFate> elements;

    // The printer's reply, no text if it sent none, and what it means by the reply table: the one
    // that was read after the job (readyAfter), else what came since the job began, else the one
    // that was read before it (readyBefore).
    Text reply;
    PrinterState state = PrinterState::kUnknown;

    // What went wrong and what is unusual, in the order in which it came; empty after a plain
    // success.
    std::vector<Remark> remarks;

    // True if all of it was sent, and the printer's system has it, as far as can be known.
    bool isSent() const;

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

}  // namespace tavio::printing
