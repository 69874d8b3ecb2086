// Listens for browsers: one thread accepts all connections and reads the heads of their requests,
// so that a silent or slow connection delays no other.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "TavioIpadSDK/machine/descriptor.h"

namespace tavio::virtual_printer {

class HttpListener {
  public:
    // The limit on connections whose request is incomplete; past it the oldest is closed.
    static constexpr std::size_t kMaxWaiting = 128;

    // The time limit for the head of a request, from connecting on.
    static constexpr std::chrono::seconds kTimeout{20};

    // Port 0 chooses a free one. Throws std::runtime_error, with one sentence, if it cannot listen
    // on the address.
    HttpListener(const std::string& address, std::uint16_t port);

    // The port: the given one, or the free one that was chosen.
    std::uint16_t port() const { return port_; }

    // Receives a connection whose request has arrived: its descriptor and the request's head.
    using OnRequest = std::function<void(machine::Descriptor, std::string)>;

    // Runs until stop(). Closes connections that send something other than a request.
    void run(const OnRequest& onRequest);

    // May be called on any thread. The listener cannot run again.
    void stop();

  private:
    using Clock = std::chrono::steady_clock;
    struct Waiting {
        machine::Descriptor socket;
        std::string received;
        Clock::time_point until;
    };

    void accept();
    bool receive(Waiting& connection, const OnRequest& onRequest);
    int millisecondsToNextDeadline() const;

    machine::Descriptor listening_;
    machine::Descriptor wake_;
    std::uint16_t port_ = 0;
    std::vector<Waiting> waiting_;  // the oldest first
    bool outOfDescriptors_ = false;
};

}  // namespace tavio::virtual_printer
