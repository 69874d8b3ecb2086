#include "tools/tavio-printer/tickets/ticket_store.h"

#include <algorithm>
#include <utility>

#include "tavio/virtual-printer/ticket_png.h"
#include "tools/tavio-printer/tickets/ticket_folder.h"

namespace tavio::virtual_printer {
namespace {

std::size_t sizeOf(const StoredTicket& ticket) {
    return ticket.png.size() + ticket.bytes.size();
}

// Everything except the picture and the id.
std::shared_ptr<StoredTicket> described(const DeviceTicket& from) {
    auto ticket = std::make_shared<StoredTicket>();
    ticket->time = std::chrono::system_clock::now();
    ticket->size = from.ticket.size();
    ticket->orientation = from.orientation;
    if (from.orientation == Orientation::kPortrait) {
        std::swap(ticket->size.rows, ticket->size.columns);
    }
    ticket->end = from.end;
    ticket->connection = from.connection;
    ticket->number = from.number;
    ticket->blackDots = from.ticket.blackCount();
    ticket->dotsOff = from.ticket.dotsOff();
    ticket->bytes = from.bytes;
    ticket->byteCount = from.byteCount;
    ticket->problems = from.problems;
    return ticket;
}

}  // namespace

TicketStore::TicketStore(const StoreLimits& limits) : limits_(limits) {
    limits_.tickets = std::max<std::size_t>(limits_.tickets, 1);
    if (limits_.folder.empty()) return;
    folder_ = std::make_unique<TicketFolder>(limits_.folder,
                                             FolderLimits{limits_.tickets, limits_.bytes});
    lastId_ = folder_->newest();
}

TicketStore::~TicketStore() = default;

std::string TicketStore::add(const DeviceTicket& from) {
    auto ticket = described(from);
    std::string failure;
    const bool portrait = from.orientation == Orientation::kPortrait;
    if (!encodeTicketPng(from.ticket, {portrait}, ticket->png, failure)) {
        failure.insert(0, "cannot make the picture of a ticket: ");
    }
    if (sizeOf(*ticket) > limits_.bytes) ticket->bytes = {};
    const std::string fileFailure = keep(ticket);
    return failure.empty() ? fileFailure : failure;
}

std::string TicketStore::keep(const std::shared_ptr<StoredTicket>& ticket) {
    const std::lock_guard<std::mutex> inOrder(adding_);
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        ticket->id = lastId_ + 1;
        tickets_.push_back(ticket);
        bytes_ += sizeOf(*ticket);
        lastId_ = ticket->id;
        removeOldest();
    }
    changed_.notify_all();
    return folder_ ? folder_->write(ticket->id, ticket->png, ticket->bytes) : std::string();
}

void TicketStore::removeOldest() {
    while (tickets_.size() > limits_.tickets || (bytes_ > limits_.bytes && tickets_.size() > 1)) {
        bytes_ -= sizeOf(*tickets_.front());
        tickets_.pop_front();
    }
}

TicketStore::TicketPointer TicketStore::find(std::uint64_t id) const {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (tickets_.empty() || id < tickets_.front()->id || id > lastId_) return nullptr;
    return tickets_[static_cast<std::size_t>(id - tickets_.front()->id)];
}

std::vector<TicketStore::TicketPointer> TicketStore::since(std::uint64_t after,
                                                           std::size_t limit) const {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (tickets_.empty() || after >= lastId_) return {};
    const std::uint64_t oldest = tickets_.front()->id;
    const auto begin = static_cast<std::size_t>(after < oldest ? 0 : after - oldest + 1);
    const auto end = begin + std::min(limit, tickets_.size() - begin);
    return {tickets_.begin() + static_cast<std::ptrdiff_t>(begin),
            tickets_.begin() + static_cast<std::ptrdiff_t>(end)};
}

std::uint64_t TicketStore::oldest() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return tickets_.empty() ? 0 : tickets_.front()->id;
}

std::uint64_t TicketStore::newest() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return tickets_.empty() ? 0 : tickets_.back()->id;
}

bool TicketStore::waitForMore(std::uint64_t after, std::chrono::milliseconds limit) const {
    std::unique_lock<std::mutex> lock(mutex_);
    const auto isThere = [&] { return !tickets_.empty() && tickets_.back()->id > after; };
    changed_.wait_for(lock, limit, [&] { return stopped_ || isThere(); });
    return isThere();
}

void TicketStore::stop() {
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        stopped_ = true;
    }
    changed_.notify_all();
}

bool TicketStore::isStopped() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return stopped_;
}

}  // namespace tavio::virtual_printer
