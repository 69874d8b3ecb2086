// Where browsers connect: one thread accepts them all and reads the heads of their requests, so
// that a connection that says nothing, or says it slowly, keeps nobody waiting.
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
    // Connections whose request is not there yet; one more, and the oldest is closed.
    static constexpr std::size_t kMaxWaiting = 128;

    // For the head of a request, from connecting on.
    static constexpr std::chrono::seconds kPatience{20};

    // Port 0: any that is free. Throws std::runtime_error, with one sentence, where the address
    // cannot be listened on.
    HttpListener(const std::string& address, std::uint16_t port);

    // What is listened on: the port that was given, or the one found free.
    std::uint16_t port() const { return port_; }

    // Takes a connection whose request has arrived: its descriptor and the request's head.
    using OnRequest = std::function<void(machine::Descriptor, std::string)>;

    // Until stop(). Connections are closed that send something other than a request.
    void run(const OnRequest& onRequest);

    // From any thread, and for good.
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
