// Real clients of a real server in this process.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "TavioIpadSDK/machine/descriptor.h"
#include "tools/tavio-printer/device/test_device.h"
#include "tools/tavio-printer/doors/print_server.h"

namespace tavio::virtual_printer::testing {

// True if the condition becomes true within a minute.
bool eventually(const std::function<bool()>& condition);

// A server of small tickets on a port of its own.
PrintServerSettings onAnyPort(const DeviceSettings& device = smallDevice());

class ServerBench {
  public:
    explicit ServerBench(const PrintServerSettings& settings = onAnyPort());

    // Waits for the first `count` tickets.
    std::vector<DeviceTicket> tickets(std::size_t count);
    std::vector<std::string> streams(std::size_t count);
    std::size_t ticketCount();

    std::uint16_t port() const;

    // Waits until the server has taken so many bytes from the client that is connected.
    bool hasReceived(std::uint64_t bytes);
    bool isConnected();

  private:
    std::mutex mutex_;
    std::condition_variable more_;
    std::vector<DeviceTicket> tickets_;

  public:
    PrintServer server;
};

class TcpClient {
  public:
    explicit TcpClient(std::uint16_t port, const char* host = "127.0.0.1");

    bool isConnected() const { return socket_.isOpen(); }
    void send(std::string_view text);

    // Sends until the connection takes no more bytes.
    std::size_t sendUntilItBlocks(std::string_view text);

    // Makes the buffer between it and the network small.
    void holdLittle();

    void endSending();
    void reset();

    // Reads `count` bytes.
    std::string read(std::size_t count);

    // Reads to the end of the stream; `error` is the errno that ended it, or 0.
    std::string readToEnd();
    int error = 0;

  private:
    machine::Descriptor socket_;
};

}  // namespace tavio::virtual_printer::testing
