// A link carries bytes from the library to one printer, or to a stand-in for one.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>

#include "TavioIpadSDK/machine/export.h"
#include "TavioIpadSDK/platform/text.h"
#include "tavio/links/link_report.h"

namespace tavio::links {

// The progress of the present write() or drain(), counted since open().
struct TAVIO_API Progress {
    std::uint64_t offered = 0;   // bytes given to write() so far
    std::uint64_t accepted = 0;  // bytes of them that the operating system took
};
using ProgressObserver = std::function<void(const Progress&)>;

// Used by one thread at a time, except cancel(). The library ignores the results of writes, so a
// link keeps them: see report(), during and after the job. After the first failure of a job no more
// bytes are passed on, so that the printed bytes have no gap.
//
//   auto link = std::make_shared<links::TcpLink>(links::Deadlines{});
//   links::useLink(link);
//   OpenSessionWiFi("192.168.1.50"); SendFile(url, 10, 20); PrintCut(); CloseSessionWiFi();
//   tellTheUser(links::describe(link->report()));
class TAVIO_API Link {
  public:
    Link() = default;
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;
    virtual ~Link() = default;

    // Begins a job and a new report; true on success. `address` is the argument of OpenSessionWiFi,
    // "" for Bluetooth; a link that was made for one printer or file ignores it. An open link is
    // closed first.
    virtual bool open(const std::string& address) = 0;

    // Passes all bytes on, in order; true on success.
    virtual bool write(std::span<const Byte> bytes) = 0;

    // Waits until all bytes have arrived at the far end, as far as this kind of link can know. True
    // if they have.
    virtual bool drain() = 0;

    // The printer's answer; waits for it if none has come yet. No text if there is none. Each
    // answer is returned once.
    virtual Text read() = 0;

    // Ends the job; allowed at any time, also twice. After a job without a failure it drains, ends
    // its side and waits for the far end. After a failure it breaks the connection off.
    virtual void close() = 0;

    // Makes the present operation and every later one fail at once. May be called on any thread and
    // in a signal handler. A cancelled link stays cancelled.
    virtual void cancel() noexcept = 0;

    // The reason of the job's first failure: a sentence without a full stop, e.g. "job.bin cannot
    // be written: No space left on device"; "" if there was none.
    virtual std::string failure() const = 0;

    // The report of the job so far.
    virtual LinkReport report() const = 0;

    // Calls `observer` in write() and drain(), on their thread, after bytes were taken. An empty
    // function ends that.
    virtual void observeProgress(ProgressObserver observer) = 0;
};

}  // namespace tavio::links
