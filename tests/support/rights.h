// Root may read everything; a test of what may not be read lays these rights down for a while.
#pragma once

#include <unistd.h>

namespace tavio::test {

class WithoutRootRights {
  public:
    WithoutRootRights() : wasRoot_(::geteuid() == 0) {
        constexpr uid_t kNobody = 65534;
        if (wasRoot_) laidDown_ = ::seteuid(kNobody) == 0;
    }
    ~WithoutRootRights() {
        if (wasRoot_ && laidDown_) laidDown_ = ::seteuid(0) != 0;
    }
    WithoutRootRights(const WithoutRootRights&) = delete;
    WithoutRootRights& operator=(const WithoutRootRights&) = delete;

    bool succeeded() const { return !wasRoot_ || laidDown_; }

  private:
    bool wasRoot_;
    bool laidDown_ = false;
};

}  // namespace tavio::test
