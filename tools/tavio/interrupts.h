// SIGINT (Ctrl-C) and SIGTERM while a job is sent.
#pragma once

#include <memory>

#include "tavio/links/link.h"

namespace tavio::tool {

// While an object exists, the first SIGINT or SIGTERM cancels the link, so that the outcome of the
// job can still be printed; a second one ends the program at once. An ignored signal stays ignored.
// Only one object may exist at a time.
class CancelOnSignal {
  public:
    explicit CancelOnSignal(std::shared_ptr<links::Link> link);
    CancelOnSignal(const CancelOnSignal&) = delete;
    CancelOnSignal& operator=(const CancelOnSignal&) = delete;
    ~CancelOnSignal();

    // The number of the signal that came, 0 if none has.
    static int caught() noexcept;

  private:
    std::shared_ptr<links::Link> link_;
};

}  // namespace tavio::tool
