// A network in memory, on a clock that is a variable: a real link at one end, a real device at the
// other, and everything between them as the two systems would have it. Minutes take milliseconds,
// and the same plan always comes to the same.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "scenarios/event_queue.h"
#include "scenarios/name_server.h"
#include "scenarios/printer_server.h"
#include "scenarios/virtual_connection.h"
#include "tavio/links/system_calls.h"
#include "tools/tavio-printer/device/device.h"

namespace tavio::scenarios {

struct NetworkPlan {
    Path path;
    std::vector<ConnectAnswer> firstAnswers;  // to the first attempts to connect; then the path's
    NameAnswer names = NameAnswer::kUnknown;
    virtual_printer::DeviceSettings device;
    ServerHabits server;
};

//   VirtualNetwork network(plan);
//   network.at(seconds(2), [&] { network.lose(); });
//   links::TcpLink link(deadlines, network);
//   link.open("192.0.2.1"); ...
//   network.settle();                          // what is still under way arrives
class VirtualNetwork : public links::SystemCalls {
  public:
    explicit VirtualNetwork(const NetworkPlan& plan);

    // Schedules an event at a time counted from the start.
    void at(Duration time, EventQueue::Event event) { events_.after(time, std::move(event)); }

    // All packets vanish from now on, until restore().
    void lose();
    void restore();

    // Lets the clock run until no event is left, or for `limit`.
    void settle(Duration limit = std::chrono::minutes(30));

    EventQueue& events() { return events_; }
    const EventQueue& events() const { return events_; }
    PrinterServer& server() { return server_; }
    const PrinterServer& server() const { return server_; }

    // The connections in the order in which their sockets were made.
    std::size_t connectionCount() const { return connections_.size(); }
    const VirtualConnection& connection(std::size_t index) const { return *connections_.at(index); }

    // The same, for who plays the program at the far end.
    VirtualConnection& farEnd(std::size_t index) { return *connections_.at(index); }

    // A misuse of the system by the link, e.g. waiting forever or a busy loop; "" if there was
    // none.
    const std::string& misuse() const { return misuse_; }

    std::size_t openDescriptors() const { return descriptors_.size(); }

    // Like the system's calls.
    Time now() override { return events_.now(); }
    int socket(int domain, int type, int protocol) override;
    int connect(int descriptor, const sockaddr* address, socklen_t size) override;
    int setsockopt(int descriptor, int level, int name, const void* value, socklen_t size) override;
    int getsockopt(int descriptor, int level, int name, void* value, socklen_t* size) override;
    ssize_t send(int descriptor, const void* bytes, std::size_t size) override;
    ssize_t recv(int descriptor, void* bytes, std::size_t size) override;
    int shutdown(int descriptor, int how) override;
    int unsentBytes(int descriptor, int* count) override;
    int lookUp(const std::string& host, std::uint16_t port,
               std::vector<links::SocketAddress>& addresses) override;
    int poll(pollfd* descriptors, nfds_t count, int timeout) override;
    int close(int descriptor) override;

  private:
    VirtualConnection* find(int descriptor);
    int misused(const std::string& how);
    std::optional<Time> nextTime() const;
    void runDueEvents();
    int ready(pollfd* descriptors, nfds_t count);
    void awaitName(pollfd* descriptors, nfds_t count);

    NetworkPlan plan_;
    EventQueue events_;
    PrinterServer server_;
    std::vector<std::unique_ptr<VirtualConnection>> connections_;
    std::map<int, VirtualConnection*> descriptors_;
    bool lost_ = false;
    std::string misuse_;
    NameServer names_;
    Time lastPoll_{};
    unsigned pollsWithoutTime_ = 0;
};

}  // namespace tavio::scenarios
