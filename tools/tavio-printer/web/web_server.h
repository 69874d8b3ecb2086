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
    std::uint16_t port = 9180;          // 0: any that is free
    std::size_t mostPages = 32;         // event streams at once; more are told to come back
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
