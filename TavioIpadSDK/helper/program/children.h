// The children of a kept program.
#pragma once

#include <poll.h>
#include <sys/types.h>
#include <vector>

#include "TavioIpadSDK/machine/descriptor.h"

namespace tavio::helper_program {

// Each has a leash (helper/keeper_protocol.h), whose keeper's end is here.
class Children {
  public:
    bool isEmpty() const { return children_.empty(); }

    void add(pid_t process, machine::Descriptor leash);

    // What to wait for: a leash that was let go.
    void addTo(std::vector<pollfd>& waiting) const;

    // Kills those whose leash was let go.
    void killLetGo();

    // Reaps those that have ended, kills what is left of their process groups, and tells their endings.
    void reapEnded();

    // Kills and reaps all.
    void killAll();

    // Closes the leashes, in a fork of the process whose children they are.
    void forget() { children_.clear(); }

  private:
    struct Child {
        pid_t process;
        machine::Descriptor leash;  // closed after it was let go
    };

    std::vector<Child> children_;
};

}  // namespace tavio::helper_program
