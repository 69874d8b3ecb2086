// How much address space this process takes.
#pragma once

#include <sys/resource.h>

namespace tavio::helper_program {

// In bytes; 0 if it is not known.
rlim_t addressSpace();

}  // namespace tavio::helper_program
