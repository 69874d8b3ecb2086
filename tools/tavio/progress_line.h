// How far the sending of a job has come, as one line for a terminal.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>

namespace tavio::tool {

// Has no clock of its own: the caller says what time it is, never going back.
//
//   sending  [##########----------]  21 kB of 39 kB  53%  9.8 kB/s
class ProgressLine {
  public:
    using Time = std::chrono::steady_clock::time_point;

    // The rate is that of the time just passed, as long as this.
    static constexpr std::chrono::milliseconds kRateWindow{3'000};

    explicit ProgressLine(Time begin) : samples_{{begin, 0}} {}

    // So many bytes of so many have gone. Both may grow.
    void update(Time now, std::uint64_t done, std::uint64_t total);

    // The line in fewer than `columns` characters; what there is no room for is left out. "" as long
    // as there is nothing to send.
    std::string text(Time now, std::size_t columns) const;

  private:
    struct Sample {
        Time time;
        std::uint64_t done;
    };
    double bytesPerSecond(Time now) const;

    std::uint64_t done_ = 0;
    std::uint64_t total_ = 0;
    std::deque<Sample> samples_;  // oldest first: one from before the window, others in it
};

// A number of bytes in at most 6 characters: "999 B", "9.8 kB", "21 kB", "1.0 MB".
std::string sizeText(double bytes);

}  // namespace tavio::tool
