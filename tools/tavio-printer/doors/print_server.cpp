#include "tools/tavio-printer/doors/print_server.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <ctime>
#include <mutex>
#include <stdexcept>
#include <sys/eventfd.h>
#include <thread>
#include <utility>
#include <vector>

#include "TavioIpadSDK/machine/descriptor.h"
#include "tools/tavio-printer/doors/print_loop.h"
#include "tools/tavio-printer/doors/tcp_door.h"
#include "tools/tavio-printer/doors/tty_door.h"

namespace tavio::virtual_printer {
namespace {

using Time = Device::Time;

timespec timeUntil(Time time, Time now) {
    const std::chrono::nanoseconds left = std::max(time, now) - now;
    const auto seconds = std::chrono::floor<std::chrono::seconds>(left);
    timespec result{};
    result.tv_sec = static_cast<std::time_t>(seconds.count());
    result.tv_nsec = static_cast<long>((left - seconds).count());
    return result;
}

}  // namespace

class PrintServer::Impl {
  public:
    Impl(const PrintServerSettings& settings, Device::OnTicket onTicket);
    ~Impl() { end(Time::min()); }
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    const std::string& printAddress() const { return printAddress_; }
    const std::string& serialAddress() const { return serialAddress_; }
    DeviceState state() const;
    void loadPaper();

    // Serves the present client until `deadline` at the latest, and ends.
    void end(Time deadline);

  private:
    std::vector<Door*> doors() const;
    void run();
    std::optional<Time> doRequests(PrintLoop& loop, Time now);
    void wait(PrintLoop& loop, Time now) const;
    void wake() const { static_cast<void>(::eventfd_write(wake_.get(), 1)); }

    const bool oneClient_;
    std::unique_ptr<TcpDoor> tcp_;
    std::unique_ptr<TtyDoor> tty_;
    std::string printAddress_;
    std::string serialAddress_;
    machine::Descriptor wake_;
    std::atomic<bool> stopped_{false};
    Device::OnTicket onTicket_;
    Device device_;  // used by the thread only

    mutable std::mutex mutex_;  // guards everything below
    DeviceState state_;
    bool newPaper_ = false;
    std::optional<Time> end_;

    std::mutex joining_;
    std::thread thread_;
};

PrintServer::Impl::Impl(const PrintServerSettings& settings, Device::OnTicket onTicket)
    : oneClient_(settings.oneClient),
      wake_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      onTicket_(std::move(onTicket)),
      device_(settings.device, [this](DeviceTicket ticket) {
          // The buffer may hold thousands of tickets: after a stop they are dropped.
          if (onTicket_ && !stopped_) onTicket_(std::move(ticket));
      }) {
    if (!wake_.isOpen()) throw std::runtime_error("there are no descriptors left for the printer");
    if (settings.listen) {
        tcp_ = std::make_unique<TcpDoor>(*settings.listen, settings.socketBuffer);
        printAddress_ = std::string("tcp://").append(toText(tcp_->address()));
    }
    if (settings.tty) {
        tty_ = std::make_unique<TtyDoor>(*settings.tty);
        serialAddress_ = std::string("tty:").append(tty_->device());
    }
    state_ = device_.state();
    thread_ = std::thread([this] { run(); });
}

std::vector<Door*> PrintServer::Impl::doors() const {
    std::vector<Door*> all;
    if (tcp_) all.push_back(tcp_.get());
    if (tty_) all.push_back(tty_.get());
    return all;
}

DeviceState PrintServer::Impl::state() const {
    const std::lock_guard lock(mutex_);
    return state_;
}

void PrintServer::Impl::loadPaper() {
    {
        const std::lock_guard lock(mutex_);
        newPaper_ = true;
    }
    wake();
}

void PrintServer::Impl::end(Time deadline) {
    if (deadline == Time::min()) stopped_ = true;
    {
        const std::lock_guard lock(mutex_);
        end_ = std::min(end_.value_or(Time::max()), deadline);
    }
    wake();
    const std::lock_guard lock(joining_);
    if (thread_.joinable()) thread_.join();
    tcp_.reset();
    tty_.reset();
}

void PrintServer::Impl::run() {
    PrintLoop loop(device_, doors(), oneClient_);
    for (;;) {
        const Time now = std::chrono::steady_clock::now();
        const std::optional<Time> end = doRequests(loop, now);
        if (end && now >= *end) return;
        loop.turn(now);
        {
            const std::lock_guard lock(mutex_);
            state_ = device_.state();
        }
        if (end && loop.isIdle()) return;
        wait(loop, now);
    }
}

// Handles the requests of other threads. Returns the latest time of the end, if one was requested.
std::optional<Time> PrintServer::Impl::doRequests(PrintLoop& loop, Time now) {
    std::unique_lock lock(mutex_);
    const bool newPaper = std::exchange(newPaper_, false);
    const std::optional<Time> end = end_;
    lock.unlock();
    if (newPaper) device_.loadPaper(now);
    if (end) loop.stopAccepting();
    return end;
}

void PrintServer::Impl::wait(PrintLoop& loop, Time now) const {
    std::optional<Time> next = loop.nextTurn(now);
    {
        const std::lock_guard lock(mutex_);
        if (end_) next = std::min(next.value_or(Time::max()), *end_);
    }
    std::vector<pollfd> polled = loop.descriptors(now);
    polled.push_back({wake_.get(), POLLIN, 0});
    const timespec left = next ? timeUntil(*next, std::chrono::steady_clock::now()) : timespec{};
    const int found = ::ppoll(polled.data(), polled.size(), next ? &left : nullptr, nullptr);
    if (found <= 0) return;
    if (polled.back().revents != 0) {
        eventfd_t count = 0;
        static_cast<void>(::eventfd_read(wake_.get(), &count));
    }
    polled.pop_back();
    loop.waited(polled, std::chrono::steady_clock::now());
}

PrintServer::PrintServer(const PrintServerSettings& settings, Device::OnTicket onTicket)
    : impl_(std::make_unique<Impl>(settings, std::move(onTicket))) {}

PrintServer::~PrintServer() = default;

std::string PrintServer::printAddress() const {
    return impl_->printAddress();
}
std::string PrintServer::serialAddress() const {
    return impl_->serialAddress();
}
DeviceState PrintServer::state() const {
    return impl_->state();
}
void PrintServer::loadPaper() {
    impl_->loadPaper();
}

void PrintServer::finish(std::chrono::milliseconds limit) {
    impl_->end(std::chrono::steady_clock::now() + limit);
}

void PrintServer::stop() {
    impl_->end(Time::min());
}

}  // namespace tavio::virtual_printer
