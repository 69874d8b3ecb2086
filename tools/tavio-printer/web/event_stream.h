// The server-sent events of a page.
//
//   event: printer     the description of the printer, as the first event
//   event: state       the printer's state, after each change
//   event: reset       the page's tickets are not this server's, or some were missed: drop them all
//   event: alive       sent now and then if there is no other event
//   event: ticket      one for each ticket; after a lost connection the page continues from its id
//
// The id is "RUN-ID": the run of the server and the ticket's id. Each run begins at ticket 1.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

#include "tools/tavio-printer/tickets/ticket_store.h"
#include "tools/tavio-printer/web/printer_panel.h"

namespace tavio::virtual_printer {

// Shared by all pages of a server. Must outlive the streams.
struct EventSource {
    const TicketStore& store;
    const PrinterPanel& panel;
    std::string run;
};

class EventStream {
  public:
    // The maximum delay of a change of the printer's state, and of the server's stop. Tickets come
    // at once.
    static constexpr std::chrono::milliseconds kTimeout{150};

    // The maximum time between two events, so that both ends notice a lost connection.
    static constexpr std::chrono::seconds kMaxSilence{10};

    // Continues after `lastId`: "RUN-ID" or "ID", "" for a page without tickets.
    EventStream(const EventSource& source, std::string_view lastId);

    // The next events to send; waits for them up to kTimeout, then "".
    std::string next();

    // True if the store has stopped: no more events come.
    bool isOver() const { return source_->store.isStopped(); }

  private:
    std::string greeting();
    std::string newTickets();
    std::string newState();

    const EventSource* source_;
    std::uint64_t last_ = 0;  // id of the page's last ticket; 0 for none
    bool mustReset_ = false;  // the page has to drop its tickets
    bool greeted_ = false;
    std::string state_;  // as last sent
    std::chrono::steady_clock::time_point sent_;
};

}  // namespace tavio::virtual_printer
