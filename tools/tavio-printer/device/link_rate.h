// The number of bytes that a link of a given speed has carried by a given time.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

namespace tavio::virtual_printer {

// Counts in whole units of 10^-12 byte, so that frequent calls cause no drift.
//
// Bytes come in portions: after all bytes are taken, the next ones come after 10 ms, or when there
// is one byte. An idle link keeps the bytes of 50 ms, or one byte.
class LinkRate {
  public:
    using Time = std::chrono::steady_clock::time_point;

    static constexpr double kMinBytesPerSecond = 0.001;
    static constexpr double kMaxBytesPerSecond = 1e8;

    // 0: no limit. Otherwise between the two limits, and rounded to thousandths.
    explicit LinkRate(double bytesPerSecond);

    // Starts the link without bytes.
    void begin(Time now);

    // The number of bytes that may be taken now; the largest number if there is no limit.
    std::uint64_t available(Time now) const;

    // Takes at most available(now) bytes.
    void take(std::uint64_t count, Time now);

    // The time of the next portion, if all bytes have been taken.
    std::optional<Time> nextPortion() const;

    void advance(Time now);

  private:
    std::int64_t creditAt(Time now) const;

    std::int64_t perNanosecond_;  // credit; 0: no limit
    std::int64_t portion_;
    std::int64_t burst_;
    std::int64_t credit_ = 0;
    bool open_ = false;  // a portion has come and is not used up
    Time last_;
};

}  // namespace tavio::virtual_printer
