// The failure of a command.
#pragma once

#include <stdexcept>

namespace tavio::tool {

// Ends a command: its text is one sentence without a full stop, shown after "tavio: ", and the
// program's exit status is 1.
class Failure : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// A signal ended the command. The program's exit status is 128 plus the signal's number, as in
// shells.
class Interrupted : public Failure {
  public:
    explicit Interrupted(int signal) : Failure("interrupted"), signal_(signal) {}

    int exitStatus() const { return 128 + signal_; }

  private:
    int signal_;
};

}  // namespace tavio::tool
