#include "scenarios/printer_server.h"

#include <algorithm>
#include <utility>

namespace tavio::scenarios {

using virtual_printer::ConnectionWish;
using virtual_printer::DeviceSettings;
using virtual_printer::DeviceTicket;

PrinterServer::PrinterServer(EventQueue& events, const DeviceSettings& settings,
                             const ServerHabits& habits)
    : events_(events),
      habits_(habits),
      neverReads_(settings.faults.neverRead),
      device_(settings, [this](DeviceTicket ticket) {
          events_.trace("a ticket comes out");
          tickets_.push_back(std::move(ticket));
      }) {}

bool PrinterServer::serve() {
    device_.advance(events_.now());
    bool worked = false;
    while (acceptNext() || serveClient()) worked = true;
    return worked;
}

bool PrinterServer::acceptNext() {
    if (client_ != nullptr || occupied_ || atTheDoor_.empty() || !device_.isFree()) return false;
    client_ = atTheDoor_.front();
    atTheDoor_.pop_front();
    events_.trace("the printer takes the client");
    device_.connect(events_.now());
    ended_ = false;
    client_->takenThereAs(taken_.size());
    taken_.emplace_back();
    if (habits_.chatter > Duration::zero()) chat(client_);
    return true;
}

// True when the client is gone, so that the next one may have its turn.
bool PrinterServer::serveClient() {
    if (client_ == nullptr) return false;
    if (client_->isResetThere()) {
        endConnection();
        return true;
    }
    takeBytes();
    if (habits_.endsSendingAfter && taken_.back().size() >= *habits_.endsSendingAfter) {
        client_->endSendingThere();
    }
    if (!ended_ && !neverReads_ && client_->endThere()) {
        ended_ = true;
        device_.endOfStream(events_.now());
    }
    client_->sendThere(device_.takeReply(events_.now()));
    const ConnectionWish wish = device_.wish();
    if (wish == ConnectionWish::kReset) client_->resetThere();
    if (wish == ConnectionWish::kClose) client_->closeThere();
    if (wish == ConnectionWish::kKeep && device_.isDone() && !habits_.keepsOpen) {
        client_->closeThere();
    }
    if (!client_->isGoneThere()) return false;
    endConnection();
    return true;
}

void PrinterServer::takeBytes() {
    while (client_->waitingThere() > 0) {
        const std::size_t room = device_.room(events_.now());
        if (room == 0) return;
        give(client_->readThere(room));
    }
}

void PrinterServer::give(std::span<const Byte> bytes) {
    taken_.back().insert(taken_.back().end(), bytes.begin(), bytes.end());
    device_.receive(bytes, events_.now());
}

void PrinterServer::endConnection() {
    events_.trace("the printer has no client");
    device_.disconnect(events_.now());
    client_ = nullptr;
}

void PrinterServer::chat(VirtualConnection* connection) {
    events_.after(habits_.chatter, [this, connection] {
        if (connection != client_) return;
        connection->sendThere(".");
        chat(connection);
    });
}

void PrinterServer::occupy(std::span<const Byte> bytes, Duration until) {
    occupied_ = true;
    device_.connect(events_.now());
    taken_.emplace_back();
    give(bytes.first(std::min(bytes.size(), device_.room(events_.now()))));
    events_.after(until, [this] { released(); });
}

void PrinterServer::released() {
    events_.trace("the other client leaves");
    device_.endOfStream(events_.now());
    device_.disconnect(events_.now());
    occupied_ = false;
}

}  // namespace tavio::scenarios
