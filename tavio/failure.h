// Why a command cannot do what it was asked to.
#pragma once

#include <stdexcept>

namespace tavio::tool {

// Ends a command: its text is one sentence without a full stop, shown after "tavio: ", and the
// program's exit status is 1.
class Failure : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

}  // namespace tavio::tool
