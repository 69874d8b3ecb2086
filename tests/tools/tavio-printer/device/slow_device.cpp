#include "tools/tavio-printer/device/slow_device.h"

#include <algorithm>

#include "tools/tavio-printer/device/test_device.h"

namespace tavio::virtual_printer::testing {
namespace {

std::string describe(const Ticket& ticket, TicketEnd end, Orientation orientation, bool marked,
                     std::uint64_t connection, std::uint64_t number, std::uint64_t begin,
                     const std::string& bytes, const std::vector<std::string>& problems) {
    std::string text = "connection " + std::to_string(connection) + ", ticket " +
                       std::to_string(number) + " at " + std::to_string(begin) + ", end " +
                       std::to_string(static_cast<int>(end)) + ", orientation " +
                       std::to_string(static_cast<int>(orientation)) +
                       (marked ? ", marked\n" : "\n");
    text += bytes + "\n";
    for (const std::string& problem : problems) text += problem + "\n";
    return text + ticket.toText();
}

}  // namespace

std::string describe(const DeviceTicket& ticket) {
    return describe(ticket.ticket, ticket.end, ticket.orientation, ticket.marked, ticket.connection,
                    ticket.number, ticket.beginOffset, textOf(ticket.bytes),
                    linesOf(ticket.problems));
}

SlowDevice::SlowDevice(const DeviceSettings& settings, int passing, int rate)
    : settings_(settings),
      passing_(passing),
      rate_(rate),
      printer_(settings.printer, [this](const FinishedTicket& ticket) {
          if (suppress_) return;
          out(ticket.ticket, ticket.end, ticket.orientation, ticket.marked, ticket.number);
      }) {}

void SlowDevice::out(const Ticket& ticket, TicketEnd end, Orientation orientation, bool marked,
                     std::uint64_t number) {
    for (const Problem& problem : printer_.problems().kept()) {
        problems_.push_back(std::to_string(problem.offset - begin_) + ": " + problem.text);
    }
    printer_.forgetProblems();
    tickets.push_back(describe(ticket, end, orientation, marked, connection_, number, begin_,
                               stream_, problems_));
    begin_ += stream_.size();
    stream_.clear();
    problems_.clear();
    ++ofStream_;
    ++count_;
    ++sincePaper_;
    moving_ = passing_;
    if (!connected_ || settings_.reply.text.empty()) return;
    const int delay = static_cast<int>(settings_.reply.delay.count());
    if (delay == 0) {
        ++due_;
    } else {
        replies_.push_back(delay);
    }
}

void SlowDevice::tick() {
    for (int& reply : replies_) --reply;
    due_ += static_cast<int>(std::erase(replies_, 0));
    credit_ = std::min(credit_ + rate_, rate_ * 50);
    if (credit_ >= rate_ * 10) linkOpen_ = true;
    if (connected_ && silent_ && ++sinceConnect_ == Reply::kSilence.count()) {
        silent_ = false;
        const int delay = static_cast<int>(settings_.reply.delay.count());
        if (delay == 0) {
            ++due_;
        } else {
            replies_.push_back(delay);
        }
    }
    if (moving_ > 0 && --moving_ == 0) interpret();
}

bool SlowDevice::isOutOfPaper() const {
    const auto& after = settings_.faults.paperOutAfter;
    return after && sincePaper_ >= *after;
}

void SlowDevice::connect() {
    if (!isFree()) return;
    connected_ = true;
    ended_ = false;
    open_ = true;
    ++connection_;
    received_ = 0;
    sinceConnect_ = 0;
    silent_ = !settings_.reply.text.empty() && !settings_.faults.neverRead;
    credit_ = 0;
    linkOpen_ = false;
    begin_ = 0;
    ofStream_ = 0;
    stream_.clear();
}

void SlowDevice::endOfStream() {
    if (!connected_ || settings_.faults.neverRead) return;
    ended_ = true;
    interpret();
}

void SlowDevice::disconnect() {
    if (!connected_) return;
    connected_ = false;
    ended_ = true;
    silent_ = false;
    interpret();
    replies_.clear();
    due_ = 0;
}

void SlowDevice::loadPaper() {
    sincePaper_ = 0;
    interpret();
}

std::size_t SlowDevice::room() const {
    if (!connected_ || ended_ || settings_.faults.neverRead) return 0;
    std::uint64_t limit = 1 << 16;
    if (!settings_.physics.dropWhenFull) limit = settings_.physics.receiveBuffer - waitingBytes_;
    for (const auto& after : {settings_.faults.resetAfter, settings_.faults.closeAfter}) {
        if (after) limit = std::min(limit, *after - std::min(*after, received_));
    }
    if (rate_ != 0) limit = std::min(limit, static_cast<std::uint64_t>(linkOpen_ ? credit_ : 0));
    return limit;
}

void SlowDevice::receive(Byte byte) {
    ++received_;
    silent_ = false;
    if (rate_ != 0 && --credit_ == 0) linkOpen_ = false;
    if (waitingBytes_ < settings_.physics.receiveBuffer) {
        waiting_.push_back({byte, 0});
        ++waitingBytes_;
        interpret();
    } else if (!waiting_.empty() && waiting_.back().byte < 0) {
        ++waiting_.back().lost;
    } else {
        waiting_.push_back({-1, 1});
    }
}

void SlowDevice::interpret() {
    while (moving_ == 0 && !waiting_.empty() && !isOutOfPaper()) {
        const Waiting first = waiting_.front();
        waiting_.pop_front();
        if (first.byte >= 0) {
            --waitingBytes_;
            interpretByte(static_cast<Byte>(first.byte));
        } else {
            problems_.push_back(std::to_string(stream_.size()) + ": " + std::to_string(first.lost) +
                                (first.lost == 1 ? " byte was" : " bytes were") +
                                " lost here: the receive buffer was full");
        }
    }
    const bool nothing = stream_.empty() && problems_.empty();
    if (ended_ && open_ && moving_ == 0 && waiting_.empty() && (nothing || !isOutOfPaper())) end();
}

void SlowDevice::interpretByte(Byte byte) {
    stream_ += static_cast<char>(byte);
    printer_.feed({&byte, 1});
    for (const Problem& problem : printer_.problems().kept()) {
        problems_.push_back(std::to_string(problem.offset - begin_) + ": " + problem.text);
    }
    printer_.forgetProblems();
}

void SlowDevice::end() {
    open_ = false;
    const std::uint64_t before = count_;
    suppress_ = ofStream_ == 0 && stream_.empty() && problems_.empty();
    printer_.finish();
    suppress_ = false;
    for (const Problem& problem : printer_.problems().kept()) {
        problems_.push_back(std::to_string(problem.offset - begin_) + ": " + problem.text);
    }
    printer_.forgetProblems();
    if (count_ != before || problems_.empty()) return;
    out(Ticket(settings_.printer.size), TicketEnd::kStreamEnded, settings_.printer.orientation,
        false, ofStream_ + 1);
}

std::string SlowDevice::takeReply() {
    std::string text;
    for (; due_ > 0; --due_) text += settings_.reply.text;
    return text;
}

ConnectionWish SlowDevice::wish() const {
    const Faults& faults = settings_.faults;
    if (connected_ && faults.resetAfter && received_ >= *faults.resetAfter) {
        return ConnectionWish::kReset;
    }
    if (connected_ && faults.closeAfter && received_ >= *faults.closeAfter) {
        return ConnectionWish::kClose;
    }
    return ConnectionWish::kKeep;
}

bool SlowDevice::isDone() const {
    return ended_ && !open_ && moving_ == 0 && !silent_ && replies_.empty() && due_ == 0;
}

DeviceState SlowDevice::state() const {
    return {connected_, isOutOfPaper(),           moving_ > 0, waitingBytes_, received_,
            count_,     printer_.logoMemoryUsed()};
}

}  // namespace tavio::virtual_printer::testing
