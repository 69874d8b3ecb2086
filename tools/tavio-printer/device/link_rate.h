// How many bytes a link of a given speed has brought by a given time.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

namespace tavio::virtual_printer {

// Counts in whole units of 10^-12 byte, so that nothing drifts however often it is asked.
//
// Bytes come in portions: once all that the link has brought is taken, there is nothing more until
// it has brought 10 ms worth, or one byte. An idle link saves up 50 ms worth, or one byte.
class LinkRate {
  public:
    using Time = std::chrono::steady_clock::time_point;

    static constexpr double kMinBytesPerSecond = 0.001;
    static constexpr double kMaxBytesPerSecond = 1e8;

    // 0: no limit. Otherwise within the two limits, and rounded to thousandths.
    explicit LinkRate(double bytesPerSecond);

    // The link begins, with nothing brought.
    void begin(Time now);

    // Bytes that may be taken now; the largest number where there is no limit.
    std::uint64_t available(Time now) const;

    // At most as many as are available.
    void take(std::uint64_t count, Time now);

    // When the next portion will be there, where all that came has been taken.
    std::optional<Time> nextPortion() const;

    void advance(Time now);

  private:
    std::int64_t creditAt(Time now) const;

    std::int64_t perNanosecond_;  // credit; 0: no limit
    std::int64_t portion_;
    std::int64_t burst_;
    std::int64_t credit_ = 0;
    bool open_ = false;  // a portion came, and is not used up
    Time last_;
};

}  // namespace tavio::virtual_printer
