// Starting a program.
#pragma once

#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

#include "TavioIpadSDK/machine/descriptor.h"

namespace tavio::helper {

using machine::Descriptor;

// What a program gets of this process's environment: what it needs to find fonts and libraries.
std::vector<std::string> keptEnvironment();

// Starts `program`, a path, with these files, whose numbers are above those of the standard streams, as
// its standard input and output; standard error goes to /dev/null. The program gets no other file
// descriptor, no blocked or ignored signal, a process group of its own and keptEnvironment().
// `arguments` come after the program's name. Returns none if it cannot be started.
std::optional<pid_t> spawn(const std::string& program, const std::vector<std::string>& arguments,
                           const Descriptor& input, const Descriptor& output);

}  // namespace tavio::helper
