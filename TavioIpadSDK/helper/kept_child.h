// A child of a kept program.
#pragma once

#include <optional>
#include <sys/types.h>

#include "TavioIpadSDK/helper/running.h"

namespace tavio::helper {

// The owner's end of a leash (keeper_protocol.h). The keeper kills the child when it is let go.
class KeptChild : public Leash {
  public:
    explicit KeptChild(Descriptor leash);
    KeptChild(const KeptChild&) = delete;
    KeptChild& operator=(const KeptChild&) = delete;
    ~KeptChild() override;

    // Any thread may ask, and as often as it likes.
    std::optional<Ending> waitForEnd(Deadline deadline) override;

  private:
    Descriptor leash_;
    pid_t owner_;
};

}  // namespace tavio::helper
