// How long a link waits before it gives up.
#pragma once

#include <chrono>

namespace tavio::links {

// Each is more than zero; a value beyond a day counts as a day. None limits how long a job takes as
// a whole: a printer that takes a byte now and then is waited for.
struct Deadlines {
    // open(): until the printer is connected, looking up its name included.
    std::chrono::milliseconds connect{5'000};

    // write() and drain(): without a single byte taken or acknowledged. Long enough for a change
    // of paper.
    std::chrono::milliseconds progress{30'000};

    // read(): until the first byte of a reply, and from there until its end at the latest.
    std::chrono::milliseconds reply{5'000};

    // read(): a reply ends when nothing has followed its last byte for so long.
    std::chrono::milliseconds silence{200};

    // close(): until the printer ends its side of the connection, after it has everything.
    std::chrono::milliseconds goodbye{5'000};
};

}  // namespace tavio::links
