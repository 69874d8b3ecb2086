// A device on a port of the network, on a pseudo-terminal, or on both.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "tools/tavio-printer/device/device.h"
#include "tools/tavio-printer/doors/listen_address.h"

namespace tavio::virtual_printer {

inline constexpr std::uint16_t kUsualPrintPort = 9100;

struct PrintServerSettings {
    DeviceSettings device{};

    std::optional<ListenAddress> listen = ListenAddress{"127.0.0.1", kUsualPrintPort};

    // Bytes that the system is asked to hold for a connection, before the device's own buffer: with
    // a large one, a sender does not notice for long that nothing is read.
    std::size_t socketBuffer = std::size_t{16} << 10U;

    // Clients that come while another is served are reset at once; otherwise they wait.
    bool oneClient = false;

    // Also on a pseudo-terminal, with a symbolic link of this name to it ("": none).
    std::optional<std::string> tty = std::nullopt;
};

// Serves one client at a time, on a thread of its own, until it is destroyed or stopped.
//
//   PrintServer server({.device = {.printer = {*ticketSize(0, 300)}}, .listen = {{"127.0.0.1", 0}}},
//                      [](DeviceTicket ticket) { show(ticket); });
//   std::cout << server.printAddress() << '\n';
class PrintServer {
  public:
    // `onTicket` is called on the server's thread, must not throw, and must not call the server
    // except for state() and loadPaper(). Throws std::runtime_error, with one sentence, where the
    // address cannot be listened on or the pseudo-terminal cannot be made, and
    // std::invalid_argument as Device does.
    PrintServer(const PrintServerSettings& settings, Device::OnTicket onTicket);
    ~PrintServer();
    PrintServer(const PrintServer&) = delete;
    PrintServer& operator=(const PrintServer&) = delete;

    // "tcp://127.0.0.1:9100", with the port that was found where any was asked for; "" for none.
    std::string printAddress() const;

    // "tty:/dev/pts/5"; "" for none.
    std::string serialAddress() const;

    // From any thread: as it was a moment ago; new paper, in a moment.
    DeviceState state() const;
    void loadPaper();

    // Takes no more clients, and returns when the one that is there has been served and has left,
    // at most after so long. The server is stopped then.
    void finish(std::chrono::milliseconds atMost);

    // Returns when the server has stopped. A client is disconnected; what it sent and is not yet
    // interpreted is lost.
    void stop();

  private:
    class Works;
    std::unique_ptr<Works> works_;
};

}  // namespace tavio::virtual_printer
