// The time limits of a link.
#pragma once

#include <chrono>

#include "TavioIpadSDK/machine/export.h"

namespace tavio::links {

// Each is more than zero; a value of more than a day counts as a day. None limits a whole job: the
// link waits for a slow printer as long as it takes a byte now and then.
struct TAVIO_API Deadlines {
    // open(): the time to connect to the printer, with the lookup of its name.
    std::chrono::milliseconds connect{5'000};

    // write() and drain(): the time in which no byte is taken or acknowledged. Long enough for a
    // change of paper.
    std::chrono::milliseconds progress{30'000};

    // read(): the time until the first byte of a reply, and from there until its end.
    std::chrono::milliseconds reply{5'000};

    // read(): the pause after which a reply has ended.
    std::chrono::milliseconds silence{200};

    // close(): the time until the printer ends its side of the connection, after it has all bytes.
    std::chrono::milliseconds goodbye{5'000};
};

}  // namespace tavio::links
