// All commands with their options.
#pragma once

#include "tools/tavio/command_spec.h"

namespace tavio::tool {

// The program's command line. Every command writes into the same options.
CommandSpec toolCommands(Options& options);

// A script's line: the commands that make up a job, with settings, but without a target.
CommandSpec scriptCommands(Options& options);

// A script's line of settings alone.
CommandSpec scriptSettings(Options& options);

}  // namespace tavio::tool
