// A clock that is a variable, and the events scheduled on it.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tavio::scenarios {

using Time = std::chrono::steady_clock::time_point;
using Duration = std::chrono::steady_clock::duration;
using std::chrono::milliseconds;

// Events of the same time run in the order in which they were scheduled, so that every run of the
// same plan is the same.
class EventQueue {
  public:
    using Event = std::function<void()>;

    static constexpr std::size_t kMaxLines = 4000;  // of the trace

    Time now() const { return now_; }
    Duration elapsed() const { return now_ - kStart; }

    void at(Time time, Event event) {
        events_.emplace(Key{std::max(time, now_), ++planned_}, std::move(event));
    }
    void after(Duration delay, Event event) { at(now_ + delay, std::move(event)); }

    std::optional<Time> next() const {
        if (events_.empty()) return std::nullopt;
        return events_.begin()->first.first;
    }

    // The clock goes forward to `time`, never back; runOne() runs the events that are due.
    void advanceTo(Time time) { now_ = std::max(now_, time); }

    // Runs one event that is due; false if there is none.
    bool runOne() {
        if (events_.empty() || events_.begin()->first.first > now_) return false;
        auto node = events_.extract(events_.begin());
        node.mapped()();
        return true;
    }

    // Adds a line to the record, if one is kept.
    void keepTrace() { keepsTrace_ = true; }
    bool keepsTrace() const { return keepsTrace_; }
    void trace(const std::string& line);
    const std::vector<std::string>& lines() const { return lines_; }

  private:
    using Key = std::pair<Time, std::uint64_t>;

    // Far from 0, so that a deadline of 0 by mistake shows.
    static constexpr Time kStart{std::chrono::hours(1)};

    Time now_ = kStart;
    std::uint64_t planned_ = 0;
    std::map<Key, Event> events_;
    bool keepsTrace_ = false;
    std::vector<std::string> lines_;
};

// "1234.567 ms"
std::string inMilliseconds(Duration duration);

}  // namespace tavio::scenarios
