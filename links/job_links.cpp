#include "tavio/links/job_links.h"

#include <utility>

#include "tavio/links/rfcomm_link.h"
#include "tavio/links/tcp_link.h"

namespace tavio::links {

std::shared_ptr<Link>& JobLinks::readyMade(Transport transport) {
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

void JobLinks::setUnderWay(const std::shared_ptr<Link>& link) {
    const std::lock_guard lock(mutex_);
    underWay_ = link;
}

std::shared_ptr<Link> JobLinks::underWay() const {
    const std::lock_guard lock(mutex_);
    return underWay_.lock();
}

bool JobLinks::open(Transport transport, const std::string& address) {
    if (!chosen_) close(transport);
    setUnderWay(nullptr);
    lastReport_ = {};
    if (!chosen_ && transport == Transport::kBluetooth && bluetoothPrinter_.empty()) {
        lastReport_.failure = "no Bluetooth printer has been chosen";
        return false;
    }
    const std::shared_ptr<Link> link = linkFor(transport);
    if (!chosen_) readyMade(transport) = link;
    setUnderWay(link);
    return link->open(address);
}

void JobLinks::close(Transport transport) {
    const std::shared_ptr<Link> link =
        chosen_ ? chosen_ : std::exchange(readyMade(transport), nullptr);
    if (!link) return;
    link->close();
    if (underWay() != link) return;
    lastReport_ = link->report();
    setUnderWay(nullptr);
}

LinkReport JobLinks::lastReport() const {
    const auto link = underWay();
    return link ? link->report() : lastReport_;
}

// With the lock, so that a job that has just ended is not cancelled in place of the next one.
void JobLinks::cancelJob() {
    std::shared_ptr<Link> link;  // outlives the lock: it may be the last to hold the link
    const std::lock_guard lock(mutex_);
    link = underWay_.lock();
    if (link) link->cancel();
}

}  // namespace tavio::links
