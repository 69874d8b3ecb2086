// The twelve transport operations, defined over links.
//
// Linking Tavio::links defines Open_BT, Write_WF_Data and the others (session/transport.h). Without
// further ado, the WiFi operations go to the printer at the address given to OpenSessionWiFi
// (tcp_address.h), the Bluetooth operations to the one named with setBluetoothPrinter():
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

#include "tavio/links/deadlines.h"
#include "tavio/links/link.h"

namespace tavio::links {

// Has all operations, of both transports, go to this link from now on; a null pointer brings back
// the ready-made ones. The link used before is left as it is, also when it is open. Not to be
// called while a job runs.
void useLink(std::shared_ptr<Link> link);

// The printer that OpenSessionBT connects to: "AA:BB:CC:DD:EE:FF", or with a channel from 1 to 30
// "AA:BB:CC:DD:EE:FF/3" (1 if not given). "", as in the beginning, means none: opening fails then.
// Takes effect at the next opening.
void setBluetoothPrinter(const std::string& address);

// The deadlines of the ready-made links, from the next opening on.
void setDeadlines(const Deadlines& deadlines);

// Of the job that is under way or was the last, on whichever transport was opened last. Before the
// first one: a report of nothing.
LinkReport lastReport();

// Cancels the job under way on the link that was opened last, if there is one. May be called on any
// thread.
void cancelJob();

// One call of a transport operation, as the observer sees it.
struct Operation {
    const char* name = "";            // "Write_WF_Data"
    bool carriesData = false;         // true for the four writes and the two reads
    std::optional<std::size_t> size;  // of a write or a read: bytes passed on; none for no text
};

// Has `observer` called after each operation, on the thread that the operation runs on; an empty
// function ends that. What it throws is dropped. Not to be called while a job runs.
void observeOperations(std::function<void(const Operation&)> observer);

}  // namespace tavio::links
