// The limits under which a helper program reads what is not trusted.
#pragma once

#include <sys/resource.h>

namespace tavio::helper_program {

struct Limits {
    rlim_t cpuSeconds = 0;   // of processor time
    rlim_t memoryBytes = 0;  // of address space
};

// Applies them, forbids core files and other processes' looks, and has the process end with its
// parent. Nothing may be read before this. False if that is not possible.
bool applyLimits(const Limits& limits);

}  // namespace tavio::helper_program
