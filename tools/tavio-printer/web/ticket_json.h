// The page's data as JSON.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "tools/tavio-printer/device/device.h"
#include "tools/tavio-printer/tickets/ticket_store.h"
#include "tools/tavio-printer/web/printer_panel.h"

namespace tavio::virtual_printer {

// A ticket without its commands. `oldest` is the id of the oldest ticket kept, so that a page drops
// the same tickets as the store.
std::string summaryJson(const StoredTicket& ticket, std::uint64_t oldest);

// A ticket with its problems and a page of its commands, from number `firstLine` on. When
// `shouldContinue` returns false, the rest is left out.
std::string detailJson(const StoredTicket& ticket, std::uint64_t firstLine,
                       const std::function<bool()>& shouldContinue = {});

std::string stateJson(const DeviceState& state);

// The data that does not change while the server runs.
std::string printerJson(const PrinterPanel& panel);

}  // namespace tavio::virtual_printer
