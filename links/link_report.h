// What became of a job.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "TavioIpadSDK/platform/text.h"

namespace tavio::links {

// The four things that can honestly be said of a job.
enum class Outcome : std::uint8_t {
    kNothingSent,      // not one byte has left: safe to repeat
    kPartlySent,       // the printer has some of it, and lacks some or may lack some
    kSentUnconfirmed,  // all of it has gone to the printer, which has said nothing
    kAnswered,         // all of it has gone to the printer, which has sent something since
};

// Of the bytes between an open() and its close(); final after close().
//
//   acknowledged <= accepted <= offered
struct LinkReport {
    // Bytes given to write(), also those that it refused.
    std::uint64_t offered = 0;

    // Bytes that the operating system took from the link. Some of them may never have left.
    std::uint64_t accepted = 0;

    // Bytes of which the far end's system has said that it has them, at the last look. Whether the
    // printer has read them is another matter. None where the kind of link cannot tell.
    std::optional<std::uint64_t> acknowledged;

    // All that the printer sent, the first kMaxReplyBytes of it; no text where it sent nothing.
    Text reply;

    // Some of the reply came after the last byte of the job had been accepted.
    bool answered = false;

    // Why the job failed, "" where it did not: a sentence without a full stop.
    std::string failure;

    // What else is worth knowing, e.g. that the printer broke the connection off after it had been
    // sent everything: a sentence without a full stop, or "".
    std::string remark;
};

// Of a reply, more is read and dropped.
inline constexpr std::size_t kMaxReplyBytes = std::size_t{64} << 10U;

Outcome outcomeOf(const LinkReport& report);

// One line without a full stop, e.g.
//
//   nothing sent, safe to repeat
//   partly sent, 4096 of 39335 bytes (up to 20480 may have arrived)
//   sent, unconfirmed: 39335 bytes
//   answered by the printer: 39335 bytes sent
std::string describe(const LinkReport& report);

}  // namespace tavio::links
