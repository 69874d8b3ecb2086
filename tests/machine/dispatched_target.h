// A kernel that says which of its forms runs.
#pragma once

#include <string>

namespace tavio::test {

// The vector library's name of the instruction set that kernels are picked for: "AVX2", "NEON", ...
// Without meaning while the plain forms are in use, which kernels do not pick but turn to.
std::string dispatchedTarget();

}  // namespace tavio::test
