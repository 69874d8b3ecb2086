// The printer's web page.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "tools/tavio-printer/tickets/ticket_store.h"
#include "tools/tavio-printer/web/printer_panel.h"

namespace tavio::virtual_printer {

struct WebSettings {
    std::string address = "127.0.0.1";  // to listen on
    std::uint16_t port = 9180;          // 0 chooses a free one
    std::size_t maxPages = 32;          // event streams at once; further ones get status 503
};

// Runs until it is destroyed or stopped, which takes less than 2 seconds even with open pages.
class WebServer {
  public:
    // The store must outlive the server. Throws std::runtime_error, with one sentence, if it cannot
    // listen on the address.
    WebServer(const WebSettings& settings, PrinterPanel panel, TicketStore& store);
    ~WebServer();
    WebServer(const WebServer&) = delete;
    WebServer& operator=(const WebServer&) = delete;

    void stop();

    // "http://127.0.0.1:9180/"
    std::string url() const;

  private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace tavio::virtual_printer
