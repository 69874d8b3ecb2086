// What a page is sent as it happens: server-sent events.
//
//   event: printer     what the printer is, first of all
//   event: state       what it does, when that changes
//   event: reset       the page's tickets are not this server's, or some were missed: start afresh
//   event: alive       now and then, where there is nothing else to say
//   event: ticket      one for each ticket; the event's id is where to go on after a lost connection
//
// The id is "RUN-ID": the ticket's id, and which run of the server gave it, as the next run begins
// again at ticket 1.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

#include "tools/tavio-printer/tickets/ticket_store.h"
#include "tools/tavio-printer/web/printer_panel.h"

namespace tavio::virtual_printer {

// What all pages of a server share. All of it must outlive the streams.
struct EventSource {
    const TicketStore& store;
    const PrinterPanel& panel;
    std::string run;
};

class EventStream {
  public:
    // How soon a change of the printer's state is seen, and how soon the stream sees that the
    // server stops. Tickets are seen at once.
    static constexpr std::chrono::milliseconds kPatience{150};

    // Something is sent at least so often, that both ends know the other is there.
    static constexpr std::chrono::seconds kMaxSilence{10};

    // Goes on after `lastId`: "RUN-ID" or "ID", "" for a page that has nothing yet.
    EventStream(const EventSource& source, std::string_view lastId);

    // What to send now, "" for nothing; waits for that, but for kPatience at most.
    std::string next();

    // The store is stopped: nothing will come any more.
    bool isOver() const { return source_->store.isStopped(); }

  private:
    std::string greeting();
    std::string newTickets();
    std::string newState();

    const EventSource* source_;
    std::uint64_t last_ = 0;  // id of the last ticket that the page has; 0 for none
    bool afresh_ = false;     // the page is to forget what it has
    bool greeted_ = false;
    std::string state_;  // as last sent
    std::chrono::steady_clock::time_point sent_;
};

}  // namespace tavio::virtual_printer
