// A link: the way of the bytes from the library to one printer, or to what stands in for one.
#pragma once

#include <span>
#include <string>

#include "TavioIpadSDK/platform/text.h"

namespace tavio::links {

// Used by one thread at a time. The library takes no notice of what a write came to, so a link
// remembers it: the first failure stays, and ends the link's usefulness.
//
//   auto link = std::make_shared<links::FileLink>("job.bin");
//   links::useLink(link);
//   OpenSessionWiFi("job.bin"); SendFile(url, 10, 20); CloseSessionWiFi();
//   if (!link->commit()) return tellTheUser(link->failure());  // only now job.bin is there
class Link {
  public:
    Link() = default;
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;
    virtual ~Link() = default;

    // Makes the link ready for bytes; true on success. `address` is what the application gave to
    // OpenSessionWiFi, "" for Bluetooth; a link that was made for one place pays it no heed.
    virtual bool open(const std::string& address) = 0;

    // Passes the bytes on, all of them and in order; true on success. After a failure nothing more
    // is passed on.
    virtual bool write(std::span<const Byte> bytes) = 0;

    // What the printer has answered; no text when there is no answer.
    virtual Text read() = 0;

    // Ends what open() began; allowed at any time, also twice.
    virtual void close() = 0;

    // Why the first operation that failed did so: a sentence without a full stop, e.g. "job.bin
    // cannot be written: No space left on device"; "" as long as none has.
    virtual std::string failure() const = 0;
};

}  // namespace tavio::links
