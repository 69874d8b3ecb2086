#include "tools/tavio-printer/device/job_stream.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>

namespace tavio::virtual_printer {
namespace {

// Commands end with ">", and only a command ends a ticket.
std::span<const Byte> upToCommandEnd(std::span<const Byte> bytes) {
    const void* end = std::memchr(bytes.data(), '>', bytes.size());
    if (end == nullptr) return bytes;
    return bytes.first(static_cast<std::size_t>(static_cast<const Byte*>(end) - bytes.data()) + 1);
}

}  // namespace

JobStream::JobStream(const PrinterSettings& settings, OnTicket onTicket)
    : settings_(settings),
      onTicket_(std::move(onTicket)),
      printer_(settings, [this](const FinishedTicket& finished) { keepTicket(finished); }) {}

void JobStream::begin(std::uint64_t connection) {
    connection_ = connection;
    tickets_ = 0;
    begin_ = 0;
}

std::size_t JobStream::feed(std::span<const Byte> bytes) {
    std::size_t taken = 0;
    while (taken < bytes.size() && !finished_) {
        const std::span<const Byte> piece = upToCommandEnd(bytes.subspan(taken));
        keepBytes(piece);
        printer_.feed(piece);
        takeProblems();
        taken += piece.size();
    }
    if (finished_) deliver(*std::exchange(finished_, std::nullopt));
    return taken;
}

void JobStream::addLoss(std::uint64_t count) {
    const std::string bytes = count == 1 ? std::string(" byte was") : std::string(" bytes were");
    problems_.add(byteCount_,
                  std::to_string(count) + bytes + " lost here: the receive buffer was full");
}

void JobStream::finish() {
    const bool nothingCame = tickets_ == 0 && byteCount_ == 0 && problems_.empty();
    printer_.finish();
    takeProblems();
    std::optional<DeviceTicket> last = std::exchange(finished_, std::nullopt);
    if (nothingCame) return;
    if (!last && !problems_.empty()) last = blankTicket();
    if (last) deliver(std::move(*last));
    bytes_ = {};
    byteCount_ = 0;
}

void JobStream::keepTicket(const FinishedTicket& finished) {
    finished_.emplace(DeviceTicket{finished.ticket,
                                   finished.orientation,
                                   finished.end,
                                   finished.marked,
                                   connection_,
                                   finished.number,
                                   finished.beginOffset,
                                   {},
                                   0,
                                   {}});
}

DeviceTicket JobStream::blankTicket() const {
    return {Ticket(settings_.size),
            settings_.orientation,
            TicketEnd::kStreamEnded,
            false,
            connection_,
            tickets_ + 1,
            begin_,
            {},
            0,
            {}};
}

void JobStream::keepBytes(std::span<const Byte> bytes) {
    byteCount_ += bytes.size();
    bytes = bytes.first(std::min(bytes.size(), kMaxTicketBytes - bytes_.size()));
    const std::size_t wanted = bytes_.size() + bytes.size();
    if (wanted > bytes_.capacity()) {
        bytes_.reserve(std::min(kMaxTicketBytes, std::max(wanted, 2 * bytes_.capacity())));
    }
    bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
}

// The printer's offsets count from the start of the stream.
void JobStream::takeProblems() {
    const ProblemList& found = printer_.problems();
    if (found.empty()) return;
    for (const Problem& problem : found.kept()) {
        problems_.add(std::max(problem.offset, begin_) - begin_, problem.text);
    }
    // The list is full long before: these are only counted.
    for (std::uint64_t n = found.kept().size(); n < found.count(); ++n) problems_.add(0, {});
    printer_.forgetProblems();
}

void JobStream::deliver(DeviceTicket ticket) {
    ++tickets_;
    ticket.bytes = std::exchange(bytes_, {});
    ticket.byteCount = std::exchange(byteCount_, 0);
    ticket.problems = std::exchange(problems_, {});
    begin_ += ticket.byteCount;
    onTicket_(std::move(ticket));
}

}  // namespace tavio::virtual_printer
