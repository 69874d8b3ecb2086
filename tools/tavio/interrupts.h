// Ctrl-C and SIGTERM while a job is sent.
#pragma once

#include <memory>

#include "tavio/links/link.h"

namespace tavio::tool {

// While one exists, the first SIGINT or SIGTERM cancels the link, so that what became of the job can
// still be told; a second one ends the program at once. A signal that was ignored stays so. One at a
// time.
class CancelOnSignal {
  public:
    explicit CancelOnSignal(std::shared_ptr<links::Link> link);
    CancelOnSignal(const CancelOnSignal&) = delete;
    CancelOnSignal& operator=(const CancelOnSignal&) = delete;
    ~CancelOnSignal();

    // The number of the signal that came, 0 as long as none has.
    static int caught() noexcept;

  private:
    std::shared_ptr<links::Link> link_;
};

}  // namespace tavio::tool
