// A helper program that is kept.
#pragma once

#include "TavioIpadSDK/helper/program/program.h"

namespace tavio::helper_program {

// The work of NAME --keep (helper/keeper_protocol.h). Returns the exit status, in the process that was
// started at once, in the keeper itself when it is not needed any more.
int keep(const Program& program);

}  // namespace tavio::helper_program
