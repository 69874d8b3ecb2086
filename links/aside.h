// Work that may take longer than anybody wants to wait for it.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace tavio::links {

// Begins the work on a thread of its own, which is left behind where it does not finish in time and
// then ends by itself: what it uses must last as long as it may take. Without a thread to be had,
// the constructor does the work. It must not throw.
class Aside {
  public:
    explicit Aside(std::function<void()> work);

    // Waits at most so long, by the machine's own clock; whether the work is done.
    bool isDoneWithin(std::chrono::milliseconds time);

  private:
    struct State;
    std::shared_ptr<State> state_;
};

}  // namespace tavio::links
