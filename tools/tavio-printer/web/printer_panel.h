// The page's contents and actions besides tickets.
#pragma once

#include <functional>
#include <string>

#include "tools/tavio-printer/device/device.h"

namespace tavio::virtual_printer {

// Called on threads of the web server.
struct PrinterPanel {
    PrinterSettings settings;  // of the ticket in the printer
    std::string stock;         // its name for people, e.g. "concert, 5.5 x 2 in"
    std::string printAddress;  // the target for jobs, e.g. "tcp://127.0.0.1:9100"
    std::function<DeviceState()> state;
    std::function<void()> loadPaper;
};

}  // namespace tavio::virtual_printer
