// The links that the transport operations use, and the report of the last job.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>

#include "tavio/links/deadlines.h"
#include "tavio/links/link.h"

namespace tavio::links {

enum class Transport : std::uint8_t { kBluetooth, kWiFi };

// Used by one thread at a time, except cancelJob(). Throws only the exceptions of links.
class JobLinks {
  public:
    void use(std::shared_ptr<Link> link) { chosen_ = std::move(link); }
    void setBluetoothPrinter(const std::string& printer) { bluetoothPrinter_ = printer; }
    void setDeadlines(const Deadlines& deadlines) { deadlines_ = deadlines; }

    // Each opening makes a new link, unless one has been chosen. True on success.
    bool open(Transport transport, const std::string& address);

    // The link for reads and writes; null if none has been opened.
    Link* at(Transport transport) const;

    void close(Transport transport);
    LinkReport lastReport() const;
    void cancelJob();

  private:
    std::shared_ptr<Link> linkFor(Transport transport);
    std::shared_ptr<Link>& defaultLink(Transport transport);
    void setRunning(const std::shared_ptr<Link>& link);
    std::shared_ptr<Link> running() const;

    std::shared_ptr<Link> chosen_;
    std::shared_ptr<Link> bluetooth_;  // while it is open
    std::shared_ptr<Link> wiFi_;
    std::string bluetoothPrinter_;
    Deadlines deadlines_;
    LinkReport lastReport_;  // of the last job, after its end
    mutable std::mutex mutex_;
    std::weak_ptr<Link> running_;  // guarded by the mutex
};

}  // namespace tavio::links
