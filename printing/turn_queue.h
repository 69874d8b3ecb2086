// The order of one printer's jobs.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>

#include "tavio/links/link.h"

namespace tavio::printing {

class TurnQueue {
  public:
    class Turn;

    // Cancels every turn that is in the queue, with its link.
    void cancelAll() noexcept;

    std::size_t size() const noexcept;

  private:
    mutable std::mutex mutex_;
    std::deque<Turn*> turns_;  // in the order of their arrival
};

// The place of one job, from its construction to its destruction.
class TurnQueue::Turn {
  public:
    explicit Turn(TurnQueue& queue);
    ~Turn();
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

    // Waits until it is the first. False if it was cancelled before.
    bool await();

    bool isCancelled() const;

    // The link that is cancelled with the turn from now on, also if the turn was cancelled before.
    // It must live until null is given.
    void use(links::Link* link);

  private:
    friend class TurnQueue;

    TurnQueue& queue_;
    std::condition_variable changed_;
    links::Link* link_ = nullptr;
    bool isCancelled_ = false;
};

}  // namespace tavio::printing
