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

    // A remark, e.g. that the printer broke the connection off after all bytes had been sent: a
    // sentence without a full stop, or "".
    std::string remark;
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
