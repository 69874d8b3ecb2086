// The failure of a command.
#pragma once

#include <stdexcept>
#include <string>

namespace tavio::tool {

// Ends a command: its text is one sentence without a full stop, shown after "tavio: ". Nothing has
// been sent. `kind` is its name in JSON.
class Failure : public std::runtime_error {
  public:
    explicit Failure(const std::string& sentence, const char* kind = "failed")
        : std::runtime_error(sentence), kind_(kind) {}

    const char* kind() const { return kind_; }

  private:
    const char* kind_;
};

}  // namespace tavio::tool
