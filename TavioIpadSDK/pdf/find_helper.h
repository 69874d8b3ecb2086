// The place of the program tavio-pdf-page.
#pragma once

#include <string>

namespace tavio::pdf {

// The path of the helper program, "" if there is none. Looks beside the running program, in the
// installed tree that the program is part of, in the library's place of installation, and in the
// build tree.
std::string findHelper();

}  // namespace tavio::pdf
