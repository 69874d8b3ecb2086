#include "scenarios/name_server.h"

#include <cstring>
#include <netdb.h>
#include <netinet/in.h>

namespace tavio::scenarios {
namespace {

links::SocketAddress addressOfNumber(std::uint32_t number) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(number);
    links::SocketAddress result;
    std::memcpy(&result.storage, &address, sizeof address);
    result.size = sizeof address;
    return result;
}

constexpr std::uint32_t kFirstAddress = 0xC0'00'02'01;  // 192.0.2.1

}  // namespace

NameServer::~NameServer() {
    std::unique_lock lock(mutex_);
    closing_ = true;
    changed_.notify_all();
    changed_.wait(lock, [this] { return inside_ == 0; });
}

int NameServer::lookUp(std::vector<links::SocketAddress>& addresses) {
    std::unique_lock lock(mutex_);
    asked_ = true;
    ++inside_;
    changed_.notify_all();
    if (!answers()) changed_.wait(lock, [this] { return closing_; });
    if (answer_ == NameAnswer::kOneAddress || answer_ == NameAnswer::kTwoAddresses) {
        addresses.push_back(addressOfNumber(kFirstAddress));
    }
    if (answer_ == NameAnswer::kTwoAddresses) {
        addresses.push_back(addressOfNumber(kFirstAddress + 1));
    }
    --inside_;
    changed_.notify_all();
    return addresses.empty() ? EAI_NONAME : 0;
}

void NameServer::awaitQuestion() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return asked_; });
}

}  // namespace tavio::scenarios
