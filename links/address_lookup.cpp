#include "tavio/links/address_lookup.h"

#include <atomic>
#include <cerrno>
#include <cstring>
#include <memory>
#include <netdb.h>
#include <sys/eventfd.h>
#include <system_error>
#include <thread>
#include <unistd.h>

#include "TavioIpadSDK/machine/descriptor.h"

namespace tavio::links {

namespace {

std::vector<SocketAddress> numericAddresses(const TcpAddress& address) {
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = AI_NUMERICHOST | AI_NUMERICSERV;
    addrinfo* found = nullptr;
    if (::getaddrinfo(address.host.c_str(), std::to_string(address.port).c_str(), &hints, &found) !=
        0) {
        return {};
    }
    SocketAddress result;
    std::memcpy(&result.storage, found->ai_addr, found->ai_addrlen);
    result.size = found->ai_addrlen;
    ::freeaddrinfo(found);
    return {result};
}

// Shared by the looking thread and the waiting thread.
class LookUp {
  public:
    // Readable after the lookup.
    int descriptor() const { return finished_.get(); }

    void run(SystemCalls& calls, const TcpAddress& address) noexcept {
        try {
            error_ = calls.lookUp(address.host, address.port, addresses_);
            systemError_ = errno;
        } catch (const std::exception&) {
            error_ = EAI_MEMORY;
        }
        done_.store(true);
        const std::uint64_t one = 1;
        [[maybe_unused]] const ssize_t written = ::write(finished_.get(), &one, sizeof one);
    }

    bool isDone() const { return done_.load(); }

    // The reason why the finished lookup failed; "" if it found an address.
    std::string failure() const {
        if (error_ == EAI_SYSTEM) return std::generic_category().message(systemError_);
        if (error_ != 0) return ::gai_strerror(error_);
        return addresses_.empty() ? std::string("it has no address") : std::string();
    }
    const std::vector<SocketAddress>& addresses() const { return addresses_; }

  private:
    machine::Descriptor finished_{::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)};
    std::atomic<bool> done_{false};
    int error_ = 0;
    int systemError_ = 0;
    std::vector<SocketAddress> addresses_;
};

std::string cannotFind(const TcpAddress& address) {
    return std::string("the printer at ").append(toText(address)).append(" cannot be found");
}

bool start(const std::shared_ptr<LookUp>& lookUp, SystemCalls& calls, const TcpAddress& address) {
    if (lookUp->descriptor() < 0) return false;
    try {
        std::thread([lookUp, &calls, address] { lookUp->run(calls, address); }).detach();
        return true;
    } catch (const std::system_error& error) {
        errno = error.code().value();
        return false;
    }
}

}  // namespace

std::vector<SocketAddress> findAddresses(const TcpAddress& address, Waiter& waiter,
                                         std::string& failure) {
    if (auto found = numericAddresses(address); !found.empty()) return found;
    const auto lookUp = std::make_shared<LookUp>();
    if (!start(lookUp, waiter.calls(), address)) {
        failure = cannotFind(address).append(": ").append(std::generic_category().message(errno));
        return {};
    }
    short ready = 0;
    const auto result = waiter.wait(lookUp->descriptor(), POLLIN, ready);
    const int error = errno;
    if (lookUp->isDone()) {
        failure = lookUp->failure();
        if (failure.empty()) return lookUp->addresses();
        failure.insert(0, cannotFind(address).append(": "));
    } else if (result == Waiter::Result::kFailed) {
        failure = cannotFind(address).append(": ").append(std::generic_category().message(error));
    } else {
        failure = cannotFind(address).append(" in time");
    }
    return {};
}

}  // namespace tavio::links
