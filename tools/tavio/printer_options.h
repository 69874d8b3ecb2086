// The commands of the list of named printers, with their options.
#pragma once

#include "tools/tavio/command_spec.h"

namespace tavio::tool {

// "printers", with its commands.
CommandSpec printerCommands(Options& options);

}  // namespace tavio::tool
