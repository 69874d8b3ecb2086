// The options of one job.
#pragma once

#include <cstdint>
#include <functional>

#include "TavioIpadSDK/machine/export.h"

namespace tavio::printing {

// What the printer has to confirm. Without a reply table any reply confirms; with one, only a reply
// that means kReady. After the job only a reply confirms of which some came after the last byte had
// been handed over.
struct TAVIO_API PrintOptions {
    bool readyBefore = false;  // else nothing is sent: kNotReady
    bool readyAfter = false;   // else the remark kNotConfirmed

    // Called while bytes are sent, on the thread that sends: bytes sent so far, bytes of the job.
    // It must not call the printer.
    std::function<void(std::uint64_t sent, std::uint64_t total)> progress = {};
};

}  // namespace tavio::printing
