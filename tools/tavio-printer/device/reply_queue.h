// The printer's answers and their times.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <utility>

namespace tavio::virtual_printer {

// Answers with the same text, each after a delay.
class ReplyQueue {
  public:
    using Time = std::chrono::steady_clock::time_point;

    // The limit on answers that wait; further ones are dropped.
    static constexpr std::size_t kMaxWaiting = 1000;

    ReplyQueue(std::string text, std::chrono::milliseconds delay)
        : text_(std::move(text)), delay_(delay) {}

    bool hasText() const { return !text_.empty(); }

    // One answer, the delay after this time. Times must not go back.
    void add(Time cause);

    // True if no answer waits, due or not.
    bool empty() const { return due_ == 0 && later_.empty(); }

    std::optional<Time> next() const;  // when the next one is due
    void advance(Time now);
    std::string take();  // all answers that are due
    void clear();

  private:
    std::string text_;
    std::chrono::milliseconds delay_;
    std::size_t due_ = 0;
    std::deque<Time> later_;
};

}  // namespace tavio::virtual_printer
