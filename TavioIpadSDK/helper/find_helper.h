// The place of a helper program.
#pragma once

#include <string>

namespace tavio::helper {

// The path of the helper program of this name, "" if there is none. Looks beside the running
// program, in the installed tree that the program is part of, in the library's place of
// installation, and in the build tree.
std::string findHelper(const std::string& name);

}  // namespace tavio::helper
