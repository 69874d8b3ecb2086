// Empty: CMake precompiles headers for a target, and a target has a file.
#include "test_headers.h"
