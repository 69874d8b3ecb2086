// Pipes to other processes.
#pragma once

#include "TavioIpadSDK/machine/descriptor.h"

namespace tavio::helper {

struct Pipe {
    machine::Descriptor reading;
    machine::Descriptor writing;

    bool isOpen() const { return reading.isOpen() && writing.isOpen(); }
};

// Not inherited by programs, and with numbers above those of the three standard streams, so that dup2
// onto one of them overwrites no other. Closed if there is no free descriptor.
Pipe makePipe();

// The same file under another number above those of the three standard streams.
machine::Descriptor aboveStandardStreams(const machine::Descriptor& file);

}  // namespace tavio::helper
