// Work on another thread, which the caller need not wait for.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace tavio::links {

// Runs the work on a thread of its own. The thread outlives this object if the work takes longer,
// so the work must keep everything that it uses alive. If no thread can be started, the constructor
// does the work. The work must not throw.
class BackgroundTask {
  public:
    explicit BackgroundTask(std::function<void()> work);

    // Waits until the work is done, but no longer than `time` by the machine's clock. True if it is
    // done.
    bool isDoneWithin(std::chrono::milliseconds time);

  private:
    struct State;
    std::shared_ptr<State> state_;
};

}  // namespace tavio::links
