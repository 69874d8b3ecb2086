// A program that is started for one answer.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "TavioIpadSDK/helper/running.h"

namespace tavio::helper {

// Starts `program`, a path, with `input` as its standard input; spawn.h tells what it gets otherwise.
// Returns none if it cannot be started.
std::optional<Running> startLoneProgram(const std::string& program,
                                        const std::vector<std::string>& arguments,
                                        const Descriptor& input);

}  // namespace tavio::helper
