// How long a command stream may be, and counting up to that.
#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>

namespace tavio::encoder {

// A stream is handed to the transport under a signed 32-bit count, so it may not be longer.
inline constexpr std::size_t kMaxStreamBytes = 0x7FFFFFFF;

// Thrown when a stream would become too long; never leaves the encoder.
struct StreamTooLong : std::length_error {
    StreamTooLong() : std::length_error("the command stream is too long") {}
};

// Adds up the bytes of a stream.
class StreamSize {
  public:
    explicit StreamSize(std::size_t max = kMaxStreamBytes) : max_(max) {}

    // Throws StreamTooLong where the sum would be above `max`; the sum stays what it was.
    void add(std::uint64_t bytes) {
        if (bytes > max_ - sum_) throw StreamTooLong();
        sum_ += static_cast<std::size_t>(bytes);
    }

    std::size_t sum() const { return sum_; }

  private:
    std::size_t max_;
    std::size_t sum_ = 0;
};

}  // namespace tavio::encoder
