// The twelve transport operations, defined over links.
//
// Linking Tavio::links defines Open_BT, Write_WF_Data and the others (session/transport.h). By
// default the WiFi operations go to the printer at the address given to OpenSessionWiFi
// (tcp_address.h), the Bluetooth operations to the one set with setBluetoothPrinter():
//
//   links::setBluetoothPrinter("00:11:22:33:44:55");
//   if (!OpenSessionBT()) return tellTheUser(links::lastReport().failure);
//   SendFile(url, 10, 20);
//   PrintCut();
//   CloseSessionBT();
//   tellTheUser(links::describe(links::lastReport()));
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "TavioIpadSDK/machine/export.h"
#include "tavio/links/deadlines.h"
#include "tavio/links/link.h"

namespace tavio::links {

// Makes all operations of both transports use this link; a null pointer restores the default links.
// The previous link is not closed. Do not call it while a job is running.
TAVIO_API void useLink(std::shared_ptr<Link> link);

// The printer that OpenSessionBT connects to: "AA:BB:CC:DD:EE:FF", or with a channel from 1 to 30
// "AA:BB:CC:DD:EE:FF/3" (1 if not given). "", the default, means none: then opening fails. Takes
// effect at the next opening.
TAVIO_API void setBluetoothPrinter(const std::string& address);

// The deadlines of the default links, from the next opening on.
TAVIO_API void setDeadlines(const Deadlines& deadlines);

// The report of the running or last job, on the transport that was opened last. Empty before the
// first job.
TAVIO_API LinkReport lastReport();

// Cancels the running job on the link that was opened last, if there is one. May be called on any
// thread.
TAVIO_API void cancelJob();

// One call of a transport operation, as the observer sees it.
struct TAVIO_API Operation {
    const char* name = "";            // "Write_WF_Data"
    bool carriesData = false;         // true for the four writes and the two reads
    std::optional<std::size_t> size;  // bytes written or read; none for no text
};

// Calls `observer` after each operation, on the operation's thread; an empty function ends that.
// Its exceptions are dropped. Do not call this while a job is running.
TAVIO_API void observeOperations(std::function<void(const Operation&)> observer);

}  // namespace tavio::links
