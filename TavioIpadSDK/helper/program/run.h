// What every helper program does: helper/ask_program.h describes its command line, and
// helper/keeper_protocol.h that of a program that is kept.
#pragma once

#include <span>

#include "TavioIpadSDK/helper/program/program.h"

namespace tavio::helper_program {

// The whole of main(): reads the command line, applies its limits, performs the task. Returns the exit
// status (exit_status.h).
int run(const Program& program, std::span<char* const> arguments);

}  // namespace tavio::helper_program
