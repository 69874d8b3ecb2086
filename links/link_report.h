// The report of a job.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "TavioIpadSDK/machine/export.h"
#include "TavioIpadSDK/platform/text.h"

namespace tavio::links {

// The four possible outcomes of a job.
enum class Outcome : std::uint8_t {
    kNothingSent,      // no byte has left: safe to repeat
    kPartlySent,       // the printer has a part of it, perhaps all of it
    kSentUnconfirmed,  // all of it has gone to the printer, which has not answered
    kAnswered,         // all of it has gone to the printer, which has sent something since
};

// Why a job failed, for a program to switch on. Kinds may be added.
enum class FailureKind : std::uint8_t {
    kNone,         // it did not
    kBadAddress,   // there is no address of a printer, or a malformed one
    kNotReached,   // no connection came about: unknown, switched off, in use, not allowed
    kTimeOut,      // the printer took or acknowledged no byte in time
    kBrokenOff,    // the connection ended before all bytes had arrived
    kCancelled,    // Link::cancel() was called
    kOutOfMemory,  // of this program
    kOther,        // a reason of this kind of link, e.g. a file that cannot be written
};

struct TAVIO_API Failure {
    FailureKind kind = FailureKind::kNone;
    std::string sentence;  // without a full stop; "" if there was none
};

// The end of a job that did not fail, if it was not clean: all bytes were sent then, but the
// printer may not have read all of them.
enum class LinkRemark : std::uint8_t {
    kNone,        // it was clean
    kBrokenOff,   // the printer broke the connection off after it had been sent everything
    kEndedEarly,  // it ended its side before it had been sent everything, but took the rest
    kNotEnded,    // it did not end its side within Deadlines::goodbye
};

// Counts the bytes between an open() and its close(); final after close().
//
//   acknowledged <= accepted <= offered
struct TAVIO_API LinkReport {
    // Bytes given to write(), also those that it refused.
    std::uint64_t offered = 0;

    // Bytes that the operating system took from the link. Some of them may not have left.
    std::uint64_t accepted = 0;

    // Bytes that the far end's system had acknowledged at the last check. The printer may not have
    // read them yet. None if the kind of link cannot tell.
    std::optional<std::uint64_t> acknowledged;

    // The first kMaxReplyBytes bytes that the printer sent; no text if it sent nothing.
    Text reply;

    // Some of the reply came after the last byte of the job had been accepted.
    bool answered = false;

    // Why the job failed: a sentence without a full stop; "" if it did not.
    std::string failure;
    FailureKind failureKind = FailureKind::kNone;

    // A remark, e.g. that the printer broke the connection off after all bytes had been sent: a
    // sentence without a full stop, or "".
    std::string remark;
    LinkRemark remarkKind = LinkRemark::kNone;
};

// Further bytes of a reply are read and dropped.
inline constexpr std::size_t kMaxReplyBytes = std::size_t{64} << 10U;

TAVIO_API Outcome outcomeOf(const LinkReport& report);

// One line without a full stop, e.g.
//
//   nothing sent, safe to repeat
//   partly sent, 4096 of 39335 bytes (up to 20480 may have arrived)
//   sent, unconfirmed: 39335 bytes
//   answered by the printer: 39335 bytes sent
TAVIO_API std::string describe(const LinkReport& report);

}  // namespace tavio::links
