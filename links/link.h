// A link: the way of the bytes from the library to one printer, or to what stands in for one.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>

#include "TavioIpadSDK/platform/text.h"
#include "tavio/links/link_report.h"

namespace tavio::links {

// How far the write() or drain() that is under way has come, counted since open().
struct Progress {
    std::uint64_t offered = 0;   // bytes given to write() so far
    std::uint64_t accepted = 0;  // bytes of them that the operating system took
};
using ProgressObserver = std::function<void(const Progress&)>;

// Used by one thread at a time, but for cancel(). The library takes no notice of what a write came
// to, so a link remembers it: report() tells, during and after the job. After the first failure of
// a job nothing more is passed on, so that no gap can arise in what is printed.
//
//   auto link = std::make_shared<links::TcpLink>(links::Deadlines{});
//   links::useLink(link);
//   OpenSessionWiFi("192.168.1.50"); SendFile(url, 10, 20); PrintCut(); CloseSessionWiFi();
//   tellTheUser(links::describe(link->report()));
class Link {
  public:
    Link() = default;
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;
    virtual ~Link() = default;

    // Begins a job: makes the link ready for bytes, and its report a new one; true on success.
    // `address` is what the application gave to OpenSessionWiFi, "" for Bluetooth; a link that was
    // made for one place pays it no heed. On a link that is open already it first closes that.
    virtual bool open(const std::string& address) = 0;

    // Passes the bytes on, all of them and in order; true on success.
    virtual bool write(std::span<const Byte> bytes) = 0;

    // Waits until everything written has arrived at the far end, as far as this kind of link can
    // know; true when it has.
    virtual bool drain() = 0;

    // What the printer has answered, waited for where nothing has come yet; no text when there is
    // no answer. Each answer is given once.
    virtual Text read() = 0;

    // Ends what open() began; allowed at any time, also twice. After a job without a failure it
    // drains, says goodbye and waits for the far end; after a failure it breaks off.
    virtual void close() = 0;

    // Makes the operation under way, and every later one, fail at once. May be called on any thread
    // and in a signal handler. A cancelled link stays so.
    virtual void cancel() noexcept = 0;

    // Why the first operation of the job that failed did so: a sentence without a full stop, e.g.
    // "job.bin cannot be written: No space left on device"; "" as long as none has.
    virtual std::string failure() const = 0;

    // What has become of the job so far.
    virtual LinkReport report() const = 0;

    // Has `observer` called in write() and drain(), on their thread, whenever bytes were taken. An
    // empty function ends that.
    virtual void observeProgress(ProgressObserver observer) = 0;
};

}  // namespace tavio::links
