// Empty: CMake precompiles headers for a target, and a target has a file.
#include "library_headers.h"
