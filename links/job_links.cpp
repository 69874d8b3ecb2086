#include "tavio/links/job_links.h"

#include <utility>

#include "tavio/links/rfcomm_link.h"
#include "tavio/links/tcp_link.h"

namespace tavio::links {

std::shared_ptr<Link>& JobLinks::defaultLink(Transport transport) {
    return transport == Transport::kBluetooth ? bluetooth_ : wiFi_;
}

Link* JobLinks::at(Transport transport) const {
    if (chosen_) return chosen_.get();
    return transport == Transport::kBluetooth ? bluetooth_.get() : wiFi_.get();
}

std::shared_ptr<Link> JobLinks::linkFor(Transport transport) {
    if (chosen_) return chosen_;
    if (transport == Transport::kWiFi) return std::make_shared<TcpLink>(deadlines_);
    return std::make_shared<RfcommLink>(bluetoothPrinter_, deadlines_);
}

void JobLinks::setRunning(const std::shared_ptr<Link>& link) {
    const std::lock_guard lock(mutex_);
    running_ = link;
}

std::shared_ptr<Link> JobLinks::running() const {
    const std::lock_guard lock(mutex_);
    return running_.lock();
}

bool JobLinks::open(Transport transport, const std::string& address) {
    if (!chosen_) close(transport);
    setRunning(nullptr);
    lastReport_ = {};
    if (!chosen_ && transport == Transport::kBluetooth && bluetoothPrinter_.empty()) {
        lastReport_.failure = "no Bluetooth printer has been chosen";
        lastReport_.failureKind = FailureKind::kBadAddress;
        return false;
    }
    const std::shared_ptr<Link> link = linkFor(transport);
    if (!chosen_) defaultLink(transport) = link;
    setRunning(link);
    return link->open(address);
}

void JobLinks::close(Transport transport) {
    const std::shared_ptr<Link> link =
        chosen_ ? chosen_ : std::exchange(defaultLink(transport), nullptr);
    if (!link) return;
    link->close();
    if (running() != link) return;
    lastReport_ = link->report();
    setRunning(nullptr);
}

LinkReport JobLinks::lastReport() const {
    const auto link = running();
    return link ? link->report() : lastReport_;
}

// Under the lock, so that it cannot cancel the next job after this one has ended.
void JobLinks::cancelJob() {
    std::shared_ptr<Link> link;  // outlives the lock: it may be the last to hold the link
    const std::lock_guard lock(mutex_);
    link = running_.lock();
    if (link) link->cancel();
}

}  // namespace tavio::links
