// A device on a TCP port, on a pseudo-terminal, or on both.
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

    // The size of the system's receive buffer of a connection, before the device's own buffer. With
    // a large one, a sender notices late that no byte is read.
    std::size_t socketBuffer = std::size_t{16} << 10U;

    // True: clients that connect while another is served are reset at once. Otherwise they wait.
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
    // `onTicket` is called on the server's thread. It must not throw, and may call only state() and
    // loadPaper() of the server. Throws std::runtime_error, with one sentence, if it cannot listen
    // on the address or make the pseudo-terminal, and std::invalid_argument like Device.
    PrintServer(const PrintServerSettings& settings, Device::OnTicket onTicket);
    ~PrintServer();
    PrintServer(const PrintServer&) = delete;
    PrintServer& operator=(const PrintServer&) = delete;

    // "tcp://127.0.0.1:9100", with the real port; "" without a port.
    std::string printAddress() const;

    // "tty:/dev/pts/5"; "" without a pseudo-terminal.
    std::string serialAddress() const;

    // May be called on any thread. The state is that of the last turn; paper is loaded in the next
    // one.
    DeviceState state() const;
    void loadPaper();

    // Accepts no more clients, waits until the present one has been served and has left, but no
    // longer than `limit`, and stops the server.
    void finish(std::chrono::milliseconds limit);

    // Stops the server and waits for that. A client is disconnected; its bytes that have not been
    // interpreted are lost.
    void stop();

  private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace tavio::virtual_printer
