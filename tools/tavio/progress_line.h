// The progress of a job, as one line for a terminal.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <initializer_list>
#include <string>

namespace tavio::tool {

// Has no clock: the caller passes the time, which never goes back.
//
//   sending  [##########----------]  21 kB of 39 kB  53%  9.8 kB/s
//   printing  [###-----------------]  75 of 500 tickets  15%  2:05 left
class ProgressLine {
  public:
    using Time = std::chrono::steady_clock::time_point;

    // What is counted.
    enum class Unit { kBytes, kTickets };

    // The rate is that of the last period of this length.
    static constexpr std::chrono::milliseconds kRateWindow{3'000};

    explicit ProgressLine(Time begin, Unit unit = Unit::kBytes)
        : unit_(unit), samples_{{begin, 0}} {}

    // `done` of `total` have been sent. Both may grow.
    void update(Time now, std::uint64_t done, std::uint64_t total);

    // The line in fewer than `columns` characters; parts that do not fit are left out. "" if there
    // is nothing to send.
    std::string text(Time now, std::size_t columns) const;

  private:
    struct Sample {
        Time time;
        std::uint64_t done;
    };
    double perSecond(Time now) const;
    std::string joined(std::initializer_list<std::string> parts) const;
    std::string numbersText() const;
    std::string paceText(Time now) const;

    Unit unit_;
    std::uint64_t done_ = 0;
    std::uint64_t total_ = 0;
    std::deque<Sample> samples_;  // oldest first: one from before the window, others in it
};

// A number of bytes in at most 6 characters: "999 B", "9.8 kB", "21 kB", "1.0 MB".
std::string sizeText(double bytes);

// "0:07", "2:05", "1:02:05"
std::string timeText(double seconds);

}  // namespace tavio::tool
