// The printer's web page.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "virtual-printer/server/device.h"
#include "virtual-printer/server/ticket_store.h"

namespace tavio::virtual_printer {

struct WebSettings {
    std::string address = "127.0.0.1";  // to listen on
    std::uint16_t port = 9180;          // 0: any that is free
    std::size_t mostPages = 32;         // event streams at once; more are told to come back
};

// What the page shows and does besides tickets. Called on threads of the web server.
struct PrinterPanel {
    PrinterSettings settings;  // the ticket that is in the printer
    std::string stock;         // its name for people, e.g. "concert, 5.5 x 2 in"
    std::string printAddress;  // where to print to, e.g. "tcp://127.0.0.1:9100"
    std::function<DeviceState()> state;
    std::function<void()> loadPaper;
};

// Runs until it is destroyed or stopped, which takes less than 2 seconds also with pages open.
class WebServer {
  public:
    // The store must outlive the server. Throws std::runtime_error, with one sentence, where the
    // address cannot be listened on.
    WebServer(const WebSettings& settings, PrinterPanel panel, TicketStore& store);
    ~WebServer();
    WebServer(const WebServer&) = delete;
    WebServer& operator=(const WebServer&) = delete;

    void stop();

    // "http://127.0.0.1:9180/"
    std::string url() const;

  private:
    class Works;
    std::unique_ptr<Works> works_;
};

}  // namespace tavio::virtual_printer
